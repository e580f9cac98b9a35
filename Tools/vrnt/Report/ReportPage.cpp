// The report's page as a whole, and the sections of what surrounds the documents.

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

// Documents

Markup DocumentSection(const ReportData& _rstData)
{
    const std::vector<std::string> vecHeading = {"Document", "File",      "Present",     "Size",
                                                 "Answer",   "Encrypted", "Value types", "Location"};
    Markup cRows;
    for (const DocumentState& stState : _rstData.stDocuments.vecDocument) {
        const bool bMissing = stState.IsInstalled() && !stState.uSize;
        const std::optional<DocumentAnswer> stAnswer = AnswerOf(_rstData, stState.pDocument->enId);
        const std::string sAnswer = !stAnswer                    ? ""
                                    : stAnswer->sFailure.empty() ? stAnswer->sRecords
                                                                 : stAnswer->sFailure;
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

Markup Unanswered(const ReportData& _rstData, Varnhelt::DocumentId _enDocument)
{
    const std::optional<DocumentAnswer> stAnswer = AnswerOf(_rstData, _enDocument);
    if (!stAnswer || stAnswer->sFailure.empty()) {
        return {};
    }
    const DocumentState& rstState = _rstData.stDocuments.vecDocument[static_cast<std::size_t>(_enDocument)];
    return Element("p", {{"class", "unanswered"}},
                   Element("b", rstState.FileText()) + (rstState.uSize ? " cannot be read" : " is missing") + ": " +
                       stAnswer->sFailure);
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
