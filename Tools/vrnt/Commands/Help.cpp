// vrnt help: the page on a command, which --help prints too.

#include "Commands/Commands.h"

namespace Vrnt {

namespace {

constexpr Argument g_stCommand{.szName = "COMMAND", .szHelp = "The words of the command", .bRepeats = true};
constexpr const Argument* g_apHelpArgument[] = {&g_stCommand};

void RunHelp(Tool& _rTool, const Arguments& _rArguments)
{
    std::vector<std::string> vecArgument = _rArguments.Texts(g_stCommand);
    vecArgument.emplace_back("--help");
    _rTool.iExitStatus = _rTool.pfnRun(std::move(vecArgument));
}

} // namespace

constinit const Command g_stHelpCommand{.szName = "help",
                                        .szHelp = "Describe a command, or list the commands",
                                        .szExample = "vrnt help query policy",
                                        .aArgument = g_apHelpArgument,
                                        .pfnRun = &RunHelp};

} // namespace Vrnt
