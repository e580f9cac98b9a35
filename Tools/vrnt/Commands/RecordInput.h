#pragma once

#include "Arguments.h"
#include "Commands/CommonArguments.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Records/RecordJson.h"

/** Records that "--input" names. */
namespace Vrnt {

/** @throws UsageError when the input is unreadable or does not fit */
template <class TContainer, class TDescription>
TContainer ReadRecords(const Arguments& _rArguments, const TDescription& _rstDescription)
{
    const std::string& rsPath = _rArguments.Text(g_stInput);
    try {
        return RecordsFromJson<TContainer>(ReadInputRecords(rsPath), _rstDescription);
    } catch (const JsonError& rError) {
        throw UsageError(Quoted(rsPath) + ": " + rError.what());
    }
}

} // namespace Vrnt
