#include "Output/TextWidth.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace Vrnt {

namespace {

struct Range
{
    char32_t cFirst;
    char32_t cLast;
};

constexpr bool Holds(const Range& _rstRange, char32_t _c)
{
    return _rstRange.cFirst <= _c && _c <= _rstRange.cLast;
}

// The usual blocks: exact tables are the terminal's, and differ from one to the next.
constexpr Range g_aWide[] = {{0x1100, 0x115F},  {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xA960, 0xA97F},
                             {0xAC00, 0xD7A3},  {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                             {0xFFE0, 0xFFE6},  {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF},
                             {0x20000, 0x3FFFD}};
constexpr Range g_aMark[] = {{0x0300, 0x036F}, {0x0591, 0x05BD}, {0x064B, 0x065F}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A},
                             {0x0E47, 0x0E4E}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
constexpr Range g_aInvisible[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200B, 0x200F},
                                  {0x2028, 0x202E}, {0x2060, 0x2069}, {0xFEFF, 0xFEFF}};

template <std::size_t uSize>
bool IsIn(const Range (&_aRange)[uSize], char32_t _c)
{
    return std::any_of(std::begin(_aRange), std::end(_aRange),
                       [=](const Range& _rstRange) { return Holds(_rstRange, _c); });
}

/** Takes the first character off a text; a byte that begins none is one by itself. */
char32_t Next(std::string_view& _rsvText)
{
    const auto ucFirst = static_cast<unsigned char>(_rsvText.front());
    const std::size_t uSize = ucFirst < 0xC0 ? 1 : ucFirst < 0xE0 ? 2 : ucFirst < 0xF0 ? 3 : 4;
    if (uSize == 1 || uSize > _rsvText.size()) {
        _rsvText.remove_prefix(1);
        return ucFirst < 0x80 ? ucFirst : U'\uFFFD';
    }
    char32_t c = ucFirst & (0x7FU >> uSize);
    for (std::size_t i = 1; i < uSize; ++i) {
        c = c << 6 | (static_cast<unsigned char>(_rsvText[i]) & 0x3FU);
    }
    _rsvText.remove_prefix(uSize);
    return c;
}

std::size_t WidthOf(char32_t _c)
{
    return _c < 0x300 ? 1U : IsIn(g_aMark, _c) ? 0U : IsIn(g_aWide, _c) ? 2U : 1U;
}

} // namespace

std::size_t WidthOf(std::string_view _svText)
{
    std::size_t uWidth = 0;
    while (!_svText.empty()) {
        uWidth += WidthOf(Next(_svText));
    }
    return uWidth;
}

std::string Escaped(std::string_view _svText)
{
    std::string sEscaped;
    while (!_svText.empty()) {
        const std::string_view svBefore = _svText;
        const char32_t c = Next(_svText);
        if (!IsIn(g_aInvisible, c)) {
            sEscaped += svBefore.substr(0, svBefore.size() - _svText.size());
        } else if (c == U'\n' || c == U'\r' || c == U'\t') {
            sEscaped += c == U'\n' ? "\\n" : c == U'\r' ? "\\r" : "\\t";
        } else {
            std::array<char, 16> aText{};
            static_cast<void>(std::snprintf(aText.data(), aText.size(), "\\u%04x", static_cast<unsigned int>(c)));
            sEscaped += aText.data();
        }
    }
    return sEscaped;
}

std::string CutTo(std::string_view _svText, std::size_t _uWidth)
{
    constexpr std::string_view svDots = "...";
    std::string_view svRest = _svText;
    std::size_t uWidth = 0;
    std::size_t uKept = 0; // bytes that leave room for the dots
    while (!svRest.empty()) {
        uWidth += WidthOf(Next(svRest));
        if (uWidth + svDots.size() <= _uWidth) {
            uKept = _svText.size() - svRest.size();
        }
        if (uWidth > _uWidth) {
            return std::string(_svText.substr(0, uKept)).append(svDots);
        }
    }
    return std::string(_svText);
}

} // namespace Vrnt
