#pragma once

#include <cstdint>
#include <windows.h>

/**
 * The sink of the trace library: a host that wants to see the lines of its own process loads "ZkDbgLog.dll", sets a
 * function, and only then loads the modules that trace. The machine's trace settings are neither read nor changed by
 * this, and what they ask for is written all the same.
 */
namespace ZkCommon::Library {

/** A line as the sink receives it. The texts are zero-terminated and valid during the call only. */
struct ZkDbgLine
{
    std::uint32_t ulLevel;     // 1 detail, 16 notice, 256 error
    const SYSTEMTIME* pstTime; // local
    const wchar_t* pszMessage; // what the line says
    const wchar_t* pszLine;    // the whole line as it goes to a file, with its line end
};

/** Called on the thread that writes the line, for one line at a time. It must not call the module, nor load a library, nor throw. */
using ZkDbgSinkFunction = void(void* _pContext, const ZkDbgLine* _pstLine);

/** Added to the levels of a sink: while it is set, the trace library writes no file in this process. */
inline constexpr std::uint32_t g_ulSinkAlone = 0x80000000;

/**
 * The export "ZkDbgSetSink": sets the one sink of this process, or removes it (null). A module learns of it, and of its
 * levels, when it is loaded. When the call returns, the former sink is called no more. Thread-safe.
 * @param _ulLevelMask  the sum of the levels to be seen
 * @return 0
 */
using ZkDbgSetSinkFunction = std::uint32_t(ZkDbgSinkFunction* _pfnSink, void* _pContext, std::uint32_t _ulLevelMask);

// For the modules that trace: the levels that the sink of this process asks for, 0 without one, and the way to it.
using ZkDbgSinkLevelsFunction = std::uint32_t();
using ZkDbgSinkLineFunction = std::uint32_t(const ZkDbgLine* _pstLine);

} // namespace ZkCommon::Library
