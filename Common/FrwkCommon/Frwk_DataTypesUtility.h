#pragma once

#include "Frwk_Words.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/** How readers and writers of documents use the words: with a default for what is unknown, which is logged. */
namespace Frwk {

/** What becomes of a text that no word equals, and of a value that no word has. */
struct WordDefaults
{
    std::uint32_t ulUnknownText = 0;              // the value of an unknown text
    const wchar_t* pszUnknownTextLine = nullptr;  // error line, "%s" takes the text; null: none
    std::wstring_view svUnknownValue = {};        // the text of an unknown value
    const wchar_t* pszUnknownValueLine = nullptr; // error line, "%u" takes the value; null: none
};

/** A set of words. Where a value has several, the first is the one that is written. */
struct WordTable
{
    std::span<const Word> aWord;
    WordDefaults stDefaults;
    bool bAnyCase = false; // texts are compared without case
};

/** No text twice: a table that fails this has a word which nothing reads. */
constexpr bool IsDistinct(std::span<const Word> _aWord)
{
    for (std::size_t i = 0; i < _aWord.size(); ++i) {
        for (std::size_t k = i + 1; k < _aWord.size(); ++k) {
            if (_aWord[i].svText == _aWord[k].svText) {
                return false;
            }
        }
    }
    return true;
}

namespace Words {

extern const WordTable g_stServiceType;
extern const WordTable g_stControllerType;
extern const WordTable g_stProviderType;
extern const WordTable g_stPermission;
extern const WordTable g_stDeployState;
extern const WordTable g_stLayerType;
extern const WordTable g_stModuleType;
extern const WordTable g_stStartupType;
extern const WordTable g_stLoadOption;
extern const WordTable g_stDelayInitialize;
extern const WordTable g_stSharedType;
extern const WordTable g_stCompatibilityCheckAction;
extern const WordTable g_stBoolean;

} // namespace Words

namespace Utility {

/** The word equal to the text, with case unless the table says otherwise; null when there is none. */
const Word* FindWord(const WordTable& _rstTable, std::wstring_view _svText) noexcept;

/** The value of the text; an unknown one is logged and yields the table's default. Never fails. */
std::uint32_t ToValue(const WordTable& _rstTable, std::wstring_view _svText) noexcept;

/** The text of the value; an unknown one yields the table's default text and its line, where it has one. */
std::wstring_view ToText(const WordTable& _rstTable, std::uint32_t _ulValue) noexcept;

inline std::uint32_t GetServiceType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stServiceType, _svText);
}
inline std::uint32_t GetControllerType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stControllerType, _svText);
}
inline std::uint32_t GetProviderType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stProviderType, _svText);
}
inline std::uint32_t GetPermission(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stPermission, _svText);
}
inline std::uint32_t GetDeployState(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stDeployState, _svText);
}
inline std::uint32_t GetLayerType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stLayerType, _svText);
}
inline std::uint32_t GetModuleType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stModuleType, _svText);
}
inline std::uint32_t GetStartupType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stStartupType, _svText);
}
inline std::uint32_t GetLoadOption(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stLoadOption, _svText);
}
inline std::uint32_t GetDelayInitialize(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stDelayInitialize, _svText);
}
inline std::uint32_t GetSharedType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stSharedType, _svText);
}
inline std::uint32_t GetCompatibilityCheckActionType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stCompatibilityCheckAction, _svText);
}
inline bool GetBooleanType(std::wstring_view _svText) noexcept
{
    return ToValue(Words::g_stBoolean, _svText) != 0;
}

inline std::wstring GetControllerTypeString(std::uint32_t _ulValue)
{
    return std::wstring(ToText(Words::g_stControllerType, _ulValue));
}
inline std::wstring GetProviderTypeString(std::uint32_t _ulValue)
{
    return std::wstring(ToText(Words::g_stProviderType, _ulValue));
}
inline std::wstring GetPermissionString(std::uint32_t _ulValue)
{
    return std::wstring(ToText(Words::g_stPermission, _ulValue));
}
inline std::wstring GetDeployStateString(std::uint32_t _ulValue)
{
    return std::wstring(ToText(Words::g_stDeployState, _ulValue));
}
inline std::wstring GetBooleanTypeString(bool _bValue)
{
    return std::wstring(ToText(Words::g_stBoolean, _bValue ? 1 : 0));
}

} // namespace Utility

} // namespace Frwk
