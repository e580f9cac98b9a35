#include "VrntTest.h"

#include "CommandLine.h"
#include "Output/Output.h"

ProgramRun RunVrnt(const std::vector<std::wstring>& _vecArgument)
{
    std::vector<std::wstring> vecArgument = {L"vrnt"};
    vecArgument.insert(vecArgument.end(), _vecArgument.begin(), _vecArgument.end());
    std::vector<wchar_t*> vecPointer;
    for (std::wstring& tszArgument : vecArgument) {
        vecPointer.push_back(tszArgument.data());
    }
    Vrnt::OutputCapture cCapture;
    const int iExitStatus = Vrnt::Run(static_cast<int>(vecPointer.size()), vecPointer.data());
    return {iExitStatus, cCapture.sOutput, cCapture.sError};
}

std::string JsonOf(std::vector<std::wstring> _vecArgument)
{
    _vecArgument.insert(_vecArgument.begin(), L"--json");
    return Json(RunVrnt(_vecArgument).sOutput);
}

ProgramRun StartVrnt(const std::vector<std::wstring>& _vecArgument)
{
    return RunProgram(L"vrnt.exe", _vecArgument);
}

void ExpectUsageErrors(std::span<const UsageRow> _aRow)
{
    for (const UsageRow& stRow : _aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const ProgramRun stRun = RunVrnt(stRow.vecArgument);
        EXPECT_EQ(stRun.iExitStatus, 2);
        EXPECT_THAT(stRun.sError, testing::AllOf(IsOneLine(), HasSubstr(stRow.szNamed)));
        EXPECT_THAT(stRun.sOutput, IsEmpty());
    }
}
