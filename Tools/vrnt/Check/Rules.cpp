#include "Check/Rules.h"

#include <cstddef>

namespace Vrnt {

namespace {

constexpr RuleRow g_aRule[] = {
    {Rule::NotWellFormed, "not-well-formed", "The document is not well-formed XML: nothing of it is read."},
    {Rule::NotADocument, "not-a-document", "The file is neither XML nor encrypted with the key of its kind."},
    {Rule::WrongRoot, "wrong-root", "The root is not the one that the reader looks for: nothing is read."},
    {Rule::UnknownWord, "unknown-word", "A text is not one of the words that are known there."},
    {Rule::BadText, "bad-text", "A text is empty, or is not the number, version or key that is needed."},
    {Rule::Missing, "missing", "An attribute or a child element is missing."},
    {Rule::DroppedEntry, "dropped-entry", "The reader passes the entry over, or what it asks for cannot be done."},
    {Rule::UnknownName, "unknown-name", "No reader looks at an attribute or element of this name."},
    {Rule::StrayText, "stray-text", "No reader looks at a text that is in an element or between its children."},
    {Rule::Repeated, "repeated", "Only the first of several is used."},
    {Rule::Unread, "unread", "The reader does not look at the element here, because of another text."},
    {Rule::NotStored, "not-stored", "A store does not keep it."},
};

consteval bool IsInOrder()
{
    std::size_t uExpected = 0;
    for (const RuleRow& stRow : g_aRule) {
        if (static_cast<std::size_t>(stRow.enRule) != uExpected++) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder());

} // namespace

std::span<const RuleRow> Rules() noexcept
{
    return g_aRule;
}

const RuleRow& RowOf(Rule _enRule) noexcept
{
    return g_aRule[static_cast<std::size_t>(_enRule)];
}

} // namespace Vrnt
