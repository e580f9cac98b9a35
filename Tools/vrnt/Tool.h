#pragma once

#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
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

} // namespace Vrnt
