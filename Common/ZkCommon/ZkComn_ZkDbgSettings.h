#pragma once

#include <cstddef>
#include <cstdint>
#include <windows.h>

/** What the trace log and the trace library share: the settings record and the library's entry points. */
namespace ZkCommon::Library {

#pragma pack(push, 1)
/** Fixed layout; text is zero-terminated and cut off to its field; whatever is unused is zero. */
struct ZkDbgSettings
{
    std::uint8_t ucServiceSession; // 1: the process runs in a service session
    std::uint8_t ucRobust;         // 1: every line is on disk before the call returns
    std::uint8_t ucDebugger;       // 1: lines go to the debugger as well
    std::uint8_t ucReserved;
    SYSTEMTIME stTime; // local time at which the settings were read
    std::uint32_t ulLogProcess;
    std::uint32_t ulLogUnitType;
    wchar_t aszModuleName[32];
    wchar_t aszLogFolder[260];
    wchar_t aszLogPrefix[256];
    wchar_t aszLogFile[256];
    wchar_t aszLogExtension[256]; // without its dot
};
#pragma pack(pop)

static_assert(offsetof(ZkDbgSettings, ucServiceSession) == 0);
static_assert(offsetof(ZkDbgSettings, ucRobust) == 1);
static_assert(offsetof(ZkDbgSettings, ucDebugger) == 2);
static_assert(offsetof(ZkDbgSettings, ucReserved) == 3);
static_assert(offsetof(ZkDbgSettings, stTime) == 4);
static_assert(offsetof(ZkDbgSettings, ulLogProcess) == 20);
static_assert(offsetof(ZkDbgSettings, ulLogUnitType) == 24);
static_assert(offsetof(ZkDbgSettings, aszModuleName) == 28);
static_assert(offsetof(ZkDbgSettings, aszLogFolder) == 92);
static_assert(offsetof(ZkDbgSettings, aszLogPrefix) == 612);
static_assert(offsetof(ZkDbgSettings, aszLogFile) == 1124);
static_assert(offsetof(ZkDbgSettings, aszLogExtension) == 1636);
static_assert(sizeof(ZkDbgSettings) == 2148);

/** Opens a trace; 0 on success, and then the handle is not null. */
using ZkDbgInitializeFunction = std::uint32_t(void** _ppHandle, const ZkDbgSettings* _pstSettings);
using ZkDbgUninitializeFunction = std::uint32_t(void* _pHandle);
/** Takes a finished line with the local time of it; 0 on success. One call at a time for one handle. */
using ZkDbgTraceFunction = std::uint32_t(void* _pHandle, const SYSTEMTIME* _pstTime, const wchar_t* _pszLine);

} // namespace ZkCommon::Library
