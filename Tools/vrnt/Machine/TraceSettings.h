#pragma once

#include "Output/Table.h"

#include <array>
#include <cstdint>
#include <string>

/** The settings by which processes write the trace log. */
namespace Vrnt {

/** A kind of session, which has settings of its own. */
struct TraceSession
{
    const char* szKey; // in JSON
    const wchar_t* pszSubKey;
};

inline constexpr std::array g_aTraceSession = {TraceSession{"interactive", L"InteractiveSession"},
                                               TraceSession{"service", L"ServiceSession"}};

/** A session's settings, with the defaults of what is absent. */
struct TraceSettings
{
    std::uint32_t ulEnable = 0;
    std::uint32_t ulLevel = 256;
    std::wstring tszFolder;
    std::wstring tszPrefix = L"vqx";
    std::wstring tszFile;
    std::wstring tszExtension = L"log";
    std::uint32_t ulRobust = 0;
    std::uint32_t ulDebugger = 0;
};

/** The path of a session's settings below HKEY_LOCAL_MACHINE. */
std::wstring TraceKeyOf(const TraceSession& _rstSession);

TraceSettings ReadTraceSettings(const TraceSession& _rstSession);

/** The settings of all sessions as they are now, as a person reads them. */
Table TraceSettingsToTable();

} // namespace Vrnt
