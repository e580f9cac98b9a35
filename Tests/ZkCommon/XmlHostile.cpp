// Documents that are made to hurt: none may overflow the stack, take time as the square of its size, or leak.

#include "XmlTest.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

std::string Repeat(std::string_view _svText, std::size_t _uTimes)
{
    std::string sResult;
    sResult.reserve(_svText.size() * _uTimes);
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
    std::size_t uCount = 1;
    for (XmlElement element = _root;;) {
        if (const XmlElement child = element.FirstChild(); child) {
            element = child;
        } else {
            while (element != _root && !element.NextSibling()) {
                element = element.Parent();
            }
            if (element == _root) {
                return uCount;
            }
            element = element.NextSibling();
        }
        ++uCount;
    }
}

/** Memory whose _iRefused-th request is refused (counted from 0), and which knows what is still taken. */
int g_iRequests = 0;
int g_iRefused = 0;
int g_iTaken = 0;

void* Reallocate(void* _pMemory, std::size_t _uSize)
{
    if (g_iRequests++ == g_iRefused) {
        return nullptr;
    }
    g_iTaken += _pMemory == nullptr ? 1 : 0;
    return std::realloc(_pMemory, _uSize);
}
void* Allocate(std::size_t _uSize)
{
    return Reallocate(nullptr, _uSize);
}
void Free(void* _pMemory)
{
    g_iTaken -= _pMemory != nullptr ? 1 : 0;
    std::free(_pMemory);
}
constexpr XmlMemory g_stMemory{&Allocate, &Reallocate, &Free};

} // namespace

TEST(XmlHostile, LargeShapesAreBuiltWalkedWrittenAndReadBackInLinearTime)
{
    constexpr std::size_t uMany = 100'000;
    const struct
    {
        int iLine;
        std::string sDocument;
        std::size_t uElements;
    } aRows[] = {
        {__LINE__, Repeat("<a>", uMany) + Repeat("</a>", uMany), uMany},
        {__LINE__, Repeat("<a>x", uMany) + "<!--c-->" + Repeat("y</a>", uMany), uMany},
        {__LINE__, "<r>" + Repeat("<a/>", 10 * uMany) + "</r>", 10 * uMany + 1},
        {__LINE__, "<r" + Numbered(" a", "='v'", uMany) + "/>", 1},
        {__LINE__, "<r>" + Numbered("<a", "/>", uMany) + "</r>", uMany + 1},
        {__LINE__, "<r>" + Repeat("line\n", uMany * 4) + "</r>", 1},
        {__LINE__, "<r>" + Repeat("&lt;\xC3\xA4", uMany) + "</r>", 1},
        {__LINE__, "<r>" + Repeat("\r\n", uMany) + "<a/></r>", 2},
        {__LINE__, "<r a='" + Repeat("0123456789", uMany) + "'/>", 1},
    };
    for (const auto& stRow : aRows) {
        SCOPED_TRACE("row of line " + std::to_string(stRow.iLine));
        const auto start = std::chrono::steady_clock::now();
        {
            XmlParser parser;
            parser.LoadText(stRow.sDocument, XmlParser::KeepWhole);
            EXPECT_EQ(CountElements(parser.Document().FirstChild()), stRow.uElements);
            XmlParser reader;
            reader.LoadText(Written(parser.Document()), XmlParser::KeepWhole);
            EXPECT_TRUE(ReadsBackAs(parser.Document(), reader.Document()));
        }
        // As the square of the size, each of them would take minutes.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    }
}

TEST(XmlHostile, EditsOfManyChildrenAndPathsThatAlmostMatchTakeLinearTime)
{
    const auto start = std::chrono::steady_clock::now();
    XmlParser parser;
    parser.LoadText("<r>" + Repeat("<a><b/><b/></a>", 100'000) + "<a><b><c>x</c></b></a></r>", XmlParser::KeepWhole);
    XmlElement root = parser.Document().FirstChild();
    EXPECT_EQ(root.ChildText(L"./a/b/c"), L"x");
    for (int i = 0; i < 100'000; ++i) {
        root.AddChild(L"b").SetText(L"text");
    }
    EXPECT_EQ(CountElements(root), 400'004U);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(XmlHostile, AnEntityThatExpandsWithoutMeasureIsRefused)
{
    std::string sDocument = "<!DOCTYPE r [<!ENTITY e0 'ha'>";
    for (int i = 1; i <= 10; ++i) {
        const std::string sInner = "&e" + std::to_string(i - 1) + ";";
        sDocument += "<!ENTITY e" + std::to_string(i) + " '" + Repeat(sInner, 10) + "'>";
    }
    sDocument += "]><r>&e10;</r>";
    for (const wchar_t* pszPath : {L"/r", L"/other"}) {
        XmlParser parser;
        parser.LoadText(sDocument);
        XmlElement element;
        const auto failure = FailureOf([&] { parser.Select(pszPath, element); });
        EXPECT_EQ(failure ? failure->ulXmlCode : 0, std::uint32_t{XML_ERROR_AMPLIFICATION_LIMIT_BREACH});
    }
}

TEST(XmlHostile, EveryRefusedAllocationFailsTheLoadAndLeavesNothing)
{
    // Texts and names that outgrow a chunk of the arena, runs to join, attributes, comments.
    const std::string sDocument = "<r><a x='" + Repeat("v", 5000) + "'>" + Repeat("text\n", 3000) + "<b/>more</a>" +
                                  Numbered("<n", " y='1'/><!--d-->", 200) + Repeat("<c y='1'>t</c>", 2000) + "</r>";
    int iRefused = 0;
    for (;; ++iRefused) {
        ASSERT_LT(iRefused, 2000);
        g_iRequests = 0;
        g_iRefused = iRefused;
        g_iTaken = 0;
        std::optional<XmlFailure> failure;
        {
            XmlParser parser(&g_stMemory);
            failure = FailureOf([&] {
                parser.LoadText(sDocument, XmlParser::KeepWhole);
                XmlElement root = parser.Document().FirstChild();
                for (int i = 0; i < 100; ++i) {
                    root.AddChild(L"added").SetText(std::wstring(1000, L'x'));
                }
            });
        }
        EXPECT_EQ(g_iTaken, 0) << iRefused;
        if (!failure) {
            break;
        }
        EXPECT_EQ(failure->ulCode, 6U) << iRefused;
    }
    EXPECT_GT(iRefused, 20);          // many places were tried
    EXPECT_LE(g_iRequests, iRefused); // and the last run came through because none was left to refuse
}
