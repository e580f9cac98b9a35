#pragma once

namespace Vrnt {

/**
 * Parses the command line, runs the command, and turns what happened into the exit status.
 * @param _iCount, _ppArguments  as the process gets them, its own name first
 */
int Run(int _iCount, wchar_t** _ppArguments);

} // namespace Vrnt
