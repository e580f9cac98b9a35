#include "Commands/Commands.h"
#include "Documents/EnforceData.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

#include <vector>

namespace Vrnt {

namespace {

/** What a provider needs first; empty where it needs none. */
std::string DependencyOf(const SrvFrwk::DataProvider& _rstProvider)
{
    if (_rstProvider.ulDependencyController == 0 && _rstProvider.ulDependencyProvider == 0) {
        return {};
    }
    return WordText(Frwk::Words::g_stControllerType, _rstProvider.ulDependencyController) + " " +
           WordText(Frwk::Words::g_stProviderType, _rstProvider.ulDependencyProvider);
}

/** A line for each controller, and below it one for each of its providers: as much of them as a screen takes. */
Table DataTable(const std::vector<SrvFrwk::DataController>& _rvecController)
{
    Table cTable({"controller", "provider", "module type", "startup", "order of loading", "order of unloading",
                  "component number", "needs first", "module name", "version", "initialize"});
    const auto Add = [&](const auto& _rstRecord, const std::string& _rsProvider, const std::string& _rsComponent,
                         const std::string& _rsNeeds) {
        cTable.Add({WordText(Frwk::Words::g_stControllerType, _rstRecord.ulControllerType), _rsProvider,
                    WordText(Frwk::Words::g_stModuleType, _rstRecord.ulModuleType),
                    WordText(Frwk::Words::g_stStartupType, _rstRecord.ulStartupType),
                    std::to_string(_rstRecord.ulOrderOfLoading), std::to_string(_rstRecord.ulOrderOfUnloading),
                    _rsComponent, _rsNeeds, ZkCommon::String::ToUtf8(_rstRecord.tszModuleName),
                    ZkCommon::String::ToUtf8(_rstRecord.tszVersion),
                    WordText(Frwk::Words::g_stDelayInitialize, _rstRecord.ulInitializeOption)});
    };
    for (const SrvFrwk::DataController& stController : _rvecController) {
        Add(stController, "", Hexadecimal(stController.ulUpdateComponentNumber), "");
        for (const SrvFrwk::DataProvider& stProvider : stController.vecProvider) {
            Add(stProvider, WordText(Frwk::Words::g_stProviderType, stProvider.ulProviderType), "",
                DependencyOf(stProvider));
        }
    }
    return cTable;
}

void RunQueryEnforceData(Tool& _rTool, const Arguments&)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulEnforceData>(_rTool);
    PrintAnswer(
        _rTool, stAnswer.ulResult,
        [&] { return RecordsToJson(stAnswer.cValue, Varnhelt::Documents::g_stDataController); },
        [&] { return DataTable(stAnswer.cValue); });
}

} // namespace

constinit const Command g_stQueryEnforceData{.szName = "enforce-data",
                                             .szHelp = "How controllers and providers are loaded",
                                             .szExample = "vrnt query enforce-data",
                                             .pfnRun = &RunQueryEnforceData};

} // namespace Vrnt
