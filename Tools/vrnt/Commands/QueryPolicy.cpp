#include "Arguments.h"
#include "Commands/Commands.h"
#include "Documents/Policy.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

#include <optional>
#include <vector>

namespace Vrnt {

namespace {

constexpr Argument g_stController{.szName = "--controller",
                                  .szHelp =
                                      "One controller, by word or number; one that the policy does not have is denied",
                                  .szValue = "NAME-OR-NUMBER"};
constexpr const Argument* g_apQueryPolicyArgument[] = {&g_stController};

/** A controller by its word or its number. @throws UsageError when it is neither */
std::uint32_t ToController(const std::string& _rsUtf8)
{
    const Frwk::WordTable& rstWords = Frwk::Words::g_stControllerType;
    const std::wstring tszText = ToWide(_rsUtf8);
    if (const Frwk::Word* pWord = Frwk::Utility::FindWord(rstWords, tszText); pWord != nullptr) {
        return pWord->ulValue;
    }
    if (const std::optional<std::uint32_t> ulValue = ZkCommon::String::ToWholeNumber(tszText); ulValue) {
        return *ulValue;
    }
    std::vector<std::string> vecKnown;
    for (const Frwk::Word& stWord : rstWords.aWord) {
        vecKnown.push_back(ZkCommon::String::ToUtf8(stWord.svText));
    }
    throw UsageError("--controller: " + Quoted(_rsUtf8) + " is neither a number nor one of " + Joined(vecKnown));
}

/** A line for each controller, and below it one for each of its providers. */
Table PolicyTable(const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    Table cTable({"controller", "provider", "permission", "deploy state", "allow to load in setup mode"});
    for (const SrvFrwk::PolicyController& stController : _rvecController) {
        cTable.Add({WordText(Frwk::Words::g_stControllerType, stController.ulControllerType), "",
                    WordText(Frwk::Words::g_stPermission, stController.ulPermission), "",
                    stController.bAllowToLoadInSetupMode ? "yes" : "no"});
        for (const SrvFrwk::PolicyProvider& stProvider : stController.vecProvider) {
            cTable.Add({WordText(Frwk::Words::g_stControllerType, stProvider.ulControllerType),
                        WordText(Frwk::Words::g_stProviderType, stProvider.ulProviderType),
                        WordText(Frwk::Words::g_stPermission, stProvider.ulPermission),
                        WordText(Frwk::Words::g_stDeployState, stProvider.ulDeployState), ""});
        }
    }
    return cTable;
}

void QueryWhole(Tool& _rTool)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulEnforcePolicy>(_rTool);
    PrintAnswer(
        _rTool, stAnswer.ulResult,
        [&] { return RecordsToJson(stAnswer.cValue, Varnhelt::Documents::g_stPolicyController); },
        [&] { return PolicyTable(stAnswer.cValue); });
}

void QueryOne(Tool& _rTool, std::uint32_t _ulController)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulSpecificEnforcePolicy>(_rTool, _ulController);
    // What was asked is no answer: after a failure there is none to show.
    PrintAnswer(
        _rTool, stAnswer.ulResult,
        [&] { return RecordToJson(stAnswer.cValue, Varnhelt::Documents::g_stPolicyController); },
        [&] { return SrvFrwk::Result::IsFailure(stAnswer.ulResult) ? Table() : PolicyTable({stAnswer.cValue}); });
}

void RunQueryPolicy(Tool& _rTool, const Arguments& _rArguments)
{
    if (_rArguments.Has(g_stController)) {
        QueryOne(_rTool, ToController(_rArguments.Text(g_stController)));
    } else {
        QueryWhole(_rTool);
    }
}

} // namespace

constinit const Command g_stQueryPolicy{.szName = "policy",
                                        .szHelp = "The enforcement policy: what may run",
                                        .szExample = "vrnt query policy --controller eAntiVirus",
                                        .aArgument = g_apQueryPolicyArgument,
                                        .pfnRun = &RunQueryPolicy};

} // namespace Vrnt
