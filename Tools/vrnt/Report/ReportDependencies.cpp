// What providers of the enforcement data need first, on the report's page.

#include "Report/ReportSections.h"

#include <algorithm>
#include <utility>

namespace Vrnt {

using Html::Element;
using Html::Markup;

namespace {

std::string NameOf(std::uint32_t _ulController, std::uint32_t _ulProvider)
{
    return ControllerWord(_ulController) + " " + ProviderWord(_ulProvider);
}

template <class TRecord>
std::vector<const TRecord*> Sorted(const std::vector<TRecord>& _rvecRecord)
{
    std::vector<const TRecord*> vecSorted;
    vecSorted.reserve(_rvecRecord.size());
    for (const TRecord& stRecord : _rvecRecord) {
        vecSorted.push_back(&stRecord);
    }
    std::ranges::stable_sort(vecSorted, {}, &TRecord::ulOrderOfLoading);
    return vecSorted;
}

/** When a provider is loaded: with its controller, and there in its turn. */
std::pair<std::uint32_t, std::uint32_t> TurnOf(const LoadedProvider& _rstProvider)
{
    return {_rstProvider.pController->ulOrderOfLoading, _rstProvider.pProvider->ulOrderOfLoading};
}

// The drawing, in its own units: a line of text for each provider, and the arrows to the right of them.
constexpr int g_iLine = 26;
constexpr int g_iHeading = 34;
constexpr int g_iBoxWidth = 250;
constexpr int g_iWidth = 420;

Markup TextAt(const char* _szClass, int _iX, int _iY, const std::string& _rsText)
{
    return Element("text", {{"class", _szClass}, {"x", std::to_string(_iX)}, {"y", std::to_string(_iY)}}, _rsText);
}

/** From the middle of a provider's line to that of the one that it needs: the further, the wider. */
Markup Arrow(const LoadedProvider& _rstProvider, int _iFrom, int _iTo, std::size_t _uDistance)
{
    const std::string sReach = std::to_string(g_iBoxWidth + std::min<int>(26 + 11 * static_cast<int>(_uDistance), 190));
    const std::string sEdge = std::to_string(g_iBoxWidth + 3);
    const std::string sFrom = std::to_string(_iFrom);
    const std::string sTo = std::to_string(_iTo);
    const std::string sTip = "M" + std::to_string(g_iBoxWidth + 12) + " " + std::to_string(_iTo - 4) + "L" + sEdge +
                             " " + sTo + "L" + std::to_string(g_iBoxWidth + 12) + " " + std::to_string(_iTo + 4) + "Z";
    return Element("g", {{"class", _rstProvider.bLate ? "arrow fault" : "arrow"}},
                   Element("path",
                           {{"d", "M" + sEdge + " " + sFrom + "C" + sReach + " " + sFrom + " " + sReach + " " + sTo +
                                      " " + sEdge + " " + sTo}},
                           {}) +
                       Element("path", {{"class", "tip"}, {"d", sTip}}, {}));
}

Markup Box(const LoadedProvider& _rstProvider, int _iTop)
{
    const bool bLost = _rstProvider.bNeeds && !_rstProvider.uNeeded;
    Markup cBox = Element("rect",
                          {{"class", _rstProvider.bNeeds ? "box needs" : "box"},
                           {"x", "1"},
                           {"y", std::to_string(_iTop + 2)},
                           {"width", std::to_string(g_iBoxWidth - 2)},
                           {"height", std::to_string(g_iLine - 4)},
                           {"rx", "4"}},
                          {});
    cBox += TextAt("order", 30, _iTop + 17, std::to_string(_rstProvider.pProvider->ulOrderOfLoading));
    cBox += TextAt("name", 42, _iTop + 17, ProviderWord(_rstProvider.pProvider->ulProviderType));
    return bLost ? cBox + TextAt("lost", g_iBoxWidth + 6, _iTop + 17, "needed: not listed") : cBox;
}

} // namespace

std::string LoadedProvider::Name() const
{
    return NameOf(pController->ulControllerType, pProvider->ulProviderType);
}

std::string LoadedProvider::NeededName() const
{
    return NameOf(pProvider->ulDependencyController, pProvider->ulDependencyProvider);
}

const char* LoadedProvider::FaultText() const noexcept
{
    return IsSound() ? "" : uNeeded ? ", which is not loaded before it" : ", which is not listed";
}

std::vector<const SrvFrwk::DataController*> InLoadOrder(const std::vector<SrvFrwk::DataController>& _rvecController)
{
    return Sorted(_rvecController);
}

std::vector<const SrvFrwk::DataProvider*> InLoadOrder(const std::vector<SrvFrwk::DataProvider>& _rvecProvider)
{
    return Sorted(_rvecProvider);
}

std::vector<LoadedProvider> ProvidersInLoadOrder(const std::vector<SrvFrwk::DataController>& _rvecController)
{
    using Identity = std::pair<std::uint32_t, std::uint32_t>;
    std::vector<LoadedProvider> vecProvider;
    std::map<Identity, std::size_t> mapPlace;
    for (const SrvFrwk::DataController* pController : InLoadOrder(_rvecController)) {
        for (const SrvFrwk::DataProvider* pProvider : InLoadOrder(pController->vecProvider)) {
            mapPlace.try_emplace({pController->ulControllerType, pProvider->ulProviderType}, vecProvider.size());
            vecProvider.push_back({pController, pProvider});
        }
    }
    for (LoadedProvider& rstProvider : vecProvider) {
        const Identity stNeeded{rstProvider.pProvider->ulDependencyController,
                                rstProvider.pProvider->ulDependencyProvider};
        rstProvider.bNeeds = stNeeded != Identity();
        if (const auto itPlace = mapPlace.find(stNeeded); rstProvider.bNeeds && itPlace != mapPlace.end()) {
            rstProvider.uNeeded = itPlace->second;
            rstProvider.bLate = TurnOf(vecProvider[itPlace->second]) >= TurnOf(rstProvider);
        }
    }
    return vecProvider;
}

Markup DependencyDrawing(const std::vector<LoadedProvider>& _rvecProvider)
{
    Markup cBoxes;
    std::vector<int> vecMiddle;
    int iTop = 0;
    const SrvFrwk::DataController* pController = nullptr;
    for (const LoadedProvider& stProvider : _rvecProvider) {
        if (pController != stProvider.pController) {
            pController = stProvider.pController;
            cBoxes += TextAt("controller", 0, iTop + 24,
                             std::to_string(pController->ulOrderOfLoading) + "  " +
                                 ControllerWord(pController->ulControllerType));
            iTop += g_iHeading;
        }
        cBoxes += Box(stProvider, iTop);
        vecMiddle.push_back(iTop + g_iLine / 2);
        iTop += g_iLine;
    }
    Markup cArrows;
    for (std::size_t i = 0; i < _rvecProvider.size(); ++i) {
        if (const std::optional<std::size_t> uNeeded = _rvecProvider[i].uNeeded) {
            cArrows += Arrow(_rvecProvider[i], vecMiddle[i], vecMiddle[*uNeeded],
                             std::max(i, *uNeeded) - std::min(i, *uNeeded));
        }
    }
    return Element("svg",
                   {{"role", "img"},
                    {"aria-label", "The providers in load order, with arrows to those that they need first"},
                    {"viewBox", "0 0 " + std::to_string(g_iWidth) + " " + std::to_string(iTop + 4)},
                    {"width", std::to_string(g_iWidth)}},
                   cBoxes + cArrows);
}

} // namespace Vrnt
