#pragma once

#include <cstdint>
#include <string>
#include <vector>

/** vrnt: the host and tool that ships with Varnhelt.dll. */
namespace Vrnt {

/** What the process exits with. */
enum ExitStatus : int
{
    ExitSuccess = 0, // the result code is of the success class
    ExitFailure = 1, // the result code is a failure code
    ExitUsage = 2,   // a usage error, or an input file that cannot be read
};

/** The options of every command. */
struct GlobalOptions
{
    std::string sModule; // empty: Varnhelt.dll beside the tool
    bool bJson = false;
    bool bPlain = false; // tables as cells between tabs
    bool bWide = false;  // tables whole, whatever the terminal's width
};

/** The tool while it runs one command. */
struct Tool
{
    GlobalOptions stOptions;
    int iExitStatus = ExitSuccess;
    std::uint32_t ulResult = 0;                                     // the result code of the last answer
    int (*pfnRun)(std::vector<std::string> _vecArgument) = nullptr; // runs another command line; its exit status
    std::vector<std::string> vecWhy; // why the last call of the library failed, the deepest cause first
    /** Gathers what a user has to know besides the answer, and has the JSON name it; null: that is for stderr. */
    std::vector<std::string>* pNotices = nullptr;
};

} // namespace Vrnt
