#include "Report/ReportJson.h"

#include "Documents/EnforceData.h"
#include "Documents/Policy.h"
#include "Documents/ServiceUnits.h"
#include "Output/Output.h"
#include "Records/RecordJson.h"
#include "Records/ReportParts.h"
#include "Report/ReportSections.h"

#include <optional>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

Json DocumentsToJson(const InstalledDocuments& _rstDocuments)
{
    Json jsDocuments = Json::Array();
    for (const DocumentState& stState : _rstDocuments.vecDocument) {
        if (stState.IsInstalled()) {
            jsDocuments.Add({{"document", std::wstring(stState.pDocument->svName)},
                             {"file", stState.FileText()},
                             {"size", stState.uSize ? Json(*stState.uSize) : Json()}});
        }
    }
    return jsDocuments;
}

Json FindingsToJson(const std::vector<CheckedDocument>& _rvecChecked)
{
    Json jsFindings = Json::Array();
    for (const CheckedDocument& stChecked : _rvecChecked) {
        for (const Finding& stFinding : stChecked.vecFinding) {
            jsFindings.Add({{"file", stChecked.sFile},
                            {"line", stFinding.ulLine},
                            {"severity", SeverityText(stFinding.enSeverity)},
                            {"element", stFinding.sElement},
                            {"text", stFinding.sText}});
        }
        if (!stChecked.sUnreadable.empty()) {
            jsFindings.Add({{"file", stChecked.sFile}, {"text", stChecked.sUnreadable}});
        }
    }
    return jsFindings;
}

Json TraceErrorsToJson(const std::vector<TraceFileLine>& _rvecError)
{
    Json jsErrors = Json::Array();
    for (const TraceFileLine& stLine : _rvecError) {
        jsErrors.Add({{"time", stLine.sTime}, {"module", stLine.sModule}, {"text", stLine.sText}});
    }
    return jsErrors;
}

/** What a query answered; null after a failure. */
template <class TValue, class TDescription>
Json AnswerToJson(const Answer<TValue>& _rstAnswer, const TDescription& _rstDescription)
{
    return _rstAnswer.IsFailure() ? Json() : RecordsToJson(_rstAnswer.value, _rstDescription);
}

/** The documents that gave no answer, each with why. */
Json FailuresToJson(const ReportData& _rstData)
{
    Json jsFailures = Json::Array();
    for (const DocumentState& stState : _rstData.stDocuments.vecDocument) {
        const std::optional<DocumentAnswer> stAnswer = AnswerOf(_rstData, stState.pDocument->enId);
        if (stAnswer && !stAnswer->sFailure.empty()) {
            jsFailures.Add({{"file", stState.FileText()}, {"text", stAnswer->sFailure}});
        }
    }
    return jsFailures;
}

} // namespace

Json ReportJson(const ReportData& _rstData)
{
    Json jsVersions = Json::Object();
    for (const VersionFact& stFact : _rstData.vecVersion) {
        jsVersions.Set(stFact.sWhat, stFact.sVersion);
    }
    const SrvFrwk::InstallPuIds& rstPuIds = _rstData.stPuIds.value;
    return {{"made", _rstData.stMachine.sTime},
            {"computer", _rstData.stMachine.sComputer},
            {"user", _rstData.stMachine.sUser},
            {"elevated", _rstData.stMachine.bElevated},
            {"productFolder", _rstData.stDocuments.tszFolder.empty() ? Json() : Json(_rstData.stDocuments.tszFolder)},
            {ReportPart::g_szVersions, jsVersions},
            {ReportPart::g_szDocuments, DocumentsToJson(_rstData.stDocuments)},
            {ReportPart::g_szServiceUnits, AnswerToJson(_rstData.stServiceUnits, Documents::g_stServiceUnit)},
            {ReportPart::g_szPolicy, AnswerToJson(_rstData.stPolicy, Documents::g_stPolicyController)},
            {ReportPart::g_szEnforceData, AnswerToJson(_rstData.stEnforceData, Documents::g_stDataController)},
            {ReportPart::g_szPuIds, _rstData.stPuIds.IsFailure() ? Json()
                                                                 : Json{{"pattern", rstPuIds.vecPattern},
                                                                        {"engine", rstPuIds.vecEngine},
                                                                        {"product", rstPuIds.vecProduct}}},
            {ReportPart::g_szFailures, FailuresToJson(_rstData)},
            {ReportPart::g_szFindings, FindingsToJson(_rstData.vecChecked)},
            {ReportPart::g_szTraceErrors, TraceErrorsToJson(_rstData.vecTraceError)}};
}

} // namespace Vrnt
