#include "Update/UpdatePathMacro.h"

#include "Frwk_Utility.h"
#include "MethodTrace.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <windows.h>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

constexpr MethodLines g_cLines(L"CLocalUpdateAgentKey::ReplacePath()");

std::wstring InstalledFolder()
{
    std::wstring tszFolder = Frwk::Utility::GetInstalledFolder();
    if (tszFolder.empty()) {
        g_cLines.Error(L"Frwk::Utility::GetInstalledFolder() failed.");
    } else {
        g_cLines.Notice(L"InstalledFolder [%s]", tszFolder);
    }
    return tszFolder;
}

using FolderBuffer = std::array<wchar_t, MAX_PATH>;

/** A folder that a call of the system puts into a buffer. @param _fnCall  gives its length, 0 on failure */
std::wstring FolderFrom(UINT (*_fnCall)(FolderBuffer&), const wchar_t* _pszCall, const wchar_t* _pszName)
{
    FolderBuffer aBuffer{};
    const UINT ulLength = _fnCall(aBuffer);
    if (ulLength == 0 || ulLength > aBuffer.size()) {
        g_cLines.Error(L"%s failed. [0x%08x]", _pszCall, ::GetLastError());
        return {};
    }
    std::wstring tszFolder(aBuffer.data(), std::min<std::size_t>(ulLength, aBuffer.size() - 1));
    g_cLines.Notice(L"%s [%s]", _pszName, tszFolder);
    return tszFolder;
}

std::wstring WindowsFolder()
{
    return FolderFrom([](FolderBuffer& _raBuffer) { return ::GetWindowsDirectoryW(_raBuffer.data(), MAX_PATH); },
                      L"GetWindowsDirectory()", L"tszWindowsDirectory");
}

std::wstring SystemFolder()
{
    return FolderFrom([](FolderBuffer& _raBuffer) { return ::GetSystemDirectoryW(_raBuffer.data(), MAX_PATH); },
                      L"GetSystemDirectory()", L"tszSystemDirectory");
}

std::wstring CurrentFolder()
{
    return FolderFrom(
        [](FolderBuffer& _raBuffer) -> UINT { return ::GetCurrentDirectoryW(MAX_PATH, _raBuffer.data()); },
        L"GetCurrentDirectory()", L"tszCurrentDirectory");
}

/** A macro and the function that finds its folder. The function logs, and returns an empty text on failure. */
struct MacroRow
{
    std::wstring_view svMacro;
    std::wstring (*pfnFolder)();
};

/** In the order in which they are looked for. */
constexpr MacroRow g_aMacro[] = {
    {L"$INSTALL$", &InstalledFolder},
    {L"$WINDOWS$", &WindowsFolder},
    {L"$SYSTEM$", &SystemFolder},
    {L"$CURRENT$", &CurrentFolder},
};

const MacroRow* FindMacro(std::wstring_view _svPath) noexcept
{
    const auto* pMacro = std::ranges::find_if(g_aMacro, [&](const MacroRow& _rstMacro) {
        return _svPath.find(_rstMacro.svMacro) != std::wstring_view::npos;
    });
    return pMacro != std::end(g_aMacro) ? pMacro : nullptr;
}

} // namespace

bool HasPathMacro(std::wstring_view _svPath) noexcept
{
    return FindMacro(_svPath) != nullptr;
}

void ReplacePathMacro(std::wstring& _rtszPath)
{
    const MacroRow* pMacro = FindMacro(_rtszPath);
    if (pMacro == nullptr) {
        return;
    }
    if (const std::wstring tszFolder = pMacro->pfnFolder(); !tszFolder.empty()) {
        _rtszPath.replace(_rtszPath.find(pMacro->svMacro), pMacro->svMacro.size(), String::WithBackslash(tszFolder));
    }
}

} // namespace Varnhelt
