#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Vrnt {

/** Rows of cells under headings, in UTF-8. What a cell holds is printed in one line, see Escaped. */
class Table
{
public:
    /** How much of a table is printed. */
    struct Extent
    {
        std::size_t uWidth = 0; // columns of the terminal; 0: as wide as it is
        bool bWhole = false;    // all columns and whole cells, whatever the width
    };

    /** A longer cell is cut, unless the whole is asked for. */
    static constexpr std::size_t g_uWidestCell = 200;

    Table() = default;
    explicit Table(std::vector<std::string> _vecHeading) : m_vecHeading(std::move(_vecHeading)) {}

    void Add(std::vector<std::string> _vecCell) { m_vecRow.push_back(std::move(_vecCell)); }
    bool IsEmpty() const { return m_vecRow.empty(); }
    const std::vector<std::string>& Heading() const { return m_vecHeading; }
    const std::vector<std::vector<std::string>>& Rows() const { return m_vecRow; }

    /**
     * Columns as wide as their widest cell; a heading of several words is set in as many lines as it needs to fit.
     * Columns of numbers are set flush right. What does not fit the width goes: columns that say the same in each row,
     * then the ends of the longest cells, then columns with the fewest different texts; a line below names the columns
     * that are not shown. Empty where there are no headings.
     */
    std::string ToText(const Extent& _rstExtent) const;
    std::string ToText() const { return ToText({}); }

    /** A line for each row, its cells between tabs, without headings. */
    std::string ToPlainText() const;

private:
    std::vector<std::string> m_vecHeading;
    std::vector<std::vector<std::string>> m_vecRow;
};

} // namespace Vrnt
