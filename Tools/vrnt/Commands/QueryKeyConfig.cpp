#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/KeyConfig.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apQueryKeyConfigArgument[] = {&g_stDirectory};

void RunQueryKeyConfig(Tool& _rTool, const Arguments& _rArguments)
{
    QueryList<SrvFrwk::ValueType::g_ulKeyConfig>(_rTool, Varnhelt::Documents::g_stDeployKey,
                                                 ToDirectoryConfig(_rArguments));
}

} // namespace

constinit const Command g_stQueryKeyConfig{.szName = "key-config",
                                           .szHelp = "The key configuration: registry values to act on",
                                           .szExample = "vrnt query key-config --dir C:\\Setup",
                                           .aArgument = g_apQueryKeyConfigArgument,
                                           .pfnRun = &RunQueryKeyConfig};

} // namespace Vrnt
