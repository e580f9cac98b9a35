#include "RunProgram.h"

#include "TempFolder.h"
#include "TraceRecorder.h"

#include <gtest/gtest.h>

namespace {

/** Quotes an argument so that the program's start-up code reads it unchanged. */
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

} // namespace

ZkCommon::Handle StartProgram(const std::wstring& _tszPath, const std::vector<std::wstring>& _vecArgument,
                              HANDLE _hOutput, HANDLE _hError)
{
    std::wstring tszCommandLine = Quoted(_tszPath);
    for (const std::wstring& tszArgument : _vecArgument) {
        tszCommandLine += L' ' + Quoted(tszArgument);
    }
    const bool bStreams = _hOutput != nullptr;
    STARTUPINFOW stStartup{};
    stStartup.cb = sizeof stStartup;
    stStartup.dwFlags = bStreams ? STARTF_USESTDHANDLES : 0;
    stStartup.hStdOutput = _hOutput;
    stStartup.hStdError = _hError;
    PROCESS_INFORMATION stProcess{};
    // A start that fails within the system, as Wine's now and then does under load, is tried again.
    for (int iTry = 1; !::CreateProcessW(_tszPath.c_str(), tszCommandLine.data(), nullptr, nullptr, bStreams,
                                         bStreams ? 0 : CREATE_NO_WINDOW, nullptr, nullptr, &stStartup, &stProcess);
         ++iTry) {
        if (::GetLastError() != ERROR_INTERNAL_ERROR || iTry == 5) {
            ADD_FAILURE() << "cannot start the program: error " << ::GetLastError();
            return {};
        }
        ::Sleep(200);
    }
    const ZkCommon::Handle hThread(stProcess.hThread);
    return ZkCommon::Handle(stProcess.hProcess);
}

int ExitStatusOf(const ZkCommon::Handle& _rhProcess)
{
    if (::WaitForSingleObject(_rhProcess.Get(), 60000) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "the program hangs";
        ::TerminateProcess(_rhProcess.Get(), 99);
    }
    DWORD ulExit = MAXDWORD;
    ::GetExitCodeProcess(_rhProcess.Get(), &ulExit);
    return static_cast<int>(ulExit);
}

ProgramRun RunProgram(const std::wstring& _tszProgram, const std::vector<std::wstring>& _vecArgument)
{
    const TempFolder cStreams;
    ZkCommon::FileHandle hOutput = StreamFile(cStreams.File(L"output"));
    ZkCommon::FileHandle hError = StreamFile(cStreams.File(L"error"));
    const ZkCommon::Handle hProcess =
        StartProgram(ProgramFolder() + L"\\" + _tszProgram, _vecArgument, hOutput.Get(), hError.Get());
    const int iExitStatus = ExitStatusOf(hProcess);
    hOutput.Reset();
    hError.Reset();
    return {iExitStatus, cStreams.Read(L"output"), cStreams.Read(L"error")};
}
