#include "CommandLine.h"

#include "Arguments.h"
#include "Check/Nearest.h"
#include "Output/Output.h"
#include "Tool.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace Vrnt {

namespace {

/** The arguments in UTF-8, last first: the order in which the parser takes them. */
std::vector<std::string> Arguments(int _iCount, wchar_t** _ppArguments)
{
    std::vector<std::string> vecArgument;
    for (int i = _iCount - 1; i > 0; --i) {
        vecArgument.push_back(ZkCommon::String::ToUtf8(_ppArguments[i]));
    }
    return vecArgument;
}

void Configure(Tool& _rTool)
{
    CLI::App& rApp = _rTool.cApp;
    rApp.name("vrnt");
    rApp.require_subcommand(1);
    rApp.add_option("--module", _rTool.stOptions.sModule, "The library to load (default: Varnhelt.dll beside vrnt.exe)")
        ->type_name("PATH");
    rApp.add_flag("--json", _rTool.stOptions.bJson, R"(Print one JSON object: {"result": ..., "data": ...})");
    rApp.footer("Exit status: 0 success, 1 a failure code, 2 a usage error or an input file that cannot be read.\n"
                "vrnt COMMAND --help tells more of each command.");
    AddQuery(_rTool);
    AddStore(_rTool);
    AddDirect(_rTool);
    AddUpdate(_rTool);
    AddXen(_rTool);
    AddCheck(_rTool);
    AddSchema(_rTool);
    AddDocuments(_rTool);
    AddTrace(_rTool);
    AddReport(_rTool);
}

/** The deepest command that the arguments have reached. */
const CLI::App* Reached(const CLI::App& _rApp)
{
    const CLI::App* pApp = &_rApp;
    while (!pApp->get_subcommands().empty()) {
        pApp = pApp->get_subcommands().front();
    }
    return pApp;
}

/** "; did you mean ...?", when one of the known words is near. */
std::string DidYouMean(const std::string& _rsWord, const std::vector<std::string>& _rvecKnown)
{
    std::vector<std::wstring> vecKnown;
    std::transform(_rvecKnown.begin(), _rvecKnown.end(), std::back_inserter(vecKnown), &ToWide);
    const std::wstring_view svNearest = Nearest(ToWide(_rsWord), {vecKnown.begin(), vecKnown.end()});
    return svNearest.empty() ? "" : "; did you mean " + ZkCommon::String::ToUtf8(svNearest) + "?";
}

/** The options of a command and of all that stand above it. */
std::vector<std::string> OptionsOf(const CLI::App* _pApp)
{
    std::vector<std::string> vecName;
    for (; _pApp != nullptr; _pApp = _pApp->get_parent()) {
        for (const CLI::Option* pOption : _pApp->get_options()) {
            for (const std::string& sName : pOption->get_lnames()) {
                vecName.push_back("--" + sName);
            }
        }
    }
    return vecName;
}

/** What is wrong with the arguments, naming the word that nothing knows where the parser only misses a command. */
std::string Explain(const CLI::App& _rApp, const CLI::ParseError& _rError)
{
    const CLI::App* pReached = Reached(_rApp);
    const bool bMissesCommand = dynamic_cast<const CLI::RequiredError*>(&_rError) != nullptr &&
                                !pReached->get_subcommands([](const CLI::App*) { return true; }).empty();
    const std::vector<std::string> vecUnknown = _rApp.remaining(true);
    const auto itOption = std::find_if(vecUnknown.begin(), vecUnknown.end(),
                                       [](const std::string& _rsWord) { return _rsWord.starts_with("--"); });
    if (itOption != vecUnknown.end()) {
        const std::string sName = itOption->substr(0, itOption->find('='));
        return "unknown option " + sName + DidYouMean(sName, OptionsOf(pReached));
    }
    if (!bMissesCommand) {
        return _rError.what();
    }
    std::vector<std::string> vecKnown;
    for (const CLI::App* pCommand : pReached->get_subcommands([](const CLI::App*) { return true; })) {
        if (!pCommand->get_name().empty()) { // a group of options has none
            vecKnown.push_back(pCommand->get_name());
        }
    }
    const std::string sKnown = CLI::detail::join(vecKnown, ", ");
    return sKnown.empty()       ? std::string(_rError.what())
           : vecUnknown.empty() ? "a command is missing: " + sKnown
                                : "unknown command \"" + vecUnknown.front() + "\": there are " + sKnown +
                                      DidYouMean(vecUnknown.front(), vecKnown);
}

int Complain(const std::string& _rsText)
{
    std::string sLine = "vrnt: " + _rsText;
    std::replace(sLine.begin(), sLine.end(), '\n', ' ');
    WriteError(sLine + "\n");
    return ExitUsage;
}

} // namespace

int Run(int _iCount, wchar_t** _ppArguments)
{
    Tool stTool;
    Configure(stTool);
    try {
        stTool.cApp.parse(Arguments(_iCount, _ppArguments));
        return stTool.iExitStatus;
    } catch (const CLI::CallForHelp&) {
        Write(Reached(stTool.cApp)->help());
        return ExitSuccess;
    } catch (const CLI::ParseError& rError) {
        return Complain(Explain(stTool.cApp, rError));
    } catch (const UsageError& rError) {
        return Complain(rError.what());
    } catch (ZkCommon::Exception::Base* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        WriteError("vrnt: " + SystemErrorText(pError->ErrorCode()) + "\n");
        return ExitFailure;
    } catch (const std::exception& rError) {
        WriteError(std::string("vrnt: ") + rError.what() + "\n");
        return ExitFailure;
    }
}

} // namespace Vrnt
