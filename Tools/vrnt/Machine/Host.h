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

/** The tool as a host: it loads the library and makes typed calls. */
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

/** Loads the library for the calls that are made on it. @return their result */
template <class TCall>
std::uint32_t ThroughModule(Tool& _rTool, const TCall& _fnCall)
{
    return WithReasons(_rTool, [&] {
        const Varnhelt::Module cModule = LoadModule(_rTool.stOptions);
        return _fnCall(cModule);
    });
}

/** Queries a value type, with its request where it has one. */
template <std::uint32_t t_ulValueType, class... TRequest>
Varnhelt::Answer<t_ulValueType> Query(Tool& _rTool, const TRequest&... _rRequest)
{
    Varnhelt::Answer<t_ulValueType> stAnswer;
    ThroughModule(_rTool, [&](const Varnhelt::Module& _rModule) {
        stAnswer = _rModule.TryQuery<t_ulValueType>(_rRequest...);
        return stAnswer.ulResult;
    });
    return stAnswer;
}

/** Queries a list of records and prints it. */
template <std::uint32_t t_ulValueType, class TDescription, class... TRequest>
void QueryList(Tool& _rTool, const TDescription& _rstDescription, const TRequest&... _rRequest)
{
    const auto stAnswer = Query<t_ulValueType>(_rTool, _rRequest...);
    PrintAnswer(
        _rTool, stAnswer.ulResult, [&] { return RecordsToJson(stAnswer.cValue, _rstDescription); },
        [&] { return RecordsToTable(stAnswer.cValue, _rstDescription); });
}

} // namespace Vrnt
