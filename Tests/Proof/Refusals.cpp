#include "Verbs.h"

#include "Footprint.h"
#include "SrvFrwk_ResultCode.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>
#include <windows.h>

namespace Proof {

namespace {

/** An import, and what it answers when it is refused. */
struct Import
{
    const char* szName = nullptr;
    std::uintptr_t uRefusal = 0;
    void* pReal = nullptr;
};

constexpr std::uintptr_t g_uNoHandle = ~std::uintptr_t{0};
constexpr std::uintptr_t g_uOutOfMemory = ERROR_OUTOFMEMORY;

/** Those of the library that can fail. What only gives memory back, or cannot fail, is not among them. */
Import g_aImport[] = {
    {"malloc", 0},
    {"calloc", 0},
    {"realloc", 0},
    {"CreateFileW", g_uNoHandle},
    {"FindFirstFileW", g_uNoHandle},
    {"GetFileAttributesW", INVALID_FILE_ATTRIBUTES},
    {"ReadFile", 0},
    {"WriteFile", 0},
    {"FlushFileBuffers", 0},
    {"SetEndOfFile", 0},
    {"SetFilePointerEx", 0},
    {"GetFileSizeEx", 0},
    {"MoveFileExW", 0},
    {"DeleteFileW", 0},
    {"SetFileInformationByHandle", 0},
    {"GetFileInformationByHandle", 0},
    {"GetTempPathW", 0},
    {"GetTempFileNameW", 0},
    {"GetModuleFileNameW", 0},
    {"LoadLibraryW", 0},
    {"LoadLibraryExW", 0},
    {"GetProcAddress", 0},
    {"OpenProcessToken", 0},
    {"OpenThreadToken", 0},
    {"GetTokenInformation", 0},
    {"InitializeAcl", 0},
    {"AddAccessAllowedAceEx", 0},
    {"InitializeSecurityDescriptor", 0},
    {"SetSecurityDescriptorDacl", 0},
    {"CreateMutexW", 0},
    {"LockFileEx", 0},
    {"WritePrivateProfileStringW", 0},
    {"RegOpenKeyExW", g_uOutOfMemory},
    {"RegCreateKeyExW", g_uOutOfMemory},
    {"RegQueryValueExW", g_uOutOfMemory},
    {"RegSetValueExW", g_uOutOfMemory},
    {"RegDeleteValueW", g_uOutOfMemory},
    {"RegDeleteKeyExW", g_uOutOfMemory},
    {"RegEnumKeyExW", g_uOutOfMemory},
    {"RegFlushKey", g_uOutOfMemory},
};

unsigned g_uCalls = 0;
unsigned g_uFirst = 0;
unsigned g_uCount = 0;
const char* g_szLast = "";

/** The real function, or null when this call is refused. Only the one thread of a run comes here. */
void* Decide(Import* _pImport) noexcept
{
    ++g_uCalls;
    if (g_uFirst == 0 || g_uCalls < g_uFirst || g_uCalls - g_uFirst >= g_uCount) {
        return _pImport->pReal;
    }
    g_szLast = _pImport->szName;
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

template <class TValue>
void Append(unsigned char*& _rpCode, TValue _value)
{
    std::memcpy(_rpCode, &_value, sizeof(_value));
    _rpCode += sizeof(_value);
}

/** Writes the detour of an import: it asks Decide, with the arguments kept, and goes on to the real function or answers. */
void WriteDetour(unsigned char* _pCode, Import* _pImport)
{
    constexpr std::array<unsigned char, 8> abSave = {0x51, 0x52, 0x41, 0x50,
                                                     0x41, 0x51, 0x48, 0x83}; // push rcx, rdx, r8, r9
    constexpr std::array<unsigned char, 4> abRoom = {0xec, 0x28, 0x48, 0xb9}; // sub rsp, 40; mov rcx,
    constexpr std::array<unsigned char, 2> abTarget = {0x48, 0xb8};           // mov rax,
    constexpr std::array<unsigned char, 12> abBack = {
        0xff, 0xd0, 0x48, 0x83, 0xc4, 0x28,
        0x41, 0x59, 0x41, 0x58, 0x5a, 0x59}; // call rax; add rsp, 40; pop r9, r8, rdx, rcx
    constexpr std::array<unsigned char, 7> abGo = {0x48, 0x85, 0xc0, 0x74,
                                                   0x02, 0xff, 0xe0}; // test rax, rax; jz +2; jmp rax
    Append(_pCode, abSave);
    Append(_pCode, abRoom);
    Append(_pCode, reinterpret_cast<std::uintptr_t>(_pImport));
    Append(_pCode, abTarget);
    Append(_pCode, reinterpret_cast<std::uintptr_t>(&Decide));
    Append(_pCode, abBack);
    Append(_pCode, abGo);
    Append(_pCode, abTarget);
    Append(_pCode, _pImport->uRefusal);
    Append(_pCode, static_cast<unsigned char>(0xc3)); // ret
}

void Lead(Import* _pImport, ULONGLONG* _pSlot, unsigned char*& _rpCode)
{
    constexpr std::size_t uDetour = 80;
    _pImport->pReal = reinterpret_cast<void*>(static_cast<std::uintptr_t>(*_pSlot));
    WriteDetour(_rpCode, _pImport);
    DWORD ulProtection = 0;
    ::VirtualProtect(_pSlot, sizeof(*_pSlot), PAGE_READWRITE, &ulProtection);
    *_pSlot = reinterpret_cast<std::uintptr_t>(_rpCode);
    _rpCode += uDetour;
}

/** Leads the module's imports that can fail through this file, for as long as the process lives. */
void WatchImports(HMODULE _hModule)
{
    auto* pCode = static_cast<unsigned char*>(::VirtualAlloc(nullptr, 0x4000, MEM_COMMIT, PAGE_EXECUTE_READWRITE));
    auto* pBase = reinterpret_cast<unsigned char*>(_hModule);
    const auto* pHeaders =
        reinterpret_cast<IMAGE_NT_HEADERS*>(pBase + reinterpret_cast<IMAGE_DOS_HEADER*>(pBase)->e_lfanew);
    const auto& rstPlace = pHeaders->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* pLibrary = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(pBase + rstPlace.VirtualAddress);
         pLibrary->Name != 0; ++pLibrary) {
        const auto* pName = reinterpret_cast<IMAGE_THUNK_DATA*>(pBase + pLibrary->OriginalFirstThunk);
        auto* pSlot = reinterpret_cast<IMAGE_THUNK_DATA*>(pBase + pLibrary->FirstThunk);
        for (; pName->u1.AddressOfData != 0; ++pName, ++pSlot) {
            const char* szName = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(pBase + pName->u1.AddressOfData)->Name;
            for (Import& rstImport : g_aImport) {
                if (std::strcmp(rstImport.szName, szName) == 0) {
                    Lead(&rstImport, &pSlot->u1.Function, pCode);
                }
            }
        }
    }
}

/** From call number _uFirst (1 is the next) on, _uCount calls fail as their functions do; 0 ends that. */
void Refuse(unsigned _uFirst, unsigned _uCount) noexcept
{
    g_uCalls = 0;
    g_uFirst = _uFirst;
    g_uCount = _uCount;
}

/** The runs of one operation, and what they lost. */
class Runs
{
public:
    Runs(const Host& _rHost, const Operation& _rstOperation)
        : m_rHost(_rHost),
          m_rstOperation(_rstOperation),
          m_tszFile(_rHost.FileOf(_rstOperation)),
          m_sBefore(Contents(m_tszFile))
    {
        Run(0, 0);
        m_uCalls = g_uCalls; // NOLINT(cppcoreguidelines-prefer-member-initializer): after the run
        m_sAfter = Contents(m_tszFile);
    }
    ~Runs() { Put(m_tszFile, m_sBefore); }
    Runs(const Runs&) = delete;
    Runs& operator=(const Runs&) = delete;

    /** Each _uStep-th call is the first that is refused, and _uCount are. @return bytes that stay from first to last run */
    std::size_t RefuseEach(unsigned _uStep, unsigned _uCount)
    {
        std::size_t uFirstHeap = 0;
        for (unsigned uFirst = 1; uFirst <= m_uCalls; uFirst += _uStep, ++m_iRuns) {
            Put(m_tszFile, m_sBefore);
            (void)std::fprintf(stderr, "call %u %s\n", uFirst, _uCount == 1 ? "alone" : "and all after it");
            Judge(Run(uFirst, _uCount));
            uFirstHeap = uFirst == 1 ? Footprint::Now().uHeapBytes : uFirstHeap;
        }
        const std::size_t uHeap = Footprint::Now().uHeapBytes;
        return uHeap > uFirstHeap ? uHeap - uFirstHeap : 0;
    }
    bool Print(std::size_t _uLeft) const
    {
        std::printf("calls %u, runs %d, false successes %d, documents lost %d, bytes left %zu\n", m_uCalls, m_iRuns,
                    m_iFalse, m_iLost, _uLeft);
        return m_iFalse + m_iLost == 0 && _uLeft < 1024;
    }

private:
    std::uint32_t Run(unsigned _uFirst, unsigned _uCount) const
    {
        Refuse(_uFirst, _uCount);
        std::uint32_t ulResult = SrvFrwk::Result::g_ulFailed;
        try {
            ulResult = m_rHost.Run(m_rstOperation);
        } catch (const std::bad_alloc&) { // of the driver's own containers
        }
        const unsigned uCalls = g_uCalls;
        Refuse(0, 0);
        g_uCalls = uCalls;
        return ulResult;
    }
    void Judge(std::uint32_t _ulResult)
    {
        const std::string sNow = Contents(m_tszFile);
        const bool bSteps = m_rstOperation.svName == "store-pre-update-list"; // three saves; the first may fail
        const bool bDone = sNow == m_sAfter || (bSteps && sNow.find("ver=\"17.0\"/>") != std::string::npos);
        const bool bWhole = bDone || sNow == m_sBefore || (bSteps && sNow.find("</body>") != std::string::npos);
        // An update that fails is consumed all the same, and its steps that failed are in the trace.
        const bool bFalse = m_rstOperation.bStores && _ulResult == SrvFrwk::Result::g_ulSuccess && !bDone;
        m_iLost += bWhole ? 0 : 1;
        m_iFalse += bFalse ? 1 : 0;
        if (!bWhole || bFalse) {
            (void)std::fprintf(stderr, "  %s: 0x%08x, %s\n", g_szLast, static_cast<unsigned>(_ulResult),
                               bWhole ? "success without the change" : "neither old nor new");
        }
    }

    const Host& m_rHost;
    const Operation& m_rstOperation;
    std::wstring m_tszFile;
    std::string m_sBefore;
    std::string m_sAfter;
    unsigned m_uCalls = 0;
    int m_iRuns = 0, m_iFalse = 0, m_iLost = 0;
};

} // namespace

/** refusals OPERATION STEP: every STEP-th call alone, then it and all after it. The last line of stderr is where it was. */
int Refusals(Host& _rHost, const Arguments& _vecArgument)
{
    const unsigned uStep = static_cast<unsigned>(std::stoul(_vecArgument.at(1)));
    const HMODULE hParser = ::LoadLibraryW((_rHost.stDesk.tszFolder + L"libexpat.dll").c_str());
    if (hParser == nullptr) {
        throw std::runtime_error("there is no libexpat.dll in the folder");
    }
    // In the program are the documents that function objects do not serve, and the containers of all.
    for (const HMODULE hModule : {::GetModuleHandleW(L"Varnhelt.dll"), hParser, ::GetModuleHandleW(nullptr)}) {
        WatchImports(hModule);
    }
    Runs cRuns(_rHost, OperationOf(_vecArgument[0]));
    const std::size_t uLeftByAll = cRuns.RefuseEach(uStep, ~0U); // first, since nothing is ready for it then
    return cRuns.Print(std::max(uLeftByAll, cRuns.RefuseEach(uStep, 1))) ? 0 : 1;
}

} // namespace Proof
