#pragma once

#include "Descriptions/Description.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** The enforcement data, "FwEnfDat.xen": how controllers and providers are loaded. */
namespace Varnhelt::Documents {

/** What the providers' elements are called by custom; they may have any name. */
inline constexpr std::wstring_view g_svDataProvider = L"DataProvider";

inline constexpr auto g_stDataProvider =
    Describe<SrvFrwk::DataProvider>(
        L"",
        Attribute(L"Controller", &SrvFrwk::DataProvider::ulControllerType, Words(Frwk::Words::g_stControllerType))
            .Key("controllerType")
            .Label(L"[ControllerType]  "),
        Attribute(L"Provider", &SrvFrwk::DataProvider::ulProviderType, Words(Frwk::Words::g_stProviderType))
            .Key("providerType")
            .Label(L"[ProviderType]    "),
        Child(L"Module", &SrvFrwk::DataProvider::ulModuleType, Words(Frwk::Words::g_stModuleType))
            .Key("moduleType")
            .Label(L"[eModuleType]     "),
        Child(L"Startup", &SrvFrwk::DataProvider::ulStartupType, Words(Frwk::Words::g_stStartupType))
            .Key("startupType")
            .Label(L"[eStartUpType]    "),
        Child(L"OrderOfLoading", &SrvFrwk::DataProvider::ulOrderOfLoading, Number())
            .Key("orderOfLoading")
            .Label(L"[OrderOfLoading]  "),
        Child(L"OrderOfUnloading", &SrvFrwk::DataProvider::ulOrderOfUnloading, Number())
            .Key("orderOfUnloading")
            .Label(L"[OrderOfUnloading]"),
        Child(L"Shared", &SrvFrwk::DataProvider::ulSharedType, Words(Frwk::Words::g_stSharedType))
            .Key("sharedType")
            .Label(L"[eSharedType]     "),
        Child(L"Layer", &SrvFrwk::DataProvider::ulLayer, Words(Frwk::Words::g_stLayerType))
            .Key("layer")
            .Label(L"[LayerType]       "),
        Child(L"Service", &SrvFrwk::DataProvider::ulServiceType, Words(Frwk::Words::g_stServiceType))
            .Key("serviceType")
            .Label(L"[ServiceType]     "),
        Child(L"DependencyController", &SrvFrwk::DataProvider::ulDependencyController,
              Words(Frwk::Words::g_stControllerType))
            .Key("dependencyController")
            .Label(L"[Dep-Controller]  "),
        Child(L"DependencyProvider", &SrvFrwk::DataProvider::ulDependencyProvider, Words(Frwk::Words::g_stProviderType))
            .Key("dependencyProvider")
            .Label(L"[Dep-Provider]    "),
        Child(L"AdditionalCallAfterInstall", &SrvFrwk::DataProvider::bAdditionalCallAfterInstall, Boolean())
            .Key("additionalCallAfterInstall")
            .Label(L"[Add-Ins-Call]    "),
        Child(L"AdditionalCallAfterUninstall", &SrvFrwk::DataProvider::bAdditionalCallAfterUninstall, Boolean())
            .Key("additionalCallAfterUninstall")
            .Label(L"[Add-Unins-Call]  "),
        Child(L"ModuleName", &SrvFrwk::DataProvider::tszModuleName, Text())
            .Key("moduleName")
            .Label(L"[Module Name]     "),
        Attribute(L"version", &SrvFrwk::DataProvider::tszVersion, Text()).Key("version").Label(L"[Version]         "),
        Child(L"InitializeOption", &SrvFrwk::DataProvider::ulInitializeOption, Words(Frwk::Words::g_stDelayInitialize))
            .Key("initializeOption")
            .Label(L"[Delay Initialize]  ", Show::AsRead)) // as wide as it was first written
        .Title(L"label", L"[label]           ");

inline constexpr auto g_stDataController =
    Describe<SrvFrwk::DataController>(
        L"DataController",
        Attribute(L"Controller", &SrvFrwk::DataController::ulControllerType, Words(Frwk::Words::g_stControllerType))
            .Key("controllerType")
            .Label(L"[ControllerType]  "),
        Child(L"Module", &SrvFrwk::DataController::ulModuleType, Words(Frwk::Words::g_stModuleType))
            .Key("moduleType")
            .Label(L"[eModuleType]     "),
        Child(L"Startup", &SrvFrwk::DataController::ulStartupType, Words(Frwk::Words::g_stStartupType))
            .Key("startupType")
            .Label(L"[Startup]         "),
        Child(L"OrderOfLoading", &SrvFrwk::DataController::ulOrderOfLoading, Number())
            .Key("orderOfLoading")
            .Label(L"[OrderOfLoading]  "),
        Child(L"ConcurrentLoading", &SrvFrwk::DataController::bConcurrentLoading, Boolean())
            .Key("concurrentLoading")
            .Label(L"[ConcurrentLoad]  ", Show::Decimal),
        Child(L"OrderOfUnloading", &SrvFrwk::DataController::ulOrderOfUnloading, Number())
            .Key("orderOfUnloading")
            .Label(L"[OrderOfUnloading]"),
        Child(L"ConcurrentUnLoading", &SrvFrwk::DataController::bConcurrentUnloading, Boolean())
            .Key("concurrentUnloading")
            .Label(L"[ConcurrentUnload]", Show::Decimal),
        Child(L"PuId", &SrvFrwk::DataController::ulUpdateComponentNumber, Number())
            .Key("updateComponentNumber")
            .Label(L"[PuId]            ", Show::Hexadecimal),
        Child(L"ModuleName", &SrvFrwk::DataController::tszModuleName, Text())
            .Key("moduleName")
            .Label(L"[Module Name]     "),
        Attribute(L"version", &SrvFrwk::DataController::tszVersion, Text()).Key("version").Label(L"[Version]         "),
        Child(L"InitializeOption", &SrvFrwk::DataController::ulInitializeOption,
              Words(Frwk::Words::g_stDelayInitialize))
            .Key("initializeOption")
            .Label(L"[InitOption]      "),
        Children(L"./DataProviders", &SrvFrwk::DataController::vecProvider, g_stDataProvider).Key("providers"))
        .Title(L"label", L"[label]           ");

/** Reads the installed document into a vector of DataController; contract as Handler. */
std::uint32_t QueryValueAsEnforceData(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
