#pragma once

#include "ZkComn_ZkDbgSettings.h"

/** What the recording trace library lends to a test, across its own run time: no object is handed over. */
class ITraceRecord
{
public:
    virtual ~ITraceRecord() = default;
    /** Calls _pfnVisit with every recorded line, oldest first. */
    virtual void Visit(void (*_pfnVisit)(void* _pContext, const wchar_t* _pszLine), void* _pContext) const = 0;
    virtual void Clear() = 0;
    /** What the library answers from now on; 0 is success. */
    virtual void Answer(std::uint32_t _ulToInitialize, std::uint32_t _ulToTrace) = 0;
    /** What the last opened trace was given. */
    virtual const ZkCommon::Library::ZkDbgSettings& Settings() const = 0;
    /** Traces that were opened and not closed. */
    virtual int Open() const = 0;
};

/** The export "TraceRecord". */
using TraceRecordFunction = ITraceRecord*();
