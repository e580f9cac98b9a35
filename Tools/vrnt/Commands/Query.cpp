// vrnt query: what a host asks a function object for.

#include "Output.h"
#include "RecordOutput.h"
#include "ServiceUnits.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "Tool.h"
#include "VarnheltLoader.h"

#include <vector>

namespace Vrnt {

namespace {

Varnhelt::Module LoadModule(const GlobalOptions& _rstOptions)
{
    const std::filesystem::path tszPath = _rstOptions.sModule.empty()
                                              ? ToolFolder() / L"Varnhelt.dll"
                                              : std::filesystem::path(ToFullPath(_rstOptions.sModule));
    try {
        return Varnhelt::Module(tszPath);
    } catch (const std::system_error& rError) {
        throw UsageError("cannot load \"" + ZkCommon::String::ToUtf8(tszPath.wstring()) +
                         "\": " + SystemErrorText(static_cast<std::uint32_t>(rError.code().value())));
    }
}

/** Queries a list of records and prints it. */
template <class TDescription>
void QueryList(Tool& _rTool, std::uint32_t _ulValueType, const TDescription& _rstDescription, void* _pOptionData)
{
    const Varnhelt::Module cModule = LoadModule(_rTool.stOptions);
    const Varnhelt::Module::Function pFunction = cModule.CreateFunction();
    std::vector<typename TDescription::Record> vecRecord;
    const std::uint32_t ulResult = pFunction == nullptr
                                       ? SrvFrwk::Result::g_ulMissingObject
                                       : pFunction->QueryValue(0, _ulValueType, 0, &vecRecord, 0, _pOptionData);
    Report(_rTool, ulResult, RecordsToJson(vecRecord, _rstDescription), RecordsToTable(vecRecord, _rstDescription));
}

} // namespace

void AddQuery(Tool& _rTool)
{
    CLI::App* pQuery = _rTool.cApp.add_subcommand("query", "Ask a function object for a configuration document");
    pQuery->require_subcommand(1);
    CLI::App* pServiceUnits = pQuery->add_subcommand("service-units", "The service-unit catalogue");
    pServiceUnits->footer("Example: vrnt query service-units");
    pServiceUnits->callback([&_rTool] {
        QueryList(_rTool, SrvFrwk::ValueType::g_ulServiceUnit, Varnhelt::Documents::g_stServiceUnit, nullptr);
    });
}

} // namespace Vrnt
