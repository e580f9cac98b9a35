#include "Machine/TraceFile.h"

#include <charconv>
#include <optional>

namespace Vrnt {

namespace {

constexpr std::string_view g_svTimeForm = "00/00/0000 00:00:00.000";

bool IsTime(std::string_view _svText)
{
    if (_svText.size() != g_svTimeForm.size()) {
        return false;
    }
    for (std::size_t i = 0; i < _svText.size(); ++i) {
        const bool bDigit = _svText[i] >= '0' && _svText[i] <= '9';
        if (g_svTimeForm[i] == '0' ? !bDigit : _svText[i] != g_svTimeForm[i]) {
            return false;
        }
    }
    return true;
}

/** Takes what stands before the separator off the front of a text; nothing when there is no separator. */
std::optional<std::string_view> TakeUntil(std::string_view& _rsvText, std::string_view _svSeparator)
{
    const std::size_t uAt = _rsvText.find(_svSeparator);
    if (uAt == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view svTaken = _rsvText.substr(0, uAt);
    _rsvText.remove_prefix(uAt + _svSeparator.size());
    return svTaken;
}

std::optional<std::uint32_t> ToNumber(std::string_view _svText, int _iBase)
{
    std::uint32_t ulValue = 0;
    const char* pEnd = _svText.data() + _svText.size();
    const auto [pStop, enError] = std::from_chars(_svText.data(), pEnd, ulValue, _iBase);
    return _svText.empty() || pStop != pEnd || enError != std::errc() ? std::nullopt : std::optional(ulValue);
}

std::string LevelOf(std::string_view _svTag)
{
    if (_svTag == ".w.") {
        return "detail";
    }
    if (_svTag == "@@@") {
        return "notice";
    }
    return std::string(_svTag == "!!!" ? "error" : _svTag);
}

/** The time, the ids, the level and the module: what stands before the text. */
std::optional<TraceFileLine> ParseHead(std::string_view& _rsvLine)
{
    TraceFileLine stLine;
    if (!IsTime(_rsvLine.substr(0, g_svTimeForm.size()))) {
        return std::nullopt;
    }
    stLine.sTime = _rsvLine.substr(0, g_svTimeForm.size());
    std::string_view svRest = _rsvLine.substr(g_svTimeForm.size());
    const auto svBlank = TakeUntil(svRest, " ");
    const auto svProcess = TakeUntil(svRest, ":");
    const auto svThread = TakeUntil(svRest, " ");
    const auto svTag = TakeUntil(svRest, " <");
    const auto svModule = TakeUntil(svRest, "> ");
    if (!svBlank || !svProcess || !svThread || !svTag || !svModule) {
        return std::nullopt;
    }
    const auto ulProcess = ToNumber(*svProcess, 16);
    const auto ulThread = ToNumber(*svThread, 16);
    if (!ulProcess || !ulThread) {
        return std::nullopt;
    }
    stLine.ulProcess = *ulProcess;
    stLine.ulThread = *ulThread;
    stLine.sLevel = LevelOf(*svTag);
    stLine.sModule = *svModule;
    _rsvLine = svRest;
    return stLine;
}

/** Takes " - Source(line)" off the end of a text; false where there is none yet. */
bool TakeSource(TraceFileLine& _rstLine)
{
    const std::size_t uDash = _rstLine.sText.rfind(" - ");
    const std::size_t uOpen = _rstLine.sText.rfind('(');
    if (uDash == std::string::npos || uOpen == std::string::npos || uOpen < uDash || _rstLine.sText.back() != ')') {
        return false;
    }
    const std::string_view svText(_rstLine.sText);
    const auto ulLine = ToNumber(svText.substr(uOpen + 1, svText.size() - uOpen - 2), 10);
    if (!ulLine) {
        return false;
    }
    _rstLine.ulLine = *ulLine;
    _rstLine.sSource = svText.substr(uDash + 3, uOpen - uDash - 3);
    _rstLine.sText.resize(uDash);
    return true;
}

} // namespace

std::vector<TraceFileLine> ParseTraceFile(std::string_view _svFile)
{
    std::vector<TraceFileLine> vecLine;
    bool bOpen = false; // the last line's text goes on
    while (!_svFile.empty()) {
        const std::size_t uEnd = _svFile.find('\n');
        std::string_view svLine = _svFile.substr(0, uEnd);
        _svFile.remove_prefix(uEnd == std::string_view::npos ? _svFile.size() : uEnd + 1);
        if (svLine.ends_with('\r')) {
            svLine.remove_suffix(1);
        }
        if (auto stHead = ParseHead(svLine)) {
            stHead->sText = svLine;
            vecLine.push_back(std::move(*stHead));
            bOpen = true;
        } else if (bOpen) {
            vecLine.back().sText.append("\n").append(svLine);
        }
        bOpen = bOpen && !TakeSource(vecLine.back());
    }
    return vecLine;
}

} // namespace Vrnt
