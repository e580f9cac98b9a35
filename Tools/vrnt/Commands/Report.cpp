// vrnt report: the installed configuration on one page, for a ticket.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/Host.h"
#include "Machine/Machine.h"
#include "Machine/TraceErrors.h"
#include "Machine/TraceSettings.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "Report/ReportJson.h"
#include "Report/ReportPage.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <windows.h>

namespace Vrnt {

namespace {

constexpr Argument g_stReportOut{
    .szName = "OUT",
    .szHelp = "The page, HTML, or with --json one JSON object; in a folder it is named after machine and time",
    .bRequired = true};
constexpr Argument g_stReportForce{.szName = "--force", .szHelp = "Replace OUT where it exists"};
constexpr const Argument* g_apReportArgument[] = {&g_stReportOut, &g_stReportForce};

CheckedDocument Check(const DocumentState& _rstState)
{
    CheckedDocument stChecked{_rstState.FileText(), {}, {}};
    ProgressLine cProgress("Checking " + stChecked.sFile);
    try {
        stChecked.vecFinding = CheckDocument(*_rstState.pDocument, _rstState.tszPath, cProgress.Teller());
    } catch (const UsageError& rError) {
        stChecked.sUnreadable = rError.what();
    }
    return stChecked;
}

template <std::uint32_t t_ulValueType, class TValue>
void Ask(Tool& _rTool, const Varnhelt::Module& _rModule, Answer<TValue>& _rstAnswer)
{
    const std::uint32_t ulResult = WithReasons(_rTool, [&] {
        auto stAnswer = _rModule.TryQuery<t_ulValueType>();
        _rstAnswer.value = std::move(stAnswer.cValue);
        return stAnswer.ulResult;
    });
    _rstAnswer.sFailure = !SrvFrwk::Result::IsFailure(ulResult) ? ""
                          : _rTool.vecWhy.empty()               ? ResultText(ulResult)
                                                                : Hexadecimal(ulResult) + ": " + _rTool.vecWhy.front();
}

ReportData Collect(Tool& _rTool)
{
    ReportData stData;
    stData.stMachine = FindMachine();
    stData.vecTraceError = LastTraceErrors();
    ThroughModule(_rTool, [&](const Varnhelt::Module& _rModule) {
        Ask<SrvFrwk::ValueType::g_ulServiceUnit>(_rTool, _rModule, stData.stServiceUnits);
        Ask<SrvFrwk::ValueType::g_ulEnforcePolicy>(_rTool, _rModule, stData.stPolicy);
        Ask<SrvFrwk::ValueType::g_ulEnforceData>(_rTool, _rModule, stData.stEnforceData);
        Ask<SrvFrwk::ValueType::g_ulInstallPuIds>(_rTool, _rModule, stData.stPuIds);
        return SrvFrwk::Result::g_ulSuccess;
    });
    stData.stDocuments = FindInstalledDocuments();
    for (const DocumentState& stState : stData.stDocuments.vecDocument) {
        if (stState.uSize) {
            stData.vecChecked.push_back(Check(stState));
        }
    }
    stData.cTrace = TraceSettingsToTable();
    stData.vecVersion = FindVersions(_rTool.stOptions, stData.stDocuments.tszFolder);
    return stData;
}

/** The path of the report; in a folder its name says machine and time. */
std::filesystem::path PathOf(const Arguments& _rArguments, const ReportData& _rstData, bool _bJson)
{
    std::filesystem::path tszOut = _rArguments.Path(g_stReportOut);
    if (std::error_code cIgnored; std::filesystem::is_directory(tszOut, cIgnored)) {
        std::string sTime;
        for (const char c : _rstData.stMachine.sTime.substr(0, 16)) { // to the minute
            sTime += c == ' ' ? "-" : c >= '0' && c <= '9' ? std::string(1, c) : "";
        }
        tszOut /= ToWide("vrnt-" + _rstData.stMachine.sComputer + "-" + sTime + (_bJson ? ".json" : ".html"));
    }
    return tszOut;
}

void RunReport(Tool& _rTool, const Arguments& _rArguments)
{
    const bool bJson = _rTool.stOptions.bJson;
    const bool bForce = _rArguments.Has(g_stReportForce);
    if (!bForce && ZkCommon::Storage::File::Exists(_rArguments.Path(g_stReportOut))) {
        throw UsageError(Quoted(_rArguments.Text(g_stReportOut)) + " exists; --force replaces it");
    }
    const ReportData stData = Collect(_rTool);
    const std::filesystem::path tszOut = PathOf(_rArguments, stData, bJson);
    const std::string sOut = Quoted(std::wstring_view(tszOut.native()));
    if (!bForce && ZkCommon::Storage::File::Exists(tszOut.wstring())) {
        throw UsageError(sOut + " exists; --force replaces it");
    }
    const std::string sReport = bJson ? ReportJson(stData).ToText() + "\n" : ReportPage(stData);
    const std::uint32_t ulError = ZkCommon::Storage::File::Replace(tszOut.wstring(), sReport);
    if (ulError != ERROR_SUCCESS) {
        PrintAnswer(_rTool, SrvFrwk::Result::g_ulFailed, nullptr, {},
                    "cannot write " + sOut + ": " + SystemErrorText(ulError));
        return;
    }
    PrintText(_rTool, "The report is in " + sOut + ".\n");
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, nullptr, {});
}

} // namespace

constinit const Command g_stReport{
    .szName = "report",
    .szHelp = "Write the installed configuration on one page, to attach to a ticket",
    .szExample = "vrnt report configuration.html\nvrnt report --json before.json",
    .szNote = "The page holds no key and needs no other file and no script. What is missing or cannot be read is said "
              "on it; the status is that of writing it.",
    .aArgument = g_apReportArgument,
    .pfnRun = &RunReport};

} // namespace Vrnt
