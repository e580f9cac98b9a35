#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace Vrnt {

/** One line of a trace file; all text is UTF-8. */
struct TraceFileLine
{
    std::string sTime; // as written: day/month/year hours:minutes:seconds.milliseconds
    std::uint32_t ulProcess = 0;
    std::uint32_t ulThread = 0;
    std::string sLevel; // "detail", "notice", "error", or the line's own tag
    std::string sModule;
    std::string sText; // with a line feed between the lines of a message
    std::string sSource;
    std::uint32_t ulLine = 0;
};

/**
 * Reads the lines of a trace file piece by piece. A line that does not begin as one continues the message before it: a
 * message may hold line ends, and its further lines have a tab in front. What is before the first line is left out. A
 * byte that is no UTF-8 becomes the replacement character.
 */
class TraceFileReader
{
public:
    using OnLine = std::function<void(TraceFileLine&& _rstLine)>;
    explicit TraceFileReader(OnLine _fnLine) : m_fnLine(std::move(_fnLine)) {}

    /** The next bytes of the file; a piece may end anywhere. */
    void Read(std::string_view _svPiece);
    /** At the end of the file as it is now: a last line that is whole is handed over, another may go on. */
    void Pause();
    /** At the end of the file. */
    void End();

private:
    void ReadLine(std::string_view _svLine);
    void Finish();
    void HandOver();

    OnLine m_fnLine;
    std::string m_sRest; // of the last piece, after its last line end
    TraceFileLine m_stOpen;
    bool m_bOpen = false; // m_stOpen may go on
};

/** Whether a text is the time of a line: "DD/MM/YYYY hh:mm:ss.mmm". */
bool IsTraceTime(std::string_view _svText);

} // namespace Vrnt
