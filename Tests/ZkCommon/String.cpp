#include "ZkComn_String.h"

#include <gtest/gtest.h>
#include <string>

using namespace ZkCommon;
using namespace std::string_literals;

namespace {

/** Attempts that FormatV takes for a text of that length, and what it then gives. */
std::uint32_t AttemptsFor(std::size_t _uLength)
{
    const std::wstring tszText(_uLength, L'x');
    std::uint32_t ulSize = String::g_ulFormatStart;
    std::uint32_t ulAttempts = 1;
    std::wstring tszOutput = L"old";
    const auto Attempt = [&](const wchar_t* _pszFormat, ...) {
        std::va_list args;
        va_start(args, _pszFormat);
        const bool bDone = String::FormatV(tszOutput, ulSize, _pszFormat, args);
        va_end(args);
        return bDone;
    };
    while (!Attempt(L"%s", tszText.c_str())) {
        ++ulAttempts;
    }
    EXPECT_EQ(tszOutput, tszText);
    EXPECT_EQ(ulSize, ulAttempts * String::g_ulFormatStep);
    return ulAttempts;
}

} // namespace

TEST(String, FormatsInStepsUntilTheTextFits)
{
    EXPECT_EQ(AttemptsFor(255), 1U);
    EXPECT_EQ(AttemptsFor(256), 2U);
    EXPECT_EQ(AttemptsFor(1000), 4U);
    for (const std::size_t uLength : {0U, 255U, 100000U}) {
        std::wstring tszOutput = L"old";
        EXPECT_TRUE(String::Format(tszOutput, L"%s%u", std::wstring(uLength, L'x').c_str(), 7U));
        EXPECT_EQ(tszOutput, std::wstring(uLength, L'x') + L"7");
    }
}

TEST(String, ReadsNumbersAsFarAsTheyGo)
{
    struct Row
    {
        int iLine;
        std::wstring_view svText;
        std::uint32_t ulExpected;
        bool bWhole; // the text is that number and nothing else
    };
    constexpr Row aRow[] = {
        {__LINE__, L"0", 0, true},
        {__LINE__, L"0XaF", 0xAF, true},
        {__LINE__, L"010", 8, true},
        {__LINE__, L"4294967295", 0xFFFFFFFF, true},
        {__LINE__, L"4294967296", 0xFFFFFFFF, false},
        {__LINE__, L"99999999999999999999", 0xFFFFFFFF, false},
        {__LINE__, L"", 0, false},
        {__LINE__, L"abc", 0, false},
        {__LINE__, L"0x", 0, false},
        {__LINE__, L"0xg", 0, false},
        {__LINE__, L"08", 0, false},
        {__LINE__, L"12 ", 12, false},
        {__LINE__, L" \t\n12", 12, false},
        {__LINE__, L"+12", 12, false},
        {__LINE__, L"-1", 0xFFFFFFFF, false},
        {__LINE__, L"- 1", 0, false},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        EXPECT_EQ(String::ToNumber(stRow.svText), stRow.ulExpected);
        EXPECT_EQ(String::ToWholeNumber(stRow.svText), stRow.bWhole ? std::optional(stRow.ulExpected) : std::nullopt);
        EXPECT_EQ(::wcstoul(std::wstring(stRow.svText).c_str(), nullptr, 0), stRow.ulExpected);
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
    EXPECT_EQ(String::WithBackslash(L""), L"");
    EXPECT_EQ(String::WithBackslash(L"C:"), L"C:\\");
    EXPECT_EQ(String::WithBackslash(L"C:\\"), L"C:\\");
}
