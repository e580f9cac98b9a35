// A trace library that keeps its lines in memory for a test to look at.

#include "Recorder.h"

#include "ZkComn_Synchronize.h"

#include <string>
#include <vector>

using namespace ZkCommon;

namespace {

class TraceRecord final : public ITraceRecord
{
public:
    void Visit(void (*_pfnVisit)(void*, const wchar_t*), void* _pContext) const override
    {
        const Synchronize::SingleLock lock(&m_Lock);
        for (const std::wstring& tszLine : m_vecLines) {
            _pfnVisit(_pContext, tszLine.c_str());
        }
    }
    void Clear() override
    {
        const Synchronize::SingleLock lock(&m_Lock);
        m_vecLines.clear();
    }
    void Answer(std::uint32_t _ulToInitialize, std::uint32_t _ulToTrace) override
    {
        const Synchronize::SingleLock lock(&m_Lock);
        m_ulToInitialize = _ulToInitialize;
        m_ulToTrace = _ulToTrace;
    }
    const Library::ZkDbgSettings& Settings() const override { return m_stSettings; }
    int Open() const override { return m_iOpen; }

    mutable Synchronize::CriticalSection m_Lock;
    std::vector<std::wstring> m_vecLines;
    Library::ZkDbgSettings m_stSettings{};
    std::uint32_t m_ulToInitialize = 0;
    std::uint32_t m_ulToTrace = 0;
    int m_iOpen = 0;
};

TraceRecord g_cRecord;

} // namespace

extern "C" {

std::uint32_t ZkDbgInitialize(void** _ppHandle, const Library::ZkDbgSettings* _pstSettings)
{
    const Synchronize::SingleLock lock(&g_cRecord.m_Lock);
    g_cRecord.m_stSettings = *_pstSettings;
    *_ppHandle = g_cRecord.m_ulToInitialize == 0 ? &g_cRecord : nullptr;
    g_cRecord.m_iOpen += g_cRecord.m_ulToInitialize == 0 ? 1 : 0;
    return g_cRecord.m_ulToInitialize;
}

std::uint32_t ZkDbgUninitialize(void* /*_pHandle*/)
{
    const Synchronize::SingleLock lock(&g_cRecord.m_Lock);
    --g_cRecord.m_iOpen;
    return 0;
}

std::uint32_t ZkDbgTrace(void* /*_pHandle*/, const SYSTEMTIME* /*_pstTime*/, const wchar_t* _pszLine)
{
    const Synchronize::SingleLock lock(&g_cRecord.m_Lock);
    if (g_cRecord.m_ulToTrace == 0) {
        g_cRecord.m_vecLines.emplace_back(_pszLine);
    }
    return g_cRecord.m_ulToTrace;
}

ITraceRecord* TraceRecord()
{
    return &g_cRecord;
}
}
