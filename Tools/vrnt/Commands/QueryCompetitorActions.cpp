#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/Competitors.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apQueryCompetitorActionsArgument[] = {&g_stDirectory};

void RunQueryCompetitorActions(Tool& _rTool, const Arguments& _rArguments)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulCompetitorAction>(_rTool, ToDirectoryConfig(_rArguments));
    const auto& rstProduct = Varnhelt::Documents::g_stCompetitorAction;
    PrintAnswer(
        _rTool, stAnswer.ulResult, [&] { return RecordsToJson(stAnswer.cValue, rstProduct); },
        [&] { return NestedToTable(stAnswer.cValue, rstProduct, "actions"); });
}

} // namespace

constinit const Command g_stQueryCompetitorActions{.szName = "competitor-actions",
                                                   .szHelp = "What to do with other vendors' products",
                                                   .szExample = "vrnt query competitor-actions --dir C:\\Setup",
                                                   .aArgument = g_apQueryCompetitorActionsArgument,
                                                   .pfnRun = &RunQueryCompetitorActions};

} // namespace Vrnt
