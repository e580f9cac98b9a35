// vrnt diff: what changed from one document to another, or from one report to another.

#include "Arguments.h"
#include "Check/DocumentContent.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Diff/DocumentRecords.h"
#include "Diff/ReportRecords.h"
#include "Machine/InstalledDocuments.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <filesystem>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

constexpr Argument g_stOld{.szName = "OLD",
                           .szHelp = "A document, plain or encrypted, or the data of a report; installed:KIND, the "
                                     "installed one; or -, standard input",
                           .bRequired = true};
constexpr Argument g_stNew{.szName = "NEW", .szHelp = "The one to compare it with, likewise", .bRequired = true};
constexpr Argument g_stGit{.szName = "GIT", .szHelp = "What git adds when this is its external diff", .bRepeats = true};
constexpr const Argument* g_apDiffArgument[] = {&g_stDocumentKind, &g_stOld, &g_stNew, &g_stGit};

constexpr std::string_view g_svInstalled = "installed:";

/** One side of the comparison. */
struct Side
{
    std::string sName;
    std::string sBytes{};
    const Varnhelt::Document* pDocument = nullptr; // its kind; null: not known
    bool bAbsent = false;                          // there is no file: git compares with the null device

    bool IsJson() const
    {
        const std::size_t uFirst = sBytes.find_first_not_of(" \t\r\n");
        return uFirst != std::string::npos && sBytes[uFirst] == '{';
    }
};

Side InstalledSide(const std::string& _rsName)
{
    const std::wstring tszKind = ToWide(_rsName.substr(g_svInstalled.size()));
    const InstalledDocuments stInstalled = FindInstalledDocuments();
    std::vector<std::string> vecKind;
    for (const DocumentState& stState : stInstalled.vecDocument) {
        if (!stState.IsInstalled()) {
            continue;
        }
        vecKind.push_back(ToUtf8(stState.pDocument->svName));
        if (stState.pDocument->svName == tszKind) {
            if (stState.tszPath.empty()) {
                throw UsageError(Quoted(_rsName) + ": no product is registered");
            }
            return {_rsName, ReadInputFile(ToUtf8(stState.tszPath)), stState.pDocument};
        }
    }
    throw UsageError(Quoted(_rsName) + " names no installed document: there are " + Joined(vecKind));
}

Side SideOf(const std::string& _rsName, const Varnhelt::Document* _pDocument)
{
    if (_rsName == "/dev/null" || _rsName == "nul") {
        return {.sName = _rsName, .bAbsent = true};
    }
    if (_rsName.starts_with(g_svInstalled)) {
        return InstalledSide(_rsName);
    }
    Side stSide{_rsName, ReadInputFile(_rsName), _pDocument};
    if (_pDocument == nullptr) {
        stSide.pDocument = KindOf(stSide.sBytes, std::filesystem::path(ToWide(_rsName)).filename().wstring());
    }
    return stSide;
}

DiffRecord RecordsOfSide(const Side& _rstSide)
{
    return _rstSide.bAbsent ? DiffRecord{{}, {}} : RecordsOf(*_rstSide.pDocument, _rstSide.sBytes, _rstSide.sName);
}

std::vector<Difference> CompareSides(const Side& _rstOld, const Side& _rstNew)
{
    if (_rstOld.IsJson() && _rstNew.IsJson()) {
        return Compare(RecordsOfReport(ParseJson(_rstOld.sBytes), _rstOld.sName),
                       RecordsOfReport(ParseJson(_rstNew.sBytes), _rstNew.sName));
    }
    for (const Side* pSide : {&_rstOld, &_rstNew}) {
        if (pSide->pDocument == nullptr && !pSide->bAbsent) {
            throw UsageError(Quoted(pSide->sName) + " is like no kind of document: name its kind with --document");
        }
    }
    if (!_rstOld.bAbsent && !_rstNew.bAbsent && _rstOld.pDocument->svName != _rstNew.pDocument->svName) {
        throw UsageError(Quoted(_rstOld.sName) + " is of the kind " + ToUtf8(_rstOld.pDocument->svName) + " and " +
                         Quoted(_rstNew.sName) + " of the kind " + ToUtf8(_rstNew.pDocument->svName));
    }
    return Compare(RecordsOfSide(_rstOld), RecordsOfSide(_rstNew));
}

std::vector<Difference> CompareFiles(const std::string& _rsOld, const std::string& _rsNew,
                                     const Varnhelt::Document* _pDocument)
{
    if (_rsOld == "-" && _rsNew == "-") {
        throw UsageError("only one of OLD and NEW can be standard input");
    }
    return CompareSides(SideOf(_rsOld, _pDocument), SideOf(_rsNew, _pDocument));
}

Json ToJson(const std::vector<Difference>& _rvecDifference)
{
    Json jsDifferences = Json::Array();
    for (const Difference& stDifference : _rvecDifference) {
        Json jsRecord = Json::Object();
        for (const auto& [sField, sValue] : stDifference.vecField) {
            jsRecord.Set(sField, sValue);
        }
        const Change enChange = stDifference.enChange;
        const bool bField = enChange == Change::Changed;
        jsDifferences.Add({{"change", ChangeText(enChange)},
                           {"where", stDifference.sWhere},
                           {"field", bField ? Json(stDifference.prOld.first) : Json()},
                           {"old", bField                        ? Json(stDifference.prOld.second)
                                   : enChange == Change::Removed ? jsRecord
                                                                 : Json()},
                           {"new", bField                      ? Json(stDifference.sNew)
                                   : enChange == Change::Added ? jsRecord
                                                               : Json()}});
    }
    return jsDifferences;
}

std::string ToText(const std::vector<Difference>& _rvecDifference)
{
    std::string sText;
    for (const Difference& stDifference : _rvecDifference) {
        sText += ToText(stDifference) + "\n";
    }
    return sText;
}

/**
 * One file of git's: its path, the old content, its hash and mode, the new content, its hash and mode. git stops at a
 * status other than 0, so that what cannot be compared is only said.
 */
void RunForGit(const Arguments& _rArguments)
{
    const std::vector<std::string>& rvecGit = _rArguments.Texts(g_stGit);
    constexpr std::size_t uNew = 2;
    constexpr std::size_t uWhole = 5; // two more after a renaming
    if (rvecGit.size() < uWhole) {
        throw UsageError("unexpected argument " + Quoted(rvecGit.front()) + ": OLD and NEW are all");
    }
    std::string sText = "vrnt diff " + _rArguments.Text(g_stOld) + "\n";
    try {
        sText += ToText(CompareFiles(_rArguments.Text(g_stNew), rvecGit[uNew], DocumentKind(_rArguments)));
    } catch (const std::runtime_error& rError) {
        sText += std::string(rError.what()) + "\n";
    }
    Write(sText);
}

void RunDiff(Tool& _rTool, const Arguments& _rArguments)
{
    if (_rArguments.Has(g_stGit)) {
        RunForGit(_rArguments);
        return;
    }
    std::vector<Difference> vecDifference;
    try {
        vecDifference = CompareFiles(_rArguments.Text(g_stOld), _rArguments.Text(g_stNew), DocumentKind(_rArguments));
    } catch (const JsonError& rError) {
        throw UsageError(rError.what());
    }
    if (_rTool.stOptions.bJson) {
        WriteJson(vecDifference.empty() ? SrvFrwk::Result::g_ulSuccess : SrvFrwk::Result::g_ulFailed,
                  ToJson(vecDifference));
    } else {
        Write(ToText(vecDifference));
    }
    _rTool.iExitStatus = vecDifference.empty() ? ExitSuccess : ExitFailure;
}

} // namespace

constinit const Command g_stDiff{
    .szName = "diff",
    .szHelp = "Report what changed between two documents, or two reports, for those who read them",
    .szExample = "vrnt diff FwPolicy.xml installed:policy\nvrnt diff before.json after.json",
    .szNote = "Exit status: 0 nothing differs, 1 something does, 2 a usage error, or a file that cannot be read or "
              "compared. What readers do not see, as order, labels and comments, is no difference.",
    .aArgument = g_apDiffArgument,
    .pfnRun = &RunDiff};

} // namespace Vrnt
