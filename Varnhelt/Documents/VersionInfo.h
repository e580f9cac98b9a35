#pragma once

#include "Descriptions/Description.h"
#include "Descriptions/YesNo.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** The versions of the framework's components, "CmpVerIf.xml". */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aVersionComponent[] = {
    {L"Framework", 1}, {L"Resource", 2}, {L"Enforce", 3}, {L"Function", 4}, {L"Engine", 5}, {L"Pattern", 6},
};
inline constexpr Frwk::Word g_aDirectDeploy[] = {{L"enable", 1}, {L"disable", 0}};
static_assert(Frwk::IsDistinct(g_aVersionComponent));
inline constexpr Frwk::WordTable g_stVersionComponent{g_aVersionComponent, {}};
inline constexpr Frwk::WordTable g_stDirectDeploy{g_aDirectDeploy, {}};
inline constexpr Frwk::WordTable g_stFollowProductVersion{g_aYesNo, {}};

inline constexpr auto g_stVersionInformation = Describe<SrvFrwk::VersionInformation>(
    L"VersionInfo",
    Attribute(L"component", &SrvFrwk::VersionInformation::iComponentType, Words(g_stVersionComponent))
        .Else("read as no component")
        .Key("componentType"),
    Attribute(L"puid", &SrvFrwk::VersionInformation::ulPuId, Number()).Required().Key("puId"),
    Attribute(L"version", &SrvFrwk::VersionInformation::tszVersion, Text()).Key("version"),
    Attribute(L"directDeploy", &SrvFrwk::VersionInformation::bDirectDeploy, Words(g_stDirectDeploy))
        .Key("directDeploy"),
    Attribute(L"followProductversion", &SrvFrwk::VersionInformation::bFollowProductVersion,
              Words(g_stFollowProductVersion))
        .Key("followProductVersion"),
    Texts(L"MigrateFile", L"name", &SrvFrwk::VersionInformation::lstMigrateFile).Key("migrateFiles"),
    Texts(L"UpdateHashFile", L"name", &SrvFrwk::VersionInformation::lstUpdateHashFile).Key("updateHashFiles"));

/** Reads the document of the request's directory into a vector of VersionInformation; contract as Handler. */
std::uint32_t QueryValueAsVersionInfo(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
