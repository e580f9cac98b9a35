#include "CommandHelp.h"

#include "Output/Output.h"

#include <algorithm>
#include <sstream>

namespace Vrnt {

namespace {

constexpr std::size_t g_uPageWidth = 80;
constexpr std::size_t g_uTextColumn = 28; // where the explanations begin

constexpr const Argument* g_apGlobal[] = {&g_stModule, &g_stJson, &g_stPlain, &g_stWide, &g_stHelp};

/** Appends a text from its column on, its words wrapped. */
void AppendWrapped(std::string& _rsPage, const std::string& _rsText, std::size_t _uColumn)
{
    std::istringstream cWords(_rsText);
    std::size_t uAt = _uColumn;
    for (std::string sWord; cWords >> sWord;) {
        if (uAt != _uColumn && uAt + 1 + sWord.size() > g_uPageWidth) {
            _rsPage.append("\n").append(_uColumn, ' ');
            uAt = _uColumn;
        }
        if (uAt != _uColumn) {
            _rsPage += ' ';
            ++uAt;
        }
        _rsPage += sWord;
        uAt += sWord.size();
    }
    _rsPage += '\n';
}

void AppendRow(std::string& _rsPage, const std::string& _rsName, const std::string& _rsText)
{
    const std::string sName = "  " + _rsName;
    _rsPage += sName;
    if (sName.size() + 2 > g_uTextColumn) {
        _rsPage.append("\n").append(g_uTextColumn, ' ');
    } else {
        _rsPage.append(g_uTextColumn - sName.size(), ' ');
    }
    AppendWrapped(_rsPage, _rsText, g_uTextColumn);
}

std::string NameOf(const Argument& _rstArgument)
{
    return _rstArgument.szName + (_rstArgument.szValue == nullptr ? "" : " " + std::string(_rstArgument.szValue)) +
           (_rstArgument.bRepeats ? " ..." : "");
}

std::string TextOf(const Argument& _rstArgument)
{
    return _rstArgument.szHelp + (_rstArgument.pfnChoices == nullptr ? "" : ": " + Joined(_rstArgument.pfnChoices()));
}

void AppendArguments(std::string& _rsPage, const char* _szHeading, std::span<const Argument* const> _aArgument,
                     bool _bPositional)
{
    const auto Belongs = [&](const Argument* _pArgument) { return _pArgument->IsPositional() == _bPositional; };
    if (std::none_of(_aArgument.begin(), _aArgument.end(), Belongs)) {
        return;
    }
    _rsPage.append("\n").append(_szHeading).append(":\n");
    for (const Argument* pArgument : _aArgument) {
        if (Belongs(pArgument)) {
            AppendRow(_rsPage, NameOf(*pArgument), TextOf(*pArgument));
        }
    }
}

/** The usage line: what is required as it is written, what is not in brackets. */
std::string UsageOf(const Command& _rstCommand, std::string_view _svPath)
{
    std::string sUsage(_svPath);
    if (_rstCommand.pfnRun == nullptr) {
        return sUsage + " COMMAND ...";
    }
    for (const bool bPositional : {false, true}) {
        for (const Argument* pArgument : _rstCommand.aArgument) {
            if (pArgument->IsPositional() == bPositional) {
                const std::string sName = NameOf(*pArgument);
                sUsage += pArgument->bRequired ? " " + sName : " [" + sName + "]";
            }
        }
    }
    return sUsage;
}

void AppendExamples(std::string& _rsPage, const char* _szExample)
{
    std::istringstream cLines(_szExample);
    const char* szHeading = "\nExample: ";
    for (std::string sLine; std::getline(cLines, sLine); szHeading = "         ") {
        _rsPage += szHeading + sLine + "\n";
    }
}

} // namespace

constinit const Argument g_stModule{
    .szName = "--module", .szHelp = "The library to load (default: Varnhelt.dll beside vrnt.exe)", .szValue = "PATH"};
constinit const Argument g_stJson{.szName = "--json",
                                  .szHelp = R"(Print one JSON object: {"result": ..., "data": ...})"};
constinit const Argument g_stPlain{.szName = "--plain",
                                   .szHelp = "Print tables for programs: cells between tabs, no heading"};
constinit const Argument g_stWide{.szName = "--wide",
                                  .szHelp = "Print all columns and whole cells, however narrow the terminal is"};
constinit const Argument g_stHelp{.szName = "--help", .szHelp = "Print this page"};

std::span<const Argument* const> GlobalArguments()
{
    return g_apGlobal;
}

std::string HelpOf(const Command& _rstCommand, std::string_view _svPath)
{
    std::string sPage = std::string(_rstCommand.szHelp) + "\n\nUsage: ";
    AppendWrapped(sPage, UsageOf(_rstCommand, _svPath), 7);
    if (!_rstCommand.aCommand.empty()) {
        sPage += "\nCommands:\n";
        for (const Command* pCommand : _rstCommand.aCommand) {
            AppendRow(sPage, pCommand->szName, pCommand->szHelp);
        }
    }
    AppendArguments(sPage, "Arguments", _rstCommand.aArgument, true);
    AppendArguments(sPage, "Options", _rstCommand.aArgument, false);
    AppendArguments(sPage, "Options of every command", g_apGlobal, false);
    if (_rstCommand.szNote != nullptr) {
        sPage += "\n";
        AppendWrapped(sPage, _rstCommand.szNote, 0);
    }
    AppendExamples(sPage, _rstCommand.szExample);
    if (_rstCommand.pfnRun == nullptr) {
        sPage += std::string(_svPath) + " COMMAND --help describes a command.\n";
    }
    return sPage;
}

} // namespace Vrnt
