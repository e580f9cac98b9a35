// vrnt query compatibility, vrnt query key-config, vrnt query registry-data

#include "Commands/Directory.h"
#include "Commands/QueryCommands.h"
#include "Documents/Compatibility.h"
#include "Documents/KeyConfig.h"
#include "Documents/RegistryData.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

#include <memory>
#include <vector>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

void QueryCompatibility(Tool& _rTool, const std::string& _rsDirectory)
{
    std::vector<SrvFrwk::CompatibilityPlatform> vecPlatform;
    SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(_rsDirectory);
    const std::uint32_t ulResult =
        Query(_rTool, SrvFrwk::ValueType::g_ulCompatibilityCheck, &vecPlatform, &stDirectory);
    Report(_rTool, ulResult, RecordsToJson(vecPlatform, Documents::g_stCompatibilityPlatform),
           NestedToTable(vecPlatform, Documents::g_stCompatibilityPlatform, &SrvFrwk::CompatibilityPlatform::vecProduct,
                         Documents::g_stCompatibilityProduct));
}

struct RegistryDataOptions
{
    std::string sFile;
    std::vector<std::string> vecLabel;
};

void QueryRegistryData(Tool& _rTool, const RegistryDataOptions& _rstOptions)
{
    SrvFrwk::RegistryDataRequest stRequest;
    stRequest.tszXmlFile = ToFullPath(_rstOptions.sFile);
    for (const std::string& sLabel : _rstOptions.vecLabel) {
        stRequest.vecLabel.push_back(ToWide(sLabel));
    }
    QueryList(_rTool, SrvFrwk::ValueType::g_ulRegistryData, Documents::g_stRegistryData, &stRequest);
}

} // namespace

void AddCompatibility(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pCommand = _pQuery->add_subcommand("compatibility", "Which editions may be installed on which system");
    const auto pDirectory = AddDirectory(pCommand);
    pCommand->footer("Example: vrnt query compatibility --dir C:\\Setup");
    pCommand->callback([&_rTool, pDirectory] { QueryCompatibility(_rTool, *pDirectory); });
}

void AddKeyConfig(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pCommand = _pQuery->add_subcommand("key-config", "The key configuration: registry values to act on");
    const auto pDirectory = AddDirectory(pCommand);
    pCommand->footer("Example: vrnt query key-config --dir C:\\Setup");
    pCommand->callback([&_rTool, pDirectory] {
        SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(*pDirectory);
        QueryList(_rTool, SrvFrwk::ValueType::g_ulKeyConfig, Documents::g_stDeployKey, &stDirectory);
    });
}

void AddRegistryData(Tool& _rTool, CLI::App* _pQuery)
{
    const auto pOptions = std::make_shared<RegistryDataOptions>();
    CLI::App* pCommand = _pQuery->add_subcommand("registry-data", "The registry values of labelled components");
    pCommand->add_option("--file", pOptions->sFile, "The document")->type_name("PATH")->required();
    pCommand->add_option("--label", pOptions->vecLabel, "A component's label; \"*\" selects all")
        ->type_name("L")
        ->allow_extra_args(false)
        ->required();
    pCommand->footer("Example: vrnt query registry-data --file C:\\Setup\\regdata.xml --label Core --label Firewall");
    pCommand->callback([&_rTool, pOptions] { QueryRegistryData(_rTool, *pOptions); });
}

} // namespace Vrnt
