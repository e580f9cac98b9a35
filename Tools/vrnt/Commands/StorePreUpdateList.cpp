#include "Commands/Commands.h"
#include "Commands/RecordInput.h"
#include "Documents/Compatibility.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr Argument g_stRequest{.szName = "--document", .szHelp = "The request", .szValue = "PATH", .bRequired = true};
constexpr const Argument* g_apStorePreUpdateListArgument[] = {&g_stRequest, &g_stInput};

void RunStorePreUpdateList(Tool& _rTool, const Arguments& _rArguments)
{
    const SrvFrwk::PreUpdateList stList{_rArguments.Path(g_stRequest),
                                        ReadRecords<std::vector<SrvFrwk::CompatibilityComponent>>(
                                            _rArguments, Varnhelt::Documents::g_stCompatibilityComponent)};
    const std::uint32_t ulResult = ThroughModule(_rTool, [&](const Varnhelt::Module& _rModule) {
        return _rModule.TryStore<SrvFrwk::ValueType::g_ulPreUpdateList>(stList);
    });
    PrintStored(_rTool, ulResult, Count(stList.vecComponent.size(), "component"));
}

} // namespace

constinit const Command g_stStorePreUpdateList{
    .szName = "pre-update-list",
    .szHelp = "Write the components of an update request",
    .szExample = "vrnt store pre-update-list --document C:\\Setup\\request.xml --input components.json",
    .szNote = "The components are an array as \"components\" of query compatibility is.",
    .aArgument = g_apStorePreUpdateListArgument,
    .pfnRun = &RunStorePreUpdateList};

} // namespace Vrnt
