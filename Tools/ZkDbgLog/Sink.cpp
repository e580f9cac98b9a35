#include "Sink.h"

#include "ZkComn_Synchronize.h"

using namespace ZkCommon;

namespace {

struct Sink
{
    Library::ZkDbgSinkFunction* pfnSink = nullptr;
    void* pContext = nullptr;
    std::uint32_t ulLevelMask = 0;
};

Synchronize::CriticalSection g_cLock; // held during a call of the sink: who removes it waits for the call to end
Sink g_stSink;

} // namespace

bool SinkIsAlone() noexcept
{
    const Synchronize::SingleLock lock(&g_cLock);
    return (g_stSink.ulLevelMask & Library::g_ulSinkAlone) != 0;
}

extern "C" {

std::uint32_t ZkDbgSetSink(Library::ZkDbgSinkFunction* _pfnSink, void* _pContext, std::uint32_t _ulLevelMask)
{
    const Synchronize::SingleLock lock(&g_cLock);
    g_stSink = _pfnSink != nullptr ? Sink{_pfnSink, _pContext, _ulLevelMask} : Sink{};
    return ERROR_SUCCESS;
}

std::uint32_t ZkDbgSinkLevels()
{
    const Synchronize::SingleLock lock(&g_cLock);
    return g_stSink.ulLevelMask;
}

std::uint32_t ZkDbgSinkLine(const Library::ZkDbgLine* _pstLine)
{
    const Synchronize::SingleLock lock(&g_cLock);
    if (_pstLine != nullptr && (g_stSink.ulLevelMask & _pstLine->ulLevel) != 0) {
        g_stSink.pfnSink(g_stSink.pContext, _pstLine);
    }
    return ERROR_SUCCESS;
}
}
