#include "Commands/Commands.h"
#include "Commands/RecordInput.h"
#include "Documents/Policy.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apArgument[] = {&g_stInput};

void Run(Tool& _rTool, const Arguments& _rArguments)
{
    auto vecController =
        ReadRecords<std::vector<SrvFrwk::PolicyController>>(_rArguments, Varnhelt::Documents::g_stPolicyController);
    PrintAnswer(_rTool, Store(_rTool, SrvFrwk::ValueType::g_ulEnforcePolicy, &vecController, nullptr), nullptr, {});
}

} // namespace

constinit const Command g_stStorePolicy{.szName = "policy",
                                        .szHelp = "Write controllers and providers into the policy",
                                        .szExample = "vrnt store policy --input policy.json",
                                        .aArgument = g_apArgument,
                                        .pfnRun = &Run};

} // namespace Vrnt
