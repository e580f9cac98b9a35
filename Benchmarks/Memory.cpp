#include "Memory.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::size_t g_uLargest = 0; // 0: nothing is counted
std::size_t g_uTaken = 0;
std::size_t g_uPeak = 0;

std::size_t SizeOf(void* _pMemory)
{
    return _pMemory != nullptr ? std::min(::_msize(_pMemory), g_uLargest) : 0;
}

void* Reallocate(void* _pMemory, std::size_t _uSize)
{
    if (g_uLargest == 0) {
        return std::realloc(_pMemory, _uSize);
    }
    const std::size_t uBefore = SizeOf(_pMemory);
    void* pNew = std::realloc(_pMemory, _uSize);
    if (pNew != nullptr) {
        g_uTaken += SizeOf(pNew) - std::min(uBefore, g_uTaken);
        g_uPeak = std::max(g_uPeak, g_uTaken);
    }
    return pNew;
}

void* Allocate(std::size_t _uSize)
{
    return Reallocate(nullptr, _uSize);
}

void Free(void* _pMemory)
{
    if (g_uLargest != 0) {
        g_uTaken -= std::min(SizeOf(_pMemory), g_uTaken); // what was taken before counting began may go now
    }
    std::free(_pMemory);
}

} // namespace

void* operator new(std::size_t _uSize)
{
    void* pMemory = Allocate(std::max<std::size_t>(1, _uSize));
    return pMemory != nullptr ? pMemory : throw std::bad_alloc();
}
void operator delete(void* _pMemory) noexcept
{
    Free(_pMemory);
}
void operator delete(void* _pMemory, std::size_t) noexcept
{
    Free(_pMemory);
}

namespace Bench {

const ZkCommon::Storage::XmlMemory g_stCounted{&Allocate, &Reallocate, &Free};

void StartCounting(std::size_t _uDocument)
{
    g_uLargest = _uDocument;
    g_uTaken = g_uPeak = 0;
}

std::size_t PeakBytes()
{
    g_uLargest = 0;
    return g_uPeak;
}

} // namespace Bench
