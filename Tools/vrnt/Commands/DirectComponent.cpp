#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/DeployComponents.h"
#include "Machine/DirectHost.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;

std::vector<std::string> Sections()
{
    return {"install", "uninstall"};
}

constexpr Argument g_stSection{.szName = "--section",
                               .szHelp = "Which of the two: install or uninstall",
                               .szValue = "SECTION",
                               .bRequired = true,
                               .pfnChoices = &Sections};
constexpr Argument g_stRunMode{.szName = "--run-mode",
                               .szHelp = "1 setup, 2 change of language, another number neither",
                               .szValue = "N",
                               .bRequired = true};
constexpr const Argument* g_apDirectComponentArgument[] = {&g_stDirectory, &g_stFileName, &g_stSection, &g_stRunMode};

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

void RunDirectComponent(Tool& _rTool, const Arguments& _rArguments)
{
    SrvFrwk::DeployComponentConfig lstComponent;
    SrvFrwk::XmlPathConfig stPath = ToPathConfig(_rArguments);
    const std::uint32_t ulSection = _rArguments.Text(g_stSection) == "install"
                                        ? SrvFrwk::ComponentSection::g_ulInstall
                                        : SrvFrwk::ComponentSection::g_ulUninstall;
    const std::uint32_t ulResult = QueryDirectly(_rTool, SrvFrwk::ValueType::g_ulDeployComponent, &lstComponent,
                                                 &stPath, ulSection, _rArguments.Number(g_stRunMode));
    PrintAnswer(
        _rTool, ulResult, [&] { return RecordsToJson(lstComponent, Documents::g_stDeployComponent); },
        [&] { return ComponentTable(lstComponent); });
}

} // namespace

constinit const Command g_stDirectComponent{
    .szName = "component",
    .szHelp = "What a deployment installs or uninstalls",
    .szExample = "vrnt direct component --dir C:\\Setup --file Deploy.xen --section install --run-mode 1",
    .aArgument = g_apDirectComponentArgument,
    .pfnRun = &RunDirectComponent};

} // namespace Vrnt
