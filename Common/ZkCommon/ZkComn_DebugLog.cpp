#include "ZkComn_DebugLog.h"

#include "ZkComn_Exception.h"
#include "ZkComn_Platform.h"
#include "ZkComn_SecurityAttributes.h"
#include "ZkComn_String.h"

#include <optional>
#include <string_view>

namespace ZkCommon {

DebugLog g_cDebugLog;

namespace {

bool RunsInSessionZero() noexcept
{
    const ModuleHandle hKernel(::LoadLibraryW(L"kernel32.dll"));
    if (!hKernel) {
        return false;
    }
    const auto pSessionOf =
        Library::FunctionAt<decltype(::ProcessIdToSessionId)>(::GetProcAddress(hKernel.Get(), "ProcessIdToSessionId"));
    DWORD ulSession = 0;
    return pSessionOf != nullptr && pSessionOf(::GetCurrentProcessId(), &ulSession) && ulSession == 0;
}

bool RunsInServiceSession()
{
    if (!Platform::CheckOsType(Platform::Os2000OrLater) || Platform::ErrorCode() != ERROR_SUCCESS) {
        return false;
    }
    if (Platform::CheckOsType(Platform::OsVistaOrLater)) {
        return RunsInSessionZero(); // services have session 0 to themselves
    }
    try {
        return AccessControl::IsMember(WinLocalSystemSid);
    } catch (AccessControl::Exception* _pError) {
        const Exception::Caught pCaught(_pError);
        return false;
    }
}

const wchar_t* TagOf(std::uint32_t _ulLevel) noexcept
{
    for (const TraceTag& stTag : g_aTraceTag) {
        if (stTag.ulLevel == _ulLevel) {
            return stTag.pszTag;
        }
    }
    return L"???";
}

/** A source file's name without folder and extension, whichever way the compiler spells the path. */
std::wstring SourceName(std::string_view _svFile)
{
    _svFile.remove_prefix(_svFile.find_last_of("/\\") + 1); // npos + 1 is 0
    _svFile = _svFile.substr(0, _svFile.rfind('.'));
    const int iLength = static_cast<int>(_svFile.size());
    const int iWide = ::MultiByteToWideChar(CP_THREAD_ACP, 0, _svFile.data(), iLength, nullptr, 0);
    std::wstring tszName(static_cast<std::size_t>(iWide), L'\0');
    ::MultiByteToWideChar(CP_THREAD_ACP, 0, _svFile.data(), iLength, tszName.data(), iWide);
    return tszName;
}

} // namespace

void DebugLog::Publish(const State& _rstState) noexcept
{
    const Synchronize::SingleLock lock(&m_StateLock);
    m_stState.store(_rstState, std::memory_order_relaxed);
}

bool DebugLog::Initialize(const wchar_t* _pszModuleName, const Storage::Key& _rstSettings,
                          const std::wstring& _rtszLibraryFolder) noexcept
{
    try {
        const Synchronize::SingleLock lock(&m_LibraryLock);
        return Start(_pszModuleName, _rstSettings, _rtszLibraryFolder);
    } catch (Exception::Base* _pError) {
        const Exception::Caught pCaught(_pError);
    } catch (...) { // memory ran out
    }
    return false;
}

void DebugLog::AttachSink() noexcept
{
    const Synchronize::SingleLock lock(&m_LibraryLock);
    State stState = StateNow();
    stState.usSinkMask = static_cast<std::uint16_t>(m_Sink.Attach());
    Publish(stState);
}

bool DebugLog::Start(const wchar_t* _pszModuleName, const Storage::Key& _rstSettings, const std::wstring& _rtszFolder)
{
    m_tszModuleName = _pszModuleName != nullptr ? _pszModuleName : L"";
    AttachSink();

    SYSTEMTIME stTime{};
    ::GetLocalTime(&stTime);
    const bool bService = RunsInServiceSession();
    const std::optional<TraceSettings> stSettings = ReadTraceSettings(_rstSettings, bService);
    if (!stSettings) {
        return false;
    }
    Library::ZkDbgSettings stRecord = Library::RecordOf(*stSettings, m_tszModuleName);
    stRecord.ucServiceSession = bService ? 1 : 0;
    stRecord.stTime = stTime;

    State stState = StateNow();
    const bool bOpen = !stState.bInitialized && stSettings->ulEnable != 0;
    stState.bInitialized = stState.bInitialized || stSettings->ulEnable == 0;
    stState.bEnabled = stSettings->ulEnable != 0;
    stState.ulLevelMask = stSettings->ulLevel;
    Publish(stState);
    if (bOpen && !OpenLibrary(_rtszFolder, stRecord)) {
        return false;
    }
    stState.bInitialized = true;
    Publish(stState);
    return true;
}

bool DebugLog::OpenLibrary(const std::wstring& _rtszFolder, const Library::ZkDbgSettings& _rstSettings)
{
    std::uint32_t ulIgnored = 0;
    if (m_Library.Load(_rtszFolder) && m_Library.Bind(true, ulIgnored) &&
        m_Library.Initialize(m_pTrace, _rstSettings)) {
        return true;
    }
    m_Library.Unload();
    return false;
}

bool DebugLog::Uninitialize() noexcept
{
    const Synchronize::SingleLock lock(&m_LibraryLock);
    const bool bInitialized = StateNow().bInitialized;
    if (m_Library.IsBound()) {
        m_Library.Uninitialize(m_pTrace);
        m_pTrace = nullptr;
        m_Library.Unload();
    }
    m_Sink.Detach();
    Publish(State{});
    return bInitialized;
}

bool DebugLog::Trace(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
                     ...) noexcept
{
    std::va_list args;
    va_start(args, _pszFormat);
    const bool bResult = TraceV(_szFile, _ulLine, _ulLevel, _pszFormat, args);
    va_end(args);
    return bResult;
}

bool DebugLog::TraceV(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
                      std::va_list _args) noexcept
{
    const State stState = StateNow();
    if (!stState.Passes(_ulLevel)) {
        return stState.IsOff();
    }
    try {
        return Write(_szFile, _ulLine, _ulLevel, String::FormatList(_pszFormat, _args));
    } catch (Exception::Base* _pError) {
        const Exception::Caught pCaught(_pError);
    } catch (...) { // memory ran out: the line is dropped
    }
    return false;
}

bool DebugLog::Write(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel,
                     const std::wstring& _rtszMessage)
{
    SYSTEMTIME stTime{};
    ::GetLocalTime(&stTime);
    std::wstring tszTail;
    String::Format(tszTail, L" - %s(%lu)\r\n", SourceName(_szFile).c_str(), _ulLine);

    const Synchronize::SingleLock lock(&m_LibraryLock);
    const State stState = StateNow();
    if (!m_Library.IsBound() && !m_Sink.IsBound()) {
        return stState.IsOff();
    }
    std::wstring tszLine; // the day comes first on purpose
    String::Format(tszLine, L"%02d/%02d/%04d %02d:%02d:%02d.%03d %04x:%04x %3s <%s> ", stTime.wDay, stTime.wMonth,
                   stTime.wYear, stTime.wHour, stTime.wMinute, stTime.wSecond, stTime.wMilliseconds,
                   ::GetCurrentProcessId(), ::GetCurrentThreadId(), TagOf(_ulLevel), m_tszModuleName.c_str());
    tszLine += _rtszMessage;
    tszLine += tszTail;
    m_Sink.Line({_ulLevel, &stTime, _rtszMessage.c_str(), tszLine.c_str()});
    return stState.GoesToFile(_ulLevel) ? m_Library.Trace(m_pTrace, stTime, tszLine.c_str()) : stState.IsOff();
}

bool TraceAt(SourcePlace _stPlace, std::uint32_t _ulLevel, const wchar_t* _pszFormat, ...) noexcept
{
    std::va_list args;
    va_start(args, _pszFormat);
    const bool bResult = g_cDebugLog.TraceV(_stPlace.szFile, _stPlace.ulLine, _ulLevel, _pszFormat, args);
    va_end(args);
    return bResult;
}

} // namespace ZkCommon
