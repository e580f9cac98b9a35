#include "Frwk_DataTypesUtility.h"

#include "ZkComn_DebugLog.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace Frwk {

namespace Words {

static_assert(IsDistinct(g_aServiceType) && IsDistinct(g_aControllerType) && IsDistinct(g_aProviderType));
static_assert(IsDistinct(g_aPermission) && IsDistinct(g_aDeployState) && IsDistinct(g_aLayerType));
static_assert(IsDistinct(g_aModuleType) && IsDistinct(g_aStartupType) && IsDistinct(g_aLoadOption));
static_assert(IsDistinct(g_aDelayInitialize) && IsDistinct(g_aSharedType) && IsDistinct(g_aBoolean));
static_assert(IsDistinct(g_aCompatibilityCheckAction));

constexpr WordTable g_stServiceType{
    g_aServiceType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetServiceType() - Not support Service Type was specified. [%s]"}};
constexpr WordTable g_stControllerType{
    g_aControllerType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetControllerType() - Not support Controller Type was specified. [%s]",
     .svUnknownValue = L"eNone"}};
constexpr WordTable g_stProviderType{
    g_aProviderType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetProviderType() - Not support Provider Type was specified. [%s]",
     .pszUnknownValueLine =
         L"*** Frwk::Utility::GetProviderTypeString() - Not support Provider Type was specified. [%u]"}};
constexpr WordTable g_stPermission{
    g_aPermission,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetPermission() - Not support Permission was specified. [%s]",
     .svUnknownValue = L"eDeny"}};
constexpr WordTable g_stDeployState{
    g_aDeployState,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetDeployState() - Invalid Deploy State Type. [%s]",
     .svUnknownValue = L"eNoDeploy"}};
constexpr WordTable g_stLayerType{
    g_aLayerType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetLayerType() - Not support Layer Type was specified. [%s]"}};
// Reports under the service type's name, and the check action under the shared type's: support scripts look for both.
constexpr WordTable g_stModuleType{
    g_aModuleType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetServiceType() - Not support Module Type was specified. [%s]"}};
constexpr WordTable g_stStartupType{
    g_aStartupType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetStartupType() - Not support Startup Type was specified. [%s]"}};
constexpr WordTable g_stLoadOption{
    g_aLoadOption,
    {.ulUnknownText = LoadDelayLoad,
     .pszUnknownTextLine = L"*** Frwk::Utility::GetLoadOption() - Not support Load Option was specified. [%s]"}};
constexpr WordTable g_stDelayInitialize{
    g_aDelayInitialize,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetDelayInitialize() - Invalid delay initialize Type. [%s]"}};
constexpr WordTable g_stSharedType{
    g_aSharedType,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetSharedType() - Not support Shared Type was specified. [%s]"}};
constexpr WordTable g_stCompatibilityCheckAction{
    g_aCompatibilityCheckAction,
    {.pszUnknownTextLine =
         L"*** Frwk::Utility::GetCompatibilityCheckActionType() - Not support Shared Type was specified. [%s]"}};
constexpr WordTable g_stBoolean{
    g_aBoolean, {.pszUnknownTextLine = L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. [%s]"}};

} // namespace Words

namespace Utility {

const Word* FindWord(const WordTable& _rstTable, std::wstring_view _svText) noexcept
{
    const auto Find = [&](auto&& _fnEquals) {
        const auto itWord = std::ranges::find_if(_rstTable.aWord, _fnEquals, &Word::svText);
        return itWord == _rstTable.aWord.end() ? nullptr : &*itWord;
    };
    // Documents write nearly all words as the table does: the system, which knows other cases, is asked last.
    const Word* pWord = Find([&](std::wstring_view _svWord) { return _svWord == _svText; });
    return pWord != nullptr || !_rstTable.bAnyCase
               ? pWord
               : Find([&](std::wstring_view _svWord) { return ZkCommon::String::EqualsNoCase(_svText, _svWord); });
}

std::uint32_t ToValue(const WordTable& _rstTable, std::wstring_view _svText) noexcept
{
    if (const Word* pWord = FindWord(_rstTable, _svText); pWord != nullptr) {
        return pWord->ulValue;
    }
    const WordDefaults& stDefaults = _rstTable.stDefaults;
    if (stDefaults.pszUnknownTextLine != nullptr && ZkCommon::TracePasses(ZkCommon::TraceError)) {
        // "%.*s" would change the line's format: the text gets its terminator in a copy, for a line that is written.
        try {
            ZkCommon::TraceAt(ZkCommon::SourcePlace::Here(), ZkCommon::TraceError, stDefaults.pszUnknownTextLine,
                              std::wstring(_svText).c_str());
        } catch (...) { // no memory for the copy: the line is dropped
        }
    }
    return stDefaults.ulUnknownText;
}

std::wstring_view ToText(const WordTable& _rstTable, std::uint32_t _ulValue) noexcept
{
    for (const Word& stWord : _rstTable.aWord) {
        if (stWord.ulValue == _ulValue) {
            return stWord.svText;
        }
    }
    const WordDefaults& stDefaults = _rstTable.stDefaults;
    if (stDefaults.pszUnknownValueLine != nullptr) {
        ZkCommon::TraceAt(ZkCommon::SourcePlace::Here(), ZkCommon::TraceError, stDefaults.pszUnknownValueLine,
                          _ulValue);
    }
    return stDefaults.svUnknownValue;
}

} // namespace Utility

} // namespace Frwk
