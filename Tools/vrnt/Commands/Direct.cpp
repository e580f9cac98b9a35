// vrnt direct: documents that only the readers themselves give.

#include "Commands/Direct.h"

#include "Commands/DirectCommands.h"
#include "Commands/Directory.h"
#include "Documents/VersionInfo.h"
#include "Output/Output.h"
#include "Output/RecordOutput.h"
#include "SrvFrwk_ValueType.h"

#include <vector>

namespace Vrnt {

namespace {

void QueryVersionInfo(Tool& _rTool, const std::string& _rsDirectory)
{
    std::vector<SrvFrwk::VersionInformation> vecEntry;
    SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(_rsDirectory);
    const std::uint32_t ulResult = QueryDirectly(SrvFrwk::ValueType::g_ulVersionInfo, &vecEntry, &stDirectory);
    Report(_rTool, ulResult, RecordsToJson(vecEntry, Varnhelt::Documents::g_stVersionInformation),
           RecordsToTable(vecEntry, Varnhelt::Documents::g_stVersionInformation));
}

void AddVersionInfo(Tool& _rTool, CLI::App* _pDirect)
{
    CLI::App* pCommand = _pDirect->add_subcommand("version-info", "The versions of the framework's components");
    const auto pDirectory = AddDirectory(pCommand);
    pCommand->footer("Example: vrnt direct version-info --dir C:\\Setup");
    pCommand->callback([&_rTool, pDirectory] { QueryVersionInfo(_rTool, *pDirectory); });
}

} // namespace

void AddDirect(Tool& _rTool)
{
    CLI::App* pDirect =
        _rTool.cApp.add_subcommand("direct", "Read and write the documents that no function object serves");
    pDirect->require_subcommand(1);
    AddVersionInfo(_rTool, pDirect);
    AddAliases(_rTool, pDirect);
    AddComponents(_rTool, pDirect);
}

} // namespace Vrnt
