#pragma once

#include "Descriptions/Description.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** Which editions may be installed on which system, "compatck.xml". */
namespace Varnhelt::Documents {

/** Text that another one replaces when it is empty or absent. */
struct NonEmptyText : Text
{
    constexpr explicit NonEmptyText(std::wstring_view _svInstead) : svInstead(_svInstead) {}
    std::wstring Read(std::wstring_view _svText) const { return std::wstring(_svText.empty() ? svInstead : _svText); }

    std::wstring_view svInstead;
};

/** Also what an update request lists. */
inline constexpr auto g_stCompatibilityComponent = Describe<SrvFrwk::CompatibilityComponent>(
    L"Component",
    Attribute(L"class", &SrvFrwk::CompatibilityComponent::tszClass, Text()).Key("class").Label(L"\t\tComponent Class"),
    Attribute(L"type", &SrvFrwk::CompatibilityComponent::tszType, Text()).Key("type").Label(L"\t\tComponent Type"),
    Attribute(L"plat", &SrvFrwk::CompatibilityComponent::tszPlat, Text()).Key("plat").Label(L"\t\tComponent Plat"),
    Attribute(L"lang", &SrvFrwk::CompatibilityComponent::tszLang, Text()).Key("lang").Label(L"\t\tComponent Lang"),
    Attribute(L"oem", &SrvFrwk::CompatibilityComponent::tszOem, Text()).Key("oem").Label(L"\t\tComponent OEM"),
    Attribute(L"region", &SrvFrwk::CompatibilityComponent::tszRegion, Text())
        .Key("region")
        .Label(L"\t\tComponent Region"),
    Attribute(L"ver", &SrvFrwk::CompatibilityComponent::tszVer, NonEmptyText(L"0"))
        .Key("ver")
        .Label(L"\t\tComponent Ver"));

/** Whether a component is used: its own text, a flag whose unknown text has a line for itself in the trace log. */
const Frwk::WordTable& ComponentEnabled() noexcept;

/** What holds the components of a product. */
inline constexpr std::wstring_view g_svComponents = L"Components";

inline constexpr auto g_stCompatibilityMessage = Describe<SrvFrwk::stCCLocalizedMsg>(
    L"Message", Attribute(L"locale", &SrvFrwk::stCCLocalizedMsg::tszLocale, Text()).Default(L"EN-US").Key("locale"),
    OwnText(&SrvFrwk::stCCLocalizedMsg::tszMessage, Text()).Key("message"));

constexpr bool NeedsPreUpdate(const SrvFrwk::CompatibilityProduct& _rstProduct)
{
    return _rstProduct.emCompatibilityCheckAction == Frwk::CompatibilityPreInstallUpdate;
}

constexpr bool ShowsMessage(const SrvFrwk::CompatibilityProduct& _rstProduct)
{
    return _rstProduct.bShowMessage;
}

// "2rdAction" is no name that a well-formed document can hold, so the second action is always the default.
inline constexpr auto g_stCompatibilityProduct = Describe<SrvFrwk::CompatibilityProduct>(
    L"Product",
    Attribute(L"sku", &SrvFrwk::CompatibilityProduct::tszSkuName, Text()).Key("skuName").Label(L"\tProduct tszSkuName"),
    Attribute(L"major_version", &SrvFrwk::CompatibilityProduct::tszQMRMajorVersion, Text())
        .Key("majorVersion")
        .Label(L"\tProduct tszQMRMajorVersion"),
    Attribute(L"minor_version", &SrvFrwk::CompatibilityProduct::tszQMRMinorVersion, Text())
        .Key("minorVersion")
        .Label(L"\tProduct tszQMRMinorVersion"),
    Attribute(L"reversion", &SrvFrwk::CompatibilityProduct::tszQMRReVersion, Text())
        .Key("reVersion")
        .Label(L"\tProduct tszQMRReVersion"),
    Attribute(L"build_number", &SrvFrwk::CompatibilityProduct::tszQMRBuild, Text())
        .Key("build")
        .Label(L"\tProduct tszQMRBuild"),
    Attribute(L"LeftHandMost", &SrvFrwk::CompatibilityProduct::LeftHandMost, Boolean())
        .Key("leftHandMost")
        .Label(L"\tProduct LeftHandMost"),
    Child(L"Action", &SrvFrwk::CompatibilityProduct::emCompatibilityCheckAction,
          Words(Frwk::Words::g_stCompatibilityCheckAction))
        .Key("action")
        .Label(L"\tProduct emCompatibilityCheckAction", Show::Text),
    Child(L"2rdAction", &SrvFrwk::CompatibilityProduct::emCompatibility2rdCheckAction,
          Words(Frwk::Words::g_stCompatibilityCheckAction))
        .Default(L"Block")
        .When(NeedsPreUpdate)
        .Key("secondAction")
        .Label(L"\tProduct emCompatibility2rdCheckAction", Show::Text),
    Child(L"ShowMessage", &SrvFrwk::CompatibilityProduct::bShowMessage, Boolean())
        .Key("showMessage")
        .Label(L"\tProduct bShowMessage"),
    Attribute(L"OEM", &SrvFrwk::CompatibilityProduct::tszOEMFlag, Text()).Key("oemFlag").Label(L"\tProduct tszOEMFlag"),
    Attribute(L"language", &SrvFrwk::CompatibilityProduct::tszLanguage, Text())
        .Key("language")
        .Label(L"\tProduct tszLanguage"),
    Children(g_svComponents, &SrvFrwk::CompatibilityProduct::vecComponent, g_stCompatibilityComponent)
        .When(NeedsPreUpdate)
        .Key("components")
        .Label(L"Need to do PrePU"),
    Children(L"./Messages", &SrvFrwk::CompatibilityProduct::vecMessage, g_stCompatibilityMessage)
        .When(ShowsMessage)
        .Key("messages")
        .Label(L"query messages"));

inline constexpr auto g_stCompatibilityPlatform = Describe<SrvFrwk::CompatibilityPlatform>(
    L"Platform",
    Attribute(L"major_version", &SrvFrwk::CompatibilityPlatform::tszPlatformMajorVersion, Text())
        .Key("platformMajorVersion")
        .Label(L" OS tszPlatformMajorVersion"),
    Attribute(L"minor_version", &SrvFrwk::CompatibilityPlatform::tszPlatformMinorVersion, Text())
        .Key("platformMinorVersion")
        .Label(L" OS tszPlatformMinorVersion"),
    Attribute(L"reversion", &SrvFrwk::CompatibilityPlatform::tszPlatformReVersion, Text())
        .Key("platformReVersion")
        .Label(L" OS tszPlatformReVersion"),
    Attribute(L"build_number", &SrvFrwk::CompatibilityPlatform::tszPlatformBuild, Text())
        .Key("platformBuild")
        .Label(L" OS tszPlatformBuild"),
    Attribute(L"LeftHandMost", &SrvFrwk::CompatibilityPlatform::bPlatformLeftHandMost, Boolean())
        .Key("platformLeftHandMost")
        .Label(L" OS bPlatformLeftHandMost"),
    Attribute(L"service_pack", &SrvFrwk::CompatibilityPlatform::tszServicePack, Text())
        .Key("servicePack")
        .Label(L" OS tszServicePack"),
    Attribute(L"language", &SrvFrwk::CompatibilityPlatform::tszLanguage, Text()).Key("language").Label(L" OS language"),
    Children(L"", &SrvFrwk::CompatibilityPlatform::vecProduct, g_stCompatibilityProduct).Key("products"));

/** Reads the document of the request's directory into a vector of CompatibilityPlatform; contract as Handler. */
std::uint32_t QueryValueAsInstallCompatibilityCheckDB(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
