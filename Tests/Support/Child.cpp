#include "Child.h"

#include "RunProgram.h"
#include "ZkComn_String.h"

namespace {

constexpr const wchar_t* g_pszFolderVariable = L"VARNHELT_TEST_FOLDER";

ZkCommon::Handle ReadyEvent(DWORD _ulParentId)
{
    const std::wstring tszName = L"Local\\VarnheltTestChild" + std::to_wstring(_ulParentId);
    return ZkCommon::Handle(::CreateEventW(nullptr, FALSE, FALSE, tszName.c_str()));
}

/** In the child: the parent's number and the folder. */
std::wstring FromParent()
{
    wchar_t szValue[MAX_PATH] = {};
    ::GetEnvironmentVariableW(g_pszFolderVariable, szValue, MAX_PATH);
    return szValue;
}

} // namespace

Child::Child(const char* _szTest, const std::wstring& _tszFolder)
{
    const ZkCommon::Handle hReady = ReadyEvent(::GetCurrentProcessId());
    m_hProcess = Start(_szTest, _tszFolder);
    const HANDLE aWait[] = {hReady.Get(), m_hProcess.Get()};
    m_bReady = ::WaitForMultipleObjects(2, aWait, FALSE, 30000) == WAIT_OBJECT_0;
}

ZkCommon::Handle Child::Start(const char* _szTest, const std::wstring& _tszFolder)
{
    ::SetEnvironmentVariableW(g_pszFolderVariable, (std::to_wstring(::GetCurrentProcessId()) + _tszFolder).c_str());
    wchar_t szProgram[MAX_PATH];
    ::GetModuleFileNameW(nullptr, szProgram, MAX_PATH);
    return StartProgram(szProgram,
                        {L"--gtest_also_run_disabled_tests", L"--gtest_filter=" + ZkCommon::String::FromUtf8(_szTest)});
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
    const std::wstring tszValue = FromParent();
    return tszValue.substr(tszValue.find_first_not_of(L"0123456789"));
}

void Child::WaitToBeKilled()
{
    const std::wstring tszValue = FromParent();
    ::SetEvent(ReadyEvent(ZkCommon::String::ToNumber(tszValue)).Get());
    for (;;) {
        ::Sleep(INFINITE);
    }
}
