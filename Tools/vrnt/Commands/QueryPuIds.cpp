// vrnt query pu-ids

#include "Commands/QueryCommands.h"
#include "Documents/PuIds.h"
#include "Machine/Host.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

void QueryPuIds(Tool& _rTool)
{
    struct List
    {
        const char* szKey;
        std::vector<std::uint32_t> SrvFrwk::InstallPuIds::*pMember;
    };
    constexpr List aList[] = {
        {"pattern", &SrvFrwk::InstallPuIds::vecPattern},
        {"engine", &SrvFrwk::InstallPuIds::vecEngine},
        {"product", &SrvFrwk::InstallPuIds::vecProduct},
    };
    SrvFrwk::InstallPuIds stPuIds;
    const std::uint32_t ulResult = Query(_rTool, SrvFrwk::ValueType::g_ulInstallPuIds, &stPuIds, nullptr);
    Json jsData = Json::object();
    Table cTable({"component", "number", "hexadecimal"});
    for (const List& stList : aList) {
        jsData[stList.szKey] = stPuIds.*stList.pMember;
        for (const std::uint32_t ulPuId : stPuIds.*stList.pMember) {
            cTable.Add({stList.szKey, std::to_string(ulPuId), Hexadecimal(ulPuId)});
        }
    }
    Report(_rTool, ulResult, jsData, cTable);
}

} // namespace

void AddPuIds(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pCommand = _pQuery->add_subcommand("pu-ids", "The install component numbers");
    pCommand->footer("Example: vrnt query pu-ids");
    pCommand->callback([&_rTool] { QueryPuIds(_rTool); });
}

} // namespace Vrnt
