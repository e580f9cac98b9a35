#include "Commands/Commands.h"
#include "Commands/RecordInput.h"
#include "Documents/Policy.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

#include <algorithm>

namespace Vrnt {

namespace {

using SrvFrwk::PolicyController;
using SrvFrwk::PolicyProvider;

constexpr const Argument* g_apStorePolicyArgument[] = {&g_stInput};

/** The providers that a policy does not have: a store passes over them. */
std::vector<PolicyProvider> MissingFrom(const std::vector<PolicyController>& _rvecPolicy,
                                        const std::vector<PolicyController>& _rvecInput)
{
    std::vector<PolicyProvider> vecMissing;
    for (const PolicyController& stController : _rvecInput) {
        const auto itController =
            std::ranges::find(_rvecPolicy, stController.ulControllerType, &PolicyController::ulControllerType);
        for (const PolicyProvider& stProvider : stController.vecProvider) {
            if (itController == _rvecPolicy.end() ||
                std::ranges::find(itController->vecProvider, stProvider.ulProviderType,
                                  &PolicyProvider::ulProviderType) == itController->vecProvider.end()) {
                vecMissing.push_back(stProvider);
            }
        }
    }
    return vecMissing;
}

std::size_t CountProviders(const std::vector<PolicyController>& _rvecController)
{
    std::size_t uCount = 0;
    for (const PolicyController& stController : _rvecController) {
        uCount += stController.vecProvider.size();
    }
    return uCount;
}

void RunStorePolicy(Tool& _rTool, const Arguments& _rArguments)
{
    const auto vecController =
        ReadRecords<std::vector<PolicyController>>(_rArguments, Varnhelt::Documents::g_stPolicyController);
    std::vector<PolicyController> vecPolicy;
    const std::uint32_t ulResult = ThroughModule(_rTool, [&](const Varnhelt::Module& _rModule) {
        vecPolicy = _rModule.TryQuery<SrvFrwk::ValueType::g_ulEnforcePolicy>().cValue;
        return _rModule.TryStore<SrvFrwk::ValueType::g_ulEnforcePolicy>(vecController);
    });
    if (SrvFrwk::Result::IsFailure(ulResult)) {
        PrintAnswer(_rTool, ulResult, nullptr, {});
        return;
    }
    Json jsPassedOver = Json::Array();
    const std::vector<PolicyProvider> vecMissing = MissingFrom(vecPolicy, vecController);
    for (const PolicyProvider& stProvider : vecMissing) {
        const std::string sName = WordText(Frwk::Words::g_stControllerType, stProvider.ulControllerType) + " " +
                                  WordText(Frwk::Words::g_stProviderType, stProvider.ulProviderType);
        jsPassedOver.Add(sName);
        PrintNotice(_rTool, "passed over: the policy has no provider " + sName);
    }
    PrintText(_rTool, Count(vecController.size(), "controller") + " and " +
                          Count(CountProviders(vecController) - vecMissing.size(), "provider") + " stored.\n");
    PrintAnswer(_rTool, ulResult, [&] { return vecMissing.empty() ? Json() : Json{{"passedOver", jsPassedOver}}; }, {});
}

} // namespace

constinit const Command g_stStorePolicy{
    .szName = "policy",
    .szHelp = "Write controllers and providers into the policy",
    .szExample = "vrnt store policy --input policy.json",
    .szNote = "A provider that the policy does not have is passed over and named. A controller that it does not have "
              "is a failure, and nothing is stored.",
    .aArgument = g_apStorePolicyArgument,
    .pfnRun = &RunStorePolicy};

} // namespace Vrnt
