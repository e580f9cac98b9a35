#pragma once

#include "ZkComn_ZkDbgSink.h"

#include <filesystem>
#include <string>
#include <utility>
#include <windows.h>

namespace Varnhelt {

/** Where a call on this thread puts the reason of its failure: its first error line. */
inline constinit thread_local std::wstring* g_pReason = nullptr;

/**
 * Has typed calls learn why they failed. To be made before the Module, and kept for as long as it: the library asks for
 * the sink when it is loaded. One a process, since it sets the process's one sink. Without the trace library, and
 * without an object of this class, failures have no reason but their code.
 */
class Reasons
{
public:
    /** @param _tszTraceLibrary  the full path of ZkDbgLog.dll */
    explicit Reasons(const std::filesystem::path& _tszTraceLibrary) noexcept
        : m_hLibrary(::LoadLibraryExW(_tszTraceLibrary.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
    {
        Set(&OnLine);
    }
    Reasons(const Reasons&) = delete;
    Reasons& operator=(const Reasons&) = delete;
    ~Reasons()
    {
        Set(nullptr);
        if (m_hLibrary != nullptr) {
            ::FreeLibrary(m_hLibrary);
        }
    }

private:
    static void OnLine(void* /*_pContext*/, const ZkCommon::Library::ZkDbgLine* _pstLine)
    {
        try {
            if (g_pReason != nullptr && g_pReason->empty()) {
                *g_pReason = _pstLine->pszMessage;
            }
        } catch (...) { // memory ran out: the failure stays without a reason
        }
    }

    void Set(ZkCommon::Library::ZkDbgSinkFunction* _pfnSink) noexcept
    {
        constexpr std::uint32_t ulErrors = 256;
        if (m_hLibrary == nullptr) {
            return;
        }
        if (const FARPROC pfnFound = ::GetProcAddress(m_hLibrary, "ZkDbgSetSink"); pfnFound != nullptr) {
            reinterpret_cast<ZkCommon::Library::ZkDbgSetSinkFunction*>(reinterpret_cast<void*>(pfnFound))(
                _pfnSink, nullptr, ulErrors);
        }
    }

    HMODULE m_hLibrary;
};

/** While it exists, the reason of this thread's call goes to a text. */
class ReasonOfCall
{
public:
    explicit ReasonOfCall(std::wstring& _rtszReason) noexcept : m_pOuter(std::exchange(g_pReason, &_rtszReason)) {}
    ReasonOfCall(const ReasonOfCall&) = delete;
    ReasonOfCall& operator=(const ReasonOfCall&) = delete;
    ~ReasonOfCall() { g_pReason = m_pOuter; }

private:
    std::wstring* m_pOuter;
};

} // namespace Varnhelt
