// vrnt query threat-name, threat-description, threat-recommendation and scanner-title

#include "Commands/QueryCommands.h"
#include "Machine/Host.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"

#include <memory>

namespace Vrnt {

namespace {

/** One text of a threat or a scanner, by its number. */
struct TextCommand
{
    const char* szName;
    const char* szHelp;
    const char* szExample;
    std::uint32_t ulValueType; // of the spyware scan engine
    bool bBothEngines;         // the virus scan engine has such texts too
    bool bSecondText;
};

constexpr TextCommand g_aTextCommand[] = {
    {"threat-name", "A threat's name", "Example: vrnt query threat-name --engine elmap --id 1024",
     SrvFrwk::ValueType::g_ulThreatNameElmap, true, false},
    {"threat-description", "A threat's description", "Example: vrnt query threat-description --id 1024",
     SrvFrwk::ValueType::g_ulThreatDescription, false, false},
    {"threat-recommendation", "What to do about a threat", "Example: vrnt query threat-recommendation --id 1024",
     SrvFrwk::ValueType::g_ulThreatRecommendation, false, false},
    {"scanner-title", "A scanner's name and description", "Example: vrnt query scanner-title --id 3",
     SrvFrwk::ValueType::g_ulScannerTitle, false, true},
};

struct TextOptions
{
    std::string sEngine;
    std::string sId;
};

void QueryText(Tool& _rTool, const TextCommand& _rstCommand, const TextOptions& _rstOptions)
{
    SrvFrwk::ThreatText stText;
    stText.ulIdentifier = ToNumber("--id", _rstOptions.sId);
    const std::uint32_t ulResult = Query(
        _rTool, _rstOptions.sEngine == "orkap" ? SrvFrwk::ValueType::g_ulThreatNameOrkap : _rstCommand.ulValueType,
        &stText, nullptr);
    Json jsData{{"id", stText.ulIdentifier}, {"text", ToJson(stText.tszText)}};
    std::vector<std::string> vecHeading = {"id", "text"};
    std::vector<std::string> vecCell = {std::to_string(stText.ulIdentifier), jsData["text"]};
    if (_rstCommand.bSecondText) {
        jsData["secondText"] = ToJson(stText.tszSecondText);
        vecHeading.emplace_back("second text");
        vecCell.push_back(jsData["secondText"]);
    }
    Table cTable;
    if (!SrvFrwk::Result::IsFailure(ulResult)) {
        cTable = Table(std::move(vecHeading));
        cTable.Add(std::move(vecCell));
    }
    Report(_rTool, ulResult, jsData, cTable);
}

} // namespace

void AddThreats(Tool& _rTool, CLI::App* _pQuery)
{
    for (const TextCommand& stCommand : g_aTextCommand) {
        const auto pOptions = std::make_shared<TextOptions>();
        CLI::App* pCommand = _pQuery->add_subcommand(stCommand.szName, stCommand.szHelp);
        if (stCommand.bBothEngines) {
            pCommand
                ->add_option("--engine", pOptions->sEngine,
                             "Whose threat it is: orkap, the virus scan engine's, or "
                             "elmap, the spyware scan engine's")
                ->type_name("ENGINE")
                ->required()
                ->check(CLI::IsMember({"orkap", "elmap"}));
        }
        pCommand->add_option("--id", pOptions->sId, "The number that the engine reported")->type_name("N")->required();
        pCommand->footer(stCommand.szExample);
        pCommand->callback([&_rTool, &stCommand, pOptions] { QueryText(_rTool, stCommand, *pOptions); });
    }
}

} // namespace Vrnt
