// vrnt query competitor-actions, vrnt query competitor-detections

#include "Commands/Directory.h"
#include "Commands/QueryCommands.h"
#include "Documents/Competitors.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

#include <vector>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

void QueryActions(Tool& _rTool, const std::string& _rsDirectory)
{
    std::vector<SrvFrwk::CompetitorAction> vecProduct;
    SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(_rsDirectory);
    const std::uint32_t ulResult = Query(_rTool, SrvFrwk::ValueType::g_ulCompetitorAction, &vecProduct, &stDirectory);
    Report(_rTool, ulResult, RecordsToJson(vecProduct, Documents::g_stCompetitorAction),
           NestedToTable(vecProduct, Documents::g_stCompetitorAction, &SrvFrwk::CompetitorAction::lstAction,
                         Documents::g_stCompetitorActionEntry));
}

/** Where a product is looked for: "C:\base\path" and the like, in the words of the document. */
std::string Joined(std::initializer_list<std::wstring> _lstPart)
{
    std::wstring tszText;
    for (const std::wstring& tszPart : _lstPart) {
        if (!tszPart.empty()) {
            tszText += (tszText.empty() ? L"" : L" ") + tszPart;
        }
    }
    return ZkCommon::String::ToUtf8(tszText);
}

/** A line for each way in which a product is recognised: all of their fields would be twice as wide as any screen. */
Table DetectionTable(const std::vector<SrvFrwk::CompetitorDetection>& _rvecProduct)
{
    Table cTable(
        {"id", "vendor", "manufacturer", "self reboot", "special identify", "path", "key", "uninstall string"});
    for (const SrvFrwk::CompetitorDetection& stProduct : _rvecProduct) {
        const std::vector<std::string> vecProduct = {Joined({stProduct.tszId}), Joined({stProduct.tszVendor}),
                                                     Joined({stProduct.tszManufacturer})};
        const auto AddLine = [&](const std::vector<std::string>& _rvecCell) {
            std::vector<std::string> vecCell = vecProduct;
            vecCell.insert(vecCell.end(), _rvecCell.begin(), _rvecCell.end());
            cTable.Add(std::move(vecCell));
        };
        for (const SrvFrwk::CompetitorIdentification& stWay : stProduct.lstIdentification) {
            AddLine({stWay.bSelfReboot ? "yes" : "no", stWay.bSpecialIdentify ? "yes" : "no",
                     Joined({stWay.tszPathBase, stWay.tszPath}),
                     Joined({stWay.tszKeyName, stWay.tszKeyType, stWay.tszKeyCompare, stWay.tszKeyValue}),
                     Joined({stWay.tszUninstallBase, stWay.tszUninstallString})});
        }
        if (stProduct.lstIdentification.empty()) {
            AddLine(std::vector<std::string>(5));
        }
    }
    return cTable;
}

void QueryDetections(Tool& _rTool, const std::string& _rsDirectory)
{
    std::vector<SrvFrwk::CompetitorDetection> vecProduct;
    SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(_rsDirectory);
    const std::uint32_t ulResult =
        Query(_rTool, SrvFrwk::ValueType::g_ulCompetitorDetection, &vecProduct, &stDirectory);
    Report(_rTool, ulResult, RecordsToJson(vecProduct, Documents::g_stCompetitorDetection), DetectionTable(vecProduct));
}

} // namespace

void AddCompetitors(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pActions = _pQuery->add_subcommand("competitor-actions", "What to do with other vendors' products");
    const auto pActionsDirectory = AddDirectory(pActions);
    pActions->footer("Example: vrnt query competitor-actions --dir C:\\Setup");
    pActions->callback([&_rTool, pActionsDirectory] { QueryActions(_rTool, *pActionsDirectory); });

    CLI::App* pDetections =
        _pQuery->add_subcommand("competitor-detections", "How other vendors' products are recognised");
    const auto pDetectionsDirectory = AddDirectory(pDetections);
    pDetections->footer("Example: vrnt query competitor-detections --dir C:\\Setup");
    pDetections->callback([&_rTool, pDetectionsDirectory] { QueryDetections(_rTool, *pDetectionsDirectory); });
}

} // namespace Vrnt
