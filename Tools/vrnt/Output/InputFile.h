#pragma once

#include <cstdint>
#include <string>

namespace Vrnt {

/** The bytes of a file that the command line names. @throws UsageError when it cannot be read */
std::string ReadInputFile(const std::string& _rsPath);

/** The size of a file that the command line names. @throws UsageError when it cannot be opened for reading */
std::uint64_t ReadableSize(const std::string& _rsPath);

} // namespace Vrnt
