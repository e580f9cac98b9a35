#pragma once

#include "ZkComn_XmlParserExpat.h"

#include <cstddef>

/** Counts the memory that this program takes from the heap: by new, and through g_stCounted. */
namespace Bench {

extern const ZkCommon::Storage::XmlMemory g_stCounted;

/**
 * From here on until PeakBytes a block counts for no more than _uDocument bytes: the parser library rounds its buffer up to
 * a power of two, and what is past the document there is never touched.
 */
void StartCounting(std::size_t _uDocument);
/** The most that was taken at one time since. */
std::size_t PeakBytes();

} // namespace Bench
