// A local update of 1,000 entries against the bare system calls that it is made of: looking whether
// the value is there, making the key sure, writing the value. Entries write over each other, so that what is measured
// is not how an ini file grows.

#include "Documents/LocalUpdate.h"
#include "Documents/UpdateWords.h"
#include "Measure.h"
#include "SrvFrwk_ResultCode.h"
#include "TempFolder.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateStorage.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Owner.h"
#include "ZkComn_Registry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <windows.h>

namespace {

using namespace Varnhelt;
using ZkCommon::RegKey;
using ZkCommon::Storage::IniFile;
using ZkCommon::Storage::Registry;

constexpr std::uint32_t g_ulEntries = 1000;
constexpr std::uint32_t g_ulNames = 100;
constexpr const wchar_t* g_pszKey = L"Software\\VarnheltBench";
constexpr const wchar_t* g_pszSection = L"Settings";

std::wstring NameOf(std::uint32_t _ulEntry)
{
    return L"Setting" + std::to_wstring(_ulEntry % g_ulNames);
}

constexpr wchar_t g_szValue[] = L"the setting's value";

/** A key that is gone again afterwards. */
class BenchKey
{
public:
    BenchKey()
    {
        RegKey hKey;
        ::RegCreateKeyExW(HKEY_CURRENT_USER, g_pszKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, hKey.Receive(), nullptr);
    }
    BenchKey(const BenchKey&) = delete;
    BenchKey& operator=(const BenchKey&) = delete;
    ~BenchKey() { ::RegDeleteTreeW(HKEY_CURRENT_USER, g_pszKey); }
};

LocalUpdateKey MakeItem(const wchar_t* _pszKind, const std::wstring& _rtszRoot, const wchar_t* _pszPath)
{
    LocalUpdateKey stItem;
    stItem.tszKind = _pszKind;
    stItem.tszRoot = _rtszRoot;
    stItem.tszPath = _pszPath;
    for (std::uint32_t i = 0; i < g_ulEntries; ++i) {
        LocalUpdateEntry stEntry;
        stEntry.tszName = NameOf(i);
        stEntry.tszType = L"string";
        stEntry.tszValue = g_szValue;
        stEntry.tszAction = L"write";
        stEntry.tszOverWrite = UpdateWords::g_svYes;
        stEntry.tszAllAccess = L"no";
        stItem.lstEntry.push_back(stEntry);
    }
    return stItem;
}

bool Apply(LocalUpdateConfig& _rstConfig)
{
    SystemStorage cStorage;
    CLocalUpdateManager cManager(cStorage);
    return !SrvFrwk::Result::IsFailure(cManager.Initialize()) &&
           !SrvFrwk::Result::IsFailure(cManager.DoActionConfig(_rstConfig));
}

bool WriteValue(const std::wstring& _rtszName)
{
    RegKey hKey;
    BYTE aData[512];
    DWORD ulSize = sizeof aData;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, g_pszKey, 0, KEY_QUERY_VALUE, hKey.Receive());
    ::RegQueryValueExW(hKey.Get(), _rtszName.c_str(), nullptr, nullptr, aData, &ulSize);
    ::RegCreateKeyExW(HKEY_CURRENT_USER, g_pszKey, 0, nullptr, 0,
                      KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_WOW64_64KEY, nullptr, hKey.Receive(),
                      nullptr);
    ::RegOpenKeyExW(HKEY_CURRENT_USER, g_pszKey, 0, KEY_SET_VALUE, hKey.Receive());
    return ::RegSetValueExW(hKey.Get(), _rtszName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(g_szValue),
                            sizeof g_szValue) == ERROR_SUCCESS;
}

bool WriteEntry(const std::wstring& _rtszFile, const std::wstring& _rtszName)
{
    wchar_t szText[256];
    ::GetPrivateProfileStringW(g_pszSection, _rtszName.c_str(), L"", szText, 256, _rtszFile.c_str());
    return ::WritePrivateProfileStringW(g_pszSection, _rtszName.c_str(), g_szValue, _rtszFile.c_str()) != FALSE;
}

/** The calls of all entries. */
template <class TWrite>
bool WriteAll(const TWrite& _fnWrite)
{
    bool bDone = true;
    for (std::uint32_t i = 0; i < g_ulEntries; ++i) {
        bDone = _fnWrite(NameOf(i)) && bDone;
    }
    return bDone;
}

Bench::Ways RegistryWays()
{
    const auto pKey = std::make_shared<BenchKey>();
    const auto pConfig = std::make_shared<LocalUpdateConfig>();
    pConfig->lstRegistry.push_back(MakeItem(g_szRegistryKind, L"HKCU", g_pszKey));
    // An entry that fails does not fail the update.
    return {[=](Bench::Clock&) {
                return Apply(*pConfig) && Registry(HKEY_CURRENT_USER, g_pszKey).ValueNames().size() == g_ulNames;
            },
            {[pKey](Bench::Clock&) { return WriteAll(&WriteValue); }}};
}

Bench::Ways IniWays()
{
    const auto pFolder = std::make_shared<TempFolder>();
    const auto pConfig = std::make_shared<LocalUpdateConfig>();
    pConfig->lstIniFile.push_back(MakeItem(g_szIniFileKind, pFolder->File(L"bench.ini"), g_pszSection));
    return {[=](Bench::Clock&) {
                return Apply(*pConfig) &&
                       IniFile(pFolder->File(L"bench.ini"), g_pszSection).Entries().size() == g_ulNames;
            },
            {[=](Bench::Clock&) {
                const std::wstring tszFile = pFolder->File(L"floor.ini");
                return WriteAll([&](const std::wstring& _rtszName) { return WriteEntry(tszFile, _rtszName); });
            }}};
}

[[maybe_unused]] const bool g_bAdded = [] {
    Bench::Add("update-registry", &RegistryWays);
    Bench::Add("update-ini", &IniWays);
    return true;
}();

} // namespace
