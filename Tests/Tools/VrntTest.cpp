#include "VrntTest.h"

#include "CommandLine.h"
#include "Output/Output.h"

#include "ZkComn_String.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

/** The command line as a request of VrntJson.dll. */
std::wstring ToRequest(const std::vector<std::wstring>& _rvecArgument)
{
    Json jsRequest = {{"command", ""}};
    auto itArgument = _rvecArgument.begin();
    for (; itArgument != _rvecArgument.end() && !itArgument->starts_with(L"--"); ++itArgument) {
        jsRequest["command"] = jsRequest["command"].get<std::string>() + " " + ZkCommon::String::ToUtf8(*itArgument);
    }
    for (; itArgument != _rvecArgument.end(); itArgument += 2) {
        const std::string sValue = ZkCommon::String::ToUtf8(itArgument[1]);
        Json& rjsValue = jsRequest[ZkCommon::String::ToUtf8(itArgument->substr(2))];
        rjsValue = rjsValue.is_null() ? Json(sValue) : Json({rjsValue, sValue});
    }
    return ZkCommon::String::FromUtf8(jsRequest.dump(-1, ' ', true));
}

} // namespace

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

ProgramRun StartVrnt(const std::vector<std::wstring>& _vecArgument)
{
    return RunProgram(L"vrnt.exe", _vecArgument);
}

void ExpectAnswers(std::span<const AnswerRow> _aRow)
{
    for (const AnswerRow& stRow : _aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        std::vector<std::wstring> vecArgument = stRow.vecArgument;
        const ProgramRun stTable = RunVrnt(vecArgument);
        EXPECT_EQ(stTable.iExitStatus, 0);
        EXPECT_THAT(stTable.sOutput, testing::ContainsRegex(stRow.szCells));
        vecArgument.emplace_back(L"--json");
        const ProgramRun stJson = RunVrnt(vecArgument);
        ASSERT_TRUE(Json::accept(stJson.sOutput)) << stJson.sOutput << stJson.sError;
        EXPECT_EQ(Json::parse(stJson.sOutput), Json({{"result", "0x00040200"}, {"data", Json::parse(stRow.sData)}}));
        EXPECT_EQ(RunProgram(L"JsonHost.exe", {ToRequest(stRow.vecArgument)}).sOutput, stJson.sOutput);
    }
}
