#pragma once

#include "Descriptions/Description.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** The catalogue of the framework's service units, "FwSvUnit.xen". */
namespace Varnhelt::Documents {

inline constexpr auto g_stServiceUnit = Describe<SrvFrwk::ServiceUnit>(
    L"FrameworkService",
    Attribute(L"Layer", &SrvFrwk::ServiceUnit::ulLayer, Words(Frwk::Words::g_stLayerType)).Key("layer"),
    Attribute(L"Service", &SrvFrwk::ServiceUnit::ulServiceType, Words(Frwk::Words::g_stServiceType)).Key("serviceType"),
    Child(L"Module", &SrvFrwk::ServiceUnit::ulModuleType, Words(Frwk::Words::g_stModuleType)).Key("moduleType"),
    Child(L"Startup", &SrvFrwk::ServiceUnit::ulStartupType, Words(Frwk::Words::g_stStartupType)).Key("startupType"),
    Child(L"Load", &SrvFrwk::ServiceUnit::ulLoadOption, Words(Frwk::Words::g_stLoadOption)).Key("loadOption"),
    Child(L"OrderOfLoading", &SrvFrwk::ServiceUnit::ulOrderOfLoading, Number()).Default(L"0").Key("orderOfLoading"),
    Child(L"OrderOfUnloading", &SrvFrwk::ServiceUnit::ulOrderOfUnloading, Number())
        .Default(L"0")
        .Key("orderOfUnloading"),
    Child(L"ConcurrentUnLoading", &SrvFrwk::ServiceUnit::bConcurrentUnloading, Boolean()).Key("concurrentUnloading"),
    Child(L"Shared", &SrvFrwk::ServiceUnit::ulSharedType, Words(Frwk::Words::g_stSharedType)).Key("sharedType"),
    Child(L"Controller", &SrvFrwk::ServiceUnit::ulControllerType, Words(Frwk::Words::g_stControllerType))
        .Key("controllerType"),
    Child(L"Provider", &SrvFrwk::ServiceUnit::ulProviderType, Words(Frwk::Words::g_stProviderType)).Key("providerType"),
    Child(L"ModuleName", &SrvFrwk::ServiceUnit::tszModuleName, Text()).Key("moduleName"),
    Attribute(L"version", &SrvFrwk::ServiceUnit::tszVersion, Text()).Key("version"),
    Child(L"AllowToLoadSetupMode", &SrvFrwk::ServiceUnit::bAllowToLoadInSetupMode, Boolean())
        .Key("allowToLoadInSetupMode"));

/** Reads the installed document into a vector of ServiceUnit; contract as Handler. */
std::uint32_t QueryValueAsServiceUnit(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
