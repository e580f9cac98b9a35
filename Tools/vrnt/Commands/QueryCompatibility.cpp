#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/Compatibility.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apQueryCompatibilityArgument[] = {&g_stDirectory};

void RunQueryCompatibility(Tool& _rTool, const Arguments& _rArguments)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulCompatibilityCheck>(_rTool, ToDirectoryConfig(_rArguments));
    const auto& rstPlatform = Varnhelt::Documents::g_stCompatibilityPlatform;
    PrintAnswer(
        _rTool, stAnswer.ulResult, [&] { return RecordsToJson(stAnswer.cValue, rstPlatform); },
        [&] { return NestedToTable(stAnswer.cValue, rstPlatform, "products"); });
}

} // namespace

constinit const Command g_stQueryCompatibility{.szName = "compatibility",
                                               .szHelp = "Which editions may be installed on which system",
                                               .szExample = "vrnt query compatibility --dir C:\\Setup",
                                               .aArgument = g_apQueryCompatibilityArgument,
                                               .pfnRun = &RunQueryCompatibility};

} // namespace Vrnt
