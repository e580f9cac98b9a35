#pragma once

#include "Descriptions/Description.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** The aliases of a deployment: names of a property and a value. */
namespace Varnhelt::Documents {

inline constexpr auto g_stDeployAlias =
    Describe<SrvFrwk::DeployAlias>(L"Alias", Attribute(L"Id", &SrvFrwk::DeployAlias::strId, Text()).Key("id"),
                                   Attribute(L"Property", &SrvFrwk::DeployAlias::strProperty, Text()).Key("property"),
                                   OwnText(&SrvFrwk::DeployAlias::strValue, Text()).Key("value"));

/** Reads the file of the request's path into a DeployAliasConfig; contract as Handler. */
std::uint32_t QueryValueAsDeployAliasConfig(Worker& _rWorker, const Request& _rstRequest);
/** Sets the aliases of a DeployAliasConfig in that file, and appends those it does not have. */
std::uint32_t StoreValueAsDeployAliasConfig(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
