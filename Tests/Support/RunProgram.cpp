#include "RunProgram.h"

#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_Owner.h"

#include <gtest/gtest.h>

namespace {

/** Quotes an argument so that the program's start-up code takes it apart as it was. */
std::wstring Quoted(const std::wstring& _tszArgument)
{
    std::wstring tszQuoted = L"\"";
    std::size_t uBackslashes = 0;
    for (const wchar_t c : _tszArgument) {
        if (c == L'"') {
            tszQuoted.append(uBackslashes + 1, L'\\'); // those before a quote count double
        }
        uBackslashes = c == L'\\' ? uBackslashes + 1 : 0;
        tszQuoted += c;
    }
    return tszQuoted.append(uBackslashes, L'\\') + L'"';
}

/** A file that a child process writes its stream into. */
ZkCommon::FileHandle StreamFile(const std::wstring& _tszPath)
{
    SECURITY_ATTRIBUTES stInherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return ZkCommon::FileHandle(::CreateFileW(_tszPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &stInherited,
                                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/** Starts a program. A start that fails within the system, as Wine's now and then does under load, is tried again. */
bool Start(const std::wstring& _tszProgram, std::wstring& _rtszCommandLine, STARTUPINFOW& _rstStartup,
           PROCESS_INFORMATION& _rstProcess)
{
    constexpr int iTries = 5;
    for (int i = 0; i < iTries; ++i) {
        if (::CreateProcessW(_tszProgram.c_str(), _rtszCommandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                             &_rstStartup, &_rstProcess) != FALSE) {
            return true;
        }
        if (::GetLastError() != ERROR_INTERNAL_ERROR) {
            break;
        }
        ::Sleep(200);
    }
    ADD_FAILURE() << "cannot start the program: error " << ::GetLastError();
    return false;
}

} // namespace

ProgramRun RunProgram(const std::wstring& _tszProgram, const std::vector<std::wstring>& _vecArgument)
{
    const std::wstring tszProgram = ProgramFolder() + L"\\" + _tszProgram;
    std::wstring tszCommandLine = Quoted(tszProgram);
    for (const std::wstring& tszArgument : _vecArgument) {
        tszCommandLine += L' ' + Quoted(tszArgument);
    }
    const TempFolder cStreams;
    ProgramRun stRun;
    {
        const ZkCommon::FileHandle hOutput = StreamFile(cStreams.File(L"output"));
        const ZkCommon::FileHandle hError = StreamFile(cStreams.File(L"error"));
        STARTUPINFOW stStartup{};
        stStartup.cb = sizeof(stStartup);
        stStartup.dwFlags = STARTF_USESTDHANDLES;
        stStartup.hStdOutput = hOutput.Get();
        stStartup.hStdError = hError.Get();
        PROCESS_INFORMATION stProcess{};
        if (!Start(tszProgram, tszCommandLine, stStartup, stProcess)) {
            return stRun;
        }
        const ZkCommon::Handle hProcess(stProcess.hProcess);
        const ZkCommon::Handle hThread(stProcess.hThread);
        if (::WaitForSingleObject(hProcess.Get(), 60000) != WAIT_OBJECT_0) {
            ADD_FAILURE() << "the program hangs";
            ::TerminateProcess(hProcess.Get(), 99);
        }
        DWORD ulExit = 0;
        ::GetExitCodeProcess(hProcess.Get(), &ulExit);
        stRun.iExitStatus = static_cast<int>(ulExit);
    }
    stRun.sOutput = cStreams.Read(L"output");
    stRun.sError = cStreams.Read(L"error");
    return stRun;
}
