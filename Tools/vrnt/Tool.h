#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

/** vrnt: the host and tool that ships with Varnhelt.dll. */
namespace Vrnt {

/** Keeps the keys in the order in which they are written. */
using Json = nlohmann::ordered_json;

/** What the process exits with. */
enum ExitStatus : int
{
    ExitSuccess = 0, // the result code is of the success class
    ExitFailure = 1, // the result code is a failure code
    ExitUsage = 2,   // a usage error, or an input file that cannot be read
};

/** A bad argument or an unreadable input file: one line on stderr and ExitUsage. */
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** The options that stand before the command. */
struct GlobalOptions
{
    std::string sModule; // empty: Varnhelt.dll beside the tool
    bool bJson = false;
};

/** The tool while it parses its command line and runs one command. */
struct Tool
{
    CLI::App cApp{"Asks Varnhelt.dll for configuration, and prepares and inspects the product's documents."};
    GlobalOptions stOptions;
    int iExitStatus = ExitSuccess;
};

// Each command adds itself, in the order of the help.
void AddQuery(Tool& _rTool);
void AddStore(Tool& _rTool);
void AddDirect(Tool& _rTool);
void AddUpdate(Tool& _rTool);
void AddXen(Tool& _rTool);
void AddCheck(Tool& _rTool);
void AddSchema(Tool& _rTool);
void AddDocuments(Tool& _rTool);
void AddTrace(Tool& _rTool);
void AddReport(Tool& _rTool);

/** An argument of the command line as text. */
std::wstring ToWide(const std::string& _rsUtf8);

/** An argument that names a file: absolute, as the library needs it. @throws UsageError when it is empty */
std::wstring ToFullPath(const std::string& _rsUtf8);

/**
 * An argument that is a number, written as documents write theirs: decimal, "0x" hexadecimal or leading-zero octal.
 * @throws UsageError when it does not convert whole
 */
std::uint32_t ToNumber(const char* _szOption, const std::string& _rsUtf8);

/** The folder of vrnt.exe, without a backslash at its end. */
std::filesystem::path ToolFolder();

} // namespace Vrnt
