#pragma once

#include <string>

namespace Vrnt {

/** The bytes of a file that the command line names. @throws UsageError when it cannot be read */
std::string ReadInputFile(const std::string& _rsPath);

/** @throws UsageError when the file that the command line names cannot be opened for reading */
void CheckReadable(const std::string& _rsPath);

} // namespace Vrnt
