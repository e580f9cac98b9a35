#include "Output/Table.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace Vrnt {

namespace {

/** The columns that UTF-8 text takes on a terminal, by its characters. */
std::size_t WidthOf(const std::string& _rsText)
{
    return static_cast<std::size_t>(
        std::count_if(_rsText.begin(), _rsText.end(), [](char _c) { return (_c & 0xC0) != 0x80; }));
}

bool IsNumber(const std::string& _rsText)
{
    return std::all_of(_rsText.begin(), _rsText.end(), [](unsigned char _c) { return std::isdigit(_c) != 0; });
}

struct Column
{
    std::size_t uWidth = 0;
    bool bNumbers = true;
    std::vector<std::string> vecHeading; // line by line
};

constexpr std::size_t g_uHeadingLines = 2;

/** Breaks a text at its blanks into lines of at most that width, where its words are not longer. */
std::vector<std::string> BreakAt(const std::string& _rsText, std::size_t _uWidth)
{
    std::istringstream cWords(_rsText);
    std::vector<std::string> vecLine;
    for (std::string sWord; cWords >> sWord;) {
        if (!vecLine.empty() && WidthOf(vecLine.back()) + 1 + WidthOf(sWord) <= _uWidth) {
            vecLine.back() += " " + sWord;
        } else {
            vecLine.push_back(sWord);
        }
    }
    return vecLine;
}

/** Breaks a heading so that it fits its column, which it widens only when it would need too many lines. */
std::vector<std::string> BreakHeading(const std::string& _rsHeading, std::size_t& _ruWidth)
{
    std::vector<std::string> vecLine = BreakAt(_rsHeading, _ruWidth);
    while (vecLine.size() > g_uHeadingLines) {
        vecLine = BreakAt(_rsHeading, ++_ruWidth);
    }
    for (const std::string& sLine : vecLine) {
        _ruWidth = std::max(_ruWidth, WidthOf(sLine));
    }
    return vecLine;
}

void AppendCell(std::string& _rsLine, const std::string& _rsCell, const Column& _rstColumn)
{
    const std::string sPadding(_rstColumn.uWidth - WidthOf(_rsCell), ' ');
    if (!_rsLine.empty()) {
        _rsLine += "  ";
    }
    _rsLine += _rstColumn.bNumbers ? sPadding + _rsCell : _rsCell + sPadding;
}

void AppendLine(std::string& _rsText, std::string _sLine)
{
    _sLine.erase(_sLine.find_last_not_of(' ') + 1);
    _rsText += _sLine + "\n";
}

} // namespace

std::string Table::ToText() const
{
    std::vector<Column> vecColumn(m_vecHeading.size());
    std::size_t uHeadingLines = 0;
    for (std::size_t i = 0; i < vecColumn.size(); ++i) {
        Column& stColumn = vecColumn[i];
        for (const auto& vecCell : m_vecRow) {
            stColumn.uWidth = std::max(stColumn.uWidth, WidthOf(vecCell[i]));
            stColumn.bNumbers = stColumn.bNumbers && IsNumber(vecCell[i]);
        }
        stColumn.bNumbers = stColumn.bNumbers && !m_vecRow.empty();
        stColumn.vecHeading = BreakHeading(m_vecHeading[i], stColumn.uWidth);
        uHeadingLines = std::max(uHeadingLines, stColumn.vecHeading.size());
    }
    std::string sText;
    for (std::size_t uLine = 0; uLine < uHeadingLines; ++uLine) {
        std::string sLine;
        for (const Column& stColumn : vecColumn) {
            // Headings stand on the rule: a short one leaves its upper lines empty.
            const std::size_t uFirst = uHeadingLines - stColumn.vecHeading.size();
            AppendCell(sLine, uLine < uFirst ? std::string() : stColumn.vecHeading[uLine - uFirst], stColumn);
        }
        AppendLine(sText, sLine);
    }
    std::string sRule;
    for (const Column& stColumn : vecColumn) {
        AppendCell(sRule, std::string(stColumn.uWidth, '-'), stColumn);
    }
    if (!vecColumn.empty()) {
        AppendLine(sText, sRule);
    }
    for (const auto& vecCell : m_vecRow) {
        std::string sLine;
        for (std::size_t i = 0; i < vecColumn.size(); ++i) {
            AppendCell(sLine, vecCell[i], vecColumn[i]);
        }
        AppendLine(sText, sLine);
    }
    return sText;
}

} // namespace Vrnt
