#pragma once

#include <cstdint>

namespace SrvFrwk {

/**
 * What a request is about: single bits, one in each request. The comment names the container or record that
 * `_pValueData` points to and, after the semicolon, the request record that `_pOptionData` points to: "directory" is
 * an XmlDirectoryConfig, "path" an XmlPathConfig; records are in SrvFrwk_Records.h. Function objects refuse those that
 * are marked "direct" with Result::g_ulRefused; reserved ones give Result::g_ulInvalidArgument.
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
inline constexpr std::uint32_t g_ulRegistryData = 0x10000; // query: std::vector<RegistryData>; RegistryDataRequest
inline constexpr std::uint32_t g_ulVersionInfo = 0x20000;  // direct query: std::vector<VersionInformation>; directory
inline constexpr std::uint32_t g_ulSpecificEnforcePolicy = 0x40000; // query: PolicyController
inline constexpr std::uint32_t g_ulCompatibilityCheck = 0x80000; // query: std::vector<CompatibilityPlatform>; directory
inline constexpr std::uint32_t g_ulPreUpdateList = 0x100000;     // store: PreUpdateList
inline constexpr std::uint32_t g_ulDeployAlias = 0x200000;       // direct query, store: DeployAliasConfig; path
inline constexpr std::uint32_t g_ulDeployComponent = 0x400000;   // direct query: DeployComponentConfig; path

} // namespace ValueType

/** Value sub-types of g_ulDeployComponent: the section that is asked for. Its value option is the run mode, 1 or 2. */
namespace ComponentSection {

inline constexpr std::uint32_t g_ulInstall = 1;
inline constexpr std::uint32_t g_ulUninstall = 2;

} // namespace ComponentSection

/** Message types of SendMessage. */
namespace MessageType {

/**
 * Carries out a local update. `_pMessageData` points to a std::wstring, the full path of the description, which is only
 * read; there is no result record. The description is deleted unless it asks to stay. Result::g_ulPartialSuccess when
 * it is missing or cannot be deleted, and nothing was applied then; what fails of single items changes no result.
 */
inline constexpr std::uint32_t g_ulLocalUpdate = 1;

} // namespace MessageType

} // namespace SrvFrwk
