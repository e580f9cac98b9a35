#pragma once

#include <string>
#include <vector>

/** What a program did. */
struct ProgramRun
{
    int iExitStatus = -1;
    std::string sOutput; // its stdout, byte by byte
    std::string sError;  // its stderr
};

/** Runs a program that lies beside this one, waits for it, and gathers what it wrote. */
ProgramRun RunProgram(const std::wstring& _tszProgram, const std::vector<std::wstring>& _vecArgument);

/** Runs vrnt.exe. */
inline ProgramRun RunVrnt(const std::vector<std::wstring>& _vecArgument)
{
    return RunProgram(L"vrnt.exe", _vecArgument);
}
