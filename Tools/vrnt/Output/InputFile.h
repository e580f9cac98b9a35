#pragma once

#include "Records/Json.h"

#include <cstdint>
#include <string>

namespace Vrnt {

/** The bytes of a file that the command line names; "-" is standard input. @throws UsageError when it cannot be read */
std::string ReadInputFile(const std::string& _rsPath);

/**
 * The records of a JSON file, or of "data" in what the tool printed with --json.
 * @throws UsageError when the file cannot be read, or was printed after a failure
 * @throws JsonError when it is not JSON
 */
Json ReadInputRecords(const std::string& _rsPath);

/** The size of a file that the command line names. @throws UsageError when it cannot be opened for reading */
std::uint64_t ReadableSize(const std::string& _rsPath);

} // namespace Vrnt
