#include "ZkComn_Platform.h"

#include "ZkComn_Library.h"
#include "ZkComn_Synchronize.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <windows.h>

namespace ZkCommon::Platform {

namespace {

enum class Width
{
    Any,
    X86,
    X64,
};

/** A kind that one release of the NT family is of. */
struct Release
{
    std::uint32_t ulOsType = 0;
    std::uint32_t ulMajor = 0;
    std::uint32_t ulMinor = 0;
    Width enWidth = Width::Any;
    std::uint32_t ulProductType = 0; // 0: any

    bool Holds(const Version& _rstVersion) const noexcept
    {
        return _rstVersion.ulMajor == ulMajor && _rstVersion.ulMinor == ulMinor &&
               (enWidth == Width::Any || (enWidth == Width::X64) == _rstVersion.b64Bit) &&
               (ulProductType == 0 || ulProductType == _rstVersion.ulProductType);
    }
};

constexpr Release g_aRelease[] = {
    {Os2000, 5, 0},
    {Os2003, 5, 2, Width::Any, VER_NT_SERVER},
    {OsXp32, 5, 1, Width::Any, VER_NT_WORKSTATION},
    {OsXp64, 5, 2, Width::Any, VER_NT_WORKSTATION},
    {OsXp32Or64, 5, 1, Width::Any, VER_NT_WORKSTATION},
    {OsXp32Or64, 5, 2, Width::Any, VER_NT_WORKSTATION},
    {OsVista32, 6, 0, Width::X86},
    {OsVista64, 6, 0, Width::X64},
    {OsVista32Or64, 6, 0},
    {OsSeven32, 6, 1, Width::X86},
    {OsSeven64, 6, 1, Width::X64},
    {OsSeven32Or64, 6, 1},
    {OsEight32, 6, 2, Width::X86},
    {OsEight64, 6, 2, Width::X64},
    {OsEight32Or64, 6, 2},
};

/** A kind that the NT family is of from a release with a service pack on. */
struct Since
{
    std::uint32_t ulOsType = 0;
    std::uint32_t ulMajor = 0;
    std::uint32_t ulMinor = 0;
    std::uint32_t ulServicePack = 0;

    bool Holds(const Version& _rstVersion) const noexcept
    {
        return std::tie(_rstVersion.ulMajor, _rstVersion.ulMinor, _rstVersion.ulServicePack) >=
               std::tie(ulMajor, ulMinor, ulServicePack);
    }
};

constexpr Since g_aSince[] = {
    {Os2000OrLater, 5, 0, 0},     {OsXpOrLater, 5, 1, 0},       {OsXpSp2OrLater, 5, 1, 2},
    {OsXpSp3OrLater, 5, 1, 3},    {OsVistaOrLater, 6, 0, 0},    {OsVistaSp1OrLater, 6, 0, 1},
    {OsVistaSp2OrLater, 6, 0, 2}, {OsSevenSp1OrLater, 6, 1, 1}, {OsEightOrLater, 6, 2, 0},
};

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
    const bool b9x = _rstVersion.ulPlatform == VER_PLATFORM_WIN32_WINDOWS;
    const bool bNt = _rstVersion.ulPlatform == VER_PLATFORM_WIN32_NT;
    switch (_ulOsType) {
    case OsMe:
        return b9x && _rstVersion.ulMajor == 4 && _rstVersion.ulMinor == 90;
    case Os9xOrMe:
        return b9x;
    case OsNtOrLater:
        return bNt;
    case OsSevenOrLater: // on purpose not true of a 10.0
        return bNt && _rstVersion.ulMajor >= 6 && _rstVersion.ulMinor != 0;
    case OsNtServer:
        return bNt && _rstVersion.ulProductType == VER_NT_SERVER;
    default:
        break;
    }
    const auto Holds = [&](const auto& _rstRow) { return _rstRow.ulOsType == _ulOsType && _rstRow.Holds(_rstVersion); };
    return bNt && (std::ranges::any_of(g_aRelease, Holds) || std::ranges::any_of(g_aSince, Holds));
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
