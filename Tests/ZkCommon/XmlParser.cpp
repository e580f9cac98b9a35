#include "ZkComn_XmlParser.h"

#include "TempFolder.h"
#include "TraceRecorder.h"
#include "XmlTest.h"
#include "ZkComn_DebugLog.h"

#include <gmock/gmock-more-matchers.h>
#include <string>
#include <tuple>

using namespace std::string_literals;
using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

std::string Utf16(std::wstring_view _svText)
{
    return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(_svText.data()), 2 * _svText.size());
}

class RelativeQueries : public testing::Test
{
protected:
    const Whole m_document{"<R><!--c--><A/><A x='1'><B/></A>text<A><!--d--><B>one</B><C k='' k2='v'>two</C>"
                           "<B>three</B></A><E/><Z> last </Z></R>"};
    XmlElement m_root = m_document.Root();
};

} // namespace

TEST(XmlParser, SelectsTheSameElementFromPartAndWhole)
{
    const std::tuple<int, std::string, const wchar_t*, const char*> aRows[] = {
        // The first match in document order, at the right depth, after whatever does not lead there.
        {__LINE__, "<A><B i='1'/><B i='2'/></A>", L"/A/B", "B[i=1]"},
        {__LINE__, "<A><B/><B><C>1</C></B><B><C>2</C></B></A>", L"/A/B/C", "C(1)"},
        {__LINE__, "<A><X><B/></X><A><B/></A><B i='1'/></A>", L"/A/B", "B[i=1]"},
        {__LINE__, "<A><B/></A>", L"/a", ""}, // not found
        {__LINE__, "<A><B/></A>", L"/A//B", ""},

        // An element without children keeps its text exactly; among children the blanks around each run are layout.
        {__LINE__, "<A> \r\n\t x  y \r\n </A>", L"/A", "A( \n\t x  y \n )"},
        {__LINE__, "<A>  </A>", L"/A", "A(  )"},
        {__LINE__, "<A>\n  one  two\n  <B/> three <C/>\n  four\n</A>", L"/A", "A(one  twothreefour){B,C}"},
        {__LINE__, "<A>\n<B> <C/> b </B> a </A>", L"/A", "A(a){B(b){C}}"},
        {__LINE__, "<A>\xC2\xA0<B/></A>", L"/A", "A(\xC2\xA0){B}"},
        // A comment separates nothing; where there is one, the blanks at the ends are layout too.
        {__LINE__, "<A> a <!-- c --> b </A>", L"/A", "A(a  b){!( c )}"},
        {__LINE__, "<A><!--1-->eA<!--2--> b<!--3--></A>", L"/A", "A(eA b){!(1),!(2),!(3)}"},
        {__LINE__, "<A> x<!--1--> <!--2-->\ny <B/> <!--3--> z<!--4-->\n</A>", L"/A",
         "A(x \nyz){!(1),!(2),B,!(3),!(4)}"},
        {__LINE__, "<A> <!--c--> </A>", L"/A", "A{!(c)}"},
        {__LINE__, "<A> a <!----> b </A>", L"/A", "A( a  b )"},

        // References, and every kind of character.
        {__LINE__, "<A x='&lt;&quot;'>&amp;&#x41;&#228;&#x1F512;</A>", L"/A", "A[x=<\"](&A\xC3\xA4\xF0\x9F\x94\x92)"},
        {__LINE__, "<!DOCTYPE A [<!ENTITY e 'in<B/>ner'>]><A> &e; </A>", L"/A", "A(inner){B}"},
        {__LINE__, "<!DOCTYPE A [<!ATTLIST A x CDATA 'given'>]><A/>", L"/A", "A[x=given]"},
        {__LINE__, "<\xC3\x84 \xE4\xB8\xAD='\xE2\x82\xAC'>0123456789abcdef\xC3\xB6 0123456789abcdefg</\xC3\x84>",
         L"/\u00c4", "\xC3\x84[\xE4\xB8\xAD=\xE2\x82\xAC](0123456789abcdef\xC3\xB6 0123456789abcdefg)"},
        {__LINE__, "<A>a\r\nb<![CDATA[<\r\n]]]><!-- \r\n-\xC3\xA4 --></A>", L"/A", "A(a\nb<\n]){!( \n-\xC3\xA4 )}"},
        {__LINE__, "\xEF\xBB\xBF<A>\xC3\xA4</A>", L"/A", "A(\xC3\xA4)"},
        {__LINE__, Utf16(L"<A x='\u00e4'>\u4e2d\xD83D\xDD12</A>"), L"/A",
         "A[x=\xC3\xA4](\xE4\xB8\xAD\xF0\x9F\x94\x92)"},
    };
    for (const auto& [iLine, sDocument, pszPath, szExpected] : aRows) {
        for (std::uint32_t ulCase = 0; ulCase < 12; ++ulCase) { // in one piece, and in pieces of 1 to 5 bytes
            XmlParser parser;
            parser.SetPieceSize(ulCase / 2);
            parser.LoadText(sDocument, ulCase % 2 == 0 ? XmlParser::KeepSelected : XmlParser::KeepWhole);
            XmlElement element;
            EXPECT_EQ(parser.Select(pszPath, element) ? Short(element) : "", szExpected)
                << "row of line " << iLine << ", case " << ulCase;
            EXPECT_EQ(ShortOneByOne(sDocument, pszPath, ulCase / 2), ShortChildren(element))
                << "row of line " << iLine << ", case " << ulCase;
        }
    }
}

TEST(XmlParser, RefusesADocumentThatIsNotWellFormedAnywhereAndTellsWhere)
{
    const std::tuple<int, std::string, std::uint32_t, std::uint32_t, std::uint32_t> aRows[] = {
        {__LINE__, "", XML_ERROR_NO_ELEMENTS, 1, 1},
        {__LINE__, "<A>\n<B", XML_ERROR_UNCLOSED_TOKEN, 2, 1},
        {__LINE__, "<A><B/>\n<C></A>", XML_ERROR_TAG_MISMATCH, 2, 6}, // behind what is selected
        {__LINE__, "<A><B/></A>\n &", XML_ERROR_INVALID_TOKEN, 2, 2},
        {__LINE__, "<A>\n a\0b</A>"s, XML_ERROR_INVALID_TOKEN, 2, 3},
        {__LINE__, "<A>\n\xED\xA0\x80</A>", XML_ERROR_INVALID_TOKEN, 2, 1}, // half a surrogate pair
        {__LINE__, "<A>\n&none;</A>", XML_ERROR_UNDEFINED_ENTITY, 2, 1},
        {__LINE__, "<?xml version='1.0' encoding='EBCDIC'?>\n<A/>", XML_ERROR_UNKNOWN_ENCODING, 1, 31},
        {__LINE__, "<?xml version='1.0' encoding='UTF-16'?>\n<A/>", XML_ERROR_INCORRECT_ENCODING, 1, 31},
        {__LINE__, "<!DOCTYPE A [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<A>&e;</A>",
         XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 4},
        // What another file or a parameter entity declares would vanish, or be left undeclared.
        {__LINE__, "<!DOCTYPE A SYSTEM 'a.dtd'>\n<A>1&two;</A>", XML_ERROR_NOT_STANDALONE, 1, 20},
        {__LINE__, "<!DOCTYPE A [<!ENTITY % p \"<!ENTITY two '2'>\">%p;]>\n<A>1&two;</A>", XML_ERROR_NOT_STANDALONE, 1,
         47},
        {__LINE__, "<?xml version='1.0' standalone='yes'?><!DOCTYPE A SYSTEM 'a.dtd'>\n<A>1&two;</A>",
         XML_ERROR_UNDEFINED_ENTITY, 2, 5},
        {__LINE__, "<!DOCTYPE A [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>\n<A>&a;</A>", XML_ERROR_RECURSIVE_ENTITY_REF, 2,
         4},
    };
    const TempFolder folder;
    const std::wstring tszPath = folder.File(L"faulty.xml");
    for (const auto& [iLine, sDocument, ulXmlCode, ulLine, ulColumn] : aRows) {
        for (const std::uint32_t ulOptions : {XmlParser::KeepSelected, XmlParser::KeepWhole, XmlParser::OneByOne}) {
            SCOPED_TRACE("row of line " + std::to_string(iLine) + ", options " + std::to_string(ulOptions));
            folder.Write(L"faulty.xml", sDocument);
            XmlParser parser;
            parser.SetPieceSize(static_cast<std::size_t>(iLine) % 6);
            XmlElement element;
            const auto pFailure = FailureOf<XmlException>([&] {
                parser.Load(tszPath, ulOptions);
                parser.Select(L"/A/B", element);
                element.NextChild();
            });
            ASSERT_TRUE(pFailure && (!element || ulOptions == XmlParser::OneByOne));
            EXPECT_EQ(std::tuple(pFailure->ErrorCode(), pFailure->XmlErrorCode(), pFailure->XmlLine(),
                                 parser.FailurePlace().ulLine, parser.FailurePlace().ulColumn, pFailure->XmlFile()),
                      std::tuple(6U, ulXmlCode, ulLine, ulLine, ulColumn, String::ToAnsi(tszPath)));
        }
    }
}

TEST(XmlParser, SelectsAgainKeepsWhatItSelectedAndNoticesAPathThatMatchesNothing)
{
    const TempFolder folder;
    folder.Write(L"a.xml", "<?xml version='1.0'?>\n<A>\r\n\xC3\xA4<B>\t1\n</B><C\nx='1'/>\n</A>");
    for (const std::uint32_t ulOptions : {XmlParser::KeepSelected, XmlParser::KeepWhole, XmlParser::KeepLines}) {
        const TraceRecorder trace(TraceNotice);
        XmlParser parser;
        parser.Load(folder.File(L"a.xml"), ulOptions);
        XmlElement b;
        XmlElement c;
        EXPECT_TRUE(parser.Select(L"/A/B", b) && parser.Select(L"/A/C", c));
        XmlElement none = b;
        EXPECT_FALSE(parser.Select(L"/A/D", none) || none);
        EXPECT_EQ(Short(b) + Short(c), "B(\t1\n)C[x=1]");
        EXPECT_EQ(static_cast<bool>(b.Parent()), ulOptions == XmlParser::KeepWhole);
        const bool bLines = ulOptions == XmlParser::KeepLines;
        EXPECT_EQ(std::pair(b.Line(), c.Line()), bLines ? std::pair(3U, 4U) : std::pair(0U, 0U));
        EXPECT_EQ(std::pair(b.Column(), c.Column()), bLines ? std::pair(2U, 5U) : std::pair(0U, 0U));
        EXPECT_EQ(std::tuple(b.TextLine(), b.TextColumn(), c.TextLine()),
                  std::tuple(bLines ? 3U : 0U, bLines ? 6U : 0U, 0U));
        EXPECT_EQ(trace.Messages(),
                  Lines({L"*** XmlParser::Select() - [/A/D] was not found in [" + folder.File(L"a.xml") + L"]."}));
        EXPECT_EQ(CodeOf([&] { parser.Select(L"/", b); }), 160U);
        parser.Close();
        EXPECT_EQ(CodeOf([&] { parser.Select(L"/A", b); }), 6U);
        EXPECT_FALSE(b);
    }
}

TEST(XmlParser, PropertiesAreCheckedAndTheEncodingIsUsed)
{
    XmlParser parser;
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"PathOfDll", L""); }), 160U);
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"", L"x"); }), 160U);
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"PathOfDll", std::wstring(260, L'x')); }), 34U);
    EXPECT_TRUE(parser.SetProperty(L"PathOfDll", std::wstring(259, L'x')) && parser.SetProperty(L"Unheard", L"x"));

    const std::tuple<int, const wchar_t*, std::string, std::uint32_t> aRows[] = {
        {__LINE__, L"UTF8", "<A>\xC3\xA4</A>", 0},        {__LINE__, L"ISO_8859_1", "<A>\xE4</A>", 0},
        {__LINE__, L"UTF16", Utf16(L"<A>\u00e4</A>"), 0}, {__LINE__, L"US_ASCII", "<A>&#228;</A>", 0},
        {__LINE__, L"US_ASCII", "<A>\xC3\xA4</A>", 6},    {__LINE__, L"UTF-8", "<A>\xC3\xA4</A>", 160},
    };
    for (const auto& [iLine, pszEncoding, sDocument, ulCode] : aRows) {
        XmlElement element;
        parser.SetProperty(L"Encoding", pszEncoding);
        parser.LoadText(sDocument);
        EXPECT_EQ(CodeOf([&] { parser.Select(L"/A", element); }), ulCode) << iLine;
        EXPECT_EQ(element.Text(), ulCode == 0 ? L"\u00e4" : L"") << iLine;
    }
}

TEST(XmlParser, FailsWithTheSystemsErrorWhenTheFileCannotBeRead)
{
    const TempFolder folder;
    folder.Write(L"locked.xml", "<A/>");
    const FileHandle lock(
        ::CreateFileW(folder.File(L"locked.xml").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    const std::pair<const wchar_t*, std::uint32_t> aRows[] = {{L"missing.xml", ERROR_FILE_NOT_FOUND},
                                                              {L"none\\missing.xml", ERROR_PATH_NOT_FOUND},
                                                              {L".", ERROR_ACCESS_DENIED},
                                                              {L"locked.xml", ERROR_SHARING_VIOLATION}};
    for (const auto& [pszName, ulError] : aRows) {
        const std::wstring tszPath = folder.File(pszName);
        const auto pFailure = FailureOf<XmlException>([&] { XmlParser().Load(tszPath); });
        ASSERT_TRUE(pFailure);
        EXPECT_EQ(std::tuple(pFailure->ErrorCode(), pFailure->XmlErrorCode(), pFailure->XmlLine(), pFailure->XmlFile()),
                  std::tuple(ulError, 0U, 0U, String::ToAnsi(tszPath)));
    }
}

TEST(XmlParser, TakesTheLibraryOfTheGivenFolderElseTheOneBesideTheModule)
{
    const TempFolder own;
    std::filesystem::copy_file(ProgramFolder() + L"\\libexpat.dll", own.File(L"libexpat.dll"));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(own.Path()); // whose library is nobody's: the folder is not told in full
    for (const std::wstring& tszFolder :
         {own.Path().wstring(), std::wstring(L"C:\\NoSuchFolder"), std::wstring(L".")}) {
        XmlParser parser;
        parser.SetProperty(L"PathOfDll", tszFolder);
        parser.LoadText("<A/>", XmlParser::KeepWhole);
        wchar_t aszPath[MAX_PATH] = {};
        ::GetModuleFileNameW(::GetModuleHandleW(L"libexpat.dll"), aszPath, MAX_PATH);
        EXPECT_EQ(std::filesystem::path(aszPath).parent_path(),
                  tszFolder == own.Path() ? own.Path() : std::filesystem::path(ProgramFolder()));
    }
    std::filesystem::current_path(before);
    EXPECT_TRUE(::DeleteFileW(own.File(L"libexpat.dll").c_str())); // free again, so that it can be replaced
}

TEST_F(RelativeQueries, TakeTheFirstMatchOfAPathOfChildNames)
{
    EXPECT_EQ(Short(m_root.Child(L"./A")) + Short(m_root.Child(L"E")) + Short(m_root.Child(L"./A/B")), "AEB");
    const XmlElement c = m_root.Child(L"./A/C"); // in a later A
    EXPECT_EQ(Short(c), "C[k=][k2=v](two)");
    EXPECT_EQ(m_root.Child(L"."), m_root);
    for (const wchar_t* pszPath : {L"./A/C/D", L"./a", L"./A//C", L"", L"./", L"/R"}) {
        EXPECT_FALSE(m_root.Child(pszPath)) << pszPath;
    }
    EXPECT_EQ((std::vector{m_root.ChildText(L"./A/C", L"none"), m_root.ChildText(L"./E", L"none"),
                           m_root.ChildText(L"./F", L"none"), m_root.ChildText(m_root.FindName(L"Z")),
                           m_root.ChildText(m_root.FindName(L"F"), L"none")}),
              std::vector<std::wstring_view>({L"two", L"", L"none", L" last ", L"none"}));
    EXPECT_EQ((std::vector{c.Attribute(L"k", L"none"), c.Attribute(L"K2", L"none"), c.Attribute(c.FindName(L"k2"))}),
              std::vector<std::wstring_view>({L"", L"none", L"v"}));
    EXPECT_TRUE(c.HasAttribute(L"k") && !c.HasAttribute(L"x"));
}

TEST_F(RelativeQueries, WalkChildrenByNameAndOfAnyNameWithoutComments)
{
    std::string sWalk;
    for (XmlElement child = m_root.FirstChild(); child; child = child.NextSibling()) {
        sWalk += String::ToUtf8(child.Name());
    }
    for (XmlElement child = m_root.FirstChild(L"A"); child; child = child.NextNamesake()) {
        sWalk += child.Parent() == m_root ? "+" : "-";
    }
    EXPECT_EQ(sWalk, "AAAEZ+++");
    const XmlElement last = m_root.Child(L"./A/C").NextSibling(L"B");
    EXPECT_EQ(Short(last), "B(three)");
    EXPECT_FALSE(last.NextSibling() || m_root.FirstChild(L"A").NextSibling(L"Unheard"));
    EXPECT_TRUE(m_root.FirstNode().IsComment() && m_root.FirstNode().Name().empty());
}

TEST_F(RelativeQueries, AreAllDefinedOnAnElementThatIsNotThere)
{
    XmlElement none;
    for (XmlElement element : {none, none.FirstChild(), none.NextSibling(), none.NextNamesake(), none.Parent(),
                               none.Child(L"./A"), none.FirstNode(), none.NextNode(), m_root.Child(L"./Q/R")}) {
        EXPECT_FALSE(element || element.IsComment());
        EXPECT_EQ(Short(element), "");
        EXPECT_EQ(element.ChildText(L"./A", L"d"), L"d");
        EXPECT_EQ(element.Attribute(L"A", L"d"), L"d");
        EXPECT_EQ(element.Line(), 0U);
        element.SetText(L"x");
        element.SetAttribute(L"x", L"y");
        EXPECT_FALSE(element.AddChild(L"x") || element.AddComment(L"x"));
    }
}

TEST_F(RelativeQueries, SeeWhatWasEdited)
{
    XmlElement c = m_root.Child(L"./A/C");
    c.SetAttribute(L"k2", L"a value longer than before");
    c.SetAttribute(L"k", L"1");
    c.SetAttribute(L"new", L"<&>");
    c.SetText(L"");
    EXPECT_EQ(Short(c), "C[k=1][k2=a value longer than before][new=<&>]");

    XmlElement e = m_root.Child(L"./E");
    e.SetText(L"t");
    e.AddChild(L"X").SetAttribute(L"a", L"b");
    e.AddComment(L"c");
    e.AddChild(L"Y");
    e.SetText(L"u");
    e.SetAttribute(L"", L"x"); // which does nothing, as these
    EXPECT_FALSE(e.AddChild(L"") || e.AddComment(L"") || e.FirstNode().NextNode().AddChild(L"in a comment"));
    EXPECT_EQ(Short(e), "E(u){X[a=b],!(c),Y}");
    EXPECT_EQ(e.FirstChild().Parent(), e);
}
