// vrnt store: what a host gives a function object to keep.

#include "Documents/Compatibility.h"
#include "Documents/Policy.h"
#include "Machine/Host.h"
#include "Output/RecordInput.h"
#include "SrvFrwk_ValueType.h"
#include "Tool.h"

#include <memory>
#include <vector>

namespace Vrnt {

namespace {

void AddStorePolicy(Tool& _rTool, CLI::App* _pStore)
{
    CLI::App* pCommand = _pStore->add_subcommand("policy", "Write controllers and providers into the policy");
    const auto pInput = std::make_shared<std::string>();
    pCommand->add_option("--input", *pInput, "The records, as \"data\" of query policy has them")
        ->type_name("FILE.json")
        ->required();
    pCommand->footer("Example: vrnt store policy --input policy.json");
    pCommand->callback([&_rTool, pInput] {
        auto vecController =
            RecordsFromFile<std::vector<SrvFrwk::PolicyController>>(*pInput, Varnhelt::Documents::g_stPolicyController);
        Report(_rTool, Store(_rTool, SrvFrwk::ValueType::g_ulEnforcePolicy, &vecController, nullptr), nullptr, Table());
    });
}

struct PreUpdateOptions
{
    std::string sDocument;
    std::string sInput;
};

void AddStorePreUpdateList(Tool& _rTool, CLI::App* _pStore)
{
    const auto pOptions = std::make_shared<PreUpdateOptions>();
    CLI::App* pCommand = _pStore->add_subcommand("pre-update-list", "Write the components of an update request");
    pCommand->add_option("--document", pOptions->sDocument, "The request")->type_name("PATH")->required();
    pCommand->add_option("--input", pOptions->sInput, "The components, as query compatibility has them")
        ->type_name("FILE.json")
        ->required();
    pCommand->footer("Example: vrnt store pre-update-list --document C:\\Setup\\request.xml --input components.json");
    pCommand->callback([&_rTool, pOptions] {
        SrvFrwk::PreUpdateList stList{ToFullPath(pOptions->sDocument),
                                      RecordsFromFile<std::vector<SrvFrwk::CompatibilityComponent>>(
                                          pOptions->sInput, Varnhelt::Documents::g_stCompatibilityComponent)};
        Report(_rTool, Store(_rTool, SrvFrwk::ValueType::g_ulPreUpdateList, &stList, nullptr), nullptr, Table());
    });
}

} // namespace

void AddStore(Tool& _rTool)
{
    CLI::App* pStore = _rTool.cApp.add_subcommand("store", "Have a function object write a configuration document");
    pStore->require_subcommand(1);
    AddStorePolicy(_rTool, pStore);
    AddStorePreUpdateList(_rTool, pStore);
}

} // namespace Vrnt
