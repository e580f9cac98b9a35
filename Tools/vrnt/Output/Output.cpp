#include "Output/Output.h"

#include "SrvFrwk_ResultCode.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <windows.h>

namespace Vrnt {

namespace {

constinit thread_local OutputCapture* g_pCapture = nullptr;

void WriteTo(DWORD _ulStream, std::string_view _svUtf8)
{
    const HANDLE hStream = ::GetStdHandle(_ulStream);
    DWORD ulMode = 0;
    DWORD ulWritten = 0;
    if (::GetConsoleMode(hStream, &ulMode) != FALSE) {
        const std::wstring tszText = ZkCommon::String::FromUtf8(_svUtf8);
        ::WriteConsoleW(hStream, tszText.data(), static_cast<DWORD>(tszText.size()), &ulWritten, nullptr);
        return;
    }
    while (!_svUtf8.empty()) {
        if (::WriteFile(hStream, _svUtf8.data(), static_cast<DWORD>(_svUtf8.size()), &ulWritten, nullptr) == FALSE) {
            return; // the reader of the pipe has gone
        }
        _svUtf8.remove_prefix(ulWritten);
    }
}

std::string OneLine(std::string _sText)
{
    std::replace_if(
        _sText.begin(), _sText.end(), [](unsigned char _c) { return _c < ' '; }, ' ');
    return _sText;
}

} // namespace

OutputCapture::OutputCapture()
{
    g_pCapture = this;
}

OutputCapture::~OutputCapture()
{
    g_pCapture = nullptr;
}

void Write(std::string_view _svUtf8)
{
    if (g_pCapture != nullptr) {
        g_pCapture->sOutput += _svUtf8;
    } else {
        WriteTo(STD_OUTPUT_HANDLE, _svUtf8);
    }
}

void WriteError(std::string_view _svUtf8)
{
    if (g_pCapture != nullptr) {
        g_pCapture->sError += _svUtf8;
    } else {
        WriteTo(STD_ERROR_HANDLE, _svUtf8);
    }
}

std::size_t OutputWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO stInfo{};
    if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &stInfo) != FALSE) {
        return static_cast<std::size_t>(std::max(0, stInfo.srWindow.Right - stInfo.srWindow.Left + 1));
    }
    std::array<wchar_t, 16> aText{};
    const DWORD ulLength = ::GetEnvironmentVariableW(L"COLUMNS", aText.data(), static_cast<DWORD>(aText.size()));
    return ulLength < aText.size() ? ZkCommon::String::ToWholeNumber(aText.data()).value_or(0) : 0;
}

bool ErrorIsTerminal()
{
    DWORD ulMode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &ulMode) != FALSE;
}

std::string SystemErrorText(std::uint32_t _ulError)
{
    std::array<wchar_t, 512> aText{};
    const DWORD ulLength = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                            _ulError, 0, aText.data(), static_cast<DWORD>(aText.size()), nullptr);
    std::wstring_view svText(aText.data(), ulLength);
    while (!svText.empty() && (svText.back() <= L' ' || svText.back() == L'.')) {
        svText.remove_suffix(1);
    }
    const std::string sNumber = "error " + std::to_string(_ulError);
    return svText.empty() ? sNumber : ZkCommon::String::ToUtf8(svText) + " (" + sNumber + ")";
}

std::string ResultText(std::uint32_t _ulResult)
{
    const std::string_view svText = SrvFrwk::Result::ToText(_ulResult);
    return Hexadecimal(_ulResult) + (svText.empty() ? "" : " (" + std::string(svText) + ")");
}

std::string Hexadecimal(std::uint32_t _ulValue, int _iDigits)
{
    std::array<char, 16> aText{};
    static_cast<void>(std::snprintf(aText.data(), aText.size(), "0x%0*x", _iDigits, _ulValue));
    return aText.data();
}

std::string Count(std::size_t _uCount, const std::string& _rsWhat)
{
    return std::to_string(_uCount) + " " + _rsWhat + (_uCount == 1 ? "" : "s");
}

std::string Joined(const std::vector<std::string>& _rvecText, const char* _szBetween)
{
    std::string sJoined;
    for (const std::string& sText : _rvecText) {
        if (!sText.empty()) {
            sJoined += (sJoined.empty() ? "" : _szBetween) + sText;
        }
    }
    return sJoined;
}

std::string Quoted(std::string_view _svText)
{
    return "\"" + std::string(_svText) + "\"";
}

std::string Quoted(std::wstring_view _svText)
{
    return Quoted(ZkCommon::String::ToUtf8(_svText));
}

std::string WordText(const Frwk::WordTable& _rstWords, std::uint32_t _ulValue)
{
    for (const Frwk::Word& stWord : _rstWords.aWord) {
        if (stWord.ulValue == _ulValue) {
            return ZkCommon::String::ToUtf8(stWord.svText);
        }
    }
    return Hexadecimal(_ulValue);
}

std::string OrUnknown(const std::wstring& _rtszText)
{
    return _rtszText.empty() ? "(not known)" : ZkCommon::String::ToUtf8(_rtszText);
}

void PrintText(const Tool& _rTool, std::string_view _svUtf8)
{
    if (!_rTool.stOptions.bJson && !_rTool.stOptions.bPlain) {
        Write(_svUtf8);
    }
}

void PrintTable(const Tool& _rTool, const Table& _rTable)
{
    Write(_rTool.stOptions.bPlain ? _rTable.ToPlainText() : _rTable.ToText({OutputWidth(), _rTool.stOptions.bWide}));
}

void PrintNotice(const Tool& _rTool, const std::string& _rsText)
{
    if (_rTool.pNotices != nullptr) {
        _rTool.pNotices->push_back(_rsText);
    } else {
        WriteError("vrnt: " + OneLine(_rsText) + "\n");
    }
}

void WriteJson(std::uint32_t _ulResult, const Json& _rjsData)
{
    Write(JsonAnswer(_ulResult, _rjsData));
}

std::string JsonAnswer(std::uint32_t _ulResult, const Json& _rjsData, const std::vector<std::string>& _rvecWhy,
                       const std::vector<std::string>& _rvecNotice)
{
    Json jsAnswer{{"result", Hexadecimal(_ulResult)}, {"data", _rjsData}};
    if (!_rvecWhy.empty()) {
        jsAnswer.Set("why", _rvecWhy);
    }
    if (!_rvecNotice.empty()) {
        jsAnswer.Set("notices", _rvecNotice);
    }
    return jsAnswer.ToText() + "\n";
}

void PrintAnswer(Tool& _rTool, std::uint32_t _ulResult, const std::function<Json()>& _fnData,
                 const std::function<Table()>& _fnTable, const std::string& _rsWhy)
{
    const bool bFailure = SrvFrwk::Result::IsFailure(_ulResult);
    _rTool.iExitStatus = bFailure ? ExitFailure : ExitSuccess;
    _rTool.ulResult = _ulResult;
    std::vector<std::string> vecWhy;
    if (bFailure) {
        vecWhy = !_rsWhy.empty()         ? std::vector{_rsWhy}
                 : _rTool.vecWhy.empty() ? std::vector{ResultText(_ulResult)}
                                         : _rTool.vecWhy;
    }
    if (_rTool.stOptions.bJson) {
        Write(JsonAnswer(_ulResult, _fnData ? _fnData() : Json(), vecWhy,
                         _rTool.pNotices != nullptr ? *_rTool.pNotices : std::vector<std::string>()));
    } else if (const Table cTable = _fnTable ? _fnTable() : Table(); !bFailure || !cTable.IsEmpty()) {
        PrintTable(_rTool, cTable);
    }
    if (bFailure) {
        const bool bOfCall = _rsWhy.empty() && !_rTool.vecWhy.empty();
        WriteError("vrnt: " + (bOfCall ? Hexadecimal(_ulResult) + ": " : std::string()) + OneLine(vecWhy.front()) +
                   "\n");
    }
}

} // namespace Vrnt
