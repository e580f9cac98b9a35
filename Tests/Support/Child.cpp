#include "Child.h"

#include "ZkComn_String.h"

namespace {

constexpr const wchar_t* g_pszFolderVariable = L"VARNHELT_TEST_FOLDER";

ZkCommon::Handle ReadyEvent(DWORD _ulParentId)
{
    const std::wstring tszName = L"Local\\VarnheltTestChild" + std::to_wstring(_ulParentId);
    return ZkCommon::Handle(::CreateEventW(nullptr, FALSE, FALSE, tszName.c_str()));
}

} // namespace

Child::Child(const char* _szTest, const std::wstring& _tszFolder)
{
    ::SetEnvironmentVariableW(g_pszFolderVariable, (std::to_wstring(::GetCurrentProcessId()) + _tszFolder).c_str());
    const ZkCommon::Handle hReady = ReadyEvent(::GetCurrentProcessId());
    wchar_t szProgram[MAX_PATH];
    ::GetModuleFileNameW(nullptr, szProgram, MAX_PATH);
    std::wstring tszCommand = L"\"" + std::wstring(szProgram) + L"\" --gtest_also_run_disabled_tests --gtest_filter=" +
                              ZkCommon::String::FromUtf8(_szTest);
    STARTUPINFOW stStart{};
    stStart.cb = sizeof(stStart);
    PROCESS_INFORMATION stProcess{};
    if (::CreateProcessW(nullptr, tszCommand.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                         &stStart, &stProcess)) {
        const ZkCommon::Handle hThread(stProcess.hThread);
        m_hProcess.Reset(stProcess.hProcess);
        const HANDLE aWait[] = {hReady.Get(), m_hProcess.Get()};
        m_bReady = ::WaitForMultipleObjects(2, aWait, FALSE, 30000) == WAIT_OBJECT_0;
    }
}

void Child::Kill()
{
    if (m_hProcess) {
        ::TerminateProcess(m_hProcess.Get(), 1);
        ::WaitForSingleObject(m_hProcess.Get(), 30000);
        m_hProcess.Reset();
    }
}

std::wstring Child::Folder()
{
    wchar_t szValue[MAX_PATH] = {};
    ::GetEnvironmentVariableW(g_pszFolderVariable, szValue, MAX_PATH);
    const std::wstring tszValue = szValue;
    return tszValue.substr(tszValue.find_first_not_of(L"0123456789"));
}

void Child::WaitToBeKilled()
{
    wchar_t szValue[MAX_PATH] = {};
    ::GetEnvironmentVariableW(g_pszFolderVariable, szValue, MAX_PATH);
    ::SetEvent(ReadyEvent(ZkCommon::String::ToNumber(szValue)).Get());
    for (;;) {
        ::Sleep(INFINITE);
    }
}
