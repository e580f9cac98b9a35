#pragma once

#include "Command.h"

#include <string_view>

namespace Vrnt {

/** A request in terms of the tool: a command, and the values that it reads. */
struct JsonRequest
{
    const Command* pCommand = nullptr;
    Arguments cArguments;
};

/**
 * Reads a request as VrntJson.h describes it.
 * @throws JsonError when the text is not JSON; UsageError when it is not a request
 */
JsonRequest ToRequest(std::string_view _svJson);

} // namespace Vrnt
