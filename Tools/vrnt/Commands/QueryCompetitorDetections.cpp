#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/Competitors.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apQueryCompetitorDetectionsArgument[] = {&g_stDirectory};

/** The parts of a cell, between blanks. */
std::string Parts(std::initializer_list<std::wstring> _lstPart)
{
    std::vector<std::string> vecPart;
    for (const std::wstring& tszPart : _lstPart) {
        vecPart.push_back(ZkCommon::String::ToUtf8(tszPart));
    }
    return Joined(vecPart, " ");
}

/** A line for each way in which a product is recognised: all of their fields would be twice as wide as any screen. */
Table DetectionTable(const std::vector<SrvFrwk::CompetitorDetection>& _rvecProduct)
{
    Table cTable(
        {"id", "vendor", "manufacturer", "self reboot", "special identify", "path", "key", "uninstall string"});
    for (const SrvFrwk::CompetitorDetection& stProduct : _rvecProduct) {
        const std::vector<std::string> vecProduct = {Parts({stProduct.tszId}), Parts({stProduct.tszVendor}),
                                                     Parts({stProduct.tszManufacturer})};
        const auto AddLine = [&](const std::vector<std::string>& _rvecCell) {
            std::vector<std::string> vecCell = vecProduct;
            vecCell.insert(vecCell.end(), _rvecCell.begin(), _rvecCell.end());
            cTable.Add(std::move(vecCell));
        };
        for (const SrvFrwk::CompetitorIdentification& stWay : stProduct.lstIdentification) {
            AddLine({stWay.bSelfReboot ? "yes" : "no", stWay.bSpecialIdentify ? "yes" : "no",
                     Parts({stWay.tszPathBase, stWay.tszPath}),
                     Parts({stWay.tszKeyName, stWay.tszKeyType, stWay.tszKeyCompare, stWay.tszKeyValue}),
                     Parts({stWay.tszUninstallBase, stWay.tszUninstallString})});
        }
        if (stProduct.lstIdentification.empty()) {
            AddLine(std::vector<std::string>(5));
        }
    }
    return cTable;
}

void RunQueryCompetitorDetections(Tool& _rTool, const Arguments& _rArguments)
{
    const auto stAnswer = Query<SrvFrwk::ValueType::g_ulCompetitorDetection>(_rTool, ToDirectoryConfig(_rArguments));
    PrintAnswer(
        _rTool, stAnswer.ulResult,
        [&] { return RecordsToJson(stAnswer.cValue, Varnhelt::Documents::g_stCompetitorDetection); },
        [&] { return DetectionTable(stAnswer.cValue); });
}

} // namespace

constinit const Command g_stQueryCompetitorDetections{.szName = "competitor-detections",
                                                      .szHelp = "How other vendors' products are recognised",
                                                      .szExample = "vrnt query competitor-detections --dir C:\\Setup",
                                                      .aArgument = g_apQueryCompetitorDetectionsArgument,
                                                      .pfnRun = &RunQueryCompetitorDetections};

} // namespace Vrnt
