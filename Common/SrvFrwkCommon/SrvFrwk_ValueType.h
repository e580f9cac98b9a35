#pragma once

#include <cstdint>

namespace SrvFrwk {

/**
 * What a request is about: single bits. The comment names the container or record that `_pValueData` points to and,
 * behind the semicolon, the request record that `_pOptionData` points to; records stand in SrvFrwk_Records.h.
 */
namespace ValueType {

inline constexpr std::uint32_t g_ulServiceUnit = 0x1;             // query: std::vector<ServiceUnit>
inline constexpr std::uint32_t g_ulEnforcePolicy = 0x2;           // query, store: std::vector<PolicyController>
inline constexpr std::uint32_t g_ulEnforceData = 0x4;             // query: std::vector<DataController>
inline constexpr std::uint32_t g_ulInstallPuIds = 0x8;            // query: InstallPuIds
inline constexpr std::uint32_t g_ulCompetitorAction = 0x10;       // query: std::vector<CompetitorAction>; directory
inline constexpr std::uint32_t g_ulCompetitorDetection = 0x20;    // query: std::vector<CompetitorDetection>; directory
inline constexpr std::uint32_t g_ulAddOnComponent = 0x40;         // reserved
inline constexpr std::uint32_t g_ulThreatNameOrkap = 0x200;       // query: ThreatText
inline constexpr std::uint32_t g_ulThreatNameElmap = 0x400;       // query: ThreatText
inline constexpr std::uint32_t g_ulThreatDescription = 0x800;     // query: ThreatText
inline constexpr std::uint32_t g_ulThreatRecommendation = 0x1000; // query: ThreatText
inline constexpr std::uint32_t g_ulScannerTitle = 0x2000;         // query: ThreatText
inline constexpr std::uint32_t g_ulRuleSet = 0x4000;              // reserved
inline constexpr std::uint32_t g_ulKeyConfig = 0x8000;            // query: std::vector<DeployKey>; directory
inline constexpr std::uint32_t g_ulRegistryData = 0x10000;        // query: std::vector<RegistryData>; its request
inline constexpr std::uint32_t g_ulVersionInfo = 0x20000;         // query: std::vector<VersionInformation>; directory
inline constexpr std::uint32_t g_ulSpecificEnforcePolicy = 0x40000; // query: PolicyController
inline constexpr std::uint32_t g_ulCompatibilityCheck = 0x80000; // query: std::vector<CompatibilityPlatform>; directory
inline constexpr std::uint32_t g_ulPreUpdateList = 0x100000;     // store: PreUpdateList
inline constexpr std::uint32_t g_ulDeployAlias = 0x200000;       // query, store: DeployAliasConfig; path
inline constexpr std::uint32_t g_ulDeployComponent = 0x400000;   // query: DeployComponentConfig; path

} // namespace ValueType

/** Value sub-types of g_ulDeployComponent. */
namespace ComponentSection {

inline constexpr std::uint32_t g_ulInstall = 1;
inline constexpr std::uint32_t g_ulUninstall = 2;

} // namespace ComponentSection

/** Message types of SendMessage. */
namespace MessageType {

/** `_pMessageData` points to a std::wstring, the full path of the update description; no result record. */
inline constexpr std::uint32_t g_ulLocalUpdate = 1;

} // namespace MessageType

} // namespace SrvFrwk
