#include "Machine/Versions.h"

#include "Arguments.h"
#include "Machine/Host.h"
#include "Output/Output.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateRecording.h"
#include "ZkComn_Library.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParserExpat.h"

#include <windows.h>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

/** The version of a file's version resource. */
std::wstring FileVersionOf(const std::filesystem::path& _rtszPath)
{
    DWORD ulUnused = 0;
    std::vector<std::uint8_t> vecInfo(::GetFileVersionInfoSizeW(_rtszPath.c_str(), &ulUnused));
    void* pFixed = nullptr;
    UINT uLength = 0;
    if (vecInfo.empty() ||
        !::GetFileVersionInfoW(_rtszPath.c_str(), 0, static_cast<DWORD>(vecInfo.size()), vecInfo.data()) ||
        !::VerQueryValueW(vecInfo.data(), L"\\", &pFixed, &uLength) || uLength < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto& rstFixed = *static_cast<const VS_FIXEDFILEINFO*>(pFixed);
    std::wstring tszVersion;
    for (const DWORD ulPart : {HIWORD(rstFixed.dwFileVersionMS), LOWORD(rstFixed.dwFileVersionMS),
                               HIWORD(rstFixed.dwFileVersionLS), LOWORD(rstFixed.dwFileVersionLS)}) {
        tszVersion += (tszVersion.empty() ? L"" : L".") + std::to_wstring(ulPart);
    }
    return tszVersion;
}

/** What the parser library says of itself: the library takes the product's, else the one beside itself. */
std::string ParserVersion(const std::wstring& _rtszInstalledFolder, const std::wstring& _rtszModuleFolder)
{
    for (const std::wstring* pFolder : {&_rtszInstalledFolder, &_rtszModuleFolder}) {
        ZkCommon::Library::Expat cExpat;
        std::uint32_t ulError = ERROR_SUCCESS;
        if (std::filesystem::path(*pFolder).is_absolute() && cExpat.Load(*pFolder, ulError)) {
            return std::string(cExpat.ExpatVersion()) +
                   (pFolder == &_rtszInstalledFolder ? ", of the product" : ", beside the library");
        }
    }
    return "(cannot be loaded)";
}

std::string WindowsVersion()
{
    using GetVersionFunction = LONG WINAPI(OSVERSIONINFOW*);
    OSVERSIONINFOW stInfo{};
    stInfo.dwOSVersionInfoSize = sizeof stInfo;
    // Unlike others it tells every program the same.
    const auto pfnGetVersion = ZkCommon::Library::FunctionAt<GetVersionFunction>(
        ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion"));
    if (pfnGetVersion == nullptr || pfnGetVersion(&stInfo) != 0) {
        return OrUnknown({});
    }
    const std::string sServicePack = ToUtf8(stInfo.szCSDVersion);
    return std::to_string(stInfo.dwMajorVersion) + "." + std::to_string(stInfo.dwMinorVersion) + "." +
           std::to_string(stInfo.dwBuildNumber) + (sServicePack.empty() ? "" : " " + sServicePack) +
           (ZkCommon::Platform::IsNative64Bit() ? ", 64-bit" : ", 32-bit");
}

} // namespace

std::vector<VersionFact> FindVersions(const GlobalOptions& _rstOptions, const std::wstring& _rtszInstalledFolder)
{
    const std::filesystem::path tszModule = ModulePath(_rstOptions);
    Varnhelt::RecordingStorage cStorage;
    CLocalUpdateManager cProduct(cStorage); // reads what conditions of updates are judged by
    cProduct.Initialize();
    const Varnhelt::UpdateEnvironment& rstProduct = cProduct.Environments();
    return {{"vrnt.exe", OrUnknown(FileVersionOf(ToolFolder() / L"vrnt.exe"))},
            {ToUtf8(tszModule.filename().wstring()), OrUnknown(FileVersionOf(tszModule))},
            {"libexpat.dll", ParserVersion(_rtszInstalledFolder, tszModule.parent_path().wstring())},
            {"Product version", OrUnknown(rstProduct.tszVersion)},
            {"Product edition", OrUnknown(rstProduct.tszProduct)},
            {"Product language", OrUnknown(rstProduct.tszLanguage)},
            {"Windows", WindowsVersion()}};
}

} // namespace Vrnt
