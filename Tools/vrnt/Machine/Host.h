#pragma once

#include "Arguments.h"
#include "Machine/Reasons.h"
#include "Output/Output.h"
#include "Output/RecordTable.h"
#include "Records/RecordJson.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"
#include "VarnheltLoader.h"

#include <cstdint>
#include <filesystem>
#include <vector>

/** The tool as a host: it loads the library and drives a function object. */
namespace Vrnt {

/** The path of the library that the command line names. */
std::filesystem::path ModulePath(const GlobalOptions& _rstOptions);

/** The library cannot be loaded. */
class ModuleError : public UsageError
{
public:
    using UsageError::UsageError;
};

/** Loads the library that the command line names. @throws ModuleError when that fails */
Varnhelt::Module LoadModule(const GlobalOptions& _rstOptions);

/** Loads the library, and has a function object of it carry out the call. @return the call's result */
template <class TCall>
std::uint32_t ThroughFunction(Tool& _rTool, const TCall& _fnCall)
{
    return WithReasons(_rTool, [&] {
        const Varnhelt::Module cModule = LoadModule(_rTool.stOptions);
        const Varnhelt::Module::Function pFunction = cModule.CreateFunction();
        return pFunction == nullptr ? SrvFrwk::Result::g_ulMissingObject : _fnCall(*pFunction);
    });
}

/** Queries a value. */
inline std::uint32_t Query(Tool& _rTool, std::uint32_t _ulValueType, void* _pValueData, void* _pOptionData)
{
    return ThroughFunction(_rTool, [&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
        return _rFunction.QueryValue(0, _ulValueType, 0, _pValueData, 0, _pOptionData);
    });
}

/** Stores a value. */
inline std::uint32_t Store(Tool& _rTool, std::uint32_t _ulValueType, void* _pValueData, void* _pOptionData)
{
    return ThroughFunction(_rTool, [&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
        return _rFunction.StoreValue(0, _ulValueType, 0, _pValueData, 0, _pOptionData);
    });
}

/** Queries a list of records and prints it. */
template <class TDescription>
void QueryList(Tool& _rTool, std::uint32_t _ulValueType, const TDescription& _rstDescription, void* _pOptionData)
{
    std::vector<typename TDescription::Record> vecRecord;
    const std::uint32_t ulResult = Query(_rTool, _ulValueType, &vecRecord, _pOptionData);
    PrintAnswer(_rTool, ulResult, RecordsToJson(vecRecord, _rstDescription),
                RecordsToTable(vecRecord, _rstDescription));
}

} // namespace Vrnt
