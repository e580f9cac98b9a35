#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/DeployAliases.h"
#include "Machine/DirectHost.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apDirectAliasArgument[] = {&g_stDirectory, &g_stFileName};

void RunDirectAlias(Tool& _rTool, const Arguments& _rArguments)
{
    SrvFrwk::DeployAliasConfig lstAlias;
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rArguments);
    const std::uint32_t ulResult = QueryDirectly(_rTool, SrvFrwk::ValueType::g_ulDeployAlias, &lstAlias, &stPath);
    PrintAnswer(
        _rTool, ulResult, [&] { return RecordsToJson(lstAlias, Varnhelt::Documents::g_stDeployAlias); },
        [&] { return RecordsToTable(lstAlias, Varnhelt::Documents::g_stDeployAlias); });
}

} // namespace

constinit const Command g_stDirectAlias{.szName = "alias",
                                        .szHelp = "The aliases of a deployment",
                                        .szExample = "vrnt direct alias --dir C:\\Setup --file Alias.xen",
                                        .aArgument = g_apDirectAliasArgument,
                                        .pfnRun = &RunDirectAlias};

} // namespace Vrnt
