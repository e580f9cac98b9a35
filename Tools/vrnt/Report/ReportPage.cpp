// The report's page as a whole, its summary, and the sections of what surrounds the documents.

#include "Report/ReportPage.h"

#include "Output/Output.h"
#include "Report/ReportSections.h"
#include "Report/ReportStyle.h"

#include <algorithm>
#include <optional>

namespace Vrnt {

using Html::Element;
using Html::Markup;
using ZkCommon::String::ToUtf8;

namespace {

/** More findings of one document are counted, not listed. */
constexpr std::size_t g_uListedFindings = 200;

Markup Link(const std::string& _rsTarget, const Markup& _rContent)
{
    return Element("a", {{"href", "#" + _rsTarget}}, _rContent);
}

// The summary

/** A figure at the top, which leads to its section. */
Markup Figure(const char* _szTarget, const char* _szLabel, const std::string& _rsFigure, const std::string& _rsNote,
              bool _bAttention)
{
    return Element(
        "a", {{"href", std::string("#") + _szTarget}, {"class", _bAttention ? "figure attention" : "figure"}},
        Element("span", {{"class", "label"}}, _szLabel) + Element("b", _rsFigure) + Element("small", _rsNote));
}

/** The names of what the policy says a thing of, and how many there are. */
struct Named
{
    std::size_t uCount = 0;
    std::string sNames;

    void Add(const std::string& _rsName) { sNames += (uCount++ == 0 ? "" : ", ") + _rsName; }
};

struct PolicyFigures
{
    std::size_t uAllowed = 0;
    Named stPartial;
    Named stDenied;
    Named stWaiting;
};

void CountPermission(PolicyFigures& _rstFigures, std::uint32_t _ulPermission, const std::string& _rsName)
{
    if (_ulPermission == Frwk::PermissionAllow) {
        ++_rstFigures.uAllowed;
    } else {
        (_ulPermission == Frwk::PermissionPartial ? _rstFigures.stPartial : _rstFigures.stDenied).Add(_rsName);
    }
}

PolicyFigures FiguresOf(const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    PolicyFigures stFigures;
    for (const SrvFrwk::PolicyController& stController : _rvecController) {
        const std::string sController = ControllerWord(stController.ulControllerType);
        CountPermission(stFigures, stController.ulPermission, sController);
        for (const SrvFrwk::PolicyProvider& stProvider : stController.vecProvider) {
            const std::string sName = sController + " " + ProviderWord(stProvider.ulProviderType);
            CountPermission(stFigures, stProvider.ulPermission, sName);
            if (stProvider.ulDeployState == Frwk::DeployWaitDownload ||
                stProvider.ulDeployState == Frwk::DeployWaitInstalled) {
                stFigures.stWaiting.Add(sName);
            }
        }
    }
    return stFigures;
}

struct DocumentFigures
{
    std::size_t uInstalled = 0;
    Named stMissing;
};

DocumentFigures FiguresOf(const InstalledDocuments& _rstDocuments)
{
    DocumentFigures stFigures;
    for (const DocumentState& stState : _rstDocuments.vecDocument) {
        stFigures.uInstalled += stState.IsInstalled() ? 1U : 0U;
        if (stState.IsInstalled() && !stState.uSize) {
            stFigures.stMissing.Add(stState.FileText());
        }
    }
    return stFigures;
}

/** "3 errors, 1 warning", without what there is none of. */
std::string FindingsText(std::size_t _uErrors, std::size_t _uWarnings)
{
    const std::string sWarnings = _uWarnings == 0 ? "" : Count(_uWarnings, "warning");
    return _uErrors == 0 ? sWarnings : Count(_uErrors, "error") + (sWarnings.empty() ? "" : ", ") + sWarnings;
}

std::string FindingsText(const CheckedDocument& _rstChecked)
{
    const std::size_t uErrors = CountErrors(_rstChecked.vecFinding);
    return _rstChecked.sUnreadable.empty() ? FindingsText(uErrors, _rstChecked.vecFinding.size() - uErrors)
                                           : _rstChecked.sUnreadable;
}

/** What the library answered when it was asked for a document. */
struct DocumentAnswer
{
    std::uint32_t ulResult;
    std::string sRecords; // how many
};

/** Nothing for a document that a report does not ask for. */
std::optional<DocumentAnswer> AnswerOf(const ReportData& _rstData, Varnhelt::DocumentId _enDocument)
{
    switch (_enDocument) {
    case Varnhelt::DocumentId::ServiceUnits:
        return DocumentAnswer{_rstData.stServiceUnits.ulResult, Count(_rstData.stServiceUnits.value.size(), "unit")};
    case Varnhelt::DocumentId::Policy:
        return DocumentAnswer{_rstData.stPolicy.ulResult, Count(_rstData.stPolicy.value.size(), "controller")};
    case Varnhelt::DocumentId::EnforceData:
        return DocumentAnswer{_rstData.stEnforceData.ulResult,
                              Count(_rstData.stEnforceData.value.size(), "controller")};
    case Varnhelt::DocumentId::PuIds: {
        const SrvFrwk::InstallPuIds& rstPuIds = _rstData.stPuIds.value;
        return DocumentAnswer{
            _rstData.stPuIds.ulResult,
            Count(rstPuIds.vecPattern.size() + rstPuIds.vecEngine.size() + rstPuIds.vecProduct.size(), "number")};
    }
    default:
        return std::nullopt;
    }
}

bool IsTraceOn(const Table& _rTrace)
{
    return std::ranges::any_of(_rTrace.Rows(), [](const auto& _rvecCell) { return _rvecCell[1] == "on"; });
}

Markup Figures(const ReportData& _rstData, const DocumentFigures& _rstDocuments, const PolicyFigures& _rstPolicy)
{
    std::size_t uFindings = 0;
    std::size_t uErrors = 0;
    for (const CheckedDocument& stChecked : _rstData.vecChecked) {
        uFindings += stChecked.vecFinding.size();
        uErrors += CountErrors(stChecked.vecFinding);
    }
    const bool bPolicy = !_rstData.stPolicy.IsFailure();
    const std::size_t uMissing = _rstDocuments.stMissing.uCount;
    return Element(
        "div", {{"class", "figures"}},
        Figure("documents", "Documents",
               std::to_string(_rstDocuments.uInstalled - uMissing) + " of " + std::to_string(_rstDocuments.uInstalled),
               uMissing == 0 ? "all present" : std::to_string(uMissing) + " missing", uMissing != 0) +
            Figure("policy", "Denied", bPolicy ? std::to_string(_rstPolicy.stDenied.uCount) : "?",
                   bPolicy ? std::to_string(_rstPolicy.stPartial.uCount) + " partial, " +
                                 std::to_string(_rstPolicy.uAllowed) + " allowed"
                           : "no policy",
                   !bPolicy || _rstPolicy.stDenied.uCount != 0) +
            Figure("policy", "Waiting", bPolicy ? std::to_string(_rstPolicy.stWaiting.uCount) : "?",
                   "for download or installation", !bPolicy || _rstPolicy.stWaiting.uCount != 0) +
            Figure("findings", "Findings", std::to_string(uFindings),
                   uFindings == 0 ? Count(_rstData.vecChecked.size(), "document") + " checked"
                                  : FindingsText(uErrors, uFindings - uErrors),
                   uFindings != 0) +
            Figure("trace", "Trace log", IsTraceOn(_rstData.cTrace) ? "on" : "off", "for later processes", false));
}

/** What a support engineer looks at first. */
Markup Attention(const ReportData& _rstData, const DocumentFigures& _rstDocuments, const PolicyFigures& _rstPolicy)
{
    Markup cItems;
    const auto Add = [&](const char* _szTarget, const std::string& _rsWhat, const std::string& _rsWhich) {
        cItems += Element("li", Link(_szTarget, _rsWhat) + ": " + _rsWhich);
    };
    if (_rstData.stDocuments.tszFolder.empty()) {
        Add("documents", "No product", "its folder is not registered");
    }
    if (_rstDocuments.stMissing.uCount != 0) {
        Add("documents", "Missing", _rstDocuments.stMissing.sNames);
    }
    for (const DocumentState& stState : _rstData.stDocuments.vecDocument) {
        const std::optional<DocumentAnswer> stAnswer = AnswerOf(_rstData, stState.pDocument->enId);
        if (stState.uSize && stAnswer && SrvFrwk::Result::IsFailure(stAnswer->ulResult)) {
            Add("documents", stState.FileText(), ResultText(stAnswer->ulResult));
        }
    }
    for (const CheckedDocument& stChecked : _rstData.vecChecked) {
        if (!stChecked.vecFinding.empty() || !stChecked.sUnreadable.empty()) {
            Add("findings", stChecked.sFile, FindingsText(stChecked));
        }
    }
    if (_rstPolicy.stDenied.uCount != 0) {
        Add("policy", "Denied", _rstPolicy.stDenied.sNames);
    }
    if (_rstPolicy.stPartial.uCount != 0) {
        Add("policy", "Partial", _rstPolicy.stPartial.sNames);
    }
    if (_rstPolicy.stWaiting.uCount != 0) {
        Add("policy", "Waiting", _rstPolicy.stWaiting.sNames);
    }
    for (const LoadedProvider& stProvider : ProvidersInLoadOrder(_rstData.stEnforceData.value)) {
        if (!stProvider.IsSound()) {
            Add("enforce-data", stProvider.Name(), "needs " + stProvider.NeededName() + stProvider.FaultText());
        }
    }
    if (!_rstData.vecTraceError.empty()) {
        const TraceFileLine& rstLast = _rstData.vecTraceError.back();
        Add("trace", "Last trace error", rstLast.sTime + ", " + rstLast.sText);
    }
    return cItems.IsEmpty() ? Element("p", {{"class", "attention-list"}}, "Nothing stands out.")
                            : Element("ul", {{"class", "attention-list"}}, cItems);
}

Markup Summary(const ReportData& _rstData)
{
    const DocumentFigures stDocuments = FiguresOf(_rstData.stDocuments);
    const PolicyFigures stPolicy = FiguresOf(_rstData.stPolicy.value);
    return Element("section", {{"id", "summary"}, {"aria-label", "Summary"}},
                   Figures(_rstData, stDocuments, stPolicy) + Attention(_rstData, stDocuments, stPolicy));
}

// Documents

Markup DocumentSection(const ReportData& _rstData)
{
    const std::vector<std::string> vecHeading = {"Document", "File",      "Present",     "Size",
                                                 "Answer",   "Encrypted", "Value types", "Location"};
    Markup cRows;
    for (const DocumentState& stState : _rstData.stDocuments.vecDocument) {
        const bool bMissing = stState.IsInstalled() && !stState.uSize;
        const std::optional<DocumentAnswer> stAnswer = AnswerOf(_rstData, stState.pDocument->enId);
        const std::string sAnswer = !stAnswer                                        ? ""
                                    : SrvFrwk::Result::IsFailure(stAnswer->ulResult) ? ResultText(stAnswer->ulResult)
                                                                                     : stAnswer->sRecords;
        std::size_t uColumn = 0;
        Markup cCells;
        for (const std::string& sText : {ToUtf8(stState.pDocument->svName), stState.FileText(),
                                         std::string(stState.uSize ? "yes" : (bMissing ? "missing" : "")),
                                         stState.uSize ? Count(*stState.uSize, "byte") : "", sAnswer,
                                         std::string(stState.pDocument->szKey != nullptr ? "yes" : "no"),
                                         Joined(stState.vecValueType, " "), std::string(stState.LocationText())}) {
            cCells += Cell(vecHeading[uColumn++], sText);
        }
        cRows += Element("tr", {{"class", bMissing ? "fault" : ""}}, cCells);
    }
    return Section("documents", "Documents",
                   Element("p", {{"class", "note"}},
                           "Installed folder: " + _rstData.stDocuments.FolderText() +
                               ". Documents that lie elsewhere are named by each request.") +
                       TableOf("records", vecHeading, Element("tbody", cRows)));
}

// Findings

Markup FindingRows(const CheckedDocument& _rstChecked)
{
    Markup cRows;
    const std::size_t uListed = std::min(_rstChecked.vecFinding.size(), g_uListedFindings);
    for (const Finding& stFinding : std::span(_rstChecked.vecFinding).first(uListed)) {
        const bool bError = stFinding.enSeverity == Severity::Error;
        cRows += Element("tr", Cell("Line", stFinding.ulLine == 0 ? "" : std::to_string(stFinding.ulLine)) +
                                   Element("td", {{"data-label", "Severity"}},
                                           Element("span", {{"class", bError ? "chip denied" : "chip partial"}},
                                                   Element("i", {}) + SeverityText(stFinding.enSeverity))) +
                                   Cell("Finding", stFinding.sText, stFinding.sElement));
    }
    if (const std::size_t uMore = _rstChecked.vecFinding.size() - uListed; uMore != 0) {
        cRows += Element("tr", Element("td", {{"colspan", "3"}}, "and " + Count(uMore, "more finding")));
    }
    return cRows;
}

Markup FindingSection(const ReportData& _rstData)
{
    const std::vector<std::string> vecHeading = {"Line", "Severity", "Finding"};
    Markup cBodies;
    std::string sClean;
    for (const CheckedDocument& stChecked : _rstData.vecChecked) {
        if (stChecked.vecFinding.empty() && stChecked.sUnreadable.empty()) {
            sClean += (sClean.empty() ? "" : ", ") + stChecked.sFile;
            continue;
        }
        cBodies += Element("tbody", GroupRow(vecHeading.size(), stChecked.sFile, FindingsText(stChecked)) +
                                        FindingRows(stChecked));
    }
    Markup cContent = Element("p", {{"class", "note"}},
                              sClean.empty() ? "What a check says of each document that is present."
                                             : "Nothing was found in " + sClean + ".");
    if (!cBodies.IsEmpty()) {
        cContent += TableOf("records findings", vecHeading, cBodies);
    }
    return Section("findings", "Findings of the check", cContent);
}

// Trace and versions

/** The last errors in the trace files. */
Markup TraceErrors(const ReportData& _rstData)
{
    if (_rstData.vecTraceError.empty()) {
        return Element("p", {{"class", "note"}}, "No trace file of these settings holds an error.");
    }
    Markup cRows;
    for (const TraceFileLine& stLine : _rstData.vecTraceError) {
        cRows +=
            Element("tr", Cell("Time", stLine.sTime) + Cell("Module", stLine.sModule) + Cell("Error", stLine.sText));
    }
    return Element("h3", "Last errors") +
           TableOf("records findings", {"Time", "Module", "Error"}, Element("tbody", cRows));
}

Markup TraceSection(const ReportData& _rstData)
{
    Markup cRows;
    for (const std::vector<std::string>& vecCell : _rstData.cTrace.Rows()) {
        Markup cCells;
        for (std::size_t i = 0; i < vecCell.size(); ++i) {
            cCells += Cell(_rstData.cTrace.Heading()[i], vecCell[i]);
        }
        cRows += Element("tr", cCells);
    }
    return Section("trace", "Trace log",
                   TableOf("records", _rstData.cTrace.Heading(), Element("tbody", cRows)) + TraceErrors(_rstData));
}

Markup VersionSection(const ReportData& _rstData)
{
    Markup cFacts;
    for (const VersionFact& stFact : _rstData.vecVersion) {
        cFacts += Element("div", Element("dt", stFact.sWhat) + Element("dd", stFact.sVersion));
    }
    return Section("versions", "Versions", Element("dl", cFacts));
}

Markup Navigation()
{
    Markup cLinks;
    for (const auto& [szTarget, szText] :
         {std::pair("versions", "Versions"), std::pair("policy", "Policy"), std::pair("service-units", "Service units"),
          std::pair("enforce-data", "Enforcement data"), std::pair("findings", "Findings"),
          std::pair("documents", "Documents"), std::pair("trace", "Trace log")}) {
        cLinks += Link(szTarget, szText);
    }
    return Element("nav", {{"aria-label", "Sections"}}, cLinks);
}

Markup Head(const std::string& _rsComputer)
{
    return Markup::Literal("<head><meta charset=\"utf-8\">"
                           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                           "<meta name=\"color-scheme\" content=\"light dark\">"
                           // Whatever text got in here: a browser fetches and runs nothing.
                           "<meta http-equiv=\"Content-Security-Policy\""
                           " content=\"default-src 'none'; style-src 'unsafe-inline'\">"
                           "<title>") +
           Markup("Installed configuration of " + _rsComputer) + Markup::Literal("</title><style>") +
           Markup::Literal(g_szReportStyle) + Markup::Literal("</style></head>");
}

} // namespace

Markup Section(const char* _szId, const char* _szHeading, const Markup& _rContent)
{
    return Element("section", {{"id", _szId}}, Element("h2", _szHeading) + _rContent);
}

Markup Unanswered(const ReportData& _rstData, Varnhelt::DocumentId _enDocument, std::uint32_t _ulResult)
{
    if (!SrvFrwk::Result::IsFailure(_ulResult)) {
        return {};
    }
    const DocumentState& rstState = _rstData.stDocuments.vecDocument[static_cast<std::size_t>(_enDocument)];
    return Element("p", {{"class", "unanswered"}},
                   Element("b", rstState.FileText()) + (rstState.uSize ? " cannot be read" : " is missing") + ": " +
                       ResultText(_ulResult));
}

std::string ReportPage(const ReportData& _rstData)
{
    const MachineFacts& rstMachine = _rstData.stMachine;
    const Markup cHeader =
        Element("header", Element("h1", "Installed configuration of " + rstMachine.sComputer) +
                              Element("p", "Product folder: " + _rstData.stDocuments.FolderText()) +
                              Element("p", Markup("Made ") + Element("time", rstMachine.sTime) + " by vrnt as " +
                                               rstMachine.sUser +
                                               (rstMachine.bElevated ? ", with an administrator's rights" : "")));
    const Markup cBody = Element(
        "body", cHeader + Summary(_rstData) + Navigation() +
                    Element("main", VersionSection(_rstData) + PolicySection(_rstData) + ServiceUnitSection(_rstData) +
                                        EnforceDataSection(_rstData) + FindingSection(_rstData) +
                                        DocumentSection(_rstData) + TraceSection(_rstData)));
    return "<!DOCTYPE html>\n" +
           Element("html", {{"lang", "en"}}, Head(_rstData.stMachine.sComputer) + cBody).Source() + "\n";
}

} // namespace Vrnt
