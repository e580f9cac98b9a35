#include "ZkComn_XmlWriter.h"

#include "XmlTest.h"

#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

TEST(XmlWriter, WritesAnElementALine)
{
    const std::tuple<int, const char*, const char*> aRows[] = {
        // the output behind the declaration
        {__LINE__, "<A  x = '1'\ny='2' />", "<A x=\"1\" y=\"2\"/>\r\n"},
        {__LINE__, "<A x='&lt;&amp;&quot;&quot;'>&lt;&amp;&gt;'\"</A>",
         "<A x=\"&lt;&amp;&quot;&quot;\">&lt;&amp;&gt;&apos;&quot;</A>\r\n"},
        {__LINE__, "<A><B><C>t</C></B><D/></A>", "<A>\r\n\t<B>\r\n\t\t<C>t</C>\r\n\t</B>\r\n\t<D/>\r\n</A>\r\n"},
        {__LINE__, "<!--before--><A><!-- < in --><B/></A><!--behind-->",
         "<!--before-->\r\n<A>\r\n\t<!-- < in -->\r\n\t<B/>\r\n</A>\r\n<!--behind-->\r\n"},
        {__LINE__, "<\xC3\x84>\xE4\xB8\xAD&#x1F512;</\xC3\x84>",
         "<\xC3\x84>\xE4\xB8\xAD\xF0\x9F\x94\x92</\xC3\x84>\r\n"},
    };
    for (const auto& [iLine, szDocument, szExpected] : aRows) {
        EXPECT_EQ(Written(Whole(szDocument).Document()),
                  std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n") + szExpected)
            << iLine;
    }
}

TEST(XmlWriter, WritesASingleElementWithoutDeclarationWhenAsked)
{
    const Whole document("<A><B><C/></B><D/></A>");
    XmlElement b = document.Root().FirstChild();
    b.SetText(L"x\r\n");
    XmlWriter writer(false);
    EXPECT_TRUE(writer.Write(b));
    EXPECT_EQ(writer.Output(), "<B>x&#13;\n\r\n\t<C/>\r\n</B>\r\n");
    writer.SetEncoding(L"UTF16");
    EXPECT_EQ(CodeOf([&] { writer.Write(b); }), 50U);
}

namespace {

/** Random documents, and what reading them should give: a model that knows nothing of the parser. */
class RandomDocument
{
public:
    explicit RandomDocument(unsigned _uSeed) : m_random(_uSeed) { Element(0); }

    /** As an author may write it. */
    const std::string& Text() const { return m_sText; }
    /** In the form of Short. */
    const std::string& Meaning() const { return m_sMeaning; }

private:
    unsigned Below(unsigned _uLimit) { return static_cast<unsigned>(m_random() % _uLimit); }

    /** Some characters as the document has them, and what they mean; in an attribute a line end is a blank. */
    std::string Characters(bool _bAttribute)
    {
        static constexpr std::pair<const char*, const char*> aPiece[] = {{"x", "x"},
                                                                         {" ", " "},
                                                                         {"\t", "\t"},
                                                                         {"\r\n", "\n"},
                                                                         {"\r", "\n"},
                                                                         {"&#13;", "\r"},
                                                                         {"&#9;", "\t"},
                                                                         {"&#10;", "\n"},
                                                                         {"&lt;", "<"},
                                                                         {"&amp;", "&"},
                                                                         {"&#x20AC;", "\xE2\x82\xAC"},
                                                                         {"\xC3\xA4", "\xC3\xA4"},
                                                                         {"'", "'"},
                                                                         {"&quot;", "\""},
                                                                         {">", ">"}};
        std::string sMeaning;
        for (unsigned u = Below(6); u != 0; --u) {
            const auto& [szWritten, szMeant] = aPiece[Below(std::size(aPiece))];
            m_sText += szWritten;
            sMeaning += _bAttribute && szWritten[0] != '&' && szMeant[0] < ' ' && szMeant[0] > 0 ? " " : szMeant;
        }
        return sMeaning;
    }

    static std::string Trimmed(const std::string& _rsText)
    {
        const std::size_t uBegin = _rsText.find_first_not_of(" \t\n\r");
        return uBegin == std::string::npos ? ""
                                           : _rsText.substr(uBegin, _rsText.find_last_not_of(" \t\n\r") + 1 - uBegin);
    }

    // NOLINTNEXTLINE(misc-no-recursion): the documents are small
    void Element(unsigned _uDepth)
    {
        const std::string sName(1, static_cast<char>('A' + Below(4)));
        m_sText += "<" + sName;
        m_sMeaning += sName;
        for (unsigned u = 0; u < Below(3); ++u) {
            const std::string sAttribute(1, static_cast<char>('a' + u));
            m_sText += " " + sAttribute + "=\"";
            m_sMeaning += "[" + sAttribute + "=" + Characters(true) + "]";
            m_sText += "\"";
        }
        m_sText += ">";
        std::string sText;
        std::string sChildren;
        std::string sRun = Characters(false);
        std::swap(sChildren, m_sMeaning); // children write their meaning there
        for (unsigned u = Below(5); u != 0; --u) {
            m_sMeaning += m_sMeaning.empty() ? "" : ",";
            if (Below(2) == 0) {
                m_sText += "<!--c-->";
                m_sMeaning += "!(c)";
            } else if (_uDepth < 4) {
                sText += Trimmed(std::exchange(sRun, ""));
                Element(_uDepth + 1);
            } else {
                m_sMeaning += "!(d)";
                m_sText += "<!--d-->";
            }
            sRun += Characters(false);
        }
        std::swap(sChildren, m_sMeaning);
        sText += sChildren.empty() ? sRun : Trimmed(sRun);
        m_sText += "</" + sName + ">";
        m_sMeaning += (sText.empty() ? "" : "(" + sText + ")") + (sChildren.empty() ? "" : "{" + sChildren + "}");
    }

    std::minstd_rand m_random;
    std::string m_sText;
    std::string m_sMeaning;
};

} // namespace

TEST(XmlWriter, WhatIsWrittenReadsAsItWasAndIsWrittenTheSameAgain)
{
    for (unsigned uSeed = 1; uSeed <= 500; ++uSeed) {
        const RandomDocument random(uSeed);
        SCOPED_TRACE(random.Text());
        const Whole first(random.Text(), uSeed % 6);
        ASSERT_EQ(Short(first.Root()), random.Meaning());
        const std::string sWritten = Written(first.Document());
        const Whole second(sWritten);
        ASSERT_EQ(Short(second.Root()), random.Meaning()) << sWritten;
        ASSERT_EQ(Written(second.Document()), sWritten);
        ASSERT_TRUE(first.ReadsBack(sWritten)) << sWritten;
    }
}

TEST(XmlWriter, ReadingBackTellsWhatXmlCannotHold)
{
    const std::tuple<int, std::wstring, const char*> aRows[] = {
        // and whether text, attribute, comment can
        {__LINE__, L" <&>\"' \u00e4\u4e2d\xD83D\xDD12", "tac"},
        {__LINE__, L"a\r\nb\rc\n\td", "ta-"}, // a comment holds no references
        {__LINE__, std::wstring(L"a\0b", 3), "---"},
        {__LINE__, L"a\xD83D", "---"},
        {__LINE__, L"\xFFFF", "---"},
        {__LINE__, L"a--b", "ta-"},
        {__LINE__, L"a-", "ta-"},
    };
    for (const auto& [iLine, tszText, szHeld] : aRows) {
        std::string sHeld;
        for (const char c : {'t', 'a', 'c'}) {
            const Whole document("<A/>");
            XmlElement a = document.Root();
            if (c == 't') {
                a.SetText(tszText);
            } else if (c == 'a') {
                a.SetAttribute(L"x", tszText);
            } else {
                a.AddComment(tszText);
            }
            bool bHeld = false;
            CodeOf([&] { bHeld = document.ReadsBack(Written(document.Document())); });
            sHeld += bHeld ? c : '-';
        }
        EXPECT_EQ(sHeld, szHeld) << iLine;
    }
}

TEST(XmlWriter, ComparisonSeesEveryDifference)
{
    const auto Same = [](std::string_view _svLeft, std::string_view _svRight) {
        return Whole(_svLeft).ReadsBack(_svRight);
    };
    EXPECT_TRUE(Same("<A x='1'><B/>t</A>", "<A\nx=\"1\">\n t\n<B></B>\n</A>"));
    std::vector<std::string> vecDocument;
    std::istringstream cDocuments(
        "<A/>|<B/>|<A x='1'/>|<A x='2'/>|<A x='1' y='2'/>|<A y='2' x='1'/>|<A>t</A>|<A>t </A>|"
        "<A><B/></A>|<A><B/><B/></A>|<A><B><C/></B></A>|<A><B/><C/></A>|<A><!--c--></A>|<A><!--d--></A>");
    while (std::getline(cDocuments, vecDocument.emplace_back(), '|')) {
    }
    vecDocument.pop_back();
    for (const std::string& sLeft : vecDocument) {
        for (const std::string& sRight : vecDocument) {
            EXPECT_EQ(Same(sLeft, sRight), sLeft == sRight) << sLeft << " and " << sRight;
        }
    }
}
