#include "ZkComn_XmlWriter.h"

#include "XmlTest.h"

#include <gtest/gtest.h>
#include <string>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

constexpr const char* g_szDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

/** Whether a document, once written, reads back as it was meant. */
bool ReadsBack(const XmlParser& _rWritten)
{
    const std::string sOutput = Written(_rWritten.Document());
    XmlParser reader;
    return CodeOf([&] { reader.LoadText(sOutput, XmlParser::KeepWhole); }) == 0 &&
           ReadsBackAs(_rWritten.Document(), reader.Document());
}

} // namespace

TEST(XmlWriter, WritesAnElementALine)
{
    const struct
    {
        int iLine;
        const char* szDocument;
        const char* szExpected; // behind the declaration
    } aRows[] = {
        {__LINE__, "<A/>", "<A/>\r\n"},
        {__LINE__, "<A  x = '1'\ny='2' />", "<A x=\"1\" y=\"2\"/>\r\n"},
        {__LINE__, "<A x='&lt;&amp;&quot;&quot;'>&lt;&amp;&gt;'\"</A>",
         "<A x=\"&lt;&amp;&quot;&quot;\">&lt;&amp;&gt;&apos;&quot;</A>\r\n"},
        {__LINE__, "<A><B><C>t</C></B><D/></A>", "<A>\r\n\t<B>\r\n\t\t<C>t</C>\r\n\t</B>\r\n\t<D/>\r\n</A>\r\n"},
        {__LINE__, "<A>x<B/>y</A>", "<A>xy\r\n\t<B/>\r\n</A>\r\n"},
        {__LINE__, "<!--before--><A><!-- < in --><B/></A><!--behind-->",
         "<!--before-->\r\n<A>\r\n\t<!-- < in -->\r\n\t<B/>\r\n</A>\r\n<!--behind-->\r\n"},
        {__LINE__, "<\xC3\x84>\xE4\xB8\xAD&#x1F512;</\xC3\x84>",
         "<\xC3\x84>\xE4\xB8\xAD\xF0\x9F\x94\x92</\xC3\x84>\r\n"},
    };
    for (const auto& stRow : aRows) {
        XmlParser parser;
        parser.LoadText(stRow.szDocument, XmlParser::KeepWhole);
        EXPECT_EQ(Written(parser.Document()), std::string(g_szDeclaration) + stRow.szExpected) << stRow.iLine;
    }
}

TEST(XmlWriter, WritesASingleElementWithoutDeclarationWhenAsked)
{
    XmlParser parser;
    parser.LoadText("<A><B><C/></B><D/></A>", XmlParser::KeepWhole);
    XmlElement b = parser.Document().FirstChild().FirstChild();
    b.SetText(L"x\r\n"); // a line end that is not doubled
    XmlWriter writer(false);
    EXPECT_TRUE(writer.Write(b));
    EXPECT_EQ(writer.Output(), "<B>x\r\n\t<C/>\r\n</B>\r\n");
    writer.SetEncoding(L"UTF16");
    EXPECT_EQ(CodeOf([&] { writer.Write(b); }), 50U);
}

TEST(XmlWriter, RewritesItsOwnOutputUnchanged)
{
    for (const char* szDocument : {
             "<A/>",
             "<!-- a\n b -->\n<A a='1'> x \n <B> y <!-- c --> </B> z <C>  </C><D> </D>\n</A>\n<!-- e -->",
             "<A>\n\n<!-- only a comment -->\n\n</A>",
             "<A> <![CDATA[ x ]]> <B><B><B> </B></B></B> &#32; &lt; </A>",
             "<A>\xC2\xA0<B/>\xE2\x80\xA8</A>",
         }) {
        XmlParser first;
        first.LoadText(szDocument, XmlParser::KeepWhole);
        const std::string sFirst = Written(first.Document());
        XmlParser second;
        second.LoadText(sFirst, XmlParser::KeepWhole);
        EXPECT_EQ(Written(second.Document()), sFirst);
        EXPECT_TRUE(ReadsBackAs(first.Document(), second.Document())) << sFirst;
    }
}

TEST(XmlWriter, ReadingBackTellsWhatXmlCannotHold)
{
    const struct
    {
        int iLine;
        std::wstring tszText;
        bool bInText;
        bool bInAttribute;
        bool bInComment;
    } aRows[] = {
        {__LINE__, L" <&>\"' \u00e4\u4e2d\xD83D\xDD12", true, true, true},
        {__LINE__, L"a\r\nb\rc\n", true, false, true}, // a line end is a line end; in an attribute it is a blank
        {__LINE__, L"a\tb", true, false, true},
        {__LINE__, std::wstring(L"a\0b", 3), false, false, false},
        {__LINE__, L"a\xD83D", false, false, false},
        {__LINE__, L"\xFFFF", false, false, false},
        {__LINE__, L"a--b", true, true, false},
        {__LINE__, L"a-", true, true, false},
    };
    for (const auto& stRow : aRows) {
        const auto ReadsBackFrom = [&](const auto& _fnPut) {
            XmlParser parser;
            parser.LoadText("<A/>", XmlParser::KeepWhole);
            _fnPut(parser.Document().FirstChild());
            return ReadsBack(parser);
        };
        EXPECT_EQ(ReadsBackFrom([&](XmlElement _a) { _a.SetText(stRow.tszText); }), stRow.bInText) << stRow.iLine;
        EXPECT_EQ(ReadsBackFrom([&](XmlElement _a) { _a.SetAttribute(L"x", stRow.tszText); }), stRow.bInAttribute)
            << stRow.iLine;
        EXPECT_EQ(ReadsBackFrom([&](XmlElement _a) { _a.AddComment(stRow.tszText); }), stRow.bInComment) << stRow.iLine;
    }
}

TEST(XmlWriter, ComparisonSeesEveryDifference)
{
    const struct
    {
        int iLine;
        const char* szLeft;
        const char* szRight;
        bool bSame;
    } aRows[] = {
        {__LINE__, "<A x='1'><B/>t</A>", "<A\nx=\"1\">\n t\n<B></B>\n</A>", true},
        {__LINE__, "<A/>", "<B/>", false},
        {__LINE__, "<A x='1'/>", "<A x='2'/>", false},
        {__LINE__, "<A x='1'/>", "<A/>", false},
        {__LINE__, "<A x='1' y='2'/>", "<A y='2' x='1'/>", false},
        {__LINE__, "<A>t</A>", "<A>t </A>", false},
        {__LINE__, "<A><B/></A>", "<A><B/><B/></A>", false},
        {__LINE__, "<A><B/><B/></A>", "<A><B/></A>", false},
        {__LINE__, "<A><B><C/></B></A>", "<A><B/><C/></A>", false},
        {__LINE__, "<A><!--c--></A>", "<A><!--d--></A>", false},
    };
    for (const auto& stRow : aRows) {
        XmlParser left;
        XmlParser right;
        left.LoadText(stRow.szLeft, XmlParser::KeepWhole);
        right.LoadText(stRow.szRight, XmlParser::KeepWhole);
        EXPECT_EQ(ReadsBackAs(left.Document(), right.Document()), stRow.bSame) << stRow.iLine;
    }
    EXPECT_TRUE(ReadsBackAs({}, {}));
}
