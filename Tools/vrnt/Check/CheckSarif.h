#pragma once

#include "Check/CheckFiles.h"
#include "Records/Json.h"

namespace Vrnt {

/** What was found, as a log of SARIF 2.1.0, which code scanning and editors read. Files that had trouble are notifications. */
Json ToSarif(const std::vector<CheckedFile>& _rvecFile);

} // namespace Vrnt
