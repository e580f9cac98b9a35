#pragma once

#include "Tool.h"

/** The commands below `vrnt direct`, in files beside Direct.cpp. */
namespace Vrnt {

void AddAliases(Tool& _rTool, CLI::App* _pDirect);
void AddComponents(Tool& _rTool, CLI::App* _pDirect);

} // namespace Vrnt
