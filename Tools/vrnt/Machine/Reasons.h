#pragma once

#include "Arguments.h"
#include "Machine/TraceSink.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Vrnt {

/**
 * The error lines of one call in words, the deepest cause first: "antispy.xml has no threat 1". A line that has no words
 * here is given as it is; lines about words that fall to a default are no reason and are left out. Nothing is guessed:
 * what the lines do not say is not said.
 */
std::vector<std::string> ReasonsOf(const std::vector<std::wstring>& _rvecMessage);

/** Makes a call of the library or of its readers, and keeps the reasons of its failure in the tool. @return its result */
template <class TCall>
std::uint32_t WithReasons(Tool& _rTool, const TCall& _fnCall)
{
    WatchTrace(ToolFolder());
    const ErrorLines cErrors;
    const std::uint32_t ulResult = _fnCall();
    _rTool.vecWhy = SrvFrwk::Result::IsFailure(ulResult) ? ReasonsOf(cErrors.Messages()) : std::vector<std::string>();
    return ulResult;
}

/** A line's text with its result codes and value types in words: "[0x80040201: the operation failed]". */
std::string WithMeanings(std::string_view _svText);

} // namespace Vrnt
