#pragma once

#include "RunProgram.h"

#include <span>
#include <string>
#include <vector>

/** Runs the tool's command line within this program. */
ProgramRun RunVrnt(const std::vector<std::wstring>& _vecArgument);

/** Starts vrnt.exe: for what a process is about. */
ProgramRun StartVrnt(const std::vector<std::wstring>& _vecArgument);

/** A query, and what it prints. */
struct AnswerRow
{
    int iLine;
    std::vector<std::wstring> vecArgument;
    std::string sData;   // in JSON
    const char* szCells; // in the table, an expression
};

/** Expects that each query succeeds and prints its records as JSON and as a table, and that VrntJson.dll answers the same. */
void ExpectAnswers(std::span<const AnswerRow> _aRow);
