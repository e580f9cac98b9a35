#pragma once

#include <string>
#include <vector>

namespace Vrnt {

/**
 * Parses the command line, runs the command, and turns what happened into the exit status.
 * @param _iCount, _ppArguments  as the process gets them, its own name first
 */
int Run(int _iCount, wchar_t** _ppArguments);

/** The same for arguments in UTF-8, without the name of the process. */
int Run(std::vector<std::string> _vecArgument);

} // namespace Vrnt
