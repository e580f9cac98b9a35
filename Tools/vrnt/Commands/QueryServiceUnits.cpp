#include "Commands/Commands.h"
#include "Documents/ServiceUnits.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

void RunQueryServiceUnits(Tool& _rTool, const Arguments&)
{
    QueryList(_rTool, SrvFrwk::ValueType::g_ulServiceUnit, Varnhelt::Documents::g_stServiceUnit, nullptr);
}

} // namespace

constinit const Command g_stQueryServiceUnits{.szName = "service-units",
                                              .szHelp = "The service-unit catalogue",
                                              .szExample = "vrnt query service-units",
                                              .pfnRun = &RunQueryServiceUnits};

} // namespace Vrnt
