#include "Commands/Commands.h"
#include "Commands/RecordInput.h"
#include "Documents/DeployAliases.h"
#include "Machine/DirectHost.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apDirectStoreAliasArgument[] = {&g_stDirectory, &g_stFileName, &g_stInput};

void RunDirectStoreAlias(Tool& _rTool, const Arguments& _rArguments)
{
    auto lstAlias = ReadRecords<SrvFrwk::DeployAliasConfig>(_rArguments, Varnhelt::Documents::g_stDeployAlias);
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rArguments);
    PrintStored(_rTool, StoreDirectly(_rTool, SrvFrwk::ValueType::g_ulDeployAlias, &lstAlias, &stPath),
                lstAlias.size() == 1 ? "1 alias" : std::to_string(lstAlias.size()) + " aliases");
}

} // namespace

constinit const Command g_stDirectStoreAlias{
    .szName = "store-alias",
    .szHelp = "Update or add aliases of a deployment",
    .szExample = "vrnt direct store-alias --dir C:\\Setup --file Alias.xen --input aliases.json",
    .aArgument = g_apDirectStoreAliasArgument,
    .pfnRun = &RunDirectStoreAlias};

} // namespace Vrnt
