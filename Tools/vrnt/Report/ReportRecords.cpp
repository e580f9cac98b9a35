// Service units and enforcement data on the report's page, and its tables of records.

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

bool SaysNothing(const std::string& _rsText)
{
    return _rsText.empty() || _rsText == "eNone";
}

constexpr const char* g_szDash = "\xE2\x80\x93";

/** A text that no word of a document is as long as may be broken anywhere. */
const char* BreakClass(const std::string& _rsText)
{
    constexpr std::size_t uLongestWord = 24;
    return _rsText.size() > uLongestWord ? "long" : "";
}

Markup CellContent(const std::string& _rsText, const std::string& _rsSecond)
{
    const Markup cText = SaysNothing(_rsText) ? Markup(g_szDash) : Markup(_rsText);
    return SaysNothing(_rsSecond) ? cText : cText + " " + Element("small", _rsSecond);
}

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

std::string ControllerWord(std::uint32_t _ulController)
{
    return ToUtf8(Frwk::Utility::ToText(Frwk::Words::g_stControllerType, _ulController));
}

std::string ProviderWord(std::uint32_t _ulProvider)
{
    return ToUtf8(Frwk::Utility::ToText(Frwk::Words::g_stProviderType, _ulProvider));
}

Markup Cell(const std::string& _rsHeading, const std::string& _rsText, const std::string& _rsSecond)
{
    if (SaysNothing(_rsText) && SaysNothing(_rsSecond)) {
        return Element("td", {{"data-label", _rsHeading}, {"class", "off nothing"}}, g_szDash);
    }
    const bool bOff = _rsText == "no" && (_rsSecond.empty() || _rsSecond == "no");
    return Element("td", {{"data-label", _rsHeading}, {"class", bOff ? "off" : BreakClass(_rsText)}},
                   CellContent(_rsText, _rsSecond));
}

Markup HeadingRow(const std::vector<std::string>& _rvecHeading)
{
    Markup cCells;
    for (const std::string& sHeading : _rvecHeading) {
        cCells += Element("th", {{"scope", "col"}}, sHeading);
    }
    return Element("thead", Element("tr", cCells));
}

Markup TableOf(const char* _szClass, const std::vector<std::string>& _rvecHeading, const Markup& _rBodies)
{
    return Element("table", {{"class", _szClass}}, HeadingRow(_rvecHeading) + _rBodies);
}

Markup GroupRow(std::size_t _uColumns, const std::string& _rsName, const std::string& _rsNote)
{
    return Element("tr", {{"class", "group"}},
                   Element("th", {{"colspan", std::to_string(_uColumns)}, {"scope", "rowgroup"}},
                           Markup(_rsName) + " " + Element("small", _rsNote)));
}

std::vector<std::string> HeadingsOf(std::span<const Column> _aColumn)
{
    std::vector<std::string> vecHeading;
    for (const Column& stColumn : _aColumn) {
        vecHeading.emplace_back(stColumn.szHeading);
    }
    return vecHeading;
}

std::map<std::string, std::string> TextsOf(const void* _pRecord, const RecordRows& _rvecRow)
{
    std::map<std::string, std::string> mapText;
    for (const FieldRow& stRow : _rvecRow) {
        if (!stRow.IsList()) {
            mapText[stRow.szKey] = FieldToCell(stRow, _pRecord);
        }
    }
    return mapText;
}

Markup RecordRow(std::span<const Column> _aColumn, const std::map<std::string, std::string>& _rmapText)
{
    Markup cCells;
    for (const Column& stColumn : _aColumn) {
        const std::string& rsText = _rmapText.at(stColumn.szKey);
        const std::string sSecond = stColumn.szSecondKey != nullptr ? _rmapText.at(stColumn.szSecondKey) : "";
        cCells += stColumn.bTitle
                      ? Element("th", {{"scope", "row"}, {"class", std::string("title ") + BreakClass(rsText)}},
                                CellContent(rsText, sSecond))
                      : Cell(stColumn.szHeading, rsText, sSecond);
    }
    return Element("tr", cCells);
}

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
    Markup cContent = Unanswered(_rstData, Varnhelt::DocumentId::ServiceUnits, _rstData.stServiceUnits.ulResult);
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
    Markup cContent = Unanswered(_rstData, Varnhelt::DocumentId::EnforceData, _rstData.stEnforceData.ulResult);
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
