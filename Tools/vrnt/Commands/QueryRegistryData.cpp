#include "Arguments.h"
#include "Commands/Commands.h"
#include "Documents/RegistryData.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr Argument g_stQueryRegistryDataFile{
    .szName = "--file", .szHelp = "The document", .szValue = "PATH", .bRequired = true};
constexpr Argument g_stLabel{.szName = "--label",
                             .szHelp = "A component's label; \"*\" selects all",
                             .szValue = "L",
                             .bRequired = true,
                             .bRepeats = true};
constexpr const Argument* g_apQueryRegistryDataArgument[] = {&g_stQueryRegistryDataFile, &g_stLabel};

void RunQueryRegistryData(Tool& _rTool, const Arguments& _rArguments)
{
    SrvFrwk::RegistryDataRequest stRequest;
    stRequest.tszXmlFile = _rArguments.Path(g_stQueryRegistryDataFile);
    for (const std::string& sLabel : _rArguments.Texts(g_stLabel)) {
        stRequest.vecLabel.push_back(ToWide(sLabel));
    }
    QueryList<SrvFrwk::ValueType::g_ulRegistryData>(_rTool, Varnhelt::Documents::g_stRegistryData, stRequest);
}

} // namespace

constinit const Command g_stQueryRegistryData{
    .szName = "registry-data",
    .szHelp = "The registry values of labelled components",
    .szExample = "vrnt query registry-data --file C:\\Setup\\regdata.xml --label Core --label Firewall",
    .aArgument = g_apQueryRegistryDataArgument,
    .pfnRun = &RunQueryRegistryData};

} // namespace Vrnt
