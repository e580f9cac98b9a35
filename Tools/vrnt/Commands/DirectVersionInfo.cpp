#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Documents/VersionInfo.h"
#include "Machine/DirectHost.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apDirectVersionInfoArgument[] = {&g_stDirectory};

void RunDirectVersionInfo(Tool& _rTool, const Arguments& _rArguments)
{
    std::vector<SrvFrwk::VersionInformation> vecEntry;
    SrvFrwk::XmlDirectoryConfig stDirectory = ToDirectoryConfig(_rArguments);
    const std::uint32_t ulResult = QueryDirectly(_rTool, SrvFrwk::ValueType::g_ulVersionInfo, &vecEntry, &stDirectory);
    PrintAnswer(
        _rTool, ulResult, [&] { return RecordsToJson(vecEntry, Varnhelt::Documents::g_stVersionInformation); },
        [&] { return RecordsToTable(vecEntry, Varnhelt::Documents::g_stVersionInformation); });
}

} // namespace

constinit const Command g_stDirectVersionInfo{.szName = "version-info",
                                              .szHelp = "The versions of the framework's components",
                                              .szExample = "vrnt direct version-info --dir C:\\Setup",
                                              .aArgument = g_apDirectVersionInfoArgument,
                                              .pfnRun = &RunDirectVersionInfo};

} // namespace Vrnt
