#pragma once

#include "Output/Table.h"
#include "ZkComn_ZkDbgSettings.h"

#include <array>
#include <string>

/** The settings by which processes of this machine write the trace log. */
namespace Vrnt {

/** A kind of session, which has separate settings. */
struct TraceSession
{
    const char* szName; // in JSON and tables
    bool bService;
};

inline constexpr std::array g_aTraceSession = {TraceSession{"interactive", false}, TraceSession{"service", true}};

/** The path of a session's settings below HKEY_LOCAL_MACHINE. */
std::wstring TraceKeyOf(const TraceSession& _rstSession);

/** The settings as the library reads them. */
ZkCommon::TraceSettings ReadTraceSettings(const TraceSession& _rstSession);

/** Why tracing is off although it may be turned on: "LogPrefix is not a REG_SZ"; empty when all can be read. */
std::string TraceFaultOf(const ZkCommon::TraceSettings& _rstSettings);

/** The file of the library's lines; without a folder when each program has its own. */
std::wstring TraceFileOf(const ZkCommon::TraceSettings& _rstSettings);

/** The settings of all sessions as they are now, as a person reads them. */
Table TraceSettingsToTable();

} // namespace Vrnt
