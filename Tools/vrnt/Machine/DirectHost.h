#pragma once

#include "FunctionXml.h"
#include "Machine/Reasons.h"
#include "Output/Output.h"
#include "Output/RecordTable.h"
#include "Records/RecordJson.h"

#include <cstdint>

/** The commands for documents that no function object serves: they drive the readers that are linked into the tool. */
namespace Vrnt {

inline std::uint32_t QueryDirectly(Tool& _rTool, std::uint32_t _ulValueType, void* _pValueData, void* _pOptionData,
                                   std::uint32_t _ulValueSubType = 0, std::uint32_t _ulValueOption = 0)
{
    return WithReasons(_rTool, [&] {
        return CFunctionXml().QueryValue({.ulValueType = _ulValueType,
                                          .ulValueSubType = _ulValueSubType,
                                          .pValueData = _pValueData,
                                          .ulValueOption = _ulValueOption,
                                          .pOptionData = _pOptionData});
    });
}

inline std::uint32_t StoreDirectly(Tool& _rTool, std::uint32_t _ulValueType, void* _pValueData, void* _pOptionData)
{
    return WithReasons(_rTool, [&] {
        return CFunctionXml().StoreValue(
            {.ulValueType = _ulValueType, .pValueData = _pValueData, .pOptionData = _pOptionData});
    });
}

} // namespace Vrnt
