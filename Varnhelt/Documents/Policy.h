#pragma once

#include "Descriptions/Description.h"
#include "SrvFrwk_Records.h"

/** The enforcement policy, "FwPolicy.xen": which controllers and providers may run. */
namespace Varnhelt::Documents {

inline constexpr auto g_stPolicyProvider =
    Describe<SrvFrwk::PolicyProvider>(
        L"PolicyProvider",
        Attribute(L"Controller", &SrvFrwk::PolicyProvider::ulControllerType, Words(Frwk::Words::g_stControllerType))
            .Key("controllerType")
            .Label(L"[ControllerType]"),
        Attribute(L"Provider", &SrvFrwk::PolicyProvider::ulProviderType, Words(Frwk::Words::g_stProviderType))
            .Identity()
            .Key("providerType")
            .Label(L"[ProviderType]  "),
        Child(L"Permission", &SrvFrwk::PolicyProvider::ulPermission, Words(Frwk::Words::g_stPermission))
            .Key("permission")
            .Label(L"[ePermission]   "),
        Child(L"Deploy", &SrvFrwk::PolicyProvider::ulDeployState, Words(Frwk::Words::g_stDeployState))
            .Key("deployState")
            .Label(L"[eDeployState]  "))
        .Title(L"label", L"[label]         ");

/** Where the elements of a controller's providers stand. */
inline constexpr std::wstring_view g_svPolicyProviders = L"./PolicyProviders";

inline constexpr auto g_stPolicyController =
    Describe<SrvFrwk::PolicyController>(
        L"PolicyController",
        Attribute(L"Controller", &SrvFrwk::PolicyController::ulControllerType, Words(Frwk::Words::g_stControllerType))
            .Identity()
            .Key("controllerType")
            .Label(L"[ControllerType]"),
        Child(L"Permission", &SrvFrwk::PolicyController::ulPermission, Words(Frwk::Words::g_stPermission))
            .Key("permission")
            .Label(L"[ePermission]   "),
        Child(L"AllowToLoadSetupMode", &SrvFrwk::PolicyController::bAllowToLoadInSetupMode, Boolean())
            .Key("allowToLoadInSetupMode")
            .Label(L"[Allow Setup]   "),
        Children(g_svPolicyProviders, &SrvFrwk::PolicyController::vecProvider, g_stPolicyProvider).Key("providers"))
        .Title(L"label", L"[label]         ");

} // namespace Varnhelt::Documents
