#pragma once

#include "Files/DocumentTable.h"
#include "Request.h"

#include <cstdint>
#include <span>

namespace Varnhelt {

/** One value type: which document it reaches, who answers, and whether function objects let it through. */
struct ValueTypeRow
{
    std::uint32_t ulValueType;
    DocumentId enDocument;
    Handler pfnQuery;           // null: not to be queried
    Handler pfnStore;           // null: not to be stored
    bool bQueryThroughFunction; // function objects let the query through
    bool bStoreThroughFunction; // function objects let the store through
};

/** Every value type, in the order of their numbers. */
std::span<const ValueTypeRow> ValueTypes() noexcept;

/** The row of a value type; null for a number that is not one. */
const ValueTypeRow* FindValueType(std::uint32_t _ulValueType) noexcept;

} // namespace Varnhelt
