// The trace library: accepts the finished lines of the modules' trace logs and puts them into files.

#include "LogFile.h"
#include "Sink.h"

#include "ModuleRunTime.h"
#include "ZkComn_ZkDbgLine.h"

#include <memory>

using namespace ZkCommon;

namespace {

struct Trace
{
    LogFile file;
    bool bDebugger;
};

/** Runs an entry point's body: no exception leaves the library. */
template <class TBody>
std::uint32_t Guarded(TBody&& _fnBody) noexcept
{
    try {
        return _fnBody();
    } catch (...) { // only memory runs out here
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

} // namespace

extern "C" {

std::uint32_t ZkDbgInitialize(void** _ppHandle, const Library::ZkDbgSettings* _pstSettings)
{
    return Guarded([=]() -> std::uint32_t {
        if (_ppHandle == nullptr || _pstSettings == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        *_ppHandle = nullptr;
        auto pTrace = std::make_unique<Trace>(Trace{LogFile(*_pstSettings), _pstSettings->ucDebugger != 0});
        const std::uint32_t ulError = SinkIsAlone() ? ERROR_SUCCESS : pTrace->file.Open(_pstSettings->stTime);
        if (ulError == ERROR_SUCCESS) {
            *_ppHandle = pTrace.release(); // given back by ZkDbgUninitialize
        }
        return ulError;
    });
}

std::uint32_t ZkDbgUninitialize(void* _pHandle)
{
    const std::unique_ptr<Trace> pTrace(static_cast<Trace*>(_pHandle));
    return ERROR_SUCCESS;
}

std::uint32_t ZkDbgTrace(void* _pHandle, const SYSTEMTIME* _pstTime, const wchar_t* _pszLine)
{
    return Guarded([=]() -> std::uint32_t {
        if (_pHandle == nullptr || _pstTime == nullptr || _pszLine == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        Trace& rTrace = *static_cast<Trace*>(_pHandle);
        if (rTrace.bDebugger) {
            ::OutputDebugStringW(_pszLine);
        }
        return SinkIsAlone() ? ERROR_SUCCESS : rTrace.file.Append(*_pstTime, Library::ToFileText(_pszLine));
    });
}

BOOL WINAPI DllMain(HINSTANCE /*_hModule*/, DWORD _ulReason, LPVOID /*_pReserved*/)
{
    return _ulReason != DLL_PROCESS_ATTACH || ModuleRunTime::Attach() ? TRUE : FALSE;
}
}
