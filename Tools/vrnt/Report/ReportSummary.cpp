// The summary at the top of the report's page: figures, and what a support engineer looks at first.

#include "Output/Output.h"
#include "Report/ReportSections.h"

#include <algorithm>

namespace Vrnt {

using Html::Element;
using Html::Markup;

namespace {

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
        if (stState.uSize && stAnswer && !stAnswer->sFailure.empty()) {
            Add("documents", stState.FileText(), stAnswer->sFailure);
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

} // namespace

Markup Link(const std::string& _rsTarget, const Markup& _rContent)
{
    return Element("a", {{"href", "#" + _rsTarget}}, _rContent);
}

std::string FindingsText(const CheckedDocument& _rstChecked)
{
    const std::size_t uErrors = CountErrors(_rstChecked.vecFinding);
    return _rstChecked.sUnreadable.empty() ? FindingsText(uErrors, _rstChecked.vecFinding.size() - uErrors)
                                           : _rstChecked.sUnreadable;
}

std::optional<DocumentAnswer> AnswerOf(const ReportData& _rstData, Varnhelt::DocumentId _enDocument)
{
    switch (_enDocument) {
    case Varnhelt::DocumentId::ServiceUnits:
        return DocumentAnswer{_rstData.stServiceUnits.sFailure, Count(_rstData.stServiceUnits.value.size(), "unit")};
    case Varnhelt::DocumentId::Policy:
        return DocumentAnswer{_rstData.stPolicy.sFailure, Count(_rstData.stPolicy.value.size(), "controller")};
    case Varnhelt::DocumentId::EnforceData:
        return DocumentAnswer{_rstData.stEnforceData.sFailure,
                              Count(_rstData.stEnforceData.value.size(), "controller")};
    case Varnhelt::DocumentId::PuIds: {
        const SrvFrwk::InstallPuIds& rstPuIds = _rstData.stPuIds.value;
        return DocumentAnswer{
            _rstData.stPuIds.sFailure,
            Count(rstPuIds.vecPattern.size() + rstPuIds.vecEngine.size() + rstPuIds.vecProduct.size(), "number")};
    }
    default:
        return std::nullopt;
    }
}

Markup Summary(const ReportData& _rstData)
{
    const DocumentFigures stDocuments = FiguresOf(_rstData.stDocuments);
    const PolicyFigures stPolicy = FiguresOf(_rstData.stPolicy.value);
    return Element("section", {{"id", "summary"}, {"aria-label", "Summary"}},
                   Figures(_rstData, stDocuments, stPolicy) + Attention(_rstData, stDocuments, stPolicy));
}

} // namespace Vrnt
