// vrnt check: reports what a reader would make of documents.

#include "Arguments.h"
#include "Check/CheckFiles.h"
#include "Check/CheckSarif.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

std::vector<std::string> Formats()
{
    return {"text", "json", "sarif"};
}

std::vector<std::string> FailOn()
{
    return {"error", "warning", "never"};
}

constexpr Argument g_stCheckFile{.szName = "FILE",
                                 .szHelp =
                                     "Documents, plain or encrypted; folders, which are searched for .xml and .xen; "
                                     "patterns like *.xml; - is standard input. They are only read",
                                 .bRepeats = true};
constexpr Argument g_stFormat{.szName = "--format",
                              .szHelp =
                                  "How findings are printed (default: text); json is --json, sarif is SARIF 2.1.0",
                              .szValue = "FORMAT",
                              .pfnChoices = &Formats};
constexpr Argument g_stFailOn{.szName = "--fail-on",
                              .szHelp = "The least that makes the status 1 (default: warning)",
                              .szValue = "SEVERITY",
                              .pfnChoices = &FailOn};
constexpr Argument g_stRules{.szName = "--rules", .szHelp = "List the rules whose names findings end in"};
constexpr const Argument* g_apCheckArgument[] = {&g_stDocumentKind, &g_stCheckFile, &g_stFormat, &g_stFailOn,
                                                 &g_stRules};

std::string ToText(const std::vector<CheckedFile>& _rvecFile, const CheckTotals& _rstTotals)
{
    std::string sText;
    for (const CheckedFile& stFile : _rvecFile) {
        for (const Finding& stFinding : stFile.vecFinding) {
            sText += stFile.sName + ":" + std::to_string(stFinding.ulLine) + ": " + SeverityText(stFinding.enSeverity) +
                     ": " + stFinding.sText + " [" + RowOf(stFinding.enRule).szId + "]\n";
        }
    }
    if (sText.empty() && _rstTotals.uOfNoKind == 0) {
        return {};
    }
    const std::string sOfNoKind =
        _rstTotals.uOfNoKind == 0 ? "" : ", " + Count(_rstTotals.uOfNoKind, "file") + " of no known kind";
    return sText + Count(_rstTotals.uErrors, "error") + ", " + Count(_rstTotals.uWarnings, "warning") + sOfNoKind +
           "\n";
}

Json FindingsToJson(const CheckedFile& _rstFile)
{
    Json jsFindings = Json::Array();
    for (const Finding& stFinding : _rstFile.vecFinding) {
        jsFindings.Add({{"line", stFinding.ulLine},
                        {"column", stFinding.ulColumn},
                        {"severity", SeverityText(stFinding.enSeverity)},
                        {"rule", RowOf(stFinding.enRule).szId},
                        {"element", stFinding.sElement},
                        {"text", stFinding.sText}});
    }
    return jsFindings;
}

Json FilesToJson(const std::vector<CheckedFile>& _rvecFile)
{
    Json jsFiles = Json::Array();
    for (const CheckedFile& stFile : _rvecFile) {
        const Json jsDocument = stFile.pDocument == nullptr ? Json() : Json(std::wstring(stFile.pDocument->svName));
        jsFiles.Add({{"file", stFile.sName}, {"document", jsDocument}, {"findings", FindingsToJson(stFile)}});
    }
    return jsFiles;
}

int StatusOf(const CheckTotals& _rstTotals, const std::string& _rsFailOn)
{
    if (_rstTotals.bTrouble) {
        return ExitUsage;
    }
    const bool bOnWarning = _rsFailOn.empty() || _rsFailOn == "warning";
    const bool bFails = (_rstTotals.uErrors != 0 && _rsFailOn != "never") || (_rstTotals.uWarnings != 0 && bOnWarning);
    return bFails ? ExitFailure : ExitSuccess;
}

void PrintRules(Tool& _rTool)
{
    const auto ToJson = [] {
        Json jsRules = Json::Array();
        for (const RuleRow& stRule : Rules()) {
            jsRules.Add({{"rule", stRule.szId}, {"meaning", stRule.szMeaning}});
        }
        return jsRules;
    };
    const auto ToTable = [] {
        Table cTable({"rule", "meaning"});
        for (const RuleRow& stRule : Rules()) {
            cTable.Add({stRule.szId, stRule.szMeaning});
        }
        return cTable;
    };
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, ToJson, ToTable);
}

void RunCheck(Tool& _rTool, const Arguments& _rArguments)
{
    if (_rArguments.Has(g_stRules)) {
        PrintRules(_rTool);
        return;
    }
    const std::vector<std::string>& rvecArgument = _rArguments.Texts(g_stCheckFile);
    if (rvecArgument.empty()) {
        throw UsageError("FILE is required");
    }
    const std::string& rsFormat = _rArguments.Text(g_stFormat);
    if (_rTool.stOptions.bJson && rsFormat == "sarif") {
        throw UsageError("--json and --format sarif cannot be given together");
    }
    std::vector<CheckedFile> vecFile = FilesOf(rvecArgument);
    ProgressLine cProgress("Checking " + rvecArgument.front());
    CheckFiles(vecFile, DocumentKind(_rArguments), cProgress.Teller());
    cProgress.End();
    const bool bOne = rvecArgument.size() == 1 && vecFile.size() == 1 && vecFile.front().bNamed;
    const CheckTotals stTotals = TotalsOf(vecFile);
    if (rsFormat == "sarif") {
        Write(ToSarif(vecFile).ToText() + "\n");
    } else if (bOne && stTotals.bTrouble) {
        throw UsageError(vecFile.front().sTrouble);
    } else if (_rTool.stOptions.bJson || rsFormat == "json") {
        WriteJson(stTotals.IsClean() ? SrvFrwk::Result::g_ulSuccess : SrvFrwk::Result::g_ulFailed,
                  bOne ? FindingsToJson(vecFile.front()) : FilesToJson(vecFile));
    } else {
        Write(ToText(vecFile, stTotals));
    }
    for (const CheckedFile& stFile : vecFile) {
        WriteError(stFile.sTrouble.empty() ? "" : "vrnt: " + stFile.sTrouble + "\n");
    }
    _rTool.iExitStatus = StatusOf(stTotals, _rArguments.Text(g_stFailOn));
}

} // namespace

constinit const Command g_stCheck{
    .szName = "check",
    .szHelp = "Report what a reader would default, skip or refuse in documents",
    .szExample = "vrnt check FwPolicy.xml\nvrnt check --fail-on error --format sarif Documents",
    .szNote =
        "Exit status: 0 nothing was found, 1 something was found (--fail-on says what), 2 a usage error, a file that "
        "cannot be read, or a pattern that matches no file. The kind of a document is found by its root.",
    .aArgument = g_apCheckArgument,
    .pfnRun = &RunCheck};

} // namespace Vrnt
