#include "JsonRequest.h"

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Output/Output.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace Vrnt {

namespace {

constexpr const char* g_szCommandKey = "command";

/** The commands that need nothing of a command line. */
constexpr const Command* g_apServed[] = {&g_stQuery, &g_stStore, &g_stDirect, &g_stUpdate};

/** The name of an argument as a key: "--dry-run" is "dry-run", "PATH" is "path". */
std::string KeyOf(const Argument& _rstArgument)
{
    const std::string_view svName = _rstArgument.szName;
    std::string sKey(svName.substr(std::min(svName.find_first_not_of('-'), svName.size())));
    std::ranges::transform(sKey, sKey.begin(), [](unsigned char _c) { return static_cast<char>(std::tolower(_c)); });
    return sKey;
}

template <class TRows, class TName>
std::string NamesOf(const TRows& _rRows, const TName& _fnName)
{
    std::vector<std::string> vecName = {};
    std::ranges::transform(_rRows, std::back_inserter(vecName), _fnName);
    return Joined(vecName);
}

/** The command that the words name, one after the other. */
const Command& FindCommand(const std::string& _rsWords)
{
    std::span<const Command* const> aCommand = g_apServed;
    std::istringstream cWords(_rsWords);
    for (std::string sWord; cWords >> sWord;) {
        const auto itCommand = std::ranges::find_if(aCommand, [&](const Command* _p) { return sWord == _p->szName; });
        if (itCommand == aCommand.end()) {
            break;
        }
        if ((*itCommand)->pfnRun != nullptr && (cWords >> std::ws).eof()) {
            return **itCommand;
        }
        aCommand = (*itCommand)->aCommand;
    }
    throw UsageError(
        Quoted(_rsWords) + " is not a command" +
        (aCommand.empty() ? "" : "; there are " + NamesOf(aCommand, [](const Command* _p) { return _p->szName; })));
}

[[noreturn]] void Refuse(const std::string& _rsKey, const char* _szWhy)
{
    throw UsageError(Quoted(_rsKey) + " " + _szWhy);
}

/** A text or a whole number, as the command line would have it. */
std::string ToText(const Json& _rjsValue, const std::string& _rsKey)
{
    if (const auto* pNumber = _rjsValue.As<std::uint64_t>(); pNumber != nullptr) {
        return std::to_string(*pNumber);
    }
    const auto* pText = _rjsValue.As<std::string>();
    if (pText == nullptr) {
        Refuse(_rsKey, "must be a text or a whole number");
    }
    if (pText->find('\0') != std::string::npos) {
        Refuse(_rsKey, "has a null character in it");
    }
    return *pText;
}

std::vector<std::string> ToTexts(const Json& _rjsValue, const Argument& _rstArgument, const std::string& _rsKey)
{
    std::vector<std::string> vecText;
    const auto* pElements = _rjsValue.As<Json::Elements>();
    if (pElements == nullptr || !_rstArgument.bRepeats) {
        vecText.push_back(ToText(_rjsValue, _rsKey));
    } else {
        std::ranges::transform(*pElements, std::back_inserter(vecText),
                               [&](const Json& _rjsElement) { return ToText(_rjsElement, _rsKey); });
    }
    if (_rstArgument.pfnChoices != nullptr) {
        const std::vector<std::string> vecChoice = _rstArgument.pfnChoices();
        for (const std::string& sText : vecText) {
            if (std::ranges::find(vecChoice, sText) == vecChoice.end()) {
                Refuse(_rsKey, ("must be one of " + Joined(vecChoice)).c_str());
            }
        }
    }
    return vecText;
}

void SetArgument(Arguments& _rArguments, const Argument& _rstArgument, const Json& _rjsValue)
{
    const std::string sKey = KeyOf(_rstArgument);
    if (&_rstArgument == &g_stInput) {
        _rArguments.Set(_rstArgument, {sKey});
        _rArguments.SetInput(_rjsValue);
    } else if (!_rstArgument.IsFlag()) {
        _rArguments.Set(_rstArgument, ToTexts(_rjsValue, _rstArgument, sKey));
    } else if (const bool* pSet = _rjsValue.As<bool>(); pSet == nullptr) {
        Refuse(sKey, "must be true or false");
    } else if (*pSet) {
        _rArguments.Set(_rstArgument, {});
    }
}

/** What a command line's parser would see to: that nothing is missing, and that nothing excludes another. */
void CheckArguments(const JsonRequest& _rstRequest)
{
    for (const Argument* pArgument : _rstRequest.pCommand->aArgument) {
        if (pArgument->bRequired && _rstRequest.cArguments.Texts(*pArgument).empty()) {
            Refuse(KeyOf(*pArgument), "is missing");
        }
        if (pArgument->pExcludes != nullptr && _rstRequest.cArguments.Has(*pArgument) &&
            _rstRequest.cArguments.Has(*pArgument->pExcludes)) {
            throw UsageError(Quoted(KeyOf(*pArgument)) + " and " + Quoted(KeyOf(*pArgument->pExcludes)) +
                             " cannot be given together");
        }
    }
}

} // namespace

JsonRequest ToRequest(std::string_view _svJson)
{
    const Json jsRequest = ParseJson(_svJson);
    const Json* pCommand = jsRequest.Find(g_szCommandKey);
    if (pCommand == nullptr || !pCommand->Is<std::string>()) {
        throw UsageError("a request is an object whose \"command\" is a text");
    }
    JsonRequest stRequest;
    stRequest.pCommand = &FindCommand(*pCommand->As<std::string>());
    const std::span<const Argument* const> aArgument = stRequest.pCommand->aArgument;
    for (const auto& rstMember : *jsRequest.As<Json::Members>()) {
        if (rstMember.first == g_szCommandKey) {
            continue;
        }
        const auto itArgument = std::ranges::find_if(
            aArgument, [&](const Argument* _pArgument) { return KeyOf(*_pArgument) == rstMember.first; });
        if (itArgument == aArgument.end()) {
            throw UsageError(Quoted(rstMember.first) + " is not a key of this request" +
                             (aArgument.empty() ? "" : "; there are " + NamesOf(aArgument, [](const Argument* _p) {
                                                           return KeyOf(*_p);
                                                       })));
        }
        SetArgument(stRequest.cArguments, **itArgument, rstMember.second);
    }
    CheckArguments(stRequest);
    return stRequest;
}

} // namespace Vrnt
