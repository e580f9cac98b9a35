#pragma once

#include "Descriptions/Description.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

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

/** Where the elements of a controller's providers are. */
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

/** Reads the installed policy into a vector of PolicyController; contract as Handler. */
std::uint32_t QueryValueAsEnforcePolicy(Worker& _rWorker, const Request& _rstRequest);
/** Puts a vector of PolicyController into the installed policy, which must have each of the controllers. */
std::uint32_t StoreValueAsEnforcePolicy(Worker& _rWorker, const Request& _rstRequest);
/** Fills the one PolicyController whose type the caller set; a controller that the policy does not have is denied. */
std::uint32_t QueryValueAsSpecificEnforcePolicy(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
