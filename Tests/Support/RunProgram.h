#pragma once

#include "ZkComn_Owner.h"

#include <string>
#include <vector>

/** What a program did. */
struct ProgramRun
{
    int iExitStatus = -1;
    std::string sOutput; // its stdout, byte by byte
    std::string sError;  // its stderr
};

/** Starts a program, without a window or with streams that it inherits. Null when the system fails: so does the test. */
ZkCommon::Handle StartProgram(const std::wstring& _tszPath, const std::vector<std::wstring>& _vecArgument,
                              HANDLE _hOutput = nullptr, HANDLE _hError = nullptr);

/** Waits for a program's end; the test fails and the program is ended when that takes too long. */
int ExitStatusOf(const ZkCommon::Handle& _rhProcess);

/** Runs a program from this one's folder, waits for it, and gathers what it wrote. */
ProgramRun RunProgram(const std::wstring& _tszProgram, const std::vector<std::wstring>& _vecArgument);
