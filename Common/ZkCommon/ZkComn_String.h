#pragma once

#include <cstdarg>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/** Text helpers. Text is UTF-16; narrow text is UTF-8 or the ANSI code page, as each function says. Thread-safe. */
namespace ZkCommon::String {

/**
 * Formats printf-style with the system's wide conventions ("%s" takes wide text).
 * @return true; the text replaces _rtszOutput
 * @throws String::Exception* when memory runs out or the text cannot be formatted
 */
bool Format(std::wstring& _rtszOutput, const wchar_t* _pszFormat, ...);

/** As Format, with the arguments in a list. */
std::wstring FormatList(const wchar_t* _pszFormat, std::va_list _args);

/**
 * One attempt of Format with a buffer of _rulSize wide characters, the terminator included.
 * @return false when the text did not fit: _rulSize has then grown by one step, and the caller calls again
 * @throws String::Exception* when memory runs out
 */
bool FormatV(std::wstring& _rtszOutput, std::uint32_t& _rulSize, const wchar_t* _pszFormat, std::va_list _args);

/** Size of a caller's first FormatV attempt, in wide characters. */
inline constexpr std::uint32_t g_ulFormatStart = 256;
/** Growth from one FormatV attempt to the next, in wide characters. */
inline constexpr std::uint32_t g_ulFormatStep = 256;

std::string ToUtf8(std::wstring_view _svText);
std::wstring FromUtf8(std::string_view _svText);
/** The bytes of a text file as UTF-8: those that begin with a mark of UTF-16, of either order, converted; others as they are. */
std::string FileTextToUtf8(std::string_view _svBytes);
/** In the ANSI code page; characters that it does not have become its replacement character. */
std::string ToAnsi(std::wstring_view _svText);
std::wstring FromAnsi(std::string_view _svText);

/**
 * Reads an unsigned number as C's wcstoul does in automatic base: blanks, a sign, then decimal, "0x" hexadecimal or
 * leading-zero octal digits; what follows the number is ignored. 0 when there is no number, the largest value on
 * overflow.
 */
std::uint32_t ToNumber(std::wstring_view _svText) noexcept;

/** As ToNumber, but only when the whole text is an unsigned number that fits; nothing otherwise. */
std::optional<std::uint32_t> ToWholeNumber(std::wstring_view _svText) noexcept;
std::optional<std::uint64_t> ToWholeNumber64(std::wstring_view _svText) noexcept;

/** Compares without case, ordinally, over at most _uCount characters of both. */
bool EqualsNoCase(std::wstring_view _svLeft, std::wstring_view _svRight,
                  std::size_t _uCount = std::wstring_view::npos) noexcept;

/** An order of texts without case, as the registry and the file system compare. */
struct LessNoCase
{
    bool operator()(std::wstring_view _svLeft, std::wstring_view _svRight) const noexcept;
};

/** Appends a backslash unless the path is empty or ends in one. */
std::wstring WithBackslash(std::wstring _tszPath);

} // namespace ZkCommon::String
