#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>
#include <windows.h>

/**
 * The records that requests point to, field by field in the order in which they are read. Numbers that mean words
 * take their values from the enumeration of Frwk_DataTypes.h that the comment names, or from the comment. Texts are
 * UTF-16 and as the document has them; what is missing there is empty, 0 or false where nothing else is said.
 *
 * Records are plain values, equal when all their fields are. They belong to the caller, who may copy, move and destroy
 * them at any time; the library keeps no pointer to them after a call. Two calls at the same time must not share one.
 *
 * They hold standard strings and containers: host and module must be built with the same compiler and standard library
 * and must share one C run-time heap (mingw-w64: always; Visual C++: both with the DLL run time, /MD).
 */
namespace SrvFrwk {

// Requests

/** The directory of a document whose file name is fixed. The parser library is looked for there, too. */
struct XmlDirectoryConfig
{
    std::wstring tszReserved = {}; // leave empty
    std::wstring tszXmlDir = {};   // with or without a backslash at its end

    friend bool operator==(const XmlDirectoryConfig&, const XmlDirectoryConfig&) = default;
};

/** A document whose file name the caller chooses. */
struct XmlPathConfig
{
    XmlDirectoryConfig stXmlDirectoryConfig;
    std::wstring tszXmlFileName; // inside that directory

    friend bool operator==(const XmlPathConfig&, const XmlPathConfig&) = default;
};

// Service units

struct ServiceUnit
{
    std::uint32_t ulLayer = 0;       // LayerType
    std::uint32_t ulServiceType = 0; // ServiceType
    std::uint32_t ulModuleType = 0;  // ModuleType
    std::uint32_t ulStartupType = 0; // StartupType
    std::uint32_t ulLoadOption = 0;  // LoadOption; LoadDelayLoad when missing
    std::uint32_t ulOrderOfLoading = 0;
    std::uint32_t ulOrderOfUnloading = 0;
    BOOL bConcurrentUnloading = FALSE;
    std::uint32_t ulSharedType = 0;     // SharedType
    std::uint32_t ulControllerType = 0; // ControllerType
    std::uint32_t ulProviderType = 0;   // ProviderType
    std::wstring tszModuleName;         // file name
    std::wstring tszVersion;
    bool bAllowToLoadInSetupMode = false;

    friend bool operator==(const ServiceUnit&, const ServiceUnit&) = default;
};

// Enforcement policy

struct PolicyProvider
{
    std::uint32_t ulControllerType = 0; // ControllerType
    std::uint32_t ulProviderType = 0;   // ProviderType
    std::uint32_t ulPermission = 0;     // Permission
    std::uint32_t ulDeployState = 0;    // DeployState

    friend bool operator==(const PolicyProvider&, const PolicyProvider&) = default;
};

struct PolicyController
{
    std::uint32_t ulControllerType = 0; // ControllerType; of g_ulSpecificEnforcePolicy, set by the caller
    std::uint32_t ulPermission = 0;     // Permission; PermissionDeny for a controller that the policy does not have
    bool bAllowToLoadInSetupMode = false;
    std::vector<PolicyProvider> vecProvider; // in the order of the document

    friend bool operator==(const PolicyController&, const PolicyController&) = default;
};

// Enforcement data

struct DataProvider
{
    std::uint32_t ulControllerType = 0; // ControllerType
    std::uint32_t ulProviderType = 0;   // ProviderType
    std::uint32_t ulModuleType = 0;     // ModuleType
    std::uint32_t ulStartupType = 0;    // StartupType
    std::uint32_t ulOrderOfLoading = 0;
    std::uint32_t ulOrderOfUnloading = 0;
    std::uint32_t ulSharedType = 0;           // SharedType
    std::uint32_t ulLayer = 0;                // LayerType
    std::uint32_t ulServiceType = 0;          // ServiceType
    std::uint32_t ulDependencyController = 0; // ControllerType; ControllerNone: it depends on nothing
    std::uint32_t ulDependencyProvider = 0;   // ProviderType of that controller
    bool bAdditionalCallAfterInstall = false;
    bool bAdditionalCallAfterUninstall = false;
    std::wstring tszModuleName; // file name
    std::wstring tszVersion;
    std::uint32_t ulInitializeOption = 0; // DelayInitialize

    friend bool operator==(const DataProvider&, const DataProvider&) = default;
};

struct DataController
{
    std::uint32_t ulControllerType = 0; // ControllerType
    std::uint32_t ulModuleType = 0;     // ModuleType
    std::uint32_t ulStartupType = 0;    // StartupType
    std::uint32_t ulOrderOfLoading = 0;
    BOOL bConcurrentLoading = FALSE;
    std::uint32_t ulOrderOfUnloading = 0;
    BOOL bConcurrentUnloading = FALSE;
    std::uint32_t ulUpdateComponentNumber = 0; // of the update service
    std::wstring tszModuleName;                // file name
    std::wstring tszVersion;
    std::uint32_t ulInitializeOption = 0; // DelayInitialize
    std::vector<DataProvider> vecProvider;

    friend bool operator==(const DataController&, const DataController&) = default;
};

// Install component numbers and version information

/** The update service's numbers of what this system has, in the document's order; equal ones are all there. */
struct InstallPuIds
{
    std::vector<std::uint32_t> vecPattern;
    std::vector<std::uint32_t> vecEngine;
    std::vector<std::uint32_t> vecProduct;
    std::vector<std::uint32_t> vecReserved; // emptied, never filled
    std::uint32_t ulReserved = 0;           // set to 0

    friend bool operator==(const InstallPuIds&, const InstallPuIds&) = default;
};

struct VersionInformation
{
    std::int32_t iComponentType = 0; // 1 Framework, 2 Resource, 3 Enforce, 4 Function, 5 Engine, 6 Pattern, 0 other
    std::uint32_t ulPuId = 0;
    std::wstring tszVersion;
    bool bDirectDeploy = false;
    bool bFollowProductVersion = false;
    std::list<std::wstring> lstMigrateFile;
    std::list<std::wstring> lstUpdateHashFile;

    friend bool operator==(const VersionInformation&, const VersionInformation&) = default;
};

// Competitor products

/** Its texts are the installer's to interpret. */
struct CompetitorProduct
{
    std::wstring tszId;
    std::wstring tszCategory;
    std::wstring tszVendor;
    std::wstring tszProcessor;
    std::wstring tszRegistered;

    friend bool operator==(const CompetitorProduct&, const CompetitorProduct&) = default;
};

struct CompetitorActionEntry
{
    std::wstring tszOn;
    std::wstring tszName;
    std::wstring tszVersion;
    std::wstring tszVersionCompare;

    friend bool operator==(const CompetitorActionEntry&, const CompetitorActionEntry&) = default;
};

struct CompetitorAction : CompetitorProduct
{
    std::list<CompetitorActionEntry> lstAction;

    friend bool operator==(const CompetitorAction&, const CompetitorAction&) = default;
};

struct CompetitorIdentification
{
    bool bSelfReboot = true;
    bool bSpecialIdentify = false;
    std::wstring tszPathBase;
    bool bPathWowNode = false;
    std::wstring tszPath;
    std::wstring tszKeyName;
    std::wstring tszKeyType;
    std::wstring tszKeyCompare;
    std::wstring tszKeyValue;
    std::wstring tszUninstallBase;
    bool bUninstallWowNode = false;
    std::wstring tszUninstallString;

    friend bool operator==(const CompetitorIdentification&, const CompetitorIdentification&) = default;
};

struct CompetitorDetection : CompetitorProduct
{
    std::list<CompetitorIdentification> lstIdentification;
    std::wstring tszManufacturer;
    std::wstring tszUrl;
    std::wstring tszInformation;

    friend bool operator==(const CompetitorDetection&, const CompetitorDetection&) = default;
};

// Compatibility check and pre-update list

struct CompatibilityComponent
{
    std::wstring tszClass;
    std::wstring tszType;
    std::wstring tszPlat;
    std::wstring tszLang;
    std::wstring tszOem;
    std::wstring tszRegion;
    std::wstring tszVer; // "0" when it is empty

    friend bool operator==(const CompatibilityComponent&, const CompatibilityComponent&) = default;
};

struct stCCLocalizedMsg
{
    std::wstring tszLocale; // "EN-US" when it is missing
    std::wstring tszMessage;

    friend bool operator==(const stCCLocalizedMsg&, const stCCLocalizedMsg&) = default;
};

struct CompatibilityProduct
{
    std::wstring tszSkuName;
    std::wstring tszQMRMajorVersion;
    std::wstring tszQMRMinorVersion;
    std::wstring tszQMRReVersion;
    std::wstring tszQMRBuild;
    bool LeftHandMost = false;
    std::uint32_t emCompatibilityCheckAction = 0;    // CompatibilityCheckAction
    std::uint32_t emCompatibility2rdCheckAction = 0; // CompatibilityBlock for CompatibilityPreInstallUpdate, else 0
    bool bShowMessage = false;
    std::wstring tszOEMFlag;
    std::wstring tszLanguage;
    std::vector<CompatibilityComponent> vecComponent; // for CompatibilityPreInstallUpdate only: those to be fetched
    std::vector<stCCLocalizedMsg> vecMessage;         // where bShowMessage is set only

    friend bool operator==(const CompatibilityProduct&, const CompatibilityProduct&) = default;
};

struct CompatibilityPlatform
{
    std::wstring tszPlatformMajorVersion;
    std::wstring tszPlatformMinorVersion;
    std::wstring tszPlatformReVersion;
    std::wstring tszPlatformBuild;
    bool bPlatformLeftHandMost = false;
    std::wstring tszServicePack;
    std::wstring tszLanguage;
    std::vector<CompatibilityProduct> vecProduct;

    friend bool operator==(const CompatibilityPlatform&, const CompatibilityPlatform&) = default;
};

struct PreUpdateList
{
    std::wstring tszDocument; // full path of the update-request document
    std::vector<CompatibilityComponent> vecComponent;

    friend bool operator==(const PreUpdateList&, const PreUpdateList&) = default;
};

// Deployment and registry

struct DeployAlias
{
    std::wstring strId;
    std::wstring strProperty; // stored only when it is not empty
    std::wstring strValue;

    friend bool operator==(const DeployAlias&, const DeployAlias&) = default;
};
using DeployAliasConfig = std::list<DeployAlias>;

struct DeployFile
{
    std::wstring strId;
    std::int32_t eAction = 0; // 1 deploy, 2 remove, 0 neither
    std::wstring strSourceDirectory;
    std::wstring strSourceName;
    std::wstring strName;
    bool bActionAfterRebootIfFailed = false;
    bool bEmptyEntry = false; // there is nothing to deploy or to remove
    bool bOverwrite = true;
    bool bCompareVersion = false;

    friend bool operator==(const DeployFile&, const DeployFile&) = default;
};

struct DeployKey
{
    HKEY hRoot = nullptr; // predefined, not to be closed; null when no root was named so far
    std::wstring strKey;
    std::wstring strName;
    std::uint32_t ulType = 0; // REG_SZ, REG_BINARY, REG_DWORD, or 0
    std::wstring strData;
    std::int32_t eAction = 0; // 1 append, 2 create key, 3 remove, 4 remove key, 5 write
    std::int32_t eOn = 0;     // 1 install, 2 uninstall, 3 both
    bool bOverWrite = false;
    bool bAllAccess = false;
    std::int32_t eAccessMode = 0; // 0 default, 1 the 32-bit view, 2 the 64-bit view

    friend bool operator==(const DeployKey&, const DeployKey&) = default;
};

struct DeployShortcut
{
    std::wstring strId;
    std::int32_t eAction = 0; // 1 deploy, 2 remove, 0 neither
    std::wstring strName;
    std::wstring strTarget;
    std::wstring strArguments;
    std::wstring strIcon;
    std::wstring strDescription;
    std::wstring strRootProductDirectory;

    friend bool operator==(const DeployShortcut&, const DeployShortcut&) = default;
};

struct DeployComponent
{
    std::wstring strId;
    std::wstring strDirectory;
    std::list<DeployFile> lstFile;
    std::vector<DeployKey> vecKey;
    std::list<DeployShortcut> lstShortcut;

    friend bool operator==(const DeployComponent&, const DeployComponent&) = default;
};
using DeployComponentConfig = std::list<DeployComponent>;

/** The request of ValueType::g_ulRegistryData. */
struct RegistryDataRequest
{
    std::vector<std::wstring> vecLabel; // "*" selects every component
    std::wstring tszXmlFile;            // full path

    friend bool operator==(const RegistryDataRequest&, const RegistryDataRequest&) = default;
};

struct RegistryData
{
    HKEY hRoot = nullptr; // always HKEY_LOCAL_MACHINE, not to be closed
    std::wstring tszSubKey;
    bool bAllAccess = false;
    std::wstring tszName;
    std::uint32_t ulType = 0; // REG_SZ, REG_BINARY, REG_DWORD, REG_QWORD, or 0
    std::wstring tszValue;
    std::uint64_t ullValue = 0; // 0 unless the whole text is a number

    friend bool operator==(const RegistryData&, const RegistryData&) = default;
};

// Threats

/** Request and answer: the caller sets ulIdentifier; the texts stay as they were when the look-up fails. */
struct ThreatText
{
    std::uint32_t ulIdentifier = 0;
    std::wstring tszText;
    std::wstring tszSecondText; // scanner titles only: the description

    friend bool operator==(const ThreatText&, const ThreatText&) = default;
};

} // namespace SrvFrwk
