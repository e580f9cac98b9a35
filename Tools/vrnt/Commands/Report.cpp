// vrnt report: the installed configuration on one page, for a ticket.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/Host.h"
#include "Machine/TraceSettings.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "Report/ReportPage.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <windows.h>

namespace Vrnt {

namespace {

constexpr Argument g_stOut{
    .szName = "OUT", .szHelp = "The page, HTML; an existing file is replaced as a whole", .bRequired = true};
constexpr const Argument* g_apArgument[] = {&g_stOut};

/** Local time, with what it is ahead of UTC: "2026-11-24 23:20:06 +01:00". */
std::string Now()
{
    SYSTEMTIME stUtc{};
    SYSTEMTIME stLocal{};
    FILETIME stUtcTime{};
    FILETIME stLocalTime{};
    ::GetSystemTime(&stUtc);
    if (!::SystemTimeToTzSpecificLocalTime(nullptr, &stUtc, &stLocal) || !::SystemTimeToFileTime(&stUtc, &stUtcTime) ||
        !::SystemTimeToFileTime(&stLocal, &stLocalTime)) {
        stLocal = stUtc;
        stLocalTime = stUtcTime;
    }
    const auto Ticks = [](const FILETIME& _rstTime) {
        return static_cast<std::int64_t>(_rstTime.dwHighDateTime) << 32 | _rstTime.dwLowDateTime;
    };
    constexpr std::int64_t ullTicksPerMinute = 600'000'000;
    const int iAhead = static_cast<int>((Ticks(stLocalTime) - Ticks(stUtcTime)) / ullTicksPerMinute);
    std::array<char, 64> aText{};
    static_cast<void>(std::snprintf(aText.data(), aText.size(), "%04d-%02d-%02d %02d:%02d:%02d %c%02d:%02d",
                                    stLocal.wYear, stLocal.wMonth, stLocal.wDay, stLocal.wHour, stLocal.wMinute,
                                    stLocal.wSecond, iAhead < 0 ? '-' : '+', std::abs(iAhead) / 60,
                                    std::abs(iAhead) % 60));
    return aText.data();
}

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

template <class TValue>
void Ask(SrvFrwk::Interface::IFunctionProvider& _rFunction, std::uint32_t _ulValueType, Answer<TValue>& _rstAnswer)
{
    _rstAnswer.ulResult = _rFunction.QueryValue(0, _ulValueType, 0, &_rstAnswer.value, 0, nullptr);
}

ReportData Collect(const Tool& _rTool)
{
    ReportData stData;
    stData.sMade = Now();
    ThroughFunction(_rTool, [&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
        Ask(_rFunction, SrvFrwk::ValueType::g_ulServiceUnit, stData.stServiceUnits);
        Ask(_rFunction, SrvFrwk::ValueType::g_ulEnforcePolicy, stData.stPolicy);
        Ask(_rFunction, SrvFrwk::ValueType::g_ulEnforceData, stData.stEnforceData);
        Ask(_rFunction, SrvFrwk::ValueType::g_ulInstallPuIds, stData.stPuIds);
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

void Run(Tool& _rTool, const Arguments& _rArguments)
{
    const std::wstring tszOut = _rArguments.Path(g_stOut);
    const std::string sOut = Quoted(_rArguments.Text(g_stOut));
    const std::string sPage = ReportPage(Collect(_rTool));
    const std::uint32_t ulError = ZkCommon::Storage::File::Replace(tszOut, sPage);
    if (ulError != ERROR_SUCCESS) {
        PrintAnswer(_rTool, SrvFrwk::Result::g_ulFailed, nullptr, {},
                    "cannot write " + sOut + ": " + SystemErrorText(ulError));
        return;
    }
    if (!_rTool.stOptions.bJson) {
        Write("The report is in " + sOut + ".\n");
    }
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, nullptr, {});
}

} // namespace

constinit const Command g_stReport{
    .szName = "report",
    .szHelp = "Write the installed configuration on one page, to attach to a ticket",
    .szExample = "vrnt report configuration.html",
    .szNote = "The page holds no key and needs no other file and no script. What is missing or cannot be read is said "
              "on it; the status is that of writing it.",
    .aArgument = g_apArgument,
    .pfnRun = &Run};

} // namespace Vrnt
