#include "Frwk_DataTypesUtility.h"
#include "TraceRecorder.h"

#include <gtest/gtest.h>

using namespace Frwk;
using Utility::ToText;
using Utility::ToValue;

namespace {

// The documents' own tests read more words.
const struct
{
    int iLine;
    const WordTable* pTable;
    const wchar_t* szText;
    std::uint32_t ulExpected;
    std::wstring tszLine = {}; // empty: nothing is logged
} g_aText[] = {
    {__LINE__, &Words::g_stServiceType, L"eCollectionManager", 0x20},
    {__LINE__, &Words::g_stServiceType, L"eResourceManager", 0x1000},
    {__LINE__, &Words::g_stProviderType, L"eFeedbackEng", 0x4000000},
    {__LINE__, &Words::g_stProviderType, L"eResourceManager", 0x1000000},
    {__LINE__, &Words::g_stProviderType, L"eRealTimeScan ", 0,
     L"*** Frwk::Utility::GetProviderType() - Not support Provider Type was specified. [eRealTimeScan ]"},
    {__LINE__, &Words::g_stModuleType, L"eUnkown", 0},
    {__LINE__, &Words::g_stStartupType, L"eDisable", 0},
    {__LINE__, &Words::g_stDelayInitialize, L"1", 0,
     L"*** Frwk::Utility::GetDelayInitialize() - Invalid delay initialize Type. [1]"},
    {__LINE__, &Words::g_stSharedType, L"eDependedOnController", 3},
    {__LINE__, &Words::g_stCompatibilityCheckAction, L"ePass", 0,
     L"*** Frwk::Utility::GetCompatibilityCheckActionType() - Not support Shared Type was specified. [ePass]"},
    {__LINE__, &Words::g_stBoolean, L"True", 0, L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. [True]"},
    {__LINE__, &Words::g_stBoolean, L"\u0436\U0001F512", 0,
     L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. [\u0436\U0001F512]"},
};

TEST(Words, TextTakesItsValueWithCaseAndAnUnknownOneIsLoggedAndDefaults)
{
    for (const auto& stRow : g_aText) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const TraceRecorder cTrace;
        EXPECT_EQ(ToValue(*stRow.pTable, stRow.szText), stRow.ulExpected);
        EXPECT_EQ(cTrace.Messages(), std::vector(stRow.tszLine.empty() ? 0 : 1, stRow.tszLine));
    }
}

TEST(Words, EveryWordSurvivesTheWayToItsValueAndBack)
{
    const WordTable* aTable[] = {
        &Words::g_stServiceType, &Words::g_stControllerType,  &Words::g_stProviderType,
        &Words::g_stPermission,  &Words::g_stDeployState,     &Words::g_stLayerType,
        &Words::g_stModuleType,  &Words::g_stStartupType,     &Words::g_stLoadOption,
        &Words::g_stSharedType,  &Words::g_stDelayInitialize, &Words::g_stCompatibilityCheckAction};
    for (const WordTable* pTable : aTable) {
        for (const Word& stWord : pTable->aWord) {
            EXPECT_EQ(ToText(*pTable, ToValue(*pTable, stWord.svText)), stWord.svText);
        }
    }
}

TEST(Words, AnUnknownValueTakesItsTablesTextAndOnlyTheProvidersIsLogged)
{
    const TraceRecorder cTrace;
    EXPECT_EQ(Utility::GetControllerTypeString(0x20), L"eNone");
    EXPECT_EQ(Utility::GetBooleanTypeString(true), L"true");
    EXPECT_EQ(Utility::GetProviderTypeString(0x800000), L"");
    EXPECT_EQ(cTrace.Messages(),
              std::vector<std::wstring>{
                  L"*** Frwk::Utility::GetProviderTypeString() - Not support Provider Type was specified. [8388608]"});
}

} // namespace
