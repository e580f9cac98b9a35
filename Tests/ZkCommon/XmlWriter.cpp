#include "ZkComn_XmlWriter.h"

#include "XmlTest.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
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
             "<!-- a\n b -->\n<A a='1'> x \n <B> y <!-- c --> </B> z <C>  </C><D> </D>\n</A>\n<!-- e -->",
             "<A> <![CDATA[ x ]]> <B><B><B> </B></B></B> &#32; &lt; </A>",
             "<A>\xC2\xA0<B/>\xE2\x80\xA8</A>",
         }) {
        const Whole first(szDocument);
        const std::string sFirst = Written(first.Document());
        const Whole second(sFirst);
        EXPECT_EQ(Written(second.Document()), sFirst);
        EXPECT_TRUE(ReadsBackAs(first.Document(), second.Document())) << sFirst;
    }
}

TEST(XmlWriter, ReadingBackTellsWhatXmlCannotHold)
{
    const std::tuple<int, std::wstring, const char*> aRows[] = {
        // and whether text, attribute, comment can
        {__LINE__, L" <&>\"' \u00e4\u4e2d\xD83D\xDD12", "tac"},
        {__LINE__, L"a\r\nb\rc\n", "t-c"}, // a line end is a line end; in an attribute it is a blank
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
            CodeOf([&] { bHeld = ReadsBackAs(document.Document(), Whole(Written(document.Document())).Document()); });
            sHeld += bHeld ? c : '-';
        }
        EXPECT_EQ(sHeld, szHeld) << iLine;
    }
}

TEST(XmlWriter, ComparisonSeesEveryDifference)
{
    const auto Same = [](const char* _szLeft, const char* _szRight) {
        return ReadsBackAs(Whole(_szLeft).Document(), Whole(_szRight).Document());
    };
    EXPECT_TRUE(Same("<A x='1'><B/>t</A>", "<A\nx=\"1\">\n t\n<B></B>\n</A>"));
    EXPECT_TRUE(ReadsBackAs({}, {}));
    const std::vector<const char*> vecDocument = {"<A/>",
                                                  "<B/>",
                                                  "<A x='1'/>",
                                                  "<A x='2'/>",
                                                  "<A x='1' y='2'/>",
                                                  "<A y='2' x='1'/>",
                                                  "<A>t</A>",
                                                  "<A>t </A>",
                                                  "<A><B/></A>",
                                                  "<A><B/><B/></A>",
                                                  "<A><B><C/></B></A>",
                                                  "<A><B/><C/></A>",
                                                  "<A><!--c--></A>",
                                                  "<A><!--d--></A>"};
    for (const char* szLeft : vecDocument) {
        for (const char* szRight : vecDocument) {
            EXPECT_EQ(Same(szLeft, szRight), szLeft == szRight) << szLeft << " and " << szRight;
        }
    }
}
