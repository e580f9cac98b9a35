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

    std::uint32_t OnInitialize(void** _ppHandle, const Library::ZkDbgSettings& _rstSettings)
    {
        const Synchronize::SingleLock lock(&m_Lock);
        m_stSettings = _rstSettings;
        if (m_ulToInitialize == 0) {
            *_ppHandle = this;
            ++m_iOpen;
        }
        return m_ulToInitialize;
    }
    void OnUninitialize()
    {
        const Synchronize::SingleLock lock(&m_Lock);
        --m_iOpen;
    }
    std::uint32_t OnTrace(const wchar_t* _pszLine)
    {
        const Synchronize::SingleLock lock(&m_Lock);
        if (m_ulToTrace == 0) {
            m_vecLines.emplace_back(_pszLine);
        }
        return m_ulToTrace;
    }

private:
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
    return g_cRecord.OnInitialize(_ppHandle, *_pstSettings);
}

std::uint32_t ZkDbgUninitialize(void* /*_pHandle*/)
{
    g_cRecord.OnUninitialize();
    return 0;
}

std::uint32_t ZkDbgTrace(void* /*_pHandle*/, const SYSTEMTIME* /*_pstTime*/, const wchar_t* _pszLine)
{
    return g_cRecord.OnTrace(_pszLine);
}

ITraceRecord* TraceRecord()
{
    return &g_cRecord;
}
}
