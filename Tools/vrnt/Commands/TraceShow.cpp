// vrnt trace show: prints a trace file as a table.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Machine/Reasons.h"
#include "Machine/TraceFile.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace Vrnt {

namespace {

constexpr Argument g_stTraceShowFile{.szName = "FILE", .szHelp = "The trace file", .bRequired = true};
constexpr Argument g_stErrors{.szName = "--errors", .szHelp = "Only lines of the error level"};
constexpr Argument g_stGrep{.szName = "--grep", .szHelp = "Only lines whose text contains this", .szValue = "TEXT"};
constexpr Argument g_stIgnoreCase{.szName = "-i", .szHelp = "--grep minds no case"};
constexpr Argument g_stSince{
    .szName = "--since",
    .szHelp = "Only lines of this last period (10m, 2h, 3d), or since a date (2026-11-24, \"2026-11-24 23:25\")",
    .szValue = "WHEN"};
constexpr Argument g_stFollow{.szName = "--follow", .szHelp = "Go on with the lines that are written from now on"};
constexpr const Argument* g_apTraceShowArgument[] = {&g_stTraceShowFile, &g_stErrors, &g_stGrep,
                                                     &g_stIgnoreCase,    &g_stSince,  &g_stFollow};

/** "YYYYMMDD hh:mm:ss.mmm" of a line's time, which sorts as the time does. */
std::string SortableOf(std::string_view _svTime)
{
    std::string sTime(_svTime.substr(6, 4));
    return sTime.append(_svTime.substr(3, 2)).append(_svTime.substr(0, 2)).append(_svTime.substr(10));
}

/** The same of a moment before now, in local time. */
std::string SortableBefore(std::uint64_t _ullSeconds)
{
    FILETIME stNow{};
    ::GetSystemTimeAsFileTime(&stNow);
    constexpr std::uint64_t ullPerSecond = 10'000'000;
    const std::uint64_t ullNow = (std::uint64_t{stNow.dwHighDateTime} << 32U) | stNow.dwLowDateTime;
    const std::uint64_t ullThen = ullNow - std::min(ullNow, _ullSeconds * ullPerSecond);
    const FILETIME stThen{static_cast<DWORD>(ullThen), static_cast<DWORD>(ullThen >> 32U)};
    SYSTEMTIME stUtc{};
    SYSTEMTIME stLocal{};
    ::FileTimeToSystemTime(&stThen, &stUtc);
    ::SystemTimeToTzSpecificLocalTime(nullptr, &stUtc, &stLocal);
    std::wstring tszText;
    ZkCommon::String::Format(tszText, L"%04d%02d%02d %02d:%02d:%02d.%03d", stLocal.wYear, stLocal.wMonth, stLocal.wDay,
                             stLocal.wHour, stLocal.wMinute, stLocal.wSecond, stLocal.wMilliseconds);
    return ZkCommon::String::ToUtf8(tszText);
}

/** "10m", "2h", "3d": the seconds; std::nullopt for another text. */
std::optional<std::uint64_t> SecondsOf(std::string_view _svText)
{
    constexpr std::pair<char, std::uint64_t> aUnit[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};
    const auto* const pUnit =
        std::ranges::find(aUnit, _svText.empty() ? '\0' : _svText.back(), &std::pair<char, std::uint64_t>::first);
    std::uint32_t ulCount = 0;
    const char* const pEnd = _svText.data() + _svText.size() - (_svText.empty() ? 0 : 1);
    const auto [pStop, enError] = std::from_chars(_svText.data(), pEnd, ulCount);
    return pUnit == std::end(aUnit) || pStop != pEnd || enError != std::errc() ? std::nullopt
                                                                               : std::optional(ulCount * pUnit->second);
}

/** Whether the calendar has a moment that is written as a trace file's. */
bool IsMoment(std::string_view _svTime)
{
    if (!IsTraceTime(_svTime)) {
        return false;
    }
    const auto Part = [&](std::size_t _uAt, std::size_t _uDigits) {
        WORD usPart = 0;
        std::from_chars(_svTime.data() + _uAt, _svTime.data() + _uAt + _uDigits, usPart);
        return usPart;
    };
    const SYSTEMTIME stTime{.wYear = Part(6, 4),
                            .wMonth = Part(3, 2),
                            .wDayOfWeek = 0,
                            .wDay = Part(0, 2),
                            .wHour = Part(11, 2),
                            .wMinute = Part(14, 2),
                            .wSecond = Part(17, 2),
                            .wMilliseconds = Part(20, 3)};
    FILETIME stIgnored{};
    return ::SystemTimeToFileTime(&stTime, &stIgnored) != FALSE;
}

/** The earliest time that --since asks for. @throws UsageError for what is neither a period nor a date */
std::string EarliestOf(const std::string& _rsSince)
{
    if (const auto ullSeconds = SecondsOf(_rsSince)) {
        return SortableBefore(*ullSeconds);
    }
    // A date as trace files write it, or as ISO 8601 does, then as much of a time as is given.
    constexpr std::string_view svTimeForm = " 00:00:00.000";
    std::string sText = _rsSince;
    if (sText.size() >= 10 && sText[4] == '-' && sText[7] == '-') {
        sText = sText.substr(8, 2) + "/" + sText.substr(5, 2) + "/" + sText.substr(0, 4) + sText.substr(10);
    }
    if (sText.size() > 10 && sText[10] == 'T') {
        sText[10] = ' ';
    }
    if (const std::size_t uTime = sText.size() - std::min<std::size_t>(sText.size(), 10);
        uTime == 0 || uTime == 6 || uTime == 9 || uTime == svTimeForm.size()) {
        sText.append(svTimeForm.substr(uTime));
    }
    if (!IsMoment(sText)) {
        throw UsageError("--since: \"" + _rsSince +
                         "\" is neither a period (10m, 2h, 3d) nor a date (2026-11-24, 2026-11-24 23:25)");
    }
    return SortableOf(sText);
}

/** Which lines are shown. */
class Filter
{
public:
    explicit Filter(const Arguments& _rArguments)
        : m_bErrors(_rArguments.Has(g_stErrors)),
          m_bIgnoreCase(_rArguments.Has(g_stIgnoreCase)),
          m_sGrep(Folded(_rArguments.Text(g_stGrep))),
          m_sEarliest(_rArguments.Has(g_stSince) ? EarliestOf(_rArguments.Text(g_stSince)) : std::string())
    {}

    bool Shows(const TraceFileLine& _rstLine) const
    {
        return (!m_bErrors || _rstLine.sLevel == "error") &&
               (m_sGrep.empty() || Folded(_rstLine.sText).find(m_sGrep) != std::string::npos) &&
               (m_sEarliest.empty() || SortableOf(_rstLine.sTime) >= m_sEarliest);
    }

private:
    /** Without case where it does not matter, beyond ASCII too. */
    std::string Folded(const std::string& _rsText) const
    {
        if (!m_bIgnoreCase) {
            return _rsText;
        }
        std::wstring tszText = ZkCommon::String::FromUtf8(_rsText);
        ::CharLowerBuffW(tszText.data(), static_cast<DWORD>(tszText.size()));
        return ZkCommon::String::ToUtf8(tszText);
    }

    bool m_bErrors;
    bool m_bIgnoreCase;
    std::string m_sGrep;
    std::string m_sEarliest;
};

std::vector<std::string> CellsOf(const TraceFileLine& _rstLine)
{
    return {_rstLine.sTime,
            Hexadecimal(_rstLine.ulProcess, 4),
            Hexadecimal(_rstLine.ulThread, 4),
            _rstLine.sLevel,
            _rstLine.sModule,
            WithMeanings(_rstLine.sText),
            _rstLine.sSource,
            std::to_string(_rstLine.ulLine)};
}

Json JsonOf(const TraceFileLine& _rstLine)
{
    return {{"time", _rstLine.sTime},     {"process", _rstLine.ulProcess}, {"thread", _rstLine.ulThread},
            {"level", _rstLine.sLevel},   {"module", _rstLine.sModule},    {"text", _rstLine.sText},
            {"source", _rstLine.sSource}, {"line", _rstLine.ulLine}};
}

/** A line that follows the table: on one line whatever its message holds. */
std::string FollowingLine(const TraceFileLine& _rstLine)
{
    std::string sLine;
    for (const std::string& sCell : CellsOf(_rstLine)) {
        sLine.append(sLine.empty() ? "" : "  ").append(sCell);
    }
    std::ranges::replace_if(
        sLine, [](unsigned char _c) { return _c < ' '; }, ' ');
    return sLine + "\n";
}

ZkCommon::FileHandle TryOpenTraceFile(const std::string& _rsFile)
{
    return ZkCommon::FileHandle(::CreateFileW(ToFullPath(_rsFile).c_str(), GENERIC_READ,
                                              ZkCommon::Storage::File::g_ulShareAll, nullptr, OPEN_EXISTING,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

/** Reads on from where the last reading ended, to the present end of the file. @return how many bytes there were */
template <class TProgress>
std::uint64_t ReadOn(HANDLE _hFile, const std::string& _rsFile, TraceFileReader& _rReader, const TProgress& _fnProgress)
{
    std::string sPiece(1U << 16U, '\0');
    std::uint64_t ullRead = 0;
    for (;;) {
        DWORD ulRead = 0;
        if (::ReadFile(_hFile, sPiece.data(), static_cast<DWORD>(sPiece.size()), &ulRead, nullptr) == FALSE) {
            throw UsageError("cannot read " + Quoted(_rsFile) + ": " + SystemErrorText(::GetLastError()));
        }
        if (ulRead == 0) {
            return ullRead;
        }
        _rReader.Read({sPiece.data(), ulRead});
        _fnProgress(ullRead += ulRead);
    }
}

/** Whether two handles lead to one file. */
bool IsSameFile(HANDLE _hLeft, HANDLE _hRight)
{
    BY_HANDLE_FILE_INFORMATION stLeft{};
    BY_HANDLE_FILE_INFORMATION stRight{};
    return ::GetFileInformationByHandle(_hLeft, &stLeft) != FALSE &&
           ::GetFileInformationByHandle(_hRight, &stRight) != FALSE &&
           stLeft.dwVolumeSerialNumber == stRight.dwVolumeSerialNumber &&
           stLeft.nFileIndexHigh == stRight.nFileIndexHigh && stLeft.nFileIndexLow == stRight.nFileIndexLow;
}

/** Prints what is written from now on, in the file of the next day too, until the process is ended. */
[[noreturn]] void Follow(ZkCommon::FileHandle _hFile, const std::string& _rsFile, const Filter& _rFilter)
{
    TraceFileReader cReader([&](const TraceFileLine& _rstLine) {
        if (_rFilter.Shows(_rstLine)) {
            Write(FollowingLine(_rstLine));
        }
    });
    constexpr DWORD ulPause = 200; // milliseconds
    for (;;) {
        if (ReadOn(_hFile.Get(), _rsFile, cReader, [](std::uint64_t) {}) == 0) {
            ZkCommon::FileHandle hNamed = TryOpenTraceFile(_rsFile);
            if (hNamed && !IsSameFile(hNamed.Get(), _hFile.Get())) {
                cReader.End();
                _hFile = std::move(hNamed);
                continue;
            }
            cReader.Pause();
            ::Sleep(ulPause);
        }
    }
}

void Show(Tool& _rTool, const Arguments& _rArguments)
{
    if (_rArguments.Has(g_stFollow) && _rTool.stOptions.bJson) {
        throw UsageError("--follow prints line by line and cannot be given together with --json");
    }
    const std::string& rsFile = _rArguments.Text(g_stTraceShowFile);
    const Filter cFilter(_rArguments);
    ZkCommon::FileHandle hFile = TryOpenTraceFile(rsFile);
    LARGE_INTEGER stSize{};
    if (!hFile || ::GetFileSizeEx(hFile.Get(), &stSize) == FALSE) {
        throw UsageError("cannot read " + Quoted(rsFile) + ": " + SystemErrorText(::GetLastError()));
    }
    Json jsLines = Json::Array();
    Table cTable({"time", "process", "thread", "level", "module", "text", "source", "line"});
    bool bAny = false;
    TraceFileReader cReader([&](const TraceFileLine& _rstLine) {
        bAny = true;
        if (cFilter.Shows(_rstLine) && _rTool.stOptions.bJson) {
            jsLines.Add(JsonOf(_rstLine));
        } else if (cFilter.Shows(_rstLine)) {
            cTable.Add(CellsOf(_rstLine));
        }
    });
    ProgressLine cProgress("Reading " + rsFile, static_cast<std::uint64_t>(stSize.QuadPart));
    const std::uint64_t ullRead = ReadOn(hFile.Get(), rsFile, cReader, [&](std::uint64_t _ullRead) {
        cProgress.Tell(static_cast<double>(_ullRead) / std::max(static_cast<double>(stSize.QuadPart), 1.0));
    });
    cReader.End();
    cProgress.End();
    if (ullRead != 0 && !bAny) {
        throw UsageError(Quoted(rsFile) + " is not a trace file: no line begins with a date and a time");
    }
    PrintAnswer(
        _rTool, SrvFrwk::Result::g_ulSuccess, [&] { return std::move(jsLines); }, [&] { return std::move(cTable); });
    if (_rArguments.Has(g_stFollow)) {
        Follow(std::move(hFile), rsFile, cFilter);
    }
}

} // namespace

constinit const Command g_stTraceShow{.szName = "show",
                                      .szHelp = "Print a trace file as a table",
                                      .szExample = "vrnt trace show C:\\Logs\\vqxVarnhelt.log --errors --since 10m",
                                      .aArgument = g_apTraceShowArgument,
                                      .pfnRun = &Show};

} // namespace Vrnt
