#pragma once

#include "Records/Json.h"
#include "Report/ReportPage.h"

namespace Vrnt {

/** The installed configuration as one object; the records under the names of their documents, as queries print them. */
Json ReportJson(const ReportData& _rstData);

} // namespace Vrnt
