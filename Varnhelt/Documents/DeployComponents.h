#pragma once

#include "Descriptions/Description.h"
#include "Documents/KeyConfig.h"
#include "Request.h"
#include "SrvFrwk_Records.h"
#include "ZkComn_Platform.h"

#include <cstdint>

/** What a deployment installs and uninstalls: the files, registry values and shortcuts of each component. */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aDeployAction[] = {{L"deploy", 1}, {L"remove", 2}};
inline constexpr Frwk::Word g_aExecute[] = {{L"setup", 1}, {L"changelang", 2}};
static_assert(Frwk::IsDistinct(g_aDeployAction) && Frwk::IsDistinct(g_aExecute));
inline constexpr Frwk::WordTable g_stDeployAction{g_aDeployAction, {}};
/** The run mode that a component is for; one with another word is for all. */
inline constexpr Frwk::WordTable g_stExecute{g_aExecute, {}};
// Two tables of the same words, by what another text means.
inline constexpr Frwk::WordTable g_stYesElseNo{g_aYesNo, {.ulUnknownText = 0}};
inline constexpr Frwk::WordTable g_stNoElseYes{g_aYesNo, {.ulUnknownText = 1}};

// The sections of the document, and what decides whether a component of theirs is wanted.
inline constexpr std::wstring_view g_svInstall = L"Install";
inline constexpr std::wstring_view g_svUninstall = L"Uninstall";
inline constexpr std::wstring_view g_svExecute = L"Execute";
inline constexpr std::wstring_view g_svPlatform = L"Platform";
inline constexpr std::wstring_view g_svProcess = L"Process";
/** The platform that is every platform. */
inline constexpr std::wstring_view g_svAllPlatforms = L"all";
/** The processor that this module is not built for. */
inline constexpr std::wstring_view g_svOtherProcessor = L"x86";

constexpr bool IsForThisProcessor(std::wstring_view _svProcess)
{
    return _svProcess != g_svOtherProcessor;
}

/** A system's name is only looked up: which system it is does not matter. */
inline bool IsPlatform(std::wstring_view _svPlatform)
{
    return _svPlatform.empty() || _svPlatform == g_svAllPlatforms || ZkCommon::Platform::OsTypeOf(_svPlatform);
}

/** Where a file or shortcut comes from and what it is does not matter to its removal. */
template <class TRecord>
constexpr Strange IfDeployed(const TRecord& _rstRecord)
{
    return _rstRecord.eAction == 1 ? Strange::Default : Strange::Optional;
}

inline constexpr auto g_stDeployFile = Describe<SrvFrwk::DeployFile>(
    L"File", Attribute(L"Id", &SrvFrwk::DeployFile::strId, Text()).Key("id"),
    Attribute(L"Action", &SrvFrwk::DeployFile::eAction, Words(g_stDeployAction))
        .Else("it is neither deployed nor removed")
        .Key("action"),
    Attribute(L"SourceDirectory", &SrvFrwk::DeployFile::strSourceDirectory, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployFile>)
        .Key("sourceDirectory"),
    Attribute(L"SourceName", &SrvFrwk::DeployFile::strSourceName, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployFile>)
        .Key("sourceName"),
    Attribute(L"Name", &SrvFrwk::DeployFile::strName, Text()).Key("name"),
    Attribute(L"ActionAfterRebootIfFailed", &SrvFrwk::DeployFile::bActionAfterRebootIfFailed, Words(g_stYesElseNo))
        .Key("actionAfterRebootIfFailed"),
    Derived(L"", &SrvFrwk::DeployFile::bEmptyEntry, Boolean()).Key("emptyEntry"),
    Attribute(L"Overwrite", &SrvFrwk::DeployFile::bOverwrite, Words(g_stNoElseYes))
        .OnStrange(IfDeployed<SrvFrwk::DeployFile>)
        .Key("overwrite"),
    Attribute(L"CompareVersion", &SrvFrwk::DeployFile::bCompareVersion, Words(g_stYesElseNo))
        .OnStrange(IfDeployed<SrvFrwk::DeployFile>)
        .Key("compareVersion"));

inline constexpr auto g_stDeployShortcut = Describe<SrvFrwk::DeployShortcut>(
    L"Shortcut", Attribute(L"Id", &SrvFrwk::DeployShortcut::strId, Text()).Key("id"),
    Attribute(L"Action", &SrvFrwk::DeployShortcut::eAction, Words(g_stDeployAction))
        .Else("it is neither deployed nor removed")
        .Key("action"),
    Attribute(L"Name", &SrvFrwk::DeployShortcut::strName, FilledText()).Required().Key("name"),
    Attribute(L"Target", &SrvFrwk::DeployShortcut::strTarget, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployShortcut>)
        .Key("target"),
    Attribute(L"Arguments", &SrvFrwk::DeployShortcut::strArguments, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployShortcut>)
        .Key("arguments"),
    Attribute(L"Icon", &SrvFrwk::DeployShortcut::strIcon, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployShortcut>)
        .Key("icon"),
    Attribute(L"Description", &SrvFrwk::DeployShortcut::strDescription, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployShortcut>)
        .Key("description"),
    Attribute(L"RootProductDirectory", &SrvFrwk::DeployShortcut::strRootProductDirectory, Text())
        .OnStrange(IfDeployed<SrvFrwk::DeployShortcut>)
        .Key("rootProductDirectory"));

/** The registry values lie a level deeper than a description reaches: a KeyReader reads them. */
inline constexpr auto g_stDeployComponent = Describe<SrvFrwk::DeployComponent>(
    L"Component", Attribute(L"Id", &SrvFrwk::DeployComponent::strId, Text()).Key("id"),
    Attribute(L"Directory", &SrvFrwk::DeployComponent::strDirectory, Text()).Key("directory"),
    Children(L"", &SrvFrwk::DeployComponent::lstFile, g_stDeployFile).Key("files"),
    Children(g_svRegistry, &SrvFrwk::DeployComponent::vecKey, g_stDeployKey).Key("keys"),
    Children(L"", &SrvFrwk::DeployComponent::lstShortcut, g_stDeployShortcut).Key("shortcuts"));

/**
 * Reads the components of one section (the sub-type) that are for a run mode (the option) and for systems such as this,
 * from the file of the request's path, into a DeployComponentConfig; contract as Handler.
 */
std::uint32_t QueryValueAsDeployComponentConfig(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
