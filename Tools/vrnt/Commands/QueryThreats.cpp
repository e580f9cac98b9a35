// vrnt query threat-name, threat-description, threat-recommendation and scanner-title: a text by its number.

#include "Commands/Commands.h"
#include "Machine/Host.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

std::vector<std::string> Engines()
{
    return {"orkap", "elmap"};
}

constexpr Argument g_stEngine{.szName = "--engine",
                              .szHelp = "Whose threat it is: orkap, the virus scan engine's, or elmap, the spyware "
                                        "scan engine's",
                              .szValue = "ENGINE",
                              .bRequired = true,
                              .pfnChoices = &Engines};
constexpr Argument g_stId{
    .szName = "--id", .szHelp = "The number that the engine reported", .szValue = "N", .bRequired = true};
constexpr const Argument* g_apNameArgument[] = {&g_stEngine, &g_stId};
constexpr const Argument* g_apQueryThreatsArgument[] = {&g_stId};

template <std::uint32_t t_ulValueType>
void QueryText(Tool& _rTool, const Arguments& _rArguments)
{
    constexpr bool bSecondText = t_ulValueType == SrvFrwk::ValueType::g_ulScannerTitle;
    const auto stAnswer = Query<t_ulValueType>(_rTool, _rArguments.Number(g_stId));
    const SrvFrwk::ThreatText& rstText = stAnswer.cValue;
    const auto ToJson = [&] {
        Json jsData{{"id", rstText.ulIdentifier}, {"text", rstText.tszText}};
        if (bSecondText) {
            jsData.Set("secondText", rstText.tszSecondText);
        }
        return jsData;
    };
    const auto ToTable = [&] {
        if (SrvFrwk::Result::IsFailure(stAnswer.ulResult)) {
            return Table();
        }
        std::vector<std::string> vecHeading = {"id", "text"};
        std::vector<std::string> vecCell = {std::to_string(rstText.ulIdentifier),
                                            ZkCommon::String::ToUtf8(rstText.tszText)};
        if (bSecondText) {
            vecHeading.emplace_back("second text");
            vecCell.push_back(ZkCommon::String::ToUtf8(rstText.tszSecondText));
        }
        Table cTable(std::move(vecHeading));
        cTable.Add(std::move(vecCell));
        return cTable;
    };
    PrintAnswer(_rTool, stAnswer.ulResult, ToJson, ToTable);
}

void RunName(Tool& _rTool, const Arguments& _rArguments)
{
    if (_rArguments.Text(g_stEngine) == "orkap") {
        QueryText<SrvFrwk::ValueType::g_ulThreatNameOrkap>(_rTool, _rArguments);
    } else {
        QueryText<SrvFrwk::ValueType::g_ulThreatNameElmap>(_rTool, _rArguments);
    }
}

} // namespace

constinit const Command g_stQueryThreatName{.szName = "threat-name",
                                            .szHelp = "A threat's name",
                                            .szExample = "vrnt query threat-name --engine elmap --id 1024",
                                            .aArgument = g_apNameArgument,
                                            .pfnRun = &RunName};

constinit const Command g_stQueryThreatDescription{.szName = "threat-description",
                                                   .szHelp = "A threat's description",
                                                   .szExample = "vrnt query threat-description --id 1024",
                                                   .aArgument = g_apQueryThreatsArgument,
                                                   .pfnRun = &QueryText<SrvFrwk::ValueType::g_ulThreatDescription>};

constinit const Command g_stQueryThreatRecommendation{.szName = "threat-recommendation",
                                                      .szHelp = "What to do about a threat",
                                                      .szExample = "vrnt query threat-recommendation --id 1024",
                                                      .aArgument = g_apQueryThreatsArgument,
                                                      .pfnRun =
                                                          &QueryText<SrvFrwk::ValueType::g_ulThreatRecommendation>};

constinit const Command g_stQueryScannerTitle{.szName = "scanner-title",
                                              .szHelp = "A scanner's name and description",
                                              .szExample = "vrnt query scanner-title --id 3",
                                              .aArgument = g_apQueryThreatsArgument,
                                              .pfnRun = &QueryText<SrvFrwk::ValueType::g_ulScannerTitle>};

} // namespace Vrnt
