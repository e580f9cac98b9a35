#pragma once

#include "Frwk_DataTypes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/**
 * The words in which documents write the framework's enumerations, a table for each, and the way from one to the other.
 * Nothing here fails, logs or allocates; any thread may call.
 */
namespace Frwk {

struct Word
{
    std::wstring_view svText;
    std::uint32_t ulValue;
};

namespace Words {

inline constexpr Word g_aServiceType[] = {
    {L"eNone", ServiceNone},
    {L"eComCommandHandler", ServiceComCommandHandler},
    {L"eHttpCommandHandler", ServiceHttpCommandHandler},
    {L"eComDataHandler", ServiceComDataHandler},
    {L"eEventManager", ServiceEventManager},
    {L"eCollectionManager", ServiceCollectionManager},
    {L"eEnforceHandler", ServiceEnforceHandler},
    {L"eUpdateManager", ServiceUpdateManager},
    {L"eQuarantineManager", ServiceQuarantineManager},
    {L"eTaskScheduler", ServiceTaskScheduler},
    {L"eUIService", ServiceUIService},
    {L"eEventLog", ServiceEventLog},
    {L"eResourceManager", ServiceResourceManager},
};

inline constexpr Word g_aControllerType[] = {
    {L"eNone", ControllerNone},
    {L"eAntiVirus", ControllerAntiVirus},
    {L"eAntiSpyware", ControllerAntiSpyware},
    {L"eFirewall", ControllerFirewall},
    {L"eContentsProtection", ControllerContentsProtection},
    {L"eMiscellaneous", ControllerMiscellaneous},
    {L"eCommon", ControllerCommon},
};

inline constexpr Word g_aProviderType[] = {
    {L"eNone", ProviderNone},
    {L"eRealTimeScan", ProviderRealTimeScan},
    {L"eManualScan", ProviderManualScan},
    {L"eBehavior", ProviderBehavior},
    {L"eAcsAppFilter", ProviderAcsAppFilter},
    {L"eStreamScan", ProviderStreamScan},
    {L"eNeighborList", ProviderNeighborList},
    {L"eLocationChange", ProviderLocationChange},
    {L"ePop3Scan", ProviderPop3Scan},
    {L"eSmtpScan", ProviderSmtpScan},
    {L"eWebMailScan", ProviderWebMailScan},
    {L"eAntiSpam", ProviderAntiSpam},
    {L"eUrlFilter", ProviderUrlFilter},
    {L"ePrivacyData", ProviderPrivacyData},
    {L"eAntiPhish", ProviderAntiPhish},
    {L"eWardlight", ProviderWardlight},
    {L"eVulnerability", ProviderVulnerability},
    {L"eOutbreakWarning", ProviderOutbreakWarning},
    {L"eHomeNetwork", ProviderHomeNetwork},
    {L"ePulseUpdate", ProviderPulseUpdate},
    {L"eEventLog", ProviderEventLog},
    {L"eQuarantine", ProviderQuarantine},
    {L"eTaskSchedule", ProviderTaskSchedule},
    {L"eCollection", ProviderCollection},
    {L"eResourceManager", ProviderResourceManager},
    {L"eMalwareScan", ProviderMalwareScan},
    {L"eFeedbackEng", ProviderFeedbackEng},
};

inline constexpr Word g_aPermission[] = {
    {L"eDeny", PermissionDeny},
    {L"eAllow", PermissionAllow},
    {L"ePartial", PermissionPartial},
};

inline constexpr Word g_aDeployState[] = {
    {L"eNoDeploy", DeployNoDeploy},
    {L"eInstalled", DeployInstalled},
    {L"ePartialInstalled", DeployPartialInstalled},
    {L"eWaitDownload", DeployWaitDownload},
    {L"eWaitInstalled", DeployWaitInstalled},
};

inline constexpr Word g_aLayerType[] = {
    {L"eNoneLayer", LayerNone},       {L"eControlLayer", LayerControl}, {L"eInterfaceLayer", LayerInterface},
    {L"eServiceLayer", LayerService}, {L"eEnforceLayer", LayerEnforce},
};

inline constexpr Word g_aModuleType[] = {
    {L"eUnkown", ModuleUnknown}, // spelt so in the documents
    {L"eExecutable", ModuleExecutable},
    {L"eDynamicLinkLibrary", ModuleDynamicLinkLibrary},
    {L"eInlineCode", ModuleInlineCode},
};

inline constexpr Word g_aStartupType[] = {
    {L"eDisable", StartupDisable},
    {L"eAutomatic", StartupAutomatic},
    {L"eDemand", StartupDemand},
};

inline constexpr Word g_aLoadOption[] = {
    {L"ePreLoad", LoadPreLoad},
    {L"eDelayLoad", LoadDelayLoad},
};

inline constexpr Word g_aDelayInitialize[] = {
    {L"eNormalInit", InitializeNormal},
    {L"ePartialInit", InitializePartial},
    {L"eDelayInit", InitializeDelay},
};

inline constexpr Word g_aSharedType[] = {
    {L"eIndependent", SharedIndependent},
    {L"eSharedService", SharedService},
    {L"eSharedProvider", SharedProvider},
    {L"eDependedOnController", SharedDependedOnController},
};

inline constexpr Word g_aCompatibilityCheckAction[] = {
    {L"Pass", CompatibilityPass},
    {L"Block", CompatibilityBlock},
    {L"PreInstallUpdate", CompatibilityPreInstallUpdate},
};

inline constexpr Word g_aBoolean[] = {
    {L"false", 0}, {L"FALSE", 0}, {L"0", 0}, {L"true", 1}, {L"TRUE", 1}, {L"1", 1},
};

} // namespace Words

/** The word of a value, the first where it has several; empty when none has it. `ToText(Words::g_aPermission, 1)` */
constexpr std::wstring_view ToText(std::span<const Word> _aWord, std::uint32_t _ulValue) noexcept
{
    for (const Word& stWord : _aWord) {
        if (stWord.ulValue == _ulValue) {
            return stWord.svText;
        }
    }
    return {};
}

/** The value of a word, which is spelt as in documents, case included; std::nullopt when there is no such word. */
constexpr std::optional<std::uint32_t> ToValue(std::span<const Word> _aWord, std::wstring_view _svText) noexcept
{
    for (const Word& stWord : _aWord) {
        if (stWord.svText == _svText) {
            return stWord.ulValue;
        }
    }
    return std::nullopt;
}

} // namespace Frwk
