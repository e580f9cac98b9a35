#include "ZkComn_Platform.h"

#include "ZkComn_Library.h"
#include "ZkComn_Synchronize.h"

#include <algorithm>
#include <iterator>
#include <windows.h>

namespace ZkCommon::Platform {

namespace {

constexpr WORD g_usUnknownProcessor = 0xFFFF;

Synchronize::CriticalSection g_Lock; // guards what follows
std::optional<Version> g_stVersion;
std::uint32_t g_ulErrorCode = 0;
WORD g_usProcessor = g_usUnknownProcessor;

bool QueryVersion(void* _pstInfo) noexcept
{
#ifdef _MSC_VER
#pragma warning(suppress : 4996) // what it reports to a program without a manifest is what is wanted here
#endif
    if (::GetVersionExW(static_cast<OSVERSIONINFOW*>(_pstInfo))) {
        return true;
    }
    g_ulErrorCode = ::GetLastError();
    return false;
}

/** The present version, asked for unless it is known; nothing on failure. */
std::optional<Version> KnownVersion() noexcept
{
    const bool b64Bit = IsNative64Bit();
    const Synchronize::SingleLock lock(&g_Lock);
    if (!g_stVersion) {
        OSVERSIONINFOW stBasic{};
        stBasic.dwOSVersionInfoSize = sizeof stBasic;
        static_assert(sizeof stBasic == 276);
        OSVERSIONINFOEXW stExtended{};
        stExtended.dwOSVersionInfoSize = sizeof stExtended;
        static_assert(sizeof stExtended == 284);
        if (QueryVersion(&stBasic) && QueryVersion(&stExtended)) {
            g_stVersion = Version{stBasic.dwPlatformId,         stBasic.dwMajorVersion,  stBasic.dwMinorVersion,
                                  stExtended.wServicePackMajor, stExtended.wProductType, b64Bit};
            g_ulErrorCode = ERROR_SUCCESS;
        }
    }
    return g_stVersion;
}

WORD NativeProcessor() noexcept
{
    const ModuleHandle hKernel(::LoadLibraryW(L"kernel32.dll"));
    if (!hKernel) {
        return g_usUnknownProcessor;
    }
    const auto pGetInfo =
        Library::FunctionAt<decltype(::GetNativeSystemInfo)>(::GetProcAddress(hKernel.Get(), "GetNativeSystemInfo"));
    if (pGetInfo == nullptr) {
        return g_usUnknownProcessor;
    }
    SYSTEM_INFO stInfo{};
    pGetInfo(&stInfo);
    return stInfo.wProcessorArchitecture;
}

} // namespace

std::optional<std::uint32_t> OsTypeOf(std::wstring_view _svName) noexcept
{
    const auto it = std::ranges::find(g_aOsTypeName, _svName, &OsTypeName::svName);
    return it != std::end(g_aOsTypeName) ? std::optional(it->ulOsType) : std::nullopt;
}

std::wstring_view NameOf(std::uint32_t _ulOsType) noexcept
{
    const auto it = std::ranges::find(g_aOsTypeName, _ulOsType, &OsTypeName::ulOsType);
    return it != std::end(g_aOsTypeName) ? it->svName : std::wstring_view();
}

bool IsOfType(std::uint32_t _ulOsType, const Version& _rstVersion) noexcept
{
    const auto& [ulPlatform, ulMajor, ulMinor, ulServicePack, ulProductType, b64Bit] = _rstVersion;
    const bool b9x = ulPlatform == VER_PLATFORM_WIN32_WINDOWS;
    const bool bNt = ulPlatform == VER_PLATFORM_WIN32_NT;
    const bool bWorkstation = ulProductType == VER_NT_WORKSTATION;
    const bool bServer = ulProductType == VER_NT_SERVER;
    const auto IsNt = [&](std::uint32_t _ulMajor, std::uint32_t _ulMinor) {
        return bNt && ulMajor == _ulMajor && ulMinor == _ulMinor;
    };
    // NT, and above _ulMajor._ulMinor, or that version with the service pack.
    const auto IsNtFrom = [&](std::uint32_t _ulMajor, std::uint32_t _ulMinor, std::uint32_t _ulServicePack) {
        return bNt && (ulMajor > _ulMajor || (ulMajor == _ulMajor && ulMinor > _ulMinor) ||
                       (IsNt(_ulMajor, _ulMinor) && ulServicePack >= _ulServicePack));
    };
    switch (_ulOsType) {
    case OsMe:
        return b9x && ulMajor == 4 && ulMinor == 90;
    case Os9xOrMe:
        return b9x;
    case Os2000:
        return IsNt(5, 0);
    case Os2003:
        return IsNt(5, 2) && bServer;
    case OsXp32:
        return IsNt(5, 1) && bWorkstation;
    case OsXp64:
        return IsNt(5, 2) && bWorkstation;
    case OsXp32Or64:
        return (IsNt(5, 1) || IsNt(5, 2)) && bWorkstation;
    case OsVista32:
        return IsNt(6, 0) && !b64Bit;
    case OsVista64:
        return IsNt(6, 0) && b64Bit;
    case OsVista32Or64:
        return IsNt(6, 0);
    case OsSeven32:
        return IsNt(6, 1) && !b64Bit;
    case OsSeven64:
        return IsNt(6, 1) && b64Bit;
    case OsSeven32Or64:
        return IsNt(6, 1);
    case OsEight32:
        return IsNt(6, 2) && !b64Bit;
    case OsEight64:
        return IsNt(6, 2) && b64Bit;
    case OsEight32Or64:
        return IsNt(6, 2);
    case OsNtOrLater:
        return bNt;
    case Os2000OrLater:
        return IsNtFrom(5, 0, 0);
    case OsXpOrLater:
        return IsNtFrom(5, 1, 0);
    case OsXpSp2OrLater:
        return IsNtFrom(5, 1, 2);
    case OsXpSp3OrLater:
        return IsNtFrom(5, 1, 3);
    case OsVistaOrLater:
        return IsNtFrom(6, 0, 0);
    case OsVistaSp1OrLater:
        return IsNtFrom(6, 0, 1);
    case OsVistaSp2OrLater:
        return IsNtFrom(6, 0, 2);
    case OsSevenOrLater:
        return bNt && ulMajor >= 6 && ulMinor != 0; // on purpose not true of a 10.0
    case OsSevenSp1OrLater:
        return IsNtFrom(6, 1, 1);
    case OsEightOrLater:
        return IsNtFrom(6, 2, 0);
    case OsNtServer:
        return bNt && bServer;
    default:
        return false;
    }
}

bool CheckOsType(std::uint32_t _ulOsType) noexcept
{
    const std::optional<Version> stVersion = KnownVersion();
    return stVersion && IsOfType(_ulOsType, *stVersion);
}

std::uint32_t ErrorCode() noexcept
{
    const Synchronize::SingleLock lock(&g_Lock);
    return g_ulErrorCode;
}

bool IsNative64Bit() noexcept
{
    const Synchronize::SingleLock lock(&g_Lock);
    if (g_usProcessor == g_usUnknownProcessor) {
        g_usProcessor = NativeProcessor();
    }
    return g_usProcessor == PROCESSOR_ARCHITECTURE_AMD64;
}

} // namespace ZkCommon::Platform
