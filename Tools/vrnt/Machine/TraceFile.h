#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Vrnt {

/** One line of a trace file; all text is UTF-8. */
struct TraceFileLine
{
    std::string sTime; // as written: day/month/year hours:minutes:seconds.milliseconds
    std::uint32_t ulProcess = 0;
    std::uint32_t ulThread = 0;
    std::string sLevel; // "detail", "notice", "error", or the line's own tag
    std::string sModule;
    std::string sText;
    std::string sSource;
    std::uint32_t ulLine = 0;
};

/**
 * Reads the lines of a trace file. A line that does not have the form of one continues the text of the line before: a
 * message may hold line ends. What stands before the first line is left out.
 */
std::vector<TraceFileLine> ParseTraceFile(std::string_view _svFile);

} // namespace Vrnt
