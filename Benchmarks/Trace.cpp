// A trace call whose level does not pass, against entering and leaving a critical section that nobody else wants.

#include "Measure.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Synchronize.h"

#include <memory>
#include <string>

namespace {

using namespace ZkCommon;

constexpr int g_iLines = 1000;

/** The log, on for errors only; its settings are in a separate file. */
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

[[maybe_unused]] const bool g_bAdded = [] {
    Bench::Add("trace-filtered", [] {
        const auto pLog = std::make_shared<ErrorsOnly>();
        const auto pSection = std::make_shared<Synchronize::CriticalSection>();
        const auto pulCode = std::make_shared<std::uint32_t>(0);
        return Bench::Ways{[=](Bench::Clock&) {
                               for (int i = 0; i < g_iLines; ++i) {
                                   Trace(TraceDetail, L"[Enter] CClass::Method() VT[0x%08x]...", (*pulCode)++);
                               }
                               return pLog->IsOn();
                           },
                           {[=](Bench::Clock&) {
                               for (int i = 0; i < g_iLines; ++i) {
                                   const Synchronize::SingleLock lock(pSection.get());
                                   ++*pulCode;
                               }
                               return true;
                           }}};
    });
    return true;
}();

} // namespace
