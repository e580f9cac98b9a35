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
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulInstallPuIds>(_rTool);
    const auto ToJson = [&] {
        Json jsData = Json::Object();
        for (const List& stList : aList) {
            jsData.Set(stList.szKey, stAnswer.cValue.*stList.pMember);
        }
        return jsData;
    };
    const auto ToTable = [&] {
        Table cTable({"component", "number", "hexadecimal"});
        for (const List& stList : aList) {
            for (const std::uint32_t ulPuId : stAnswer.cValue.*stList.pMember) {
                cTable.Add({stList.szKey, std::to_string(ulPuId), Hexadecimal(ulPuId)});
            }
        }
        return cTable;
    };
    PrintAnswer(_rTool, stAnswer.ulResult, ToJson, ToTable);
}

} // namespace

constinit const Command g_stQueryPuIds{.szName = "pu-ids",
                                       .szHelp = "The install component numbers",
                                       .szExample = "vrnt query pu-ids",
                                       .pfnRun = &RunQueryPuIds};

} // namespace Vrnt
