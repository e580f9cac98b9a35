// vrnt trace: turns the trace log on and off, through the settings that the library reads.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/TraceSettings.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

using ZkCommon::Storage::Registry;

/** The settings of both sessions as they are now. */
Json TraceSettingsToJson()
{
    Json jsSessions = Json::Object();
    for (const TraceSession& stSession : g_aTraceSession) {
        const ZkCommon::TraceSettings stSettings = ReadTraceSettings(stSession);
        const std::string sFault = TraceFaultOf(stSettings);
        jsSessions.Set(stSession.szName, {{"enabled", stSettings.ulEnable != 0},
                                          {"level", stSettings.ulLevel},
                                          {"folder", stSettings.tszLogFolder},
                                          {"prefix", stSettings.tszLogPrefix},
                                          {"file", stSettings.tszLogFile},
                                          {"extension", stSettings.tszLogExtension},
                                          {"robust", stSettings.ulRobust != 0},
                                          {"debugger", stSettings.ulDebugger != 0},
                                          {"fault", sFault.empty() ? Json() : Json(sFault)}});
    }
    return jsSessions;
}

void PrintSettings(Tool& _rTool, std::uint32_t _ulResult, const std::string& _rsWhy = {})
{
    PrintAnswer(_rTool, _ulResult, &TraceSettingsToJson, &TraceSettingsToTable, _rsWhy);
}

/** Carries out an edit of both sessions' settings, then shows them. @return whether it could be done */
template <class TEdit>
bool EditSettings(Tool& _rTool, const TEdit& _fnEdit)
{
    try {
        for (const TraceSession& stSession : g_aTraceSession) {
            Registry cRegistry;
            cRegistry.Create(HKEY_LOCAL_MACHINE, TraceKeyOf(stSession));
            _fnEdit(cRegistry, stSession);
        }
    } catch (ZkCommon::Storage::Exception* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        PrintSettings(_rTool, SrvFrwk::Result::g_ulFailed,
                      "cannot write the trace settings: " + SystemErrorText(pError->ErrorCode()));
        return false;
    }
    PrintSettings(_rTool, SrvFrwk::Result::g_ulSuccess);
    return true;
}

constexpr Argument g_stTraceLevel{.szName = "--level",
                                  .szHelp =
                                      "Mask of what is written: 1 detail, 16 notices, 256 errors (default: 0x111, all)",
                                  .szValue = "MASK"};
constexpr Argument g_stTraceFolder{
    .szName = "--folder", .szHelp = "Folder of the trace files (default: that of each process)", .szValue = "DIR"};
constexpr const Argument* g_apOnArgument[] = {&g_stTraceLevel, &g_stTraceFolder};

/** @throws UsageError when there is no such folder: a slip of the pen would lose all lines */
std::wstring ExistingFolder(const Arguments& _rArguments)
{
    std::wstring tszFolder = _rArguments.Path(g_stTraceFolder);
    if (!ZkCommon::Storage::File::IsFolder(tszFolder)) {
        throw UsageError("--folder: there is no folder " + Quoted(_rArguments.Text(g_stTraceFolder)));
    }
    return tszFolder;
}

void TurnOn(Tool& _rTool, const Arguments& _rArguments)
{
    const std::uint32_t ulLevel =
        _rArguments.Has(g_stTraceLevel) ? _rArguments.Number(g_stTraceLevel) : ZkCommon::g_ulAllTraceLevels;
    const std::wstring tszFolder = _rArguments.Has(g_stTraceFolder) ? ExistingFolder(_rArguments) : std::wstring();
    const bool bDone = EditSettings(_rTool, [&](Registry& _rRegistry, const TraceSession& _rstSession) {
        _rRegistry.WriteNumber(L"Level", ulLevel);
        _rRegistry.WriteString(L"LogFolder", tszFolder);
        _rRegistry.WriteNumber(L"Enable", 1);
        while (const wchar_t* const pszUnreadable = ReadTraceSettings(_rstSession).pszUnreadable) {
            _rRegistry.DeleteValue(pszUnreadable); // it would keep tracing off; its default holds now
        }
    });
    if (bDone && !_rTool.stOptions.bJson) {
        Write("\nPrograms that are started from now on write to " +
              ZkCommon::String::ToUtf8(TraceFileOf(ReadTraceSettings(g_aTraceSession.front()))) +
              (tszFolder.empty() ? " in their own folder.\n" : ": the file to send.\n"));
    }
}

void TurnOff(Tool& _rTool, const Arguments&)
{
    EditSettings(_rTool, [](Registry& _rRegistry, const TraceSession&) { _rRegistry.WriteNumber(L"Enable", 0); });
}

void ShowStatus(Tool& _rTool, const Arguments&)
{
    PrintSettings(_rTool, SrvFrwk::Result::g_ulSuccess);
}

constexpr Command g_stOn{.szName = "on",
                         .szHelp = "Turn tracing on for interactive and service sessions",
                         .szExample = "vrnt trace on --level 0x110 --folder C:\\Logs",
                         .aArgument = g_apOnArgument,
                         .pfnRun = &TurnOn};
constexpr Command g_stOff{.szName = "off",
                          .szHelp = "Turn tracing off for interactive and service sessions",
                          .szExample = "vrnt trace off",
                          .pfnRun = &TurnOff};
constexpr Command g_stStatus{
    .szName = "status", .szHelp = "Show the trace settings", .szExample = "vrnt trace status", .pfnRun = &ShowStatus};
constexpr const Command* g_apTraceCommand[] = {&g_stOn, &g_stOff, &g_stStatus, &g_stTraceShow, &g_stTraceRecord};

} // namespace

constinit const Command g_stTrace{.szName = "trace",
                                  .szHelp = "Turn the trace log on and off, and read it",
                                  .szExample = "vrnt trace show C:\\Logs\\vqxVarnhelt.log --errors",
                                  .aCommand = g_apTraceCommand};

} // namespace Vrnt
