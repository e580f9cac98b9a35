// vrnt trace: turns the trace log on and off, through the settings that the library reads, and prints its files.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/TraceFile.h"
#include "Machine/TraceSettings.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

using ZkCommon::Storage::Registry;

/** The settings of both sessions as they are now. */
void ReportSettings(Tool& _rTool, std::uint32_t _ulResult, const std::string& _rsWhy = {})
{
    Json jsSessions = Json::Object();
    for (const TraceSession& stSession : g_aTraceSession) {
        const TraceSettings stSettings = ReadTraceSettings(stSession);
        jsSessions.Set(stSession.szKey, {{"enabled", stSettings.ulEnable != 0},
                                         {"level", stSettings.ulLevel},
                                         {"folder", stSettings.tszFolder},
                                         {"prefix", stSettings.tszPrefix},
                                         {"file", stSettings.tszFile},
                                         {"extension", stSettings.tszExtension},
                                         {"robust", stSettings.ulRobust != 0},
                                         {"debugger", stSettings.ulDebugger != 0}});
    }
    PrintAnswer(_rTool, _ulResult, jsSessions, TraceSettingsToTable(), _rsWhy);
}

/** Carries out an edit of both sessions' settings, then shows them. */
template <class TEdit>
void EditSettings(Tool& _rTool, const TEdit& _fnEdit)
{
    try {
        for (const TraceSession& stSession : g_aTraceSession) {
            Registry cRegistry;
            cRegistry.Create(HKEY_LOCAL_MACHINE, TraceKeyOf(stSession));
            _fnEdit(cRegistry);
        }
    } catch (ZkCommon::Storage::Exception* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        ReportSettings(_rTool, SrvFrwk::Result::g_ulFailed,
                       "cannot write the trace settings: " + SystemErrorText(pError->ErrorCode()));
        return;
    }
    ReportSettings(_rTool, SrvFrwk::Result::g_ulSuccess);
}

constexpr Argument g_stLevel{.szName = "--level",
                             .szHelp =
                                 "Mask of what is written: 1 detail, 16 notices, 256 errors (default: 0x111, all)",
                             .szValue = "MASK"};
constexpr Argument g_stFolder{
    .szName = "--folder", .szHelp = "Folder of the trace files (default: that of each process)", .szValue = "DIR"};
constexpr const Argument* g_apOnArgument[] = {&g_stLevel, &g_stFolder};

constexpr std::uint32_t g_ulAllLevels = 0x111;

void TurnOn(Tool& _rTool, const Arguments& _rArguments)
{
    const std::uint32_t ulLevel = _rArguments.Has(g_stLevel) ? _rArguments.Number(g_stLevel) : g_ulAllLevels;
    const std::wstring tszFolder = _rArguments.Has(g_stFolder) ? _rArguments.Path(g_stFolder) : std::wstring();
    EditSettings(_rTool, [&](Registry& _rRegistry) {
        _rRegistry.WriteNumber(L"Level", ulLevel);
        _rRegistry.WriteString(L"LogFolder", tszFolder);
        _rRegistry.WriteNumber(L"Enable", 1);
    });
}

void TurnOff(Tool& _rTool, const Arguments&)
{
    EditSettings(_rTool, [](Registry& _rRegistry) { _rRegistry.WriteNumber(L"Enable", 0); });
}

void ShowStatus(Tool& _rTool, const Arguments&)
{
    ReportSettings(_rTool, SrvFrwk::Result::g_ulSuccess);
}

constexpr Argument g_stFile{.szName = "FILE", .szHelp = "The trace file", .bRequired = true};
constexpr Argument g_stErrors{.szName = "--errors", .szHelp = "Only lines of the error level"};
constexpr Argument g_stGrep{.szName = "--grep", .szHelp = "Only lines whose text contains this", .szValue = "TEXT"};
constexpr const Argument* g_apShowArgument[] = {&g_stFile, &g_stErrors, &g_stGrep};

void Show(Tool& _rTool, const Arguments& _rArguments)
{
    Json jsLines = Json::Array();
    Table cTable({"time", "process", "thread", "level", "module", "text", "source", "line"});
    for (const TraceFileLine& stLine : ParseTraceFile(ReadInputFile(_rArguments.Text(g_stFile)))) {
        if ((_rArguments.Has(g_stErrors) && stLine.sLevel != "error") ||
            stLine.sText.find(_rArguments.Text(g_stGrep)) == std::string::npos) {
            continue;
        }
        jsLines.Add({{"time", stLine.sTime},
                     {"process", stLine.ulProcess},
                     {"thread", stLine.ulThread},
                     {"level", stLine.sLevel},
                     {"module", stLine.sModule},
                     {"text", stLine.sText},
                     {"source", stLine.sSource},
                     {"line", stLine.ulLine}});
        cTable.Add({stLine.sTime, Hexadecimal(stLine.ulProcess, 4), Hexadecimal(stLine.ulThread, 4), stLine.sLevel,
                    stLine.sModule, stLine.sText, stLine.sSource, std::to_string(stLine.ulLine)});
    }
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, jsLines, cTable);
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
constexpr Command g_stShow{.szName = "show",
                           .szHelp = "Print a trace file as a table",
                           .szExample = "vrnt trace show C:\\Logs\\vqxVarnhelt.log --errors",
                           .aArgument = g_apShowArgument,
                           .pfnRun = &Show};
constexpr const Command* g_apCommand[] = {&g_stOn, &g_stOff, &g_stStatus, &g_stShow};

} // namespace

constinit const Command g_stTrace{.szName = "trace",
                                  .szHelp = "Turn the trace log on and off, and read it",
                                  .szExample = "vrnt trace show C:\\Logs\\vqxVarnhelt.log --errors",
                                  .aCommand = g_apCommand};

} // namespace Vrnt
