// A local update of 10,000 entries, in time per entry, against the bare system calls that it is made of: looking whether
// the value is there, making the key sure, writing the value. Entries write over each other, so that what is measured
// is not how an ini file grows.

#include "Documents/LocalUpdate.h"
#include "Documents/UpdateWords.h"
#include "SrvFrwk_ResultCode.h"
#include "TempFolder.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateStorage.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Owner.h"
#include "ZkComn_Registry.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <string>
#include <windows.h>

namespace {

using namespace Varnhelt;
using ZkCommon::RegKey;
using ZkCommon::Storage::IniFile;
using ZkCommon::Storage::Registry;

constexpr std::uint32_t g_ulEntries = 10000;
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

/** Runs the body once per iteration and counts its time by entries. */
template <class TBody>
void MeasurePerEntry(benchmark::State& _rState, TBody&& _fnBody)
{
    for (auto _ : _rState) {
        const auto begin = std::chrono::steady_clock::now();
        if (!_fnBody()) {
            _rState.SkipWithError("the update failed");
        }
        const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - begin;
        _rState.SetIterationTime(duration.count() / g_ulEntries);
    }
}

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

void UpdateRegistry(benchmark::State& _rState)
{
    const BenchKey cKey;
    LocalUpdateConfig stConfig;
    stConfig.lstRegistry.push_back(MakeItem(g_szRegistryKind, L"HKCU", g_pszKey));
    MeasurePerEntry(_rState, [&] { return Apply(stConfig); });
    // An entry that fails does not fail the update.
    if (Registry(HKEY_CURRENT_USER, g_pszKey).ValueNames().size() != g_ulNames) {
        _rState.SkipWithError("entries were not applied");
    }
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

void WriteValues(benchmark::State& _rState)
{
    const BenchKey cKey;
    MeasurePerEntry(_rState, [] {
        bool bDone = true;
        for (std::uint32_t i = 0; i < g_ulEntries; ++i) {
            bDone = WriteValue(NameOf(i)) && bDone;
        }
        return bDone;
    });
}

void UpdateIni(benchmark::State& _rState)
{
    const TempFolder cFolder;
    LocalUpdateConfig stConfig;
    stConfig.lstIniFile.push_back(MakeItem(g_szIniFileKind, cFolder.File(L"bench.ini"), g_pszSection));
    MeasurePerEntry(_rState, [&] { return Apply(stConfig); });
    if (IniFile(cFolder.File(L"bench.ini"), g_pszSection).Entries().size() != g_ulNames) {
        _rState.SkipWithError("entries were not applied");
    }
}

void WriteEntries(benchmark::State& _rState)
{
    const TempFolder cFolder;
    const std::wstring tszFile = cFolder.File(L"bench.ini");
    MeasurePerEntry(_rState, [&] {
        bool bDone = true;
        for (std::uint32_t i = 0; i < g_ulEntries; ++i) {
            wchar_t szText[256];
            const std::wstring tszName = NameOf(i);
            ::GetPrivateProfileStringW(g_pszSection, tszName.c_str(), L"", szText, 256, tszFile.c_str());
            bDone = ::WritePrivateProfileStringW(g_pszSection, tszName.c_str(), g_szValue, tszFile.c_str()) && bDone;
        }
        return bDone;
    });
}

void OncePerRepetition(benchmark::internal::Benchmark* _pBenchmark)
{
    _pBenchmark->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(UpdateRegistry)->Name("update-registry/candidate")->Apply(OncePerRepetition);
BENCHMARK(WriteValues)->Name("update-registry/floor")->Apply(OncePerRepetition);
BENCHMARK(UpdateIni)->Name("update-ini/candidate")->Apply(OncePerRepetition);
BENCHMARK(WriteEntries)->Name("update-ini/floor")->Apply(OncePerRepetition);

} // namespace
