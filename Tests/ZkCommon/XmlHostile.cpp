// Documents that are made to hurt: none may overflow the stack, or take more memory than its size allows.

#include "XmlTest.h"

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>
#include <windows.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

std::string Repeat(std::string_view _svText, std::size_t _uTimes)
{
    std::string sResult;
    for (std::size_t u = 0; u < _uTimes; ++u) {
        sResult += _svText;
    }
    return sResult;
}

/** "before" + number + "behind", for each number. */
std::string Numbered(std::string_view _svBefore, std::string_view _svBehind, std::size_t _uTimes)
{
    std::string sResult;
    for (std::size_t u = 0; u < _uTimes; ++u) {
        sResult.append(_svBefore).append(std::to_string(u)).append(_svBehind);
    }
    return sResult;
}

std::size_t CountElements(XmlElement _root)
{
    std::size_t uCount = 0;
    for (std::vector<XmlElement> vecOpen{_root}; !vecOpen.empty(); ++uCount) {
        XmlElement child = vecOpen.back().FirstChild();
        vecOpen.pop_back();
        for (; child; child = child.NextSibling()) {
            vecOpen.push_back(child);
        }
    }
    return uCount;
}

/** Memory that knows how much of it is taken. */
int g_iTaken = 0;

void* Reallocate(void* _pMemory, std::size_t _uSize)
{
    g_iTaken += _pMemory == nullptr ? 1 : 0;
    return std::realloc(_pMemory, _uSize);
}
void Free(void* _pMemory)
{
    if (_pMemory != nullptr) {
        --g_iTaken;
        std::memset(_pMemory, 0xDD, ::_msize(_pMemory)); // whoever still reads it shall notice
    }
    std::free(_pMemory);
}
constexpr XmlMemory g_stMemory{[](std::size_t _uSize) { return Reallocate(nullptr, _uSize); }, &Reallocate, &Free};

} // namespace

TEST(XmlHostile, LargeShapesAreBuiltWalkedWrittenAndReadBack)
{
    constexpr std::size_t uMany = 100'000;
    const std::tuple<int, std::string, std::size_t> aRows[] = {
        {__LINE__, Repeat("<a>", uMany) + Repeat("</a>", uMany), uMany},
        {__LINE__, Repeat("<a>x", uMany) + "<!--c-->" + Repeat("y</a>", uMany), uMany},
        {__LINE__, "<r>" + Repeat("<a/>", 10 * uMany) + "</r>", 10 * uMany + 1},
        {__LINE__, "<r" + Numbered(" a", "='v'", uMany) + "/>", 1},
        {__LINE__, "<r>" + Numbered("<a", "/>", uMany) + "</r>", uMany + 1},
        {__LINE__, "<r>" + Repeat("line\n", uMany * 4) + "</r>", 1},
        {__LINE__, "<r>" + Repeat("&lt;\xC3\xA4", uMany) + "</r>", 1},
        {__LINE__, "<r>" + Repeat("\r\n", uMany) + "<a/></r>", 2},
        {__LINE__, "<r a='" + Repeat("0123456789", 8 * uMany) + "'/>", 1},
    };
    for (const auto& [iLine, sDocument, uElements] : aRows) {
        const Whole document(sDocument);
        EXPECT_EQ(CountElements(document.Root()), uElements) << iLine;
        EXPECT_TRUE(document.ReadsBack(Written(document.Document()))) << iLine;
    }
}

TEST(XmlHostile, WhatADocumentDeclaresCannotMakeItTakeMoreThanItsSizeAllows)
{
    std::string sDocument = "<!DOCTYPE r [<!ENTITY e0 'ha'>";
    for (int i = 1; i <= 10; ++i) {
        sDocument += "<!ENTITY e" + std::to_string(i) + " '" + Repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    sDocument += "]><r>&e10;</r>";
    const auto declaring = [](std::size_t _uAttributes, std::size_t _uElements) {
        return "<!DOCTYPE r [<!ATTLIST a " + Numbered("a", " CDATA 'v' ", _uAttributes) + ">]><r>" +
               Repeat("<a/>", _uElements) + "</r>";
    };
    const std::string sLarge = declaring(100, 10'000);
    const std::string sMany = declaring(101, 1);
    const std::tuple<const std::string*, const wchar_t*, std::uint32_t> aRows[] = {
        {&sDocument, L"/r", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
        {&sDocument, L"/other", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
        {&sLarge, L"/r", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
        {&sLarge, L"/other", 0},
        {&sMany, L"/other", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
    };
    for (const auto& [psDocument, pszPath, ulCode] : aRows) {
        for (const std::uint32_t ulOptions : {XmlParser::KeepSelected, XmlParser::OneByOne}) {
            XmlParser parser;
            parser.LoadText(*psDocument, ulOptions);
            const wchar_t* pszWanted = pszPath; // no lambda may capture a structured binding
            const auto pFailure = FailureOf<XmlException>([&] {
                XmlElement element;
                parser.Select(pszWanted, element);
                for (auto child = element.NextChild(); child; child = element.NextChild(child)) {
                }
            });
            EXPECT_EQ(pFailure ? pFailure->XmlErrorCode() : 0U, ulCode);
            EXPECT_TRUE(!pFailure || (pFailure->XmlLine() != 0 && parser.FailureText() != std::string()));
        }
    }
    const Whole small("<r a='1'/>");
    EXPECT_EQ(CodeOf([&] { small.Root().Charge(4U << 20); }), 0U);
    EXPECT_EQ(CodeOf([&] { small.Root().Charge(4U << 20); }), 6U);
}

TEST(XmlElement, ForgetsTheChildrenThatWereReadAndNothingElse)
{
    constexpr std::uint32_t ulChildren = 20'000;
    std::string sDocument = "<r x='" + Repeat("v", 70'000) + "' y='1'><!--c--><b/>one";
    for (std::uint32_t i = 0; i < ulChildren; ++i) {
        const std::string sName = "n" + std::to_string(i % 7000); // most were known before, from what is gone by then
        sDocument +=
            "<a i='" + std::to_string(i) + "'><" + sName + ">" + Repeat("text ", i % 50) + "</" + sName + "></a>";
    }
    sDocument += Repeat("two", 50'000) + "</r>";

    enum class Kept
    {
        Selected,
        OneByOne,
        Whole,
        Edited
    };
    for (const Kept enKept : {Kept::Selected, Kept::OneByOne, Kept::Whole, Kept::Edited}) {
        SCOPED_TRACE(static_cast<int>(enKept));
        g_iTaken = 0;
        XmlParser parser(&g_stMemory);
        parser.LoadText(sDocument, enKept == Kept::Whole      ? XmlParser::KeepWhole
                                   : enKept == Kept::OneByOne ? XmlParser::OneByOne
                                                              : XmlParser::KeepSelected);
        XmlElement before;
        XmlElement root;
        ASSERT_TRUE(parser.Select(L"/r/b", before) && parser.Select(L"/r", root));
        if (enKept == Kept::Edited) {
            root.SetAttribute(L"y", L"2");
        }
        const int iTaken = g_iTaken;
        std::uint32_t ulRead = 0;
        for (auto a = root.NextChild(root.NextChild()); a; a = root.NextChild(a)) { // after "b"
            ASSERT_EQ(a.Attribute(L"i"), std::to_wstring(ulRead));
            ASSERT_EQ(a.FirstChild().Name(), L"n" + std::to_wstring(ulRead % 7000));
            ASSERT_EQ(a.FirstChild().Text().size(), ulRead % 50 * 5);
            ++ulRead;
        }
        EXPECT_EQ(ulRead, ulChildren);
        EXPECT_EQ(root.Attribute(L"x").size(), 70'000U);
        EXPECT_EQ(before.Name(), L"b");
        if (enKept == Kept::OneByOne) {
            EXPECT_EQ(root.Text(), L"");
        } else {
            EXPECT_EQ(g_iTaken, iTaken);
            EXPECT_EQ(root.FirstChild().Name(), L"b");
            EXPECT_EQ(root.Text().size(), 3U + 150'000U);
        }
        parser.Close();
        EXPECT_EQ(g_iTaken, 0);
    }
    EXPECT_FALSE(XmlElement().NextChild());
}
