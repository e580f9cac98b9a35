#pragma once

#include <cstdint>

/**
 * The framework's enumerations, as records and documents use them: 32 bits each. Many are bit values, so that callers
 * can form sets; a record holds a single value. A word that no reader knows becomes 0, an unknown load option
 * LoadDelayLoad: what is not understood is denied, not deployed and not started.
 */
namespace Frwk {

enum ServiceType : std::uint32_t
{
    ServiceNone = 0,
    ServiceComCommandHandler = 0x1,
    ServiceHttpCommandHandler = 0x2,
    ServiceComDataHandler = 0x4,
    ServiceEventManager = 0x8,
    ServiceCollectionManager = 0x20,
    ServiceEnforceHandler = 0x40,
    ServiceUpdateManager = 0x80,
    ServiceQuarantineManager = 0x100,
    ServiceTaskScheduler = 0x200,
    ServiceUIService = 0x400,
    ServiceEventLog = 0x800,
    ServiceResourceManager = 0x1000,
};

enum ControllerType : std::uint32_t
{
    ControllerNone = 0,
    ControllerAntiVirus = 0x1,
    ControllerAntiSpyware = 0x2,
    ControllerFirewall = 0x4,
    ControllerContentsProtection = 0x8,
    ControllerMiscellaneous = 0x10,
    ControllerCommon = 0x10000,
};

enum ProviderType : std::uint32_t
{
    ProviderNone = 0,
    ProviderRealTimeScan = 0x1,
    ProviderManualScan = 0x2,
    ProviderBehavior = 0x4,
    ProviderAcsAppFilter = 0x8,
    ProviderStreamScan = 0x10,
    ProviderNeighborList = 0x20,
    ProviderLocationChange = 0x40,
    ProviderPop3Scan = 0x80,
    ProviderSmtpScan = 0x100,
    ProviderWebMailScan = 0x200,
    ProviderAntiSpam = 0x400,
    ProviderUrlFilter = 0x800,
    ProviderPrivacyData = 0x1000,
    ProviderAntiPhish = 0x2000,
    ProviderWardlight = 0x4000,
    ProviderVulnerability = 0x8000,
    ProviderOutbreakWarning = 0x10000,
    ProviderHomeNetwork = 0x20000,
    ProviderPulseUpdate = 0x40000,
    ProviderEventLog = 0x80000,
    ProviderQuarantine = 0x100000,
    ProviderTaskSchedule = 0x200000,
    ProviderCollection = 0x400000,
    ProviderResourceManager = 0x1000000,
    ProviderMalwareScan = 0x2000000, // these two joined later and took the bits above
    ProviderFeedbackEng = 0x4000000,
};

enum Permission : std::uint32_t
{
    PermissionDeny = 0,
    PermissionAllow = 1,
    PermissionPartial = 2,
};

enum DeployState : std::uint32_t
{
    DeployNoDeploy = 0,
    DeployInstalled = 1,
    DeployPartialInstalled = 2,
    DeployWaitDownload = 3,
    DeployWaitInstalled = 4,
};

enum LayerType : std::uint32_t
{
    LayerNone = 0,
    LayerControl = 0x1,
    LayerInterface = 0x2,
    LayerService = 0x4,
    LayerEnforce = 0x8,
};

enum ModuleType : std::uint32_t
{
    ModuleUnknown = 0,
    ModuleExecutable = 1,
    ModuleDynamicLinkLibrary = 2,
    ModuleInlineCode = 3,
};

enum StartupType : std::uint32_t
{
    StartupDisable = 0,
    StartupAutomatic = 1,
    StartupDemand = 2,
};

enum LoadOption : std::uint32_t
{
    LoadPreLoad = 0,
    LoadDelayLoad = 1,
};

enum DelayInitialize : std::uint32_t
{
    InitializeNormal = 0,
    InitializePartial = 1,
    InitializeDelay = 2,
};

enum SharedType : std::uint32_t
{
    SharedIndependent = 0,
    SharedService = 1,
    SharedProvider = 2,
    SharedDependedOnController = 3,
};

enum CompatibilityCheckAction : std::uint32_t
{
    CompatibilityPass = 0,
    CompatibilityBlock = 1,
    CompatibilityPreInstallUpdate = 2,
};

} // namespace Frwk
