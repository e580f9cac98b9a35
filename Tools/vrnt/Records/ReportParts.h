#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/** The keys of a report's object under which records are, or what was found: of the rest each is one text. */
namespace Vrnt::ReportPart {

inline constexpr const char* g_szVersions = "versions";
inline constexpr const char* g_szDocuments = "documents";
inline constexpr const char* g_szServiceUnits = "service-units";
inline constexpr const char* g_szPolicy = "policy";
inline constexpr const char* g_szEnforceData = "enforce-data";
inline constexpr const char* g_szPuIds = "pu-ids";
inline constexpr const char* g_szFailures = "failures";
inline constexpr const char* g_szFindings = "findings";
inline constexpr const char* g_szTraceErrors = "traceErrors";

constexpr bool IsPart(std::string_view _svKey) noexcept
{
    constexpr std::array<std::string_view, 9> aPart = {g_szVersions, g_szDocuments,   g_szServiceUnits,
                                                       g_szPolicy,   g_szEnforceData, g_szPuIds,
                                                       g_szFailures, g_szFindings,    g_szTraceErrors};
    return std::ranges::find(aPart, _svKey) != aPart.end();
}

} // namespace Vrnt::ReportPart
