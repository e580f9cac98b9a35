#pragma once

#include "ZkComn_Registry.h"
#include "ZkComn_SourcePlace.h"
#include "ZkComn_Synchronize.h"
#include "ZkComn_ZkDbg.h"

#include <atomic>
#include <concepts>
#include <cstdarg>
#include <cstdint>
#include <string>
#include <type_traits>

/** The debug trace log: what every component writes its lines through. */
namespace ZkCommon {

/**
 * Formats lines and hands them to the trace library, which is optional: without it, or without its settings, tracing is
 * silently off. A sink that the host of this process has set in the trace library sees them as well, even then. Thread-safe; nothing is thrown. May be used while a module is being attached or detached.
 */
class DebugLog
{
public:
    /**
     * Reads the settings and, when they turn tracing on, loads the trace library. When called again it takes over the
     * settings but does not load the library again.
     * @param _pszModuleName     written into every line; null is empty
     * @param _rstSettings       key of the settings, which lie in "ServiceSession" or "InteractiveSession" below it
     * @param _rtszLibraryFolder the trace library's folder; when empty it is found by name, beside the program first
     * @return false when the kind of storage is unknown, or when tracing is on and the library cannot be had
     */
    bool Initialize(const wchar_t* _pszModuleName, const Storage::Key& _rstSettings,
                    const std::wstring& _rtszLibraryFolder) noexcept;

    /**
     * Hands lines to the sink of this process from now on, if a host has set one; Initialize does so by itself. Without
     * Initialize no settings are read and no file is written.
     */
    void AttachSink() noexcept;

    /** Closes the trace and frees the library. @return whether the log was initialised */
    bool Uninitialize() noexcept;

    /** Whether a line of that level would be written now. */
    bool Passes(std::uint32_t _ulLevel) const noexcept { return StateNow().Passes(_ulLevel); }

    /**
     * Writes a line; one that cannot be formatted is dropped.
     * @param _szFile  the caller's source file: its folder and extension are left out
     * @return true when the trace library took the line, or when the log is initialised and tracing is off: a sink does
     *         not matter
     */
    bool Trace(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
               ...) noexcept;
    /** As Trace, with the arguments in a list. */
    bool TraceV(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
                std::va_list _args) noexcept;

private:
    struct alignas(std::uint64_t) State // one word, which the processor reads as a whole
    {
        bool bInitialized;
        bool bEnabled;
        std::uint16_t usSinkMask;
        std::uint32_t ulLevelMask;

        bool IsOff() const noexcept { return bInitialized && !bEnabled; }
        bool GoesToFile(std::uint32_t _ulLevel) const noexcept
        {
            return bInitialized && bEnabled && (ulLevelMask & _ulLevel) != 0;
        }
        bool Passes(std::uint32_t _ulLevel) const noexcept
        {
            return GoesToFile(_ulLevel) || (usSinkMask & _ulLevel) != 0;
        }
    };

    State StateNow() const noexcept { return m_stState.load(std::memory_order_relaxed); }
    void Publish(const State& _rstState) noexcept;
    bool Start(const wchar_t* _pszModuleName, const Storage::Key& _rstSettings, const std::wstring& _rtszFolder);
    bool OpenLibrary(const std::wstring& _rtszFolder, const Library::ZkDbgSettings& _rstSettings);
    bool Write(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const std::wstring& _rtszMessage);

    // Every component calls the log at its entries and exits, and nearly always no line passes. Writers change the
    // state under its lock; a filtered call reads one word and takes no lock. A call that reads a state which is just
    // going out of date does no harm: the line is handed over under the library lock, and only to a bound library.
    Synchronize::CriticalSection m_StateLock;
    std::atomic<State> m_stState{State{}};
    static_assert(std::atomic<State>::is_always_lock_free);

    // Taken before the state lock. Guards what follows.
    Synchronize::CriticalSection m_LibraryLock;
    std::wstring m_tszModuleName;
    Library::ZkDbgSink m_Sink;
    Library::ZkDbg m_Library;
    void* m_pTrace = nullptr;
};

/** The log of this module. */
extern DebugLog g_cDebugLog;

namespace TraceFormat {

enum class Argument
{
    Integer, // 32 bits
    Long64,  // 64 bits: "%I64d", "%I64u", "%I64x"
    Wide,    // const wchar_t* or std::wstring: "%s"
    Narrow,  // const char*: "%S"
    Other,
};

template <class T>
consteval Argument ArgumentOf()
{
    using D = std::decay_t<T>;
    if constexpr (std::is_same_v<D, std::wstring> || std::is_same_v<D, const wchar_t*> || std::is_same_v<D, wchar_t*>) {
        return Argument::Wide;
    } else if constexpr (std::is_same_v<D, const char*> || std::is_same_v<D, char*>) {
        return Argument::Narrow;
    } else if constexpr (std::is_integral_v<D> || std::is_enum_v<D>) {
        return sizeof(D) <= 4 ? Argument::Integer : Argument::Long64;
    } else {
        return Argument::Other;
    }
}

/** What a placeholder accepts; advances _rpszFormat from after its '%' to after its letter. */
constexpr Argument Placeholder(const wchar_t*& _rpszFormat)
{
    const auto IsFlag = [](wchar_t _c) { return (_c >= L'0' && _c <= L'9') || _c == L'-' || _c == L'.' || _c == L'+'; };
    while (IsFlag(*_rpszFormat)) {
        ++_rpszFormat;
    }
    bool bLong64 = false;
    if (_rpszFormat[0] == L'I' && _rpszFormat[1] == L'6' && _rpszFormat[2] == L'4') {
        bLong64 = true;
        _rpszFormat += 3;
    } else if (*_rpszFormat == L'l') { // long has 32 bits here
        ++_rpszFormat;
    }
    switch (*_rpszFormat == L'\0' ? L'\0' : *_rpszFormat++) {
    case L'd':
    case L'u':
    case L'x':
    case L'X':
        return bLong64 ? Argument::Long64 : Argument::Integer;
    case L's':
        return Argument::Wide;
    case L'S':
        return Argument::Narrow;
    default:
        return Argument::Other;
    }
}

template <class... TArgs>
consteval bool Fits(const wchar_t* _pszFormat)
{
    const Argument aActual[] = {ArgumentOf<TArgs>()..., Argument::Other};
    std::size_t uNext = 0;
    while (*_pszFormat != L'\0') {
        if (*_pszFormat++ != L'%') {
            continue;
        }
        if (*_pszFormat == L'%') {
            ++_pszFormat;
            continue;
        }
        if (const Argument enWanted = Placeholder(_pszFormat);
            enWanted == Argument::Other || uNext == sizeof...(TArgs) || aActual[uNext] != enWanted) {
            return false;
        }
        ++uNext;
    }
    return uNext == sizeof...(TArgs);
}

/** Declared and never defined: a format that does not fit its arguments names this function in the error. */
void FormatDoesNotFitItsArguments();

} // namespace TraceFormat

/** A format, held against the types of its arguments when it is compiled, and the place of the call. */
template <class... TArgs>
struct TraceText
{
    template <std::size_t N>
    // NOLINTNEXTLINE(google-explicit-constructor): a literal turns into this at every Trace call
    consteval TraceText(const wchar_t (&_aFormat)[N], SourcePlace _stPlace = SourcePlace::Here())
        : pszFormat(_aFormat), stPlace(_stPlace)
    {
        if (!TraceFormat::Fits<TArgs...>(_aFormat)) {
            TraceFormat::FormatDoesNotFitItsArguments();
        }
    }

    const wchar_t* pszFormat;
    SourcePlace stPlace;
};

/** Whether a line of that level would be written now: for callers who must work to make its text. */
inline bool TracePasses(std::uint32_t _ulLevel) noexcept
{
    return g_cDebugLog.Passes(_ulLevel);
}

/**
 * Writes a line whose format is known at run time only. Thread-safe; never throws; a line that cannot be formatted is
 * dropped.
 * @return true when the trace library took the line, or when tracing is initialised and off
 */
bool TraceAt(SourcePlace _stPlace, std::uint32_t _ulLevel, const wchar_t* _pszFormat, ...) noexcept;

namespace TraceFormat {

inline const wchar_t* Pass(const std::wstring& _rtszText) noexcept
{
    return _rtszText.c_str();
}
template <class T>
requires(!std::is_same_v<std::decay_t<T>, std::wstring>) inline T Pass(T _value) noexcept
{
    return _value;
}

} // namespace TraceFormat

/** Writes a line: Trace(TraceError, L"*** CClass::Method() - it failed. [0x%08x]", ulCode). Contract as TraceAt. */
template <class... TArgs>
inline void Trace(TraceLevel _enLevel, std::type_identity_t<TraceText<TArgs...>> _stText,
                  const TArgs&... _args) noexcept
{
    if (TracePasses(_enLevel)) {
        TraceAt(_stText.stPlace, _enLevel, _stText.pszFormat, TraceFormat::Pass(_args)...);
    }
}

} // namespace ZkCommon
