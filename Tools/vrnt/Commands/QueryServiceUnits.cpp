#include "Commands/Commands.h"
#include "Documents/ServiceUnits.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"

namespace Vrnt {

namespace {

void RunQueryServiceUnits(Tool& _rTool, const Arguments&)
{
    QueryList<SrvFrwk::ValueType::g_ulServiceUnit>(_rTool, Varnhelt::Documents::g_stServiceUnit);
}

} // namespace

constinit const Command g_stQueryServiceUnits{.szName = "service-units",
                                              .szHelp = "The service-unit catalogue",
                                              .szExample = "vrnt query service-units",
                                              .pfnRun = &RunQueryServiceUnits};

} // namespace Vrnt
