#include "Footprint.h"

#include <array>
#include <cstdint>
#include <tlhelp32.h>

namespace {

// By trying them: Wine answers GetProcessHandleCount with 0.
DWORD CountHandles()
{
    DWORD ulHandles = 0;
    for (std::uintptr_t uHandle = 4; uHandle < 0x10000; uHandle += 4) {
        DWORD ulFlags = 0;
        ulHandles += ::GetHandleInformation(reinterpret_cast<HANDLE>(uHandle), &ulFlags) != FALSE ? 1U : 0U;
    }
    return ulHandles;
}

DWORD CountThreads()
{
    const HANDLE hSnapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (hSnapshot == INVALID_HANDLE_VALUE) {
        return 0;
    }
    DWORD ulThreads = 0;
    THREADENTRY32 stThread = {};
    stThread.dwSize = sizeof(stThread);
    for (BOOL bMore = ::Thread32First(hSnapshot, &stThread); bMore != FALSE;
         bMore = ::Thread32Next(hSnapshot, &stThread)) {
        ulThreads += stThread.th32OwnerProcessID == ::GetCurrentProcessId() ? 1U : 0U;
    }
    ::CloseHandle(hSnapshot);
    return ulThreads;
}

std::size_t CountHeapBytes()
{
    std::array<HANDLE, 64> ahHeap = {};
    const DWORD ulHeaps = ::GetProcessHeaps(static_cast<DWORD>(ahHeap.size()), ahHeap.data());
    std::size_t uBytes = 0;
    for (std::size_t uHeap = 0; uHeap < ulHeaps && uHeap < ahHeap.size(); ++uHeap) {
        ::HeapLock(ahHeap[uHeap]);
        PROCESS_HEAP_ENTRY stEntry = {};
        while (::HeapWalk(ahHeap[uHeap], &stEntry) != FALSE) {
            uBytes += (stEntry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? stEntry.cbData : 0U;
        }
        ::HeapUnlock(ahHeap[uHeap]);
    }
    return uBytes;
}

std::size_t CountPrivateBytes()
{
    std::size_t uBytes = 0;
    MEMORY_BASIC_INFORMATION stRegion = {};
    for (const char* pAddress = nullptr; ::VirtualQuery(pAddress, &stRegion, sizeof(stRegion)) != 0;
         pAddress = static_cast<const char*>(stRegion.BaseAddress) + stRegion.RegionSize) {
        uBytes += stRegion.State == MEM_COMMIT && stRegion.Type == MEM_PRIVATE ? stRegion.RegionSize : 0U;
    }
    return uBytes;
}

} // namespace

Footprint Footprint::Now()
{
    Footprint stNow;
    stNow.ulHandles = CountHandles();
    stNow.ulThreads = CountThreads();
    stNow.uHeapBytes = CountHeapBytes();
    stNow.uPrivateBytes = CountPrivateBytes();
    return stNow;
}

bool Footprint::IsWithin(const Footprint& _rBefore) const
{
    return ulHandles <= _rBefore.ulHandles && ulThreads <= _rBefore.ulThreads && uHeapBytes <= _rBefore.uHeapBytes &&
           uPrivateBytes <= _rBefore.uPrivateBytes;
}
