#pragma once

#include "Tool.h"

/** The commands below `vrnt query`, a file each beside Query.cpp. */
namespace Vrnt {

void AddPolicy(Tool& _rTool, CLI::App* _pQuery);
void AddEnforceData(Tool& _rTool, CLI::App* _pQuery);
void AddPuIds(Tool& _rTool, CLI::App* _pQuery);
void AddCompetitors(Tool& _rTool, CLI::App* _pQuery);
void AddThreats(Tool& _rTool, CLI::App* _pQuery);
void AddCompatibility(Tool& _rTool, CLI::App* _pQuery);
void AddKeyConfig(Tool& _rTool, CLI::App* _pQuery);
void AddRegistryData(Tool& _rTool, CLI::App* _pQuery);

} // namespace Vrnt
