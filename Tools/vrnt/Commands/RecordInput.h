#pragma once

#include "Arguments.h"
#include "Commands/CommonArguments.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Records/RecordJson.h"
#include "SrvFrwk_ResultCode.h"

/** Records that "--input" names. */
namespace Vrnt {

/** @throws UsageError when the input is unreadable or does not fit */
template <class TContainer, class TDescription>
TContainer ReadRecords(const Arguments& _rArguments, const TDescription& _rstDescription)
{
    const std::string& rsPath = _rArguments.Text(g_stInput);
    try {
        const Json* pInput = _rArguments.Input();
        const Json jsRecords = RecordsIn(pInput != nullptr ? *pInput : ParseJson(ReadInputFile(rsPath)), rsPath);
        return RecordsFromJson<TContainer>(jsRecords, _rstDescription);
    } catch (const JsonError& rError) {
        throw UsageError(Quoted(rsPath) + ": " + rError.what());
    }
}

/** Prints what came of a store, and on success what was stored. */
inline void PrintStored(Tool& _rTool, std::uint32_t _ulResult, const std::string& _rsWhat)
{
    if (!SrvFrwk::Result::IsFailure(_ulResult)) {
        PrintText(_rTool, _rsWhat + " stored.\n");
    }
    PrintAnswer(_rTool, _ulResult, nullptr, {});
}

} // namespace Vrnt
