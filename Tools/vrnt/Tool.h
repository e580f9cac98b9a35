#pragma once

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
    int (*pfnRun)(std::vector<std::string> _vecArgument) = nullptr; // runs another command line; its exit status
    std::vector<std::string> vecWhy; // why the last call of the library failed, the deepest cause first
};

} // namespace Vrnt
