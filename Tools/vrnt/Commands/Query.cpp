// vrnt query: what a host asks a function object for.

#include "Commands/QueryCommands.h"
#include "Documents/ServiceUnits.h"
#include "Machine/Host.h"
#include "SrvFrwk_ValueType.h"
#include "Tool.h"

namespace Vrnt {

namespace {

void AddServiceUnits(Tool& _rTool, CLI::App* _pQuery)
{
    CLI::App* pCommand = _pQuery->add_subcommand("service-units", "The service-unit catalogue");
    pCommand->footer("Example: vrnt query service-units");
    pCommand->callback([&_rTool] {
        QueryList(_rTool, SrvFrwk::ValueType::g_ulServiceUnit, Varnhelt::Documents::g_stServiceUnit, nullptr);
    });
}

} // namespace

void AddQuery(Tool& _rTool)
{
    CLI::App* pQuery = _rTool.cApp.add_subcommand("query", "Ask a function object for a configuration document");
    pQuery->require_subcommand(1);
    AddServiceUnits(_rTool, pQuery);
    AddPolicy(_rTool, pQuery);
    AddEnforceData(_rTool, pQuery);
    AddPuIds(_rTool, pQuery);
    AddCompetitors(_rTool, pQuery);
    AddThreats(_rTool, pQuery);
    AddKeyConfig(_rTool, pQuery);
    AddRegistryData(_rTool, pQuery);
    AddCompatibility(_rTool, pQuery);
}

} // namespace Vrnt
