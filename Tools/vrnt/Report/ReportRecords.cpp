// Service units and enforcement data on the report's page.

#include "Documents/EnforceData.h"
#include "Documents/ServiceUnits.h"
#include "Output/Output.h"
#include "Report/ReportSections.h"

#include <algorithm>

namespace Vrnt {

using Html::Element;
using Html::Markup;
using ZkCommon::String::ToUtf8;

namespace {

constexpr Column g_aServiceUnitColumn[] = {
    {"Load", "orderOfLoading"},
    {"Module", "moduleName", "moduleType", true},
    {"Version", "version"},
    {"Service", "serviceType"},
    {"Controller and provider", "controllerType", "providerType"},
    {"Startup", "startupType", "loadOption"},
    {"Shared", "sharedType"},
    {"In setup mode", "allowToLoadInSetupMode"},
    {"Unload", "orderOfUnloading"},
    {"Concurrent unloading", "concurrentUnloading"},
};

constexpr Column g_aDataProviderColumn[] = {
    {"Load", "orderOfLoading"},
    {"Provider", "providerType", nullptr, true},
    {"Needs first", "dependencyProvider", "dependencyController"},
    {"Module", "moduleName", "moduleType"},
    {"Version", "version"},
    {"Startup", "startupType", "initializeOption"},
    {"Shared", "sharedType"},
    {"Layer and service", "layer", "serviceType"},
    {"Call after install, uninstall", "additionalCallAfterInstall", "additionalCallAfterUninstall"},
    {"Unload", "orderOfUnloading"},
};

std::string LayerText(std::uint32_t _ulLayer)
{
    return ToUtf8(Frwk::Utility::ToText(Frwk::Words::g_stLayerType, _ulLayer));
}

/** What is to be known of a controller itself. */
std::string ControllerNote(const SrvFrwk::DataController& _rstController)
{
    std::map<std::string, std::string> mapText = TextsOf(_rstController, Varnhelt::Documents::g_stDataController);
    return mapText["moduleName"] + " " + mapText["version"] + ", " + mapText["moduleType"] + ", " +
           mapText["startupType"] + ", " + mapText["initializeOption"] + "; loaded " + mapText["orderOfLoading"] +
           (_rstController.bConcurrentLoading ? " (concurrently)" : "") + ", unloaded " + mapText["orderOfUnloading"] +
           (_rstController.bConcurrentUnloading ? " (concurrently)" : "") + "; component " +
           Hexadecimal(_rstController.ulUpdateComponentNumber);
}

/** What the drawing shows, in words. */
Markup DependencyNotes(const std::vector<LoadedProvider>& _rvecProvider)
{
    Markup cItems;
    for (const LoadedProvider& stProvider : _rvecProvider) {
        if (!stProvider.bNeeds) {
            continue;
        }
        cItems +=
            Element("li", {{"class", stProvider.IsSound() ? "" : "fault"}},
                    Element("b", stProvider.Name()) + " needs " + stProvider.NeededName() + stProvider.FaultText());
    }
    return cItems.IsEmpty() ? Element("p", "No provider needs another one.") : Element("ul", cItems);
}

} // namespace

Markup ServiceUnitSection(const ReportData& _rstData)
{
    std::map<std::uint32_t, std::vector<const SrvFrwk::ServiceUnit*>> mapLayer;
    for (const SrvFrwk::ServiceUnit& stUnit : _rstData.stServiceUnits.value) {
        mapLayer[stUnit.ulLayer].push_back(&stUnit);
    }
    Markup cBodies;
    for (auto& [ulLayer, vecUnit] : mapLayer) {
        std::ranges::stable_sort(vecUnit, {}, &SrvFrwk::ServiceUnit::ulOrderOfLoading);
        Markup cRows = GroupRow(std::size(g_aServiceUnitColumn), LayerText(ulLayer), Count(vecUnit.size(), "unit"));
        for (const SrvFrwk::ServiceUnit* pUnit : vecUnit) {
            cRows += RecordRow(g_aServiceUnitColumn, TextsOf(*pUnit, Varnhelt::Documents::g_stServiceUnit));
        }
        cBodies += Element("tbody", cRows);
    }
    Markup cContent = Unanswered(_rstData, Varnhelt::DocumentId::ServiceUnits);
    if (!cBodies.IsEmpty()) {
        cContent += TableOf("records", HeadingsOf(g_aServiceUnitColumn), cBodies);
    }
    return Section("service-units", "Service units", cContent);
}

Markup EnforceDataSection(const ReportData& _rstData)
{
    Markup cBodies;
    for (const SrvFrwk::DataController* pController : InLoadOrder(_rstData.stEnforceData.value)) {
        Markup cRows = GroupRow(std::size(g_aDataProviderColumn), ControllerWord(pController->ulControllerType),
                                ControllerNote(*pController));
        for (const SrvFrwk::DataProvider* pProvider : InLoadOrder(pController->vecProvider)) {
            cRows += RecordRow(g_aDataProviderColumn, TextsOf(*pProvider, Varnhelt::Documents::g_stDataProvider));
        }
        cBodies += Element("tbody", cRows);
    }
    Markup cContent = Unanswered(_rstData, Varnhelt::DocumentId::EnforceData);
    if (!cBodies.IsEmpty()) {
        const std::vector<LoadedProvider> vecProvider = ProvidersInLoadOrder(_rstData.stEnforceData.value);
        cContent += Element(
            "figure", DependencyDrawing(vecProvider) +
                          Element("figcaption", Element("h3", "What is needed first") + DependencyNotes(vecProvider)));
        cContent += TableOf("records", HeadingsOf(g_aDataProviderColumn), cBodies);
    }
    return Section("enforce-data", "Enforcement data", cContent);
}

} // namespace Vrnt
