#pragma once

#include <cstdint>
#include <span>

namespace Vrnt {

/** What a finding is about. */
enum class Rule : std::uint8_t
{
    NotWellFormed,
    NotADocument,
    WrongRoot,
    UnknownWord,
    BadText,
    Missing,
    DroppedEntry,
    UnknownName,
    StrayText,
    Repeated,
    Unread,
    NotStored,
};

/** A rule as users know it. */
struct RuleRow
{
    Rule enRule;
    const char* szId;
    const char* szMeaning; // one sentence
};

/** Every rule, in the order of the enumeration. */
std::span<const RuleRow> Rules() noexcept;

const RuleRow& RowOf(Rule _enRule) noexcept;

} // namespace Vrnt
