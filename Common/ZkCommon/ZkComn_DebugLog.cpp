#include "ZkComn_DebugLog.h"

#include "ZkComn_Exception.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Platform.h"
#include "ZkComn_SecurityAttributes.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <string_view>

namespace ZkCommon {

DebugLog g_cDebugLog;

namespace {

constexpr std::uint32_t g_ulDefaultLevelMask = TraceError;

/** Everything that the settings say. */
struct Settings
{
    std::uint32_t ulEnable = 0;
    std::uint32_t ulLevel = g_ulDefaultLevelMask;
    Library::ZkDbgSettings stLibrary{};
};

template <std::size_t N>
void CopyText(wchar_t (&_raField)[N], std::wstring_view _svText) noexcept
{
    _raField[_svText.copy(_raField, N - 1)] = L'\0';
}

/** Reads the settings in their fixed order; TReader is a registry key or a section of an ini file. */
template <class TReader>
void ReadSettings(const TReader& _rReader, Settings& _rstSettings)
{
    Library::ZkDbgSettings& rstLibrary = _rstSettings.stLibrary;
    _rstSettings.ulEnable = _rReader.ReadNumber(L"Enable", 0);
    _rstSettings.ulLevel = _rReader.ReadNumber(L"Level", g_ulDefaultLevelMask);
    rstLibrary.ulLogProcess = _rReader.ReadNumber(L"LogProcess", 0);
    rstLibrary.ulLogUnitType = _rReader.ReadNumber(L"LogUnitType", 0);
    CopyText(rstLibrary.aszLogFolder, _rReader.ReadString(L"LogFolder", L""));
    CopyText(rstLibrary.aszLogPrefix, _rReader.ReadString(L"LogPrefix", L"vqx"));
    CopyText(rstLibrary.aszLogFile, _rReader.ReadString(L"LogFile", L""));
    CopyText(rstLibrary.aszLogExtension, _rReader.ReadString(L"LogExtension", L"log"));
    rstLibrary.ucRobust = _rReader.ReadNumber(L"Robust", 0) != 0 ? 1 : 0;
    rstLibrary.ucDebugger = _rReader.ReadNumber(L"Debugger", 0) != 0 ? 1 : 0;
}

/** @return false when the kind of storage is unknown */
bool ReadSettings(const Storage::Key& _rstKey, Settings& _rstSettings)
{
    const wchar_t* const pszSession =
        _rstSettings.stLibrary.ucServiceSession != 0 ? L"ServiceSession" : L"InteractiveSession";
    try {
        switch (_rstKey.ulKind) {
        case Storage::Key::Registry:
        case Storage::Key::RegistryAlias:
            ReadSettings(Storage::Registry(_rstKey.hRoot, String::WithBackslash(_rstKey.tszPath) + pszSession),
                         _rstSettings);
            return true;
        case Storage::Key::IniFile:
            ReadSettings(Storage::IniFile(_rstKey.tszPath, pszSession), _rstSettings);
            return true;
        default:
            return false;
        }
    } catch (Storage::Exception* _pError) {
        delete _pError;
        _rstSettings.ulEnable = 0;
        _rstSettings.ulLevel = g_ulDefaultLevelMask;
        return true;
    }
}

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
        delete _pError;
        return false;
    }
}

const wchar_t* TagOf(std::uint32_t _ulLevel) noexcept
{
    switch (_ulLevel) {
    case TraceDetail:
        return L".w.";
    case TraceNotice:
        return L"@@@";
    case TraceError:
        return L"!!!";
    default:
        return L"???";
    }
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
        delete _pError;
    } catch (...) { // memory ran out
    }
    return false;
}

bool DebugLog::Start(const wchar_t* _pszModuleName, const Storage::Key& _rstSettings, const std::wstring& _rtszFolder)
{
    m_tszModuleName = _pszModuleName != nullptr ? _pszModuleName : L"";

    Settings stSettings;
    ::GetLocalTime(&stSettings.stLibrary.stTime);
    stSettings.stLibrary.ucServiceSession = RunsInServiceSession() ? 1 : 0;
    CopyText(stSettings.stLibrary.aszModuleName, m_tszModuleName);
    if (!ReadSettings(_rstSettings, stSettings)) {
        return false;
    }

    State stState = StateNow();
    const bool bOpen = !stState.bInitialized && stSettings.ulEnable != 0;
    stState.bInitialized = stState.bInitialized || stSettings.ulEnable == 0;
    stState.bEnabled = stSettings.ulEnable != 0;
    stState.ulLevelMask = stSettings.ulLevel;
    Publish(stState);
    if (bOpen && !OpenLibrary(_rtszFolder, stSettings.stLibrary)) {
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
    if (!StateNow().bInitialized) {
        return false;
    }
    if (m_Library.IsBound()) {
        m_Library.Uninitialize(m_pTrace);
        m_pTrace = nullptr;
        m_Library.Unload();
    }
    Publish(State{});
    return true;
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
        return stState.bInitialized && !stState.bEnabled;
    }
    try {
        return Write(_szFile, _ulLine, _ulLevel, String::FormatList(_pszFormat, _args));
    } catch (Exception::Base* _pError) {
        delete _pError;
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
    if (!m_Library.IsBound()) {
        return false;
    }
    std::wstring tszLine; // the day comes first on purpose
    String::Format(tszLine, L"%02d/%02d/%04d %02d:%02d:%02d.%03d %04x:%04x %3s <%s> ", stTime.wDay, stTime.wMonth,
                   stTime.wYear, stTime.wHour, stTime.wMinute, stTime.wSecond, stTime.wMilliseconds,
                   ::GetCurrentProcessId(), ::GetCurrentThreadId(), TagOf(_ulLevel), m_tszModuleName.c_str());
    tszLine += _rtszMessage;
    tszLine += tszTail;
    return m_Library.Trace(m_pTrace, stTime, tszLine.c_str());
}

bool TraceAt(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
             ...) noexcept
{
    std::va_list args;
    va_start(args, _pszFormat);
    const bool bResult = g_cDebugLog.TraceV(_szFile, _ulLine, _ulLevel, _pszFormat, args);
    va_end(args);
    return bResult;
}

} // namespace ZkCommon
