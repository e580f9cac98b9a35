// vrnt trace: turns the trace log on and off, through the settings that the library reads, and prints its files.

#include "Machine/TraceFile.h"
#include "Machine/TraceSettings.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <memory>

namespace Vrnt {

namespace {

using ZkCommon::Storage::Registry;

/** The settings of both sessions as they are now. */
void ReportSettings(Tool& _rTool, std::uint32_t _ulResult, const std::string& _rsWhy = {})
{
    using ZkCommon::String::ToUtf8;
    Json jsSessions = Json::object();
    for (const TraceSession& stSession : g_aTraceSession) {
        const TraceSettings stSettings = ReadTraceSettings(stSession);
        jsSessions[stSession.szKey] = {
            {"enabled", stSettings.ulEnable != 0},    {"level", stSettings.ulLevel},
            {"folder", ToUtf8(stSettings.tszFolder)}, {"prefix", ToUtf8(stSettings.tszPrefix)},
            {"file", ToUtf8(stSettings.tszFile)},     {"extension", ToUtf8(stSettings.tszExtension)},
            {"robust", stSettings.ulRobust != 0},     {"debugger", stSettings.ulDebugger != 0}};
    }
    Report(_rTool, _ulResult, jsSessions, TraceSettingsToTable(), _rsWhy);
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

struct OnOptions
{
    std::string sLevel = "0x111";
    std::string sFolder;
};

void AddOn(Tool& _rTool, CLI::App* _pTrace)
{
    const auto pOptions = std::make_shared<OnOptions>();
    CLI::App* pOn = _pTrace->add_subcommand("on", "Turn tracing on for interactive and service sessions");
    pOn->add_option("--level", pOptions->sLevel,
                    "Mask of what is written: 1 detail, 16 notices, 256 errors (default: 0x111, all)")
        ->type_name("MASK");
    pOn->add_option("--folder", pOptions->sFolder, "Folder of the trace files (default: that of each process)")
        ->type_name("DIR");
    pOn->footer("Example: vrnt trace on --level 0x110 --folder C:\\Logs");
    pOn->callback([&_rTool, pOptions] {
        const std::uint32_t ulLevel = ToNumber("--level", pOptions->sLevel);
        const std::wstring tszFolder = pOptions->sFolder.empty() ? std::wstring() : ToFullPath(pOptions->sFolder);
        EditSettings(_rTool, [&](Registry& _rRegistry) {
            _rRegistry.WriteNumber(L"Level", ulLevel);
            _rRegistry.WriteString(L"LogFolder", tszFolder);
            _rRegistry.WriteNumber(L"Enable", 1);
        });
    });
}

struct ShowOptions
{
    std::string sFile;
    bool bErrors = false;
    std::string sGrep;
};

void Show(Tool& _rTool, const ShowOptions& _rstOptions)
{
    Json jsLines = Json::array();
    Table cTable({"time", "process", "thread", "level", "module", "text", "source", "line"});
    for (const TraceFileLine& stLine : ParseTraceFile(ReadInputFile(_rstOptions.sFile))) {
        if ((_rstOptions.bErrors && stLine.sLevel != "error") ||
            stLine.sText.find(_rstOptions.sGrep) == std::string::npos) {
            continue;
        }
        jsLines.push_back({{"time", stLine.sTime},
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
    Report(_rTool, SrvFrwk::Result::g_ulSuccess, jsLines, cTable);
}

void AddShow(Tool& _rTool, CLI::App* _pTrace)
{
    const auto pOptions = std::make_shared<ShowOptions>();
    CLI::App* pShow = _pTrace->add_subcommand("show", "Print a trace file as a table");
    pShow->add_option("FILE", pOptions->sFile, "The trace file")->required();
    pShow->add_flag("--errors", pOptions->bErrors, "Only lines of the error level");
    pShow->add_option("--grep", pOptions->sGrep, "Only lines whose text contains this")->type_name("TEXT");
    pShow->footer("Example: vrnt trace show C:\\Logs\\vqxVarnhelt.log --errors");
    pShow->callback([&_rTool, pOptions] { Show(_rTool, *pOptions); });
}

} // namespace

void AddTrace(Tool& _rTool)
{
    CLI::App* pTrace = _rTool.cApp.add_subcommand("trace", "Turn the trace log on and off, and read it");
    pTrace->require_subcommand(1);
    AddOn(_rTool, pTrace);

    CLI::App* pOff = pTrace->add_subcommand("off", "Turn tracing off for interactive and service sessions");
    pOff->footer("Example: vrnt trace off");
    pOff->callback(
        [&_rTool] { EditSettings(_rTool, [](Registry& _rRegistry) { _rRegistry.WriteNumber(L"Enable", 0); }); });

    CLI::App* pStatus = pTrace->add_subcommand("status", "Show the trace settings");
    pStatus->footer("Example: vrnt trace status");
    pStatus->callback([&_rTool] { ReportSettings(_rTool, SrvFrwk::Result::g_ulSuccess); });

    AddShow(_rTool, pTrace);
}

} // namespace Vrnt
