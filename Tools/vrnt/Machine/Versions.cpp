#include "Machine/Versions.h"

#include "Arguments.h"
#include "Machine/Host.h"
#include "Output/Output.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateRecording.h"
#include "ZkComn_Library.h"
#include "ZkComn_Owner.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParserExpat.h"

#include <cstdint>
#include <cstring>
#include <windows.h>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

/**
 * The version of a file's version resource, read without the system's version.dll: one beside the tool would be loaded in
 * its place.
 */
std::wstring FileVersionOf(const std::filesystem::path& _rtszPath)
{
    const ZkCommon::ModuleHandle hFile(
        ::LoadLibraryExW(_rtszPath.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    HRSRC hResource =
        ::FindResourceW(hFile.Get(), MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16)); // RT_VERSION, wide
    if (!hFile || hResource == nullptr) {
        return {};
    }
    // Three words and the key "VS_VERSION_INFO", filled up to a multiple of four bytes, come before the fixed part.
    constexpr std::size_t uFixed = 40;
    const auto* pBytes = static_cast<const std::uint8_t*>(::LockResource(::LoadResource(hFile.Get(), hResource)));
    VS_FIXEDFILEINFO stFixed{};
    if (pBytes == nullptr || ::SizeofResource(hFile.Get(), hResource) < uFixed + sizeof(stFixed)) {
        return {};
    }
    std::memcpy(&stFixed, pBytes + uFixed, sizeof(stFixed));
    if (stFixed.dwSignature != VS_FFI_SIGNATURE) {
        return {};
    }
    std::wstring tszVersion;
    for (const DWORD ulPart : {HIWORD(stFixed.dwFileVersionMS), LOWORD(stFixed.dwFileVersionMS),
                               HIWORD(stFixed.dwFileVersionLS), LOWORD(stFixed.dwFileVersionLS)}) {
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
    // Unlike others it gives every program the same answer.
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
