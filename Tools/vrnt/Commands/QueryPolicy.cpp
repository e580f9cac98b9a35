// vrnt query policy

#include "Commands/QueryCommands.h"
#include "Documents/Policy.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

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
    std::string sKnown;
    for (const Frwk::Word& stWord : rstWords.aWord) {
        sKnown += sKnown.empty() ? "" : ", ";
        sKnown += ZkCommon::String::ToUtf8(stWord.svText);
    }
    throw UsageError("--controller: \"" + _rsUtf8 + "\" is no number and none of " + sKnown);
}

/** A line for each controller, and below it one for each of its providers. */
Table PolicyTable(const std::vector<SrvFrwk::PolicyController>& _rvecController)
{
    Table cTable({"controller", "provider", "permission", "deploy state", "allow to load in setup mode"});
    const auto Word = [](const Frwk::WordTable& _rstWords, std::uint32_t _ulValue) {
        const auto Has = [=](const Frwk::Word& _rstWord) { return _rstWord.ulValue == _ulValue; };
        // A controller may be asked for by a number that no word has.
        return std::any_of(_rstWords.aWord.begin(), _rstWords.aWord.end(), Has)
                   ? ZkCommon::String::ToUtf8(Frwk::Utility::ToText(_rstWords, _ulValue))
                   : Hexadecimal(_ulValue);
    };
    for (const SrvFrwk::PolicyController& stController : _rvecController) {
        cTable.Add({Word(Frwk::Words::g_stControllerType, stController.ulControllerType), "",
                    Word(Frwk::Words::g_stPermission, stController.ulPermission), "",
                    stController.bAllowToLoadInSetupMode ? "yes" : "no"});
        for (const SrvFrwk::PolicyProvider& stProvider : stController.vecProvider) {
            cTable.Add({Word(Frwk::Words::g_stControllerType, stProvider.ulControllerType),
                        Word(Frwk::Words::g_stProviderType, stProvider.ulProviderType),
                        Word(Frwk::Words::g_stPermission, stProvider.ulPermission),
                        Word(Frwk::Words::g_stDeployState, stProvider.ulDeployState), ""});
        }
    }
    return cTable;
}

void QueryWhole(Tool& _rTool)
{
    std::vector<SrvFrwk::PolicyController> vecController;
    const std::uint32_t ulResult = Query(_rTool, SrvFrwk::ValueType::g_ulEnforcePolicy, &vecController, nullptr);
    Report(_rTool, ulResult, RecordsToJson(vecController, Documents::g_stPolicyController), PolicyTable(vecController));
}

void QueryOne(Tool& _rTool, std::uint32_t _ulController)
{
    SrvFrwk::PolicyController stController;
    stController.ulControllerType = _ulController;
    const std::uint32_t ulResult = Query(_rTool, SrvFrwk::ValueType::g_ulSpecificEnforcePolicy, &stController, nullptr);
    // What was asked is no answer: after a failure there is none to show.
    Report(_rTool, ulResult, RecordToJson(stController, Documents::g_stPolicyController),
           SrvFrwk::Result::IsFailure(ulResult) ? Table() : PolicyTable({stController}));
}

} // namespace

void AddPolicy(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pCommand = _pQuery->add_subcommand("policy", "The enforcement policy: what may run");
    const auto pController = std::make_shared<std::string>();
    const CLI::Option* pOption =
        pCommand
            ->add_option("--controller", *pController,
                         "One controller, by word or number; one that the policy lacks is denied")
            ->type_name("NAME-OR-NUMBER");
    pCommand->footer("Example: vrnt query policy --controller eAntiVirus");
    pCommand->callback([&_rTool, pController, pOption] {
        if (pOption->count() == 0) {
            QueryWhole(_rTool);
        } else {
            QueryOne(_rTool, ToController(*pController));
        }
    });
}

} // namespace Vrnt
