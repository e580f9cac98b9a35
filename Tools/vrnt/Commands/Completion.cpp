// vrnt completion: scripts by which a shell completes the tool's commands and options.

#include "CommandHelp.h"
#include "Commands/Commands.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"

namespace Vrnt {

namespace {

std::vector<std::string> Shells()
{
    return {"bash", "powershell"};
}

constexpr Argument g_stShell{.szName = "SHELL", .szHelp = "The shell", .bRequired = true, .pfnChoices = &Shells};
constexpr const Argument* g_apCompletionArgument[] = {&g_stShell};

/** A command with the words that lead to it, and the words that may follow. */
struct Place
{
    std::string sPath;
    std::vector<std::string> vecWord;
};

void AddPlaces(std::vector<Place>& _rvecPlace, const Command& _rstCommand, const std::string& _rsPath)
{
    Place stPlace{_rsPath, {}};
    for (const Command* pCommand : _rstCommand.aCommand) {
        stPlace.vecWord.emplace_back(pCommand->szName);
    }
    for (const std::span<const Argument* const> aArgument : {_rstCommand.aArgument, GlobalArguments()}) {
        for (const Argument* pArgument : aArgument) {
            if (!pArgument->IsPositional()) {
                stPlace.vecWord.emplace_back(pArgument->szName);
            }
            if (pArgument->pfnChoices != nullptr) {
                const std::vector<std::string> vecChoice = pArgument->pfnChoices();
                stPlace.vecWord.insert(stPlace.vecWord.end(), vecChoice.begin(), vecChoice.end());
            }
        }
    }
    _rvecPlace.push_back(std::move(stPlace));
    for (const Command* pCommand : _rstCommand.aCommand) {
        AddPlaces(_rvecPlace, *pCommand, _rsPath + " " + pCommand->szName);
    }
}

std::string BashScript(const std::vector<Place>& _rvecPlace)
{
    std::string sScript = R"(_vrnt() {
    local path=vrnt words word
    local -A known=(
)";
    for (const Place& stPlace : _rvecPlace) {
        sScript += "        [\"" + stPlace.sPath + "\"]=\"" + Joined(stPlace.vecWord, " ") + "\"\n";
    }
    return sScript + R"(    )
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [ -z "${known["$path $word"]-}" ] || path="$path $word"
    done
    mapfile -t COMPREPLY < <(compgen -W "${known[$path]}" -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -o default -F _vrnt vrnt vrnt.exe
)";
}

std::string PowerShellScript(const std::vector<Place>& _rvecPlace)
{
    std::string sScript = R"(Register-ArgumentCompleter -Native -CommandName vrnt, vrnt.exe -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)
    $known = @{
)";
    for (const Place& stPlace : _rvecPlace) {
        sScript += "        '" + stPlace.sPath + "' = '" + Joined(stPlace.vecWord, "', '") + "'\n";
    }
    return sScript + R"(    }
    $path = 'vrnt'
    foreach ($element in $commandAst.CommandElements | Select-Object -Skip 1) {
        if ($known.ContainsKey("$path $element")) { $path = "$path $element" }
    }
    $known[$path] | Where-Object { $_ -like "$wordToComplete*" } |
        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_) }
}
)";
}

void RunCompletion(Tool& _rTool, const Arguments& _rArguments)
{
    std::vector<Place> vecPlace;
    AddPlaces(vecPlace, g_stVrnt, g_stVrnt.szName);
    const std::string sScript =
        _rArguments.Text(g_stShell) == "bash" ? BashScript(vecPlace) : PowerShellScript(vecPlace);
    if (_rTool.stOptions.bJson) {
        WriteJson(SrvFrwk::Result::g_ulSuccess, sScript);
    } else {
        Write(sScript);
    }
}

} // namespace

constinit const Command g_stCompletion{.szName = "completion",
                                       .szHelp = "Print a script by which a shell completes commands and options",
                                       .szExample =
                                           "vrnt completion powershell >> $PROFILE\nvrnt completion bash >> ~/.bashrc",
                                       .aArgument = g_apCompletionArgument,
                                       .pfnRun = &RunCompletion};

} // namespace Vrnt
