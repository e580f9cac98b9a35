#pragma once

#include "Diff/DiffRecord.h"
#include "Records/Json.h"

namespace Vrnt {

/** The data of a report, as `vrnt report --json` writes it, without the time. @throws UsageError when it is not one */
DiffRecord RecordsOfReport(const Json& _rjsReport, const std::string& _rsName);

} // namespace Vrnt
