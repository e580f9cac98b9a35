#pragma once

#include "ZkComn_Library.h"
#include "ZkComn_ZkDbgSettings.h"
#include "ZkComn_ZkDbgSink.h"

#include <string>

namespace ZkCommon::Library {

/** Binding of the trace library, "ZkDbgLog.dll". */
class ZkDbg final : public Wrapper
{
public:
    /**
     * @param _rtszFolder  the library's folder; when empty the library is looked for by its name, beside the program
     *                     first and never in the current folder
     * @return false when it cannot be loaded, or is loaded or bound already
     */
    bool Load(const std::wstring& _rtszFolder);
    bool Bind(bool _bBind, std::uint32_t& _rulError) noexcept override;
    /** Unbinds and frees the library. */
    void Unload() noexcept;

    /** Opens a trace. @return whether the library succeeded and gave a handle; _rpHandle is null otherwise */
    bool Initialize(void*& _rpHandle, const ZkDbgSettings& _rstSettings) noexcept;
    void Uninitialize(void* _pHandle) noexcept;
    bool Trace(void* _pHandle, const SYSTEMTIME& _rstTime, const wchar_t* _pszLine) noexcept;

private:
    FARPROC m_pInitialize = nullptr;
    FARPROC m_pUninitialize = nullptr;
    FARPROC m_pTrace = nullptr;
};

/** Binding of the sink that a host has set in the trace library of its process. */
class ZkDbgSink final : public Wrapper
{
public:
    /**
     * Binds the sink, when the trace library is loaded already and has one; the library then stays loaded.
     * @return the levels that the sink asks for; 0 without one
     */
    std::uint32_t Attach() noexcept;
    void Detach() noexcept;
    bool Bind(bool _bBind, std::uint32_t& _rulError) noexcept override;

    void Line(const ZkDbgLine& _rstLine) noexcept;

private:
    FARPROC m_pLevels = nullptr;
    FARPROC m_pLine = nullptr;
};

} // namespace ZkCommon::Library
