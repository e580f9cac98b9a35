#pragma once

#include "Records/Json.h"

#include <cstdint>
#include <string>

namespace Vrnt {

/** The bytes of a file that the command line names; "-" is standard input. @throws UsageError when it cannot be read */
std::string ReadInputFile(const std::string& _rsPath);

/**
 * The records of an input, which is the records themselves or what the tool printed with --json.
 * @param _rsName  the input as messages call it
 * @throws UsageError when it was printed after a failure
 */
Json RecordsIn(Json _jsInput, const std::string& _rsName);

/** The size of a file that the command line names. @throws UsageError when it cannot be opened for reading */
std::uint64_t ReadableSize(const std::string& _rsPath);

} // namespace Vrnt
