#include "ZkComn_String.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

using namespace ZkCommon;
using namespace std::string_literals;

TEST(String, FormatsATextOfAnyLength)
{
    for (const std::size_t uLength : {0U, 254U, 255U, 256U, 511U, 512U, 100000U}) {
        const std::wstring tszText(uLength, L'x');
        std::wstring tszOutput = L"old";
        EXPECT_TRUE(String::Format(tszOutput, L"%s%u", tszText.c_str(), 7U));
        EXPECT_EQ(tszOutput, tszText + L"7");
    }
}

TEST(String, ReadsNumbersAsFarAsTheyGo)
{
    // The number that the text begins with, and whether the text is that number and nothing else.
    constexpr std::tuple<int, std::wstring_view, std::uint32_t, bool> aRows[] = {
        {__LINE__, L"0", 0, true},
        {__LINE__, L"0XaF", 0xAF, true},
        {__LINE__, L"010", 8, true},
        {__LINE__, L"4294967295", 0xFFFFFFFF, true},
        {__LINE__, L"4294967296", 0xFFFFFFFF, false},
        {__LINE__, L"99999999999999999999", 0xFFFFFFFF, false},
        {__LINE__, L"", 0, false},
        {__LINE__, L"abc", 0, false},
        {__LINE__, L"0x", 0, false},
        {__LINE__, L"08", 0, false},
        {__LINE__, L"12 ", 12, false},
        {__LINE__, L" \t\n12", 12, false},
        {__LINE__, L"+12", 12, false},
        {__LINE__, L"-1", 0xFFFFFFFF, false},
        {__LINE__, L"- 1", 0, false},
    };
    for (const auto& [iLine, svText, ulExpected, bWhole] : aRows) {
        EXPECT_EQ(String::ToNumber(svText), ulExpected) << iLine;
        EXPECT_EQ(String::ToWholeNumber(svText), bWhole ? std::optional(ulExpected) : std::nullopt) << iLine;
        EXPECT_EQ(::wcstoul(std::wstring(svText).c_str(), nullptr, 0), ulExpected) << iLine;
    }
    EXPECT_EQ(String::ToWholeNumber64(L"0xFFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(String::ToWholeNumber64(L"18446744073709551615"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(String::ToWholeNumber64(L"18446744073709551616"), std::nullopt);
}

TEST(String, ComparesWithoutCaseOverALimitedLength)
{
    EXPECT_TRUE(String::EqualsNoCase(L"RegIstry\u00C4", L"registry\u00E4"));
    EXPECT_FALSE(String::EqualsNoCase(L"registry", L"registry "));
    EXPECT_TRUE(String::EqualsNoCase(L"inifile-long", L"INIFILE-other", 8));
    EXPECT_FALSE(String::EqualsNoCase(L"inifile", L"inifile-", 8));
    EXPECT_FALSE(String::EqualsNoCase(L"", L"a"));
}

TEST(String, ConvertsBetweenWideAndNarrow)
{
    using namespace std::string_view_literals;
    const std::wstring tszWide = L"a\u00e4\u4e2d\U0001F600"s + L'\0' + L"b";
    const std::string sUtf8 = "a\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80\0b"s;
    EXPECT_EQ(String::ToUtf8(tszWide), sUtf8);
    EXPECT_EQ(String::FromUtf8(sUtf8), tszWide);
    EXPECT_EQ(String::ToUtf8(L"\xD800"sv), "\xEF\xBF\xBD"); // half a pair
    EXPECT_EQ(String::FromAnsi(String::ToAnsi(L"plain")), L"plain");
    EXPECT_EQ(String::WithBackslash(L"") + String::WithBackslash(L"C:") + String::WithBackslash(L"D:\\"), L"C:\\D:\\");
}
