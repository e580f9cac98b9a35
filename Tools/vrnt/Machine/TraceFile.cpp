#include "Machine/TraceFile.h"

#include "ZkComn_String.h"
#include "ZkComn_ZkDbgSettings.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace Vrnt {

namespace {

constexpr std::string_view g_svTimeForm = "00/00/0000 00:00:00.000";

/** Cuts what is before the separator off the front of a text; std::nullopt when there is no separator. */
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
    for (const ZkCommon::TraceTag& stTag : ZkCommon::g_aTraceTag) {
        if (ZkCommon::String::ToUtf8(stTag.pszTag) == _svTag) {
            return stTag.szName;
        }
    }
    return std::string(_svTag);
}

/** The text with the replacement character for what is no UTF-8. */
std::string Valid(std::string_view _svText)
{
    const bool bAscii = std::ranges::all_of(_svText, [](char _c) { return (_c & 0x80) == 0; });
    return bAscii ? std::string(_svText) : ZkCommon::String::ToUtf8(ZkCommon::String::FromUtf8(_svText));
}

/** The time, the ids, the level and the module: what is before the text, which alone remains. */
std::optional<TraceFileLine> ParseHead(std::string_view& _rsvLine)
{
    TraceFileLine stLine;
    if (!IsTraceTime(_rsvLine.substr(0, g_svTimeForm.size()))) {
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

/** Cuts " - Source(line)" off the end of a message; false where it does not end so. */
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

bool IsTraceTime(std::string_view _svText)
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

void TraceFileReader::Read(std::string_view _svPiece)
{
    for (std::size_t uEnd = _svPiece.find('\n'); uEnd != std::string_view::npos; uEnd = _svPiece.find('\n')) {
        if (m_sRest.empty()) {
            ReadLine(_svPiece.substr(0, uEnd));
        } else {
            ReadLine(std::exchange(m_sRest, {}).append(_svPiece.substr(0, uEnd)));
        }
        _svPiece.remove_prefix(uEnd + 1);
    }
    m_sRest.append(_svPiece);
}

void TraceFileReader::ReadLine(std::string_view _svLine)
{
    if (_svLine.ends_with('\r')) {
        _svLine.remove_suffix(1);
    }
    if (auto stHead = ParseHead(_svLine)) {
        Finish();
        m_stOpen = std::move(*stHead);
        m_stOpen.sText = _svLine;
        m_bOpen = true;
    } else if (m_bOpen) {
        _svLine.remove_prefix(_svLine.starts_with('\t') ? 1 : 0);
        m_stOpen.sText.append("\n").append(_svLine);
    }
}

void TraceFileReader::Finish()
{
    if (m_bOpen) {
        TakeSource(m_stOpen);
        HandOver();
    }
}

void TraceFileReader::HandOver()
{
    for (std::string* const pText : {&m_stOpen.sLevel, &m_stOpen.sModule, &m_stOpen.sText, &m_stOpen.sSource}) {
        *pText = Valid(*pText);
    }
    m_bOpen = false;
    m_fnLine(std::move(m_stOpen));
}

void TraceFileReader::Pause()
{
    if (m_bOpen && m_sRest.empty() && TakeSource(m_stOpen)) {
        HandOver();
    }
}

void TraceFileReader::End()
{
    if (!m_sRest.empty()) {
        ReadLine(std::exchange(m_sRest, {}));
    }
    Finish();
}

} // namespace Vrnt
