// vrnt direct alias, vrnt direct store-alias, vrnt direct component

#include "Commands/Direct.h"
#include "Commands/DirectCommands.h"
#include "Commands/Directory.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Output/Output.h"
#include "Output/RecordInput.h"
#include "Output/RecordOutput.h"
#include "SrvFrwk_ValueType.h"

#include <memory>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

struct DeployOptions
{
    std::shared_ptr<std::string> pDirectory;
    std::string sFile;
    std::string sInput;
    std::string sSection;
    std::string sRunMode;
};

SrvFrwk::XmlPathConfig ToPathConfig(const DeployOptions& _rstOptions)
{
    return {ToDirectoryConfig(*_rstOptions.pDirectory), ToWide(_rstOptions.sFile)};
}

void QueryAliases(Tool& _rTool, const DeployOptions& _rstOptions)
{
    SrvFrwk::DeployAliasConfig lstAlias;
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rstOptions);
    const std::uint32_t ulResult = QueryDirectly(SrvFrwk::ValueType::g_ulDeployAlias, &lstAlias, &stPath);
    Report(_rTool, ulResult, RecordsToJson(lstAlias, Documents::g_stDeployAlias),
           RecordsToTable(lstAlias, Documents::g_stDeployAlias));
}

void StoreAliases(Tool& _rTool, const DeployOptions& _rstOptions)
{
    auto lstAlias = RecordsFromFile<SrvFrwk::DeployAliasConfig>(_rstOptions.sInput, Documents::g_stDeployAlias);
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rstOptions);
    Report(_rTool, StoreDirectly(SrvFrwk::ValueType::g_ulDeployAlias, &lstAlias, &stPath), nullptr, {});
}

/** What a component does, a line for each file, registry value and shortcut. */
Table ComponentTable(const SrvFrwk::DeployComponentConfig& _rlstComponent)
{
    Table cTable({"component", "directory", "kind", "action", "name", "from, to or data"});
    for (const SrvFrwk::DeployComponent& stComponent : _rlstComponent) {
        const auto AddLine = [&](const char* _szKind, const Frwk::WordTable& _rstActions, std::int32_t _iAction,
                                 const std::wstring& _rtszName, const std::wstring& _rtszOther) {
            cTable.Add({ZkCommon::String::ToUtf8(stComponent.strId), ZkCommon::String::ToUtf8(stComponent.strDirectory),
                        _szKind, ZkCommon::String::ToUtf8(Documents::Words(_rstActions).Write(_iAction)),
                        ZkCommon::String::ToUtf8(_rtszName), ZkCommon::String::ToUtf8(_rtszOther)});
        };
        for (const SrvFrwk::DeployFile& stFile : stComponent.lstFile) {
            AddLine("file", Documents::g_stDeployAction, stFile.eAction, stFile.strName,
                    ZkCommon::String::WithBackslash(stFile.strSourceDirectory) + stFile.strSourceName);
        }
        for (const SrvFrwk::DeployKey& stKey : stComponent.vecKey) {
            AddLine("registry", Documents::g_stKeyAction, stKey.eAction,
                    Documents::RegistryRoot::Write(stKey.hRoot) + L"\\" + stKey.strKey + L" " + stKey.strName,
                    stKey.strData);
        }
        for (const SrvFrwk::DeployShortcut& stShortcut : stComponent.lstShortcut) {
            AddLine("shortcut", Documents::g_stDeployAction, stShortcut.eAction, stShortcut.strName,
                    stShortcut.strTarget);
        }
        if (stComponent.lstFile.empty() && stComponent.vecKey.empty() && stComponent.lstShortcut.empty()) {
            AddLine("", Documents::g_stDeployAction, 0, L"", L"");
        }
    }
    return cTable;
}

void QueryComponents(Tool& _rTool, const DeployOptions& _rstOptions)
{
    SrvFrwk::DeployComponentConfig lstComponent;
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rstOptions);
    const std::uint32_t ulSection = _rstOptions.sSection == "install" ? SrvFrwk::ComponentSection::g_ulInstall
                                                                      : SrvFrwk::ComponentSection::g_ulUninstall;
    const std::uint32_t ulResult = QueryDirectly(SrvFrwk::ValueType::g_ulDeployComponent, &lstComponent, &stPath,
                                                 ulSection, ToNumber("--run-mode", _rstOptions.sRunMode));
    Report(_rTool, ulResult, RecordsToJson(lstComponent, Documents::g_stDeployComponent), ComponentTable(lstComponent));
}

std::shared_ptr<DeployOptions> AddPath(CLI::App* _pCommand)
{
    auto pOptions = std::make_shared<DeployOptions>();
    pOptions->pDirectory = AddDirectory(_pCommand);
    _pCommand->add_option("--file", pOptions->sFile, "The document's name there")->type_name("NAME")->required();
    return pOptions;
}

} // namespace

void AddAliases(Tool& _rTool, CLI::App* _pDirect)
{
    CLI::App* pQuery = _pDirect->add_subcommand("alias", "The aliases of a deployment");
    const auto pQueryOptions = AddPath(pQuery);
    pQuery->footer("Example: vrnt direct alias --dir C:\\Setup --file Alias.xen");
    pQuery->callback([&_rTool, pQueryOptions] { QueryAliases(_rTool, *pQueryOptions); });

    CLI::App* pStore = _pDirect->add_subcommand("store-alias", "Update or add aliases of a deployment");
    const auto pStoreOptions = AddPath(pStore);
    pStore->add_option("--input", pStoreOptions->sInput, "The aliases, an array as `direct alias` prints it")
        ->type_name("FILE.json")
        ->required();
    pStore->footer("Example: vrnt direct store-alias --dir C:\\Setup --file Alias.xen --input aliases.json");
    pStore->callback([&_rTool, pStoreOptions] { StoreAliases(_rTool, *pStoreOptions); });
}

void AddComponents(Tool& _rTool, CLI::App* _pDirect)
{
    CLI::App* pCommand = _pDirect->add_subcommand("component", "What a deployment installs or uninstalls");
    const auto pOptions = AddPath(pCommand);
    pCommand->add_option("--section", pOptions->sSection, "Which of the two")
        ->check(CLI::IsMember({"install", "uninstall"}))
        ->required();
    pCommand->add_option("--run-mode", pOptions->sRunMode, "1 setup, 2 change of language, another number neither")
        ->type_name("N")
        ->required();
    pCommand->footer("Example: vrnt direct component --dir C:\\Setup --file Deploy.xen --section install --run-mode 1");
    pCommand->callback([&_rTool, pOptions] { QueryComponents(_rTool, *pOptions); });
}

} // namespace Vrnt
