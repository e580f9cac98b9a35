// The enforcement policy on the report's page: a matrix of controllers and providers.

#include "Report/ReportSections.h"

#include <algorithm>

namespace Vrnt {

using Html::Element;
using Html::Markup;

namespace {

struct Plain
{
    const char* szClass; // in the page's styles
    const char* szText;
};

Plain PlainPermission(std::uint32_t _ulPermission)
{
    switch (_ulPermission) {
    case Frwk::PermissionAllow:
        return {"allowed", "allowed"};
    case Frwk::PermissionPartial:
        return {"partial", "partial"};
    default:
        return {"denied", "denied"};
    }
}

Plain PlainDeployState(std::uint32_t _ulDeployState)
{
    switch (_ulDeployState) {
    case Frwk::DeployInstalled:
        return {"", "deployed"};
    case Frwk::DeployPartialInstalled:
        return {"", "partly deployed"};
    case Frwk::DeployWaitDownload:
        return {"waiting", "waits for download"};
    case Frwk::DeployWaitInstalled:
        return {"waiting", "waits for installation"};
    default:
        return {"", "not deployed"};
    }
}

/** A word, and a mark that says it without colours. */
Markup Chip(const Plain& _rstPlain)
{
    return Element("span", {{"class", std::string("chip ") + _rstPlain.szClass}}, Element("i", {}) + _rstPlain.szText) +
           " ";
}

Markup MatrixRow(const std::string& _rsHeading, const std::vector<Markup>& _rvecCell,
                 const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    Markup cCells = Element("th", {{"scope", "row"}}, _rsHeading);
    for (std::size_t i = 0; i < _rvecCell.size(); ++i) {
        cCells += Element("td", {{"data-label", ControllerWord(_rvecController[i].ulControllerType)}}, _rvecCell[i]);
    }
    return Element("tr", cCells);
}

/** What a controller says of a provider: as often as it names it. */
Markup ProviderCell(const SrvFrwk::PolicyController& _rstController, std::uint32_t _ulProvider)
{
    Markup cCell;
    for (const SrvFrwk::PolicyProvider& stProvider : _rstController.vecProvider) {
        if (stProvider.ulProviderType != _ulProvider) {
            continue;
        }
        const Plain stState = PlainDeployState(stProvider.ulDeployState);
        cCell += Chip(PlainPermission(stProvider.ulPermission)) +
                 Element("small", {{"class", stState.szClass}}, stState.szText);
        if (stProvider.ulControllerType != _rstController.ulControllerType) {
            cCell += Element("small", "of " + ControllerWord(stProvider.ulControllerType));
        }
    }
    return cCell;
}

/** The providers that the policy names, in the order in which it does. */
std::vector<std::uint32_t> ProvidersOf(const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    std::vector<std::uint32_t> vecProvider;
    for (const SrvFrwk::PolicyController& stController : _rvecController) {
        for (const SrvFrwk::PolicyProvider& stProvider : stController.vecProvider) {
            if (std::ranges::find(vecProvider, stProvider.ulProviderType) == vecProvider.end()) {
                vecProvider.push_back(stProvider.ulProviderType);
            }
        }
    }
    return vecProvider;
}

Markup Matrix(const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    std::vector<std::string> vecHeading = {"Provider"};
    std::vector<Markup> vecCell;
    for (const SrvFrwk::PolicyController& stController : _rvecController) {
        vecHeading.push_back(ControllerWord(stController.ulControllerType));
        vecCell.push_back(
            Chip(PlainPermission(stController.ulPermission)) +
            Element("small", stController.bAllowToLoadInSetupMode ? "also in setup mode" : "not in setup mode"));
    }
    Markup cBodies =
        Element("tbody", {{"class", "whole"}}, MatrixRow("The controller itself", vecCell, _rvecController));
    Markup cRows;
    for (const std::uint32_t ulProvider : ProvidersOf(_rvecController)) {
        vecCell.clear();
        for (const SrvFrwk::PolicyController& stController : _rvecController) {
            vecCell.push_back(ProviderCell(stController, ulProvider));
        }
        cRows += MatrixRow(ProviderWord(ulProvider), vecCell, _rvecController);
    }
    return TableOf("matrix", vecHeading, cBodies + Element("tbody", cRows));
}

} // namespace

Markup PolicySection(const ReportData& _rstData)
{
    Markup cContent = Unanswered(_rstData, Varnhelt::DocumentId::Policy);
    if (!_rstData.stPolicy.value.empty()) {
        cContent +=
            Element("p", {{"class", "note"}},
                    "What may run, and below it how far it is deployed. A field is empty where the policy does not "
                    "name the provider for that controller; a controller that is not here is denied.");
        cContent += Matrix(_rstData.stPolicy.value);
    }
    return Section("policy", "Policy", cContent);
}

} // namespace Vrnt
