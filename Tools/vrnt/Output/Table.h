#pragma once

#include <string>
#include <vector>

namespace Vrnt {

/** Rows of cells under headings, in UTF-8. */
class Table
{
public:
    Table() = default;
    explicit Table(std::vector<std::string> _vecHeading) : m_vecHeading(std::move(_vecHeading)) {}

    void Add(std::vector<std::string> _vecCell) { m_vecRow.push_back(std::move(_vecCell)); }
    bool IsEmpty() const { return m_vecRow.empty(); }
    const std::vector<std::string>& Heading() const { return m_vecHeading; }
    const std::vector<std::vector<std::string>>& Rows() const { return m_vecRow; }

    /**
     * Columns as wide as their widest cell; a heading of several words stands on as many lines as it needs to fit.
     * Columns of numbers are set flush right. Nothing at all where there are no headings.
     */
    std::string ToText() const;

private:
    std::vector<std::string> m_vecHeading;
    std::vector<std::vector<std::string>> m_vecRow;
};

} // namespace Vrnt
