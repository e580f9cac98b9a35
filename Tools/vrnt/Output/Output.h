#pragma once

#include "Frwk_DataTypesUtility.h"
#include "Output/Table.h"
#include "Records/Json.h"
#include "Tool.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/** What the tool prints. Text is UTF-8 in a file or pipe, and Unicode on a console, whatever its code page. */
namespace Vrnt {

void Write(std::string_view _svUtf8);
void WriteError(std::string_view _svUtf8);

/** While it exists, what the tool writes on this thread is gathered instead of printed. One at a time. */
class OutputCapture
{
public:
    OutputCapture();
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;
    ~OutputCapture();

    std::string sOutput;
    std::string sError;
};

/** The columns of the terminal that stdout is, or as the variable COLUMNS says; 0 where nothing says it. */
std::size_t OutputWidth();

/** Whether stderr is a terminal. */
bool ErrorIsTerminal();

/** The system's own words for an error, with its number. */
std::string SystemErrorText(std::uint32_t _ulError);

/** A result code in words: "0x80040201 (the operation failed)". */
std::string ResultText(std::uint32_t _ulResult);

/** A number as JSON texts write it: "0x00040200". */
std::string Hexadecimal(std::uint32_t _ulValue, int _iDigits = 8);

/** "1 unit", "2 units". */
std::string Count(std::size_t _uCount, const std::string& _rsWhat);

/** "a, b, c"; what is empty is left out. */
std::string Joined(const std::vector<std::string>& _rvecText, const char* _szBetween = ", ");

/** The text between quotation marks. */
std::string Quoted(std::string_view _svText);
std::string Quoted(std::wstring_view _svText);

/** The word of a value; hexadecimal where no word has it. */
std::string WordText(const Frwk::WordTable& _rstWords, std::uint32_t _ulValue);

/** The text, or in words that there is none. */
std::string OrUnknown(const std::wstring& _rtszText);

/** Prints a sentence about what was done; nothing where JSON or plain cells are asked for. */
void PrintText(const Tool& _rTool, std::string_view _svUtf8);

/** Prints a table as the options ask: fit to the terminal, whole, or plain. */
void PrintTable(const Tool& _rTool, const Table& _rTable);

/** Prints something that a user has to know besides the answer, which has to follow: on stderr, or where the tool gathers it. */
void PrintNotice(const Tool& _rTool, const std::string& _rsText);

/** Prints a command's one JSON object. */
void WriteJson(std::uint32_t _ulResult, const Json& _rjsData);

/** A command's one JSON object as text, with the reasons of a failure and what was noticed; no key where there is none. */
std::string JsonAnswer(std::uint32_t _ulResult, const Json& _rjsData, const std::vector<std::string>& _rvecWhy = {},
                       const std::vector<std::string>& _rvecNotice = {});

/**
 * Prints what a command was answered, as JSON or as a table, explains a failure on stderr, and sets the exit status.
 * @param _fnData, _fnTable  make what is printed, and are called only then; none: null, and no table
 * @param _rsWhy  the explanation; empty: the reasons of the last call, or the result code in words without any
 */
void PrintAnswer(Tool& _rTool, std::uint32_t _ulResult, const std::function<Json()>& _fnData,
                 const std::function<Table()>& _fnTable, const std::string& _rsWhy = {});

} // namespace Vrnt
