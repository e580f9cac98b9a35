// A trace library that keeps its lines in memory for a test to look at.

#include "Recorder.h"

#include "ZkComn_Synchronize.h"

#include <deque>
#include <string>

using namespace ZkCommon;

namespace {

Synchronize::CriticalSection g_cLock;
std::deque<std::wstring> g_cLines;

const wchar_t* LineAt(std::size_t _uLine)
{
    const Synchronize::SingleLock lock(&g_cLock);
    return _uLine < g_cLines.size() ? g_cLines[_uLine].c_str() : nullptr;
}

void Clear()
{
    const Synchronize::SingleLock lock(&g_cLock);
    g_cLines.clear();
}

TraceRecord g_stRecord{.pfnLine = &LineAt, .pfnClear = &Clear};

} // namespace

extern "C" {

std::uint32_t ZkDbgInitialize(void** _ppHandle, const Library::ZkDbgSettings* _pstSettings)
{
    g_stRecord.stSettings = *_pstSettings;
    if (g_stRecord.ulToInitialize == 0) {
        *_ppHandle = &g_stRecord;
        ++g_stRecord.iOpen;
    }
    return g_stRecord.ulToInitialize;
}

std::uint32_t ZkDbgUninitialize(void* /*_pHandle*/)
{
    --g_stRecord.iOpen;
    return 0;
}

std::uint32_t ZkDbgTrace(void* /*_pHandle*/, const SYSTEMTIME* /*_pstTime*/, const wchar_t* _pszLine)
{
    if (g_stRecord.ulToTrace == 0) {
        const Synchronize::SingleLock lock(&g_cLock);
        g_cLines.emplace_back(_pszLine);
    }
    return g_stRecord.ulToTrace;
}

TraceRecord* RecordOfTrace()
{
    return &g_stRecord;
}
}
