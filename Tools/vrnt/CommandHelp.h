#pragma once

#include "Command.h"

#include <string>
#include <string_view>

namespace Vrnt {

/**
 * The help page of a command or group: its usage, what it does, its arguments or commands, and an example.
 * @param _svPath  the words that lead to it: "vrnt query policy"
 */
std::string HelpOf(const Command& _rstCommand, std::string_view _svPath);

/** The options that every command has. */
std::span<const Argument* const> GlobalArguments();
extern const Argument g_stModule;
extern const Argument g_stJson;
extern const Argument g_stPlain;
extern const Argument g_stWide;
extern const Argument g_stHelp;

} // namespace Vrnt
