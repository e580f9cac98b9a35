// The one file that knows the command-line library.

#include "CommandLine.h"

#include "Arguments.h"
#include "Check/Nearest.h"
#include "CommandHelp.h"
#include "Commands/Commands.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>

namespace Vrnt {

namespace {

/** A command line while it is parsed: the command that it reaches, and the values. */
struct Parsed
{
    const Command* pCommand = &g_stVrnt;
    std::string sPath = g_stVrnt.szName;
    Arguments cArguments;
};

void AddArgument(CLI::App& _rApp, const Argument& _rstArgument, Parsed& _rstParsed)
{
    if (_rstArgument.IsFlag()) {
        _rApp.add_flag_callback(_rstArgument.szName, [&] { _rstParsed.cArguments.Set(_rstArgument, {}); });
        return;
    }
    CLI::Option* pOption = _rApp.add_option(_rstArgument.szName, [&](const CLI::results_t& _rvecValue) {
        _rstParsed.cArguments.Set(_rstArgument, _rvecValue);
        return true;
    });
    pOption->required(_rstArgument.bRequired);
    if (_rstArgument.bRepeats) {
        pOption->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args(_rstArgument.IsPositional());
    }
    if (_rstArgument.pfnChoices != nullptr) {
        pOption->check(CLI::IsMember(_rstArgument.pfnChoices()));
    }
}

/** Adds what is below a command: its arguments, or its commands with theirs. */
void AddBelow(CLI::App& _rApp, const Command& _rstCommand, Parsed& _rstParsed)
{
    for (const Argument* pArgument : _rstCommand.aArgument) {
        AddArgument(_rApp, *pArgument, _rstParsed);
    }
    for (const Argument* pArgument : _rstCommand.aArgument) {
        if (pArgument->pExcludes != nullptr) {
            _rApp.get_option(pArgument->szName)->excludes(_rApp.get_option(pArgument->pExcludes->szName));
        }
    }
    if (!_rstCommand.aCommand.empty()) {
        _rApp.require_subcommand(1);
    }
    for (const Command* pCommand : _rstCommand.aCommand) {
        CLI::App* pApp = _rApp.add_subcommand(pCommand->szName);
        pApp->preparse_callback([&_rstParsed, pCommand](std::size_t) {
            _rstParsed.pCommand = pCommand;
            _rstParsed.sPath += std::string(" ") + pCommand->szName;
        });
        AddBelow(*pApp, *pCommand, _rstParsed);
    }
}

void Configure(CLI::App& _rApp, Parsed& _rstParsed)
{
    _rApp.allow_windows_style_options(false); // "/x/y" is a path
    _rApp.fallthrough();                      // the options of every command are accepted after it, too
    _rApp.set_help_flag();
    for (const Argument* pArgument : GlobalArguments()) {
        if (pArgument == &g_stHelp) {
            _rApp.set_help_flag("-h,--help");
        } else {
            AddArgument(_rApp, *pArgument, _rstParsed);
        }
    }
    _rApp.set_version_flag("-V,--version", "vrnt " VARNHELT_VERSION);
    AddBelow(_rApp, g_stVrnt, _rstParsed);
}

/** The arguments last first: the order in which the parser reads them. Other ways to ask for help are one. */
std::vector<std::string> ForParser(std::vector<std::string> _vecArgument)
{
    for (std::string& rsArgument : _vecArgument) {
        if (rsArgument == "--") {
            break; // what follows is text
        }
        if (rsArgument == "/?" || rsArgument == "-?") {
            rsArgument = "--help";
        }
    }
    std::reverse(_vecArgument.begin(), _vecArgument.end());
    return _vecArgument;
}

/** "; did you mean ...?", when one of the known words is near. Dashes are no letters. */
std::string DidYouMean(const std::string& _rsWord, const std::vector<std::string>& _rvecKnown)
{
    const auto WithoutDashes = [](const std::string& _rsText) {
        return ToWide(_rsText.substr(std::min(_rsText.find_first_not_of('-'), _rsText.size())));
    };
    std::vector<std::wstring> vecKnown;
    std::transform(_rvecKnown.begin(), _rvecKnown.end(), std::back_inserter(vecKnown), WithoutDashes);
    const std::wstring_view svNearest = Nearest(WithoutDashes(_rsWord), {vecKnown.begin(), vecKnown.end()});
    const auto itNearest = std::find(vecKnown.begin(), vecKnown.end(), svNearest);
    return itNearest == vecKnown.end()
               ? ""
               : "; did you mean " + _rvecKnown[static_cast<std::size_t>(itNearest - vecKnown.begin())] + "?";
}

/** The options that a command accepts. */
std::vector<std::string> OptionsOf(const Command& _rstCommand)
{
    std::vector<std::string> vecName;
    for (const std::span<const Argument* const> aArgument : {_rstCommand.aArgument, GlobalArguments()}) {
        for (const Argument* pArgument : aArgument) {
            if (!pArgument->IsPositional()) {
                vecName.emplace_back(pArgument->szName);
            }
        }
    }
    return vecName;
}

std::vector<std::string> NamesOf(std::span<const Command* const> _aCommand)
{
    std::vector<std::string> vecName;
    for (const Command* pCommand : _aCommand) {
        vecName.emplace_back(pCommand->szName);
    }
    return vecName;
}

/** What a quotation mark within an argument means: the shell took \" for one. Empty where there is none. */
std::string QuotingSlip(const std::vector<std::string>& _rvecArgument)
{
    const auto Has = [](const std::string& _rsArgument) { return _rsArgument.find('"') != std::string::npos; };
    const auto itSlip = std::find_if(_rvecArgument.begin(), _rvecArgument.end(), Has);
    return itSlip == _rvecArgument.end() ? ""
                                         : "; a quotation mark is in the argument \"" + *itSlip +
                                               "\": leave out the backslash before the closing quotation mark";
}

/** What is wrong with the arguments, in terms of the command that they reach. */
std::string Explain(const CLI::App& _rApp, const Parsed& _rstParsed, const CLI::ParseError& _rError)
{
    const std::vector<std::string> vecUnknown = _rApp.remaining(true);
    const auto itOption = std::find_if(vecUnknown.begin(), vecUnknown.end(),
                                       [](const std::string& _rsWord) { return _rsWord.starts_with("-"); });
    if (itOption != vecUnknown.end()) {
        const std::string sName = itOption->substr(0, itOption->find('='));
        const std::string sSuggestion = DidYouMean(sName, OptionsOf(*_rstParsed.pCommand));
        return "unknown option " + sName +
               (sSuggestion.empty() ? "; " + _rstParsed.sPath + " --help lists the options" : sSuggestion);
    }
    if (_rstParsed.pCommand->pfnRun == nullptr) {
        const std::vector<std::string> vecKnown = NamesOf(_rstParsed.pCommand->aCommand);
        return vecUnknown.empty() ? "a command is missing after \"" + _rstParsed.sPath + "\": " + Joined(vecKnown)
                                  : "unknown command \"" + vecUnknown.front() + "\": there are " + Joined(vecKnown) +
                                        DidYouMean(vecUnknown.front(), vecKnown);
    }
    if (!vecUnknown.empty() && dynamic_cast<const CLI::ExtrasError*>(&_rError) != nullptr) {
        return "unexpected argument \"" + vecUnknown.front() +
               "\" (a path or text with blanks needs quotation marks around it)";
    }
    return _rError.what();
}

int Complain(const std::string& _rsText)
{
    std::string sLine = "vrnt: " + _rsText;
    std::replace(sLine.begin(), sLine.end(), '\n', ' ');
    WriteError(sLine + "\n");
    return ExitUsage;
}

int RunCommand(const Parsed& _rstParsed)
{
    Tool stTool;
    const Arguments& rArguments = _rstParsed.cArguments;
    stTool.stOptions = {rArguments.Text(g_stModule), rArguments.Has(g_stJson), rArguments.Has(g_stPlain),
                        rArguments.Has(g_stWide)};
    if (rArguments.Has(g_stModule)) {
        ToFullPath(stTool.stOptions.sModule); // refuses what names no file
    }
    if (stTool.stOptions.bJson && stTool.stOptions.bPlain) {
        throw UsageError("--json and --plain cannot be given together");
    }
    stTool.pfnRun = &Run;
    _rstParsed.pCommand->pfnRun(stTool, _rstParsed.cArguments);
    return stTool.iExitStatus;
}

} // namespace

int Run(int _iCount, wchar_t** _ppArguments)
{
    std::vector<std::string> vecArgument;
    for (int i = 1; i < _iCount; ++i) {
        vecArgument.push_back(ZkCommon::String::ToUtf8(_ppArguments[i]));
    }
    return Run(std::move(vecArgument));
}

int Run(std::vector<std::string> _vecArgument)
{
    const std::vector<std::string> vecArgument = ForParser(std::move(_vecArgument));
    Parsed stParsed;
    CLI::App cApp;
    Configure(cApp, stParsed);
    try {
        std::vector<std::string> vecLeft = vecArgument;
        cApp.parse(vecLeft);
        return RunCommand(stParsed);
    } catch (const CLI::CallForHelp& rHelp) {
        if (stParsed.pCommand->pfnRun == nullptr && cApp.remaining_size(true) != 0) { // help on an unknown command
            return Complain(Explain(cApp, stParsed, rHelp));
        }
        Write(HelpOf(*stParsed.pCommand, stParsed.sPath));
        return ExitSuccess;
    } catch (const CLI::CallForVersion& rVersion) {
        Write(std::string(rVersion.what()) + "\n");
        return ExitSuccess;
    } catch (const CLI::ParseError& rError) {
        return Complain(Explain(cApp, stParsed, rError) + QuotingSlip(vecArgument));
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
