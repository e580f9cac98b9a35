#include "Update/SystemKey.h"

#include "ZkComn_Exception.h"
#include "ZkComn_Library.h"
#include "ZkComn_SecurityAttributes.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

/** The full name of an open key as the system keeps it, "\REGISTRY\Machine\Software"; empty when it does not say. */
std::wstring SystemNameOf(HKEY _hKey)
{
    constexpr int iKeyNameInformation = 3;
    using QueryKey = LONG WINAPI(HANDLE, int, void*, ULONG, ULONG*);
    const auto pQueryKey =
        Library::FunctionAt<QueryKey>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryKey"));
    std::vector<ULONG> vecBuffer(0x10004 / sizeof(ULONG)); // the length in bytes, then the longest name there is
    ULONG ulSize = 0;
    const auto ulBytes = static_cast<ULONG>(vecBuffer.size() * sizeof(ULONG));
    if (pQueryKey == nullptr || pQueryKey(_hKey, iKeyNameInformation, vecBuffer.data(), ulBytes, &ulSize) < 0) {
        return {};
    }
    std::wstring tszName(vecBuffer[0] / sizeof(wchar_t), L'\0');
    std::memcpy(tszName.data(), vecBuffer.data() + 1, tszName.size() * sizeof(wchar_t));
    return tszName;
}

/** The key itself, or the nearest one above it that can be opened; the rest of the path goes to _rtszRest. */
RegKey OpenNearest(const UpdatePlace& _rstPlace, std::wstring& _rtszPath, std::wstring& _rtszRest)
{
    _rtszPath = _rstPlace.tszPath;
    for (;;) {
        _rtszPath.resize(_rtszPath.find_last_not_of(L'\\') + 1);
        RegKey hKey;
        if (_rtszPath.empty() ||
            ::RegOpenKeyExW(_rstPlace.hRoot, _rtszPath.c_str(), 0,
                            MAXIMUM_ALLOWED | Storage::ViewFlag(_rstPlace.enView), hKey.Receive()) == ERROR_SUCCESS) {
            return hKey;
        }
        const std::size_t uName = _rtszPath.rfind(L'\\') + 1;
        _rtszRest.insert(0, L"\\" + _rtszPath.substr(uName));
        _rtszPath.resize(uName);
    }
}

/** The places of the roots in a view, as the system names them. */
std::wstring SystemNameOfRoot(HKEY _hRoot, Storage::RegistryView _enView)
{
    RegKey hKey;
    if (_hRoot == HKEY_CURRENT_USER) {
        Exception::ThrowOn<Storage::RegException>(::RegOpenCurrentUser(MAXIMUM_ALLOWED, hKey.Receive()));
        return SystemNameOf(hKey.Get());
    }
    if (_hRoot == HKEY_CLASSES_ROOT) { // the name of its own is that of no key
        const LSTATUS lResult = ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0,
                                                MAXIMUM_ALLOWED | Storage::ViewFlag(_enView), hKey.Receive());
        return lResult == ERROR_SUCCESS ? SystemNameOf(hKey.Get()) : L"\\REGISTRY\\MACHINE\\Software\\Classes";
    }
    return _hRoot == HKEY_USERS ? L"\\REGISTRY\\USER" : L"\\REGISTRY\\MACHINE";
}

std::vector<std::uint8_t> AccessListBytes(HKEY _hRoot, const std::wstring& _rtszPath)
{
    RegKey hKey;
    DWORD ulSize = 0;
    if (::RegOpenKeyExW(_hRoot, _rtszPath.c_str(), 0, READ_CONTROL | KEY_WOW64_64KEY, hKey.Receive()) !=
            ERROR_SUCCESS ||
        ::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, nullptr, &ulSize) != ERROR_INSUFFICIENT_BUFFER) {
        return {};
    }
    std::vector<std::uint8_t> vecDescriptor(ulSize);
    if (::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, vecDescriptor.data(), &ulSize) != ERROR_SUCCESS) {
        return {};
    }
    return vecDescriptor;
}

/** The entries of a descriptor's access list. */
struct AccessEntries
{
    std::vector<std::uint8_t> vecBytes;
    bool bAllInherited = false;
};

AccessEntries EntriesOf(PSECURITY_DESCRIPTOR _pDescriptor)
{
    BOOL bPresent = FALSE;
    BOOL bDefaulted = FALSE;
    ACL* pList = nullptr;
    if (!::GetSecurityDescriptorDacl(_pDescriptor, &bPresent, &pList, &bDefaulted) || pList == nullptr) {
        return {};
    }
    AccessEntries stEntries{{}, true};
    for (DWORD i = 0; i < pList->AceCount; ++i) {
        void* pEntry = nullptr;
        if (!::GetAce(pList, i, &pEntry)) {
            return {};
        }
        const auto* pBytes = static_cast<const std::uint8_t*>(pEntry);
        const auto* pHeader = static_cast<const ACE_HEADER*>(pEntry);
        stEntries.vecBytes.insert(stEntries.vecBytes.end(), pBytes, pBytes + pHeader->AceSize);
        stEntries.bAllInherited = stEntries.bAllInherited && (pHeader->AceFlags & INHERITED_ACE) != 0;
    }
    return stEntries;
}

} // namespace

UpdatePlace RealPlaceOf(const UpdatePlace& _rstPlace)
{
    std::wstring tszFound;
    std::wstring tszRest;
    const RegKey hKey = OpenNearest(_rstPlace, tszFound, tszRest);
    std::wstring tszName = hKey ? SystemNameOf(hKey.Get()) : std::wstring();
    if (tszName.empty()) {
        tszName = SystemNameOfRoot(_rstPlace.hRoot, _rstPlace.enView) + (tszFound.empty() ? L"" : L"\\" + tszFound);
    }
    tszName += tszRest;

    constexpr std::wstring_view svUsers = L"\\REGISTRY\\USER\\";
    constexpr std::wstring_view svMachine = L"\\REGISTRY\\MACHINE\\";
    const bool bUsers = String::EqualsNoCase(tszName, svUsers, svUsers.size());
    UpdatePlace stReal;
    stReal.hRoot = bUsers ? HKEY_USERS : HKEY_LOCAL_MACHINE;
    stReal.enView = Storage::View64;
    stReal.tszPath = tszName.substr(std::min(tszName.size(), bUsers ? svUsers.size() : svMachine.size()));
    // Several backslashes are as one.
    const auto itEnd = std::unique(stReal.tszPath.begin(), stReal.tszPath.end(),
                                   [](wchar_t _cLeft, wchar_t _cRight) { return _cLeft == L'\\' && _cRight == L'\\'; });
    stReal.tszPath.erase(itEnd, stReal.tszPath.end());
    return stReal;
}

AccessList AccessListOf(const UpdatePlace& _rstPlace)
{
    std::vector<std::uint8_t> vecOwn = AccessListBytes(_rstPlace.hRoot, _rstPlace.tszPath);
    if (vecOwn.empty()) {
        return AccessList::Own;
    }
    const AccessEntries stOwn = EntriesOf(vecOwn.data());
    AccessControl::SecurityAttributes allAccess(AccessControl::ObjectKind::RegistryKey, false);
    if (stOwn.vecBytes == EntriesOf(allAccess.Descriptor()).vecBytes) {
        return AccessList::AllAccess;
    }
    std::vector<std::uint8_t> vecParent =
        AccessListBytes(_rstPlace.hRoot, _rstPlace.tszPath.substr(0, _rstPlace.tszPath.rfind(L'\\')));
    const bool bAsParent = !vecParent.empty() && stOwn.vecBytes == EntriesOf(vecParent.data()).vecBytes;
    return stOwn.bAllInherited || bAsParent ? AccessList::Inherited : AccessList::Own;
}

} // namespace Varnhelt
