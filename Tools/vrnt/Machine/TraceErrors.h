#pragma once

#include "Machine/TraceFile.h"

#include <vector>

namespace Vrnt {

/**
 * The last errors that the library wrote into the trace files of the present settings, the newest last. Only the ends of
 * the files are read. Empty where there is no such file.
 */
std::vector<TraceFileLine> LastTraceErrors();

} // namespace Vrnt
