#pragma once

#include "ZkComn_ZkDbgSettings.h"

/** What the recording trace library lends to a test, across its own run time: no object is handed over. */
struct TraceRecord
{
    /** What the library answers; 0 is success. */
    std::uint32_t ulToInitialize = 0;
    std::uint32_t ulToTrace = 0;
    /** What the last opened trace was given. */
    ZkCommon::Library::ZkDbgSettings stSettings{};
    /** Traces that were opened and not closed. */
    int iOpen = 0;
    /** A recorded line; null after the last one. */
    const wchar_t* (*pfnLine)(std::size_t _uLine) = nullptr;
    void (*pfnClear)() = nullptr;
};

/** The export "RecordOfTrace". */
using RecordOfTraceFunction = TraceRecord*();
