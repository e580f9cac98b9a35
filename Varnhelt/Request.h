#pragma once

#include "ZkComn_XmlParser.h"

#include <cstdint>

/** What the road of a request hands to the one reader or writer of its document. */
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

/** What readers and writers work with. It serves one request on one thread. */
struct Worker
{
    ZkCommon::Storage::XmlParser cParser;
    ZkCommon::Storage::XmlElement cElement; // of the document that the parser holds
};

/**
 * Reads one document into the caller's record, or stores the record in it. Failures are logged; nothing is thrown.
 * @return a result code
 */
using Handler = std::uint32_t (*)(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt
