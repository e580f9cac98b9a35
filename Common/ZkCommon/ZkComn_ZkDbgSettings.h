#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <windows.h>

namespace ZkCommon {

/** Level of a trace line; the "Level" setting is a mask of them. */
enum TraceLevel : std::uint32_t
{
    TraceDetail = 1,  // entries, exits, debug dumps
    TraceNotice = 16, // information and recoverable problems
    TraceError = 256,
};

inline constexpr std::uint32_t g_ulAllTraceLevels = TraceDetail | TraceNotice | TraceError;

/** A level's tag in a line, and its name for people. */
struct TraceTag
{
    std::uint32_t ulLevel;
    const wchar_t* pszTag;
    const char* szName;
};
inline constexpr TraceTag g_aTraceTag[] = {
    {TraceDetail, L".w.", "detail"},
    {TraceNotice, L"@@@", "notice"},
    {TraceError, L"!!!", "error"},
};

namespace Storage {
struct Key;
}

/** The trace settings of one kind of session; the defaults are those of values that are missing. */
struct TraceSettings
{
    std::uint32_t ulEnable = 0;
    std::uint32_t ulLevel = TraceError;
    std::uint32_t ulLogProcess = 0;
    std::uint32_t ulLogUnitType = 0;
    std::wstring tszLogFolder;
    std::wstring tszLogPrefix = L"vqx";
    std::wstring tszLogFile;
    std::wstring tszLogExtension = L"log"; // without its dot
    std::uint32_t ulRobust = 0;
    std::uint32_t ulDebugger = 0;

    /** The value at which reading failed, which turned tracing off; null when all could be read. */
    const wchar_t* pszUnreadable = nullptr;
};

/** A setting: the name of its value, and its field, a number (REG_DWORD) or a text (REG_SZ). */
struct TraceSetting
{
    const wchar_t* pszName = nullptr;
    std::uint32_t TraceSettings::*pNumber = nullptr;
    std::wstring TraceSettings::*pText = nullptr;
};

/** In the order of reading. */
inline constexpr TraceSetting g_aTraceSetting[] = {
    {L"Enable", &TraceSettings::ulEnable},
    {L"Level", &TraceSettings::ulLevel},
    {L"LogProcess", &TraceSettings::ulLogProcess},
    {L"LogUnitType", &TraceSettings::ulLogUnitType},
    {L"LogFolder", nullptr, &TraceSettings::tszLogFolder},
    {L"LogPrefix", nullptr, &TraceSettings::tszLogPrefix},
    {L"LogFile", nullptr, &TraceSettings::tszLogFile},
    {L"LogExtension", nullptr, &TraceSettings::tszLogExtension},
    {L"Robust", &TraceSettings::ulRobust},
    {L"Debugger", &TraceSettings::ulDebugger},
};

/** The key, or section, of a kind of session below the settings key. */
constexpr const wchar_t* TraceSessionKey(bool _bService) noexcept
{
    return _bService ? L"ServiceSession" : L"InteractiveSession";
}

/**
 * Reads the settings as the trace log does: a storage or a value that cannot be read turns tracing off at the default
 * level, and keeps the values read until then. A missing key is one that cannot be read.
 * @return std::nullopt when the kind of storage is unknown
 * @throws std::bad_alloc, String::Exception* when memory runs out
 */
std::optional<TraceSettings> ReadTraceSettings(const Storage::Key& _rstKey, bool _bService);

/** What the trace log and the trace library share: the settings record and the library's entry points. */
namespace Library {

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

/** Puts a text into a field of the record, cut off to it. */
template <std::size_t N>
void PutText(wchar_t (&_raField)[N], std::wstring_view _svText) noexcept
{
    _raField[_svText.copy(_raField, N - 1)] = L'\0';
}

/** The record of a module's settings; the session flag and the time stay zero. */
ZkDbgSettings RecordOf(const TraceSettings& _rstSettings, std::wstring_view _svModuleName) noexcept;

/** The parts of the path of the file that a record asks for. */
struct ZkDbgFile
{
    std::wstring tszFolder;    // empty: that of the program
    std::wstring tszName;      // without its extension
    std::wstring tszExtension; // with its dot, or empty
};
ZkDbgFile FileOf(const ZkDbgSettings& _rstSettings);

/** Opens a trace; 0 on success, and then the handle is not null. */
using ZkDbgInitializeFunction = std::uint32_t(void** _ppHandle, const ZkDbgSettings* _pstSettings);
using ZkDbgUninitializeFunction = std::uint32_t(void* _pHandle);
/** Accepts a finished line with its local time; 0 on success. One call at a time for one handle. */
using ZkDbgTraceFunction = std::uint32_t(void* _pHandle, const SYSTEMTIME* _pstTime, const wchar_t* _pszLine);

} // namespace Library

} // namespace ZkCommon
