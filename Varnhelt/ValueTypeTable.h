#pragma once

#include "Files/DocumentTable.h"
#include "SrvFrwk_ValueType.h"

#include <cstdint>
#include <span>

class CFunctionXml;

namespace Varnhelt {

/** The arguments of a query or a store, as the interface operations receive them. */
struct Request
{
    std::uint32_t ulReserved = 0;
    std::uint32_t ulValueType = 0;
    std::uint32_t ulValueSubType = 0;
    void* pValueData = nullptr;
    std::uint32_t ulValueOption = 0;
    void* pOptionData = nullptr;
};

/** Reads or writes one document. */
using Handler = std::uint32_t (CFunctionXml::*)(const Request& _rstRequest);

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

/** The row of a value type; null for a number that is none. */
const ValueTypeRow* FindValueType(std::uint32_t _ulValueType) noexcept;

} // namespace Varnhelt
