#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace Vrnt {

/** A bad argument or an unreadable input file: one line on stderr and ExitUsage. */
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** An argument of the command line as text. */
std::wstring ToWide(const std::string& _rsUtf8);

/**
 * An argument that names a file: absolute, as the library needs it.
 * @throws UsageError when it is empty or "-", or holds a quotation mark
 */
std::wstring ToFullPath(const std::string& _rsUtf8);

/**
 * An argument that is a number, written as documents write theirs: decimal, "0x" hexadecimal or leading-zero octal.
 * @throws UsageError when it does not convert whole
 */
std::uint32_t ToNumber(const char* _szOption, const std::string& _rsUtf8);

/** The folder of the program or library that this code is in, without a backslash at its end. */
std::filesystem::path ToolFolder();

} // namespace Vrnt
