// A trace call whose level does not pass, against entering and leaving a critical section that nobody else wants.

#include "ZkComn_DebugLog.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Synchronize.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

using namespace ZkCommon;

/** The log, on for errors only; its settings lie in a file of this program's own. */
class ErrorsOnly
{
public:
    ErrorsOnly()
    {
        wchar_t aszFolder[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, aszFolder);
        const std::wstring tszName = L"varnhelt-bench-" + std::to_wstring(::GetCurrentProcessId());
        m_tszSettings = aszFolder + tszName + L".ini";
        m_tszLog = aszFolder + tszName + L".log";
        for (const wchar_t* pszSession : {L"InteractiveSession", L"ServiceSession"}) {
            Storage::IniFile settings(m_tszSettings, pszSession);
            settings.WriteNumber(L"Enable", 1);
            settings.WriteString(L"LogFolder", aszFolder);
            settings.WriteString(L"LogPrefix", L"");
            settings.WriteString(L"LogFile", tszName);
        }
        m_bOn = g_cDebugLog.Initialize(L"Bench", {Storage::Key::IniFile, nullptr, m_tszSettings}, L"");
    }
    ErrorsOnly(const ErrorsOnly&) = delete;
    ErrorsOnly& operator=(const ErrorsOnly&) = delete;
    ~ErrorsOnly()
    {
        g_cDebugLog.Uninitialize();
        ::DeleteFileW(m_tszSettings.c_str());
        ::DeleteFileW(m_tszLog.c_str());
    }

    bool IsOn() const { return m_bOn; }

private:
    std::wstring m_tszSettings;
    std::wstring m_tszLog;
    bool m_bOn = false;
};

void FilteredTrace(benchmark::State& _rState)
{
    const ErrorsOnly log;
    if (!log.IsOn()) {
        _rState.SkipWithError("the trace library is not beside the program");
        return;
    }
    std::uint32_t ulCode = 0;
    for (auto _ : _rState) {
        Trace(TraceDetail, L"[Enter] CClass::Method() VT[0x%08x]...", ulCode);
        benchmark::DoNotOptimize(++ulCode);
    }
}

void CriticalSection(benchmark::State& _rState)
{
    Synchronize::CriticalSection section;
    std::uint32_t ulCode = 0;
    for (auto _ : _rState) {
        const Synchronize::SingleLock lock(&section);
        benchmark::DoNotOptimize(++ulCode);
    }
}

BENCHMARK(FilteredTrace)->Name("trace-filtered/candidate");
BENCHMARK(CriticalSection)->Name("trace-filtered/floor");

} // namespace
