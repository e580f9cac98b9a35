#include "Commands/Commands.h"
#include "Documents/PuIds.h"
#include "Machine/Host.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

void RunQueryPuIds(Tool& _rTool, const Arguments&)
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
    Json jsData = Json::Object();
    Table cTable({"component", "number", "hexadecimal"});
    for (const List& stList : aList) {
        jsData.Set(stList.szKey, stPuIds.*stList.pMember);
        for (const std::uint32_t ulPuId : stPuIds.*stList.pMember) {
            cTable.Add({stList.szKey, std::to_string(ulPuId), Hexadecimal(ulPuId)});
        }
    }
    PrintAnswer(_rTool, ulResult, jsData, cTable);
}

} // namespace

constinit const Command g_stQueryPuIds{.szName = "pu-ids",
                                       .szHelp = "The install component numbers",
                                       .szExample = "vrnt query pu-ids",
                                       .pfnRun = &RunQueryPuIds};

} // namespace Vrnt
