// vrnt trace record: runs a command of the tool and keeps what it traces.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/TraceSink.h"
#include "Output/Output.h"
#include "ZkComn_ZkDbgSettings.h"

namespace Vrnt {

namespace {

constexpr Argument g_stTraceRecordOut{.szName = "OUT", .szHelp = "The trace file to write", .bRequired = true};
constexpr Argument g_stCommand{.szName = "COMMAND",
                               .szHelp = "A command of vrnt with its arguments, after --",
                               .bRequired = true,
                               .bRepeats = true};
constexpr Argument g_stTraceRecordLevel{
    .szName = "--level",
    .szHelp = "Mask of what is written: 1 detail, 16 notices, 256 errors (default: 0x111, all)",
    .szValue = "MASK"};
constexpr Argument g_stTraceRecordForce{.szName = "--force", .szHelp = "Replace an existing OUT"};
constexpr const Argument* g_apTraceRecordArgument[] = {&g_stTraceRecordOut, &g_stCommand, &g_stTraceRecordLevel,
                                                       &g_stTraceRecordForce};

/** The command line to run: the name of the tool may be in front of the command. */
std::vector<std::string> CommandLineOf(const Tool& _rTool, const Arguments& _rArguments)
{
    std::vector<std::string> vecArgument = _rArguments.Texts(g_stCommand);
    if (vecArgument.front() == "vrnt" || vecArgument.front() == "vrnt.exe") {
        vecArgument.erase(vecArgument.begin());
    }
    if (_rTool.stOptions.bJson) {
        vecArgument.insert(vecArgument.begin(), "--json");
    }
    if (!_rTool.stOptions.sModule.empty()) {
        vecArgument.insert(vecArgument.begin(), {"--module", _rTool.stOptions.sModule});
    }
    return vecArgument;
}

void Record(Tool& _rTool, const Arguments& _rArguments)
{
    const std::uint32_t ulLevel =
        _rArguments.Has(g_stTraceRecordLevel) ? _rArguments.Number(g_stTraceRecordLevel) : ZkCommon::g_ulAllTraceLevels;
    const std::wstring tszOut = _rArguments.Path(g_stTraceRecordOut);
    const DWORD ulDisposition = _rArguments.Has(g_stTraceRecordForce) ? CREATE_ALWAYS : CREATE_NEW;
    ZkCommon::FileHandle hOut(::CreateFileW(tszOut.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                            nullptr, ulDisposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!hOut) {
        const DWORD ulError = ::GetLastError();
        throw UsageError("cannot write " + Quoted(_rArguments.Text(g_stTraceRecordOut)) + ": " +
                         SystemErrorText(ulError) + (ulError == ERROR_FILE_EXISTS ? "; --force replaces it" : ""));
    }
    if (!RecordTrace(ToolFolder(), ulLevel, std::move(hOut))) {
        throw UsageError("cannot record: there is no ZkDbgLog.dll with a sink beside vrnt.exe");
    }
    _rTool.iExitStatus = _rTool.pfnRun(CommandLineOf(_rTool, _rArguments));
    EndRecording();
}

} // namespace

constinit const Command g_stTraceRecord{
    .szName = "record",
    .szHelp =
        "Run a command of vrnt and write what it traces to a file; the trace settings and their file stay untouched",
    .szExample = "vrnt trace record C:\\Temp\\query.log -- query policy --controller eAntiVirus",
    .szNote = "Prints what the command prints, and ends with its status.",
    .aArgument = g_apTraceRecordArgument,
    .pfnRun = &Record};

} // namespace Vrnt
