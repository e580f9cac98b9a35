#pragma once

#include "Records/Json.h"
#include "Tool.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

/** Commands and their arguments as data. Parser, help and completion read it; a command reads its values by its rows. */
namespace Vrnt {

/** An argument of a command, and the key by which the command asks for its value. */
struct Argument
{
    const char* szName = nullptr; // an option's with its dashes: "--dir"; a positional one's without: "FILE"
    const char* szHelp = nullptr;
    const char* szValue = nullptr; // an option's value as the help calls it: "DIR"; null: a flag has none
    bool bRequired = false;
    bool bRepeats = false;                              // may be given several times
    std::vector<std::string> (*pfnChoices)() = nullptr; // the values that are accepted; null: any
    const Argument* pExcludes = nullptr;                // an option that cannot be given together with this one

    constexpr bool IsPositional() const { return szName[0] != '-'; }
    constexpr bool IsFlag() const { return !IsPositional() && szValue == nullptr; }
};

/** The values that a command line gives to arguments. */
class Arguments
{
public:
    bool Has(const Argument& _rstArgument) const { return m_mapValue.contains(&_rstArgument); }
    /** The value; empty when it was not given. */
    const std::string& Text(const Argument& _rstArgument) const;
    const std::vector<std::string>& Texts(const Argument& _rstArgument) const;
    /** The value as an absolute path. @throws UsageError when it is empty or not a path */
    std::wstring Path(const Argument& _rstArgument) const;
    /** The value as a number. @throws UsageError when it does not convert whole */
    std::uint32_t Number(const Argument& _rstArgument) const;

    /** The records to be stored, where no file holds them; null where the value of "--input" names one. */
    const Json* Input() const { return m_jsInput ? &*m_jsInput : nullptr; }

    void Set(const Argument& _rstArgument, std::vector<std::string> _vecValue);
    void SetInput(Json _jsInput) { m_jsInput = std::move(_jsInput); }

private:
    std::map<const Argument*, std::vector<std::string>> m_mapValue;
    std::optional<Json> m_jsInput;
};

/** A command, or a group of commands. */
struct Command
{
    const char* szName;
    const char* szHelp;
    const char* szExample; // command lines, one a line
    const char* szNote = nullptr;
    std::span<const Argument* const> aArgument{};
    void (*pfnRun)(Tool& _rTool, const Arguments& _rArguments) = nullptr; // null: a group
    std::span<const Command* const> aCommand{};                           // of a group
};

} // namespace Vrnt
