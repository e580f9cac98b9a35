#pragma once

#include "JsonText.h"
#include "RunProgram.h"
#include "TestProduct.h"

#include <gmock/gmock-more-matchers.h>
#include <span>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Varnhelt::DocumentId;

/** Runs the tool's command line within this program. */
ProgramRun RunVrnt(const std::vector<std::wstring>& _vecArgument);

/** What it prints with --json, and the data in that. */
std::string JsonOf(std::vector<std::wstring> _vecArgument);
inline std::string DataOf(std::vector<std::wstring> _vecArgument)
{
    return At(JsonOf(std::move(_vecArgument)), "/data");
}

/** Encrypts a document of that kind. @return the exit status */
inline int Encrypt(const wchar_t* _pszKind, const std::wstring& _rtszIn, const std::wstring& _rtszOut)
{
    return RunVrnt({L"xen", L"encrypt", L"--document", _pszKind, _rtszIn, _rtszOut}).iExitStatus;
}

/** Starts vrnt.exe: for what a process is about. */
ProgramRun StartVrnt(const std::vector<std::wstring>& _vecArgument);

/** One line on stderr, as every error has. */
MATCHER(IsOneLine, "")
{
    return arg.starts_with("vrnt: ") && arg.find('\n') == arg.size() - 1;
}

/** A command line that is refused, and what its one line must name. */
struct UsageRow
{
    int iLine;
    std::vector<std::wstring> vecArgument;
    const char* szNamed;
};
void ExpectUsageErrors(std::span<const UsageRow> _aRow);
