#pragma once

#include "Descriptions/Description.h"
#include "SrvFrwk_Records.h"

/** The aliases of a deployment: identifiers that stand for a property and a value. */
namespace Varnhelt::Documents {

inline constexpr auto g_stDeployAlias =
    Describe<SrvFrwk::DeployAlias>(L"Alias", Attribute(L"Id", &SrvFrwk::DeployAlias::strId, Text()).Key("id"),
                                   Attribute(L"Property", &SrvFrwk::DeployAlias::strProperty, Text()).Key("property"),
                                   OwnText(&SrvFrwk::DeployAlias::strValue, Text()).Key("value"));

} // namespace Varnhelt::Documents
