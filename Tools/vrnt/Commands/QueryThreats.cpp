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

void QueryText(Tool& _rTool, const Arguments& _rArguments, std::uint32_t _ulValueType, bool _bSecondText = false)
{
    SrvFrwk::ThreatText stText;
    stText.ulIdentifier = _rArguments.Number(g_stId);
    const std::uint32_t ulResult = Query(_rTool, _ulValueType, &stText, nullptr);
    Json jsData{{"id", stText.ulIdentifier}, {"text", stText.tszText}};
    std::vector<std::string> vecHeading = {"id", "text"};
    std::vector<std::string> vecCell = {std::to_string(stText.ulIdentifier), ZkCommon::String::ToUtf8(stText.tszText)};
    if (_bSecondText) {
        jsData.Set("secondText", stText.tszSecondText);
        vecHeading.emplace_back("second text");
        vecCell.push_back(ZkCommon::String::ToUtf8(stText.tszSecondText));
    }
    Table cTable(std::move(vecHeading));
    cTable.Add(std::move(vecCell));
    PrintAnswer(_rTool, ulResult, jsData, SrvFrwk::Result::IsFailure(ulResult) ? Table() : cTable);
}

void RunName(Tool& _rTool, const Arguments& _rArguments)
{
    QueryText(_rTool, _rArguments,
              _rArguments.Text(g_stEngine) == "orkap" ? SrvFrwk::ValueType::g_ulThreatNameOrkap
                                                      : SrvFrwk::ValueType::g_ulThreatNameElmap);
}

void RunDescription(Tool& _rTool, const Arguments& _rArguments)
{
    QueryText(_rTool, _rArguments, SrvFrwk::ValueType::g_ulThreatDescription);
}

void RunRecommendation(Tool& _rTool, const Arguments& _rArguments)
{
    QueryText(_rTool, _rArguments, SrvFrwk::ValueType::g_ulThreatRecommendation);
}

void RunScannerTitle(Tool& _rTool, const Arguments& _rArguments)
{
    QueryText(_rTool, _rArguments, SrvFrwk::ValueType::g_ulScannerTitle, true);
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
                                                   .pfnRun = &RunDescription};

constinit const Command g_stQueryThreatRecommendation{.szName = "threat-recommendation",
                                                      .szHelp = "What to do about a threat",
                                                      .szExample = "vrnt query threat-recommendation --id 1024",
                                                      .aArgument = g_apQueryThreatsArgument,
                                                      .pfnRun = &RunRecommendation};

constinit const Command g_stQueryScannerTitle{.szName = "scanner-title",
                                              .szHelp = "A scanner's name and description",
                                              .szExample = "vrnt query scanner-title --id 3",
                                              .aArgument = g_apQueryThreatsArgument,
                                              .pfnRun = &RunScannerTitle};

} // namespace Vrnt
