#include "Output/Table.h"

#include "Output/TextWidth.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <numeric>
#include <set>
#include <sstream>

namespace Vrnt {

namespace {

constexpr std::size_t g_uHeadingLines = 2;
constexpr std::size_t g_uGap = 2;              // between two columns
constexpr std::size_t g_uNarrowestColumn = 24; // narrower ones are not cut

bool IsNumber(const std::string& _rsText)
{
    return std::all_of(_rsText.begin(), _rsText.end(), [](unsigned char _c) { return std::isdigit(_c) != 0; });
}

struct TableColumn
{
    std::string sHeading;
    std::vector<std::string> vecCell;
    std::size_t uWidth = 0; // of the widest cell, then of the column
    bool bNumbers = true;
    std::size_t uDistinct = 0; // how many different texts its cells have
    std::vector<std::string> vecHeadingLine{};
};

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
void BreakHeading(TableColumn& _rstColumn)
{
    std::vector<std::string>& rvecLine = _rstColumn.vecHeadingLine;
    rvecLine = BreakAt(_rstColumn.sHeading, _rstColumn.uWidth);
    while (rvecLine.size() > g_uHeadingLines) {
        rvecLine = BreakAt(_rstColumn.sHeading, ++_rstColumn.uWidth);
    }
    for (const std::string& sLine : rvecLine) {
        _rstColumn.uWidth = std::max(_rstColumn.uWidth, WidthOf(sLine));
    }
}

TableColumn ColumnOf(const Table& _rTable, std::size_t _uColumn, bool _bWhole)
{
    TableColumn stColumn{_rTable.Heading()[_uColumn], {}};
    for (const std::vector<std::string>& rvecCell : _rTable.Rows()) {
        const std::string& rsCell = rvecCell[_uColumn];
        stColumn.bNumbers = stColumn.bNumbers && IsNumber(rsCell);
        const std::string sEscaped = Escaped(rsCell);
        stColumn.vecCell.push_back(_bWhole ? sEscaped : CutTo(sEscaped, Table::g_uWidestCell));
        stColumn.uWidth = std::max(stColumn.uWidth, WidthOf(stColumn.vecCell.back()));
    }
    stColumn.bNumbers = stColumn.bNumbers && !stColumn.vecCell.empty();
    stColumn.uDistinct = std::set<std::string>(stColumn.vecCell.begin(), stColumn.vecCell.end()).size();
    BreakHeading(stColumn);
    return stColumn;
}

std::size_t TotalWidth(const std::vector<TableColumn>& _rvecColumn)
{
    return std::accumulate(_rvecColumn.begin(), _rvecColumn.end(), std::size_t{0},
                           [](std::size_t _uSum, const TableColumn& _rstColumn) {
                               return _uSum + (_uSum == 0 ? 0 : g_uGap) + _rstColumn.uWidth;
                           });
}

/** Cuts the cells of the widest column so that the table fits, or as far as a column may be cut. False: none may. */
bool CutWidest(std::vector<TableColumn>& _rvecColumn, std::size_t _uWidth)
{
    const auto itWidest = std::max_element(
        _rvecColumn.begin(), _rvecColumn.end(),
        [](const TableColumn& _rstLeft, const TableColumn& _rstRight) { return _rstLeft.uWidth < _rstRight.uWidth; });
    if (itWidest->uWidth <= g_uNarrowestColumn) {
        return false;
    }
    const std::size_t uExcess = TotalWidth(_rvecColumn) - _uWidth;
    itWidest->uWidth -= std::min(uExcess, itWidest->uWidth - g_uNarrowestColumn);
    for (std::string& rsCell : itWidest->vecCell) {
        rsCell = CutTo(rsCell, itWidest->uWidth);
    }
    BreakHeading(*itWidest);
    return true;
}

/** Makes a table fit. @return the headings of the columns that were left out */
std::vector<std::string> Fit(std::vector<TableColumn>& _rvecColumn, std::size_t _uWidth)
{
    std::vector<std::string> vecLeftOut;
    const auto LeaveOut = [&](std::size_t _uColumn) {
        vecLeftOut.push_back(_rvecColumn[_uColumn].sHeading);
        _rvecColumn.erase(_rvecColumn.begin() + static_cast<std::ptrdiff_t>(_uColumn));
    };
    const auto Least = [&] { // of two that say as little, the later one; the first column stays
        const auto itLeast = std::min_element(_rvecColumn.rbegin(), std::prev(_rvecColumn.rend()),
                                              [](const TableColumn& _rstLeft, const TableColumn& _rstRight) {
                                                  return _rstLeft.uDistinct < _rstRight.uDistinct;
                                              });
        return static_cast<std::size_t>(std::prev(itLeast.base()) - _rvecColumn.begin());
    };
    const auto TooWide = [&] { return _rvecColumn.size() > 1 && TotalWidth(_rvecColumn) > _uWidth; };
    while (TooWide() && _rvecColumn.front().vecCell.size() > 1 && _rvecColumn[Least()].uDistinct == 1) {
        LeaveOut(Least());
    }
    while (TotalWidth(_rvecColumn) > _uWidth && CutWidest(_rvecColumn, _uWidth)) {
    }
    while (TooWide()) {
        LeaveOut(Least());
    }
    return vecLeftOut;
}

void AppendCell(std::string& _rsLine, const std::string& _rsCell, const TableColumn& _rstColumn)
{
    const std::string sPadding(_rstColumn.uWidth - WidthOf(_rsCell), ' ');
    if (!_rsLine.empty()) {
        _rsLine.append(g_uGap, ' ');
    }
    _rsLine += _rstColumn.bNumbers ? sPadding + _rsCell : _rsCell + sPadding;
}

void AppendLine(std::string& _rsText, std::string _sLine)
{
    _sLine.erase(_sLine.find_last_not_of(' ') + 1);
    _rsText += _sLine + "\n";
}

void AppendHeadings(std::string& _rsText, const std::vector<TableColumn>& _rvecColumn)
{
    std::size_t uLines = 0;
    std::string sRule;
    for (const TableColumn& stColumn : _rvecColumn) {
        uLines = std::max(uLines, stColumn.vecHeadingLine.size());
        AppendCell(sRule, std::string(stColumn.uWidth, '-'), stColumn);
    }
    for (std::size_t uLine = 0; uLine < uLines; ++uLine) {
        std::string sLine;
        for (const TableColumn& stColumn : _rvecColumn) {
            // Headings are at the rule: a short one leaves its upper lines empty.
            const std::size_t uFirst = uLines - stColumn.vecHeadingLine.size();
            AppendCell(sLine, uLine < uFirst ? std::string() : stColumn.vecHeadingLine[uLine - uFirst], stColumn);
        }
        AppendLine(_rsText, sLine);
    }
    AppendLine(_rsText, sRule);
}

} // namespace

std::string Table::ToText(const Extent& _rstExtent) const
{
    std::string sText;
    if (m_vecHeading.empty()) {
        return sText;
    }
    std::vector<TableColumn> vecColumn;
    for (std::size_t i = 0; i < m_vecHeading.size(); ++i) {
        vecColumn.push_back(ColumnOf(*this, i, _rstExtent.bWhole));
    }
    std::vector<std::string> vecLeftOut;
    if (_rstExtent.uWidth != 0 && !_rstExtent.bWhole) {
        vecLeftOut = Fit(vecColumn, _rstExtent.uWidth);
    }
    AppendHeadings(sText, vecColumn);
    for (std::size_t uRow = 0; uRow < m_vecRow.size(); ++uRow) {
        std::string sLine;
        for (const TableColumn& stColumn : vecColumn) {
            AppendCell(sLine, stColumn.vecCell[uRow], stColumn);
        }
        AppendLine(sText, sLine);
    }
    if (!vecLeftOut.empty()) {
        std::string sNames;
        for (const std::string& sHeading : vecLeftOut) {
            sNames += (sNames.empty() ? "" : ", ") + sHeading;
        }
        sText += "\n";
        for (const std::string& sLine : BreakAt("Not shown here, but with --wide: " + sNames, _rstExtent.uWidth)) {
            sText += sLine + "\n";
        }
    }
    return sText;
}

std::string Table::ToPlainText() const
{
    std::string sText;
    for (const std::vector<std::string>& vecCell : m_vecRow) {
        for (std::size_t i = 0; i < vecCell.size(); ++i) {
            sText += (i == 0 ? "" : "\t") + Escaped(vecCell[i]);
        }
        sText += "\n";
    }
    return sText;
}

} // namespace Vrnt
