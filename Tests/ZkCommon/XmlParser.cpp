#include "ZkComn_XmlParser.h"

#include "TempFolder.h"
#include "TraceRecorder.h"
#include "XmlTest.h"
#include "ZkComn_DebugLog.h"

#include <fstream>
#include <gmock/gmock.h>
#include <string>

using namespace std::string_literals;
using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

std::string Utf16(std::wstring_view _svText)
{
    std::string sBytes = "\xFF\xFE";
    for (const wchar_t c : _svText) {
        sBytes += static_cast<char>(c & 0xFF);
        sBytes += static_cast<char>(c >> 8);
    }
    return sBytes;
}

class RelativeQueries : public testing::Test
{
protected:
    RelativeQueries()
    {
        m_parser.LoadText(
            "<R><!--c--><A/><A x='1'><B/></A>text<A><!--d--><B>one</B><C k='' k2='v'>two</C><B>three</B></A>"
            "<E/><Z> last </Z></R>",
            XmlParser::KeepWhole);
        EXPECT_TRUE(m_parser.Select(L"/R", m_root));
    }
    XmlParser m_parser;
    XmlElement m_root;
};

} // namespace

TEST(XmlParser, SelectsTheSameElementFromPartAndWhole)
{
    const struct
    {
        int iLine;
        std::string sDocument;
        const wchar_t* pszPath;
        const char* szExpected; // empty: not found
    } aRows[] = {
        // The first match in document order, at the right depth, after whatever does not lead there.
        {__LINE__, "<A><B i='1'/><B i='2'/></A>", L"/A/B", "B[i=1]"},
        {__LINE__, "<A><B/><B><C>1</C></B><B><C>2</C></B></A>", L"/A/B/C", "C(1)"},
        {__LINE__, "<A><X><B/></X><A><B/></A><B i='1'/></A>", L"/A/B", "B[i=1]"},
        {__LINE__, "<A><A><A>x</A></A></A>", L"/A/A/A", "A(x)"},
        {__LINE__, "<A><B/></A>", L"/A", "A{B}"},
        {__LINE__, "<A><B/></A>", L"/a", ""},
        {__LINE__, "<A><B/></A>", L"/A//B", ""},

        // An element without children keeps its text exactly; among children the blanks around each run are layout.
        {__LINE__, "<A> \r\n\t x  y \r\n </A>", L"/A", "A( \n\t x  y \n )"},
        {__LINE__, "<A>  </A>", L"/A", "A(  )"},
        {__LINE__, "<A>\n  one  two\n  <B/> three <C/>\n  four\n</A>", L"/A", "A(one  twothreefour){B,C}"},
        {__LINE__, "<A>\n<B> <C/> b </B> a </A>", L"/A", "A(a){B(b){C}}"},
        {__LINE__, "<A>\xC2\xA0<B/></A>", L"/A", "A(\xC2\xA0){B}"},
        {__LINE__, "<A> a <!-- c --> b </A>", L"/A", "A(ab){!( c )}"},
        {__LINE__, "<A> a <!----> b </A>", L"/A", "A( a  b )"},
        {__LINE__, "<A><![CDATA[ <x> ]]></A>", L"/A", "A( <x> )"},

        // References, and every kind of character.
        {__LINE__, "<A x='&lt;&quot;'>&amp;&#x41;&#228;&#x1F512;</A>", L"/A", "A[x=<\"](&A\xC3\xA4\xF0\x9F\x94\x92)"},
        {__LINE__, "<!DOCTYPE A [<!ENTITY e 'in<B/>ner'>]><A> &e; </A>", L"/A", "A(inner){B}"},
        {__LINE__, "<!DOCTYPE A [<!ATTLIST A x CDATA 'given'>]><A/>", L"/A", "A[x=given]"},
        {__LINE__, "<\xC3\x84 \xE4\xB8\xAD='\xE2\x82\xAC'>0123456789abcdef\xC3\xB6 0123456789abcdefg</\xC3\x84>",
         L"/\u00c4", "\xC3\x84[\xE4\xB8\xAD=\xE2\x82\xAC](0123456789abcdef\xC3\xB6 0123456789abcdefg)"},
        {__LINE__, "\xEF\xBB\xBF<A>\xC3\xA4</A>", L"/A", "A(\xC3\xA4)"},
        {__LINE__, "<?xml version='1.0' encoding='ISO-8859-1'?><A>\xE4</A>", L"/A", "A(\xC3\xA4)"},
        {__LINE__, Utf16(L"<A x='\u00e4'>\u4e2d\xD83D\xDD12</A>"), L"/A",
         "A[x=\xC3\xA4](\xE4\xB8\xAD\xF0\x9F\x94\x92)"},
    };
    for (const auto& stRow : aRows) {
        for (const std::uint32_t ulOptions : {XmlParser::KeepSelected, XmlParser::KeepWhole}) {
            SCOPED_TRACE("row of line " + std::to_string(stRow.iLine) + ", options " + std::to_string(ulOptions));
            XmlParser parser;
            parser.LoadText(stRow.sDocument, ulOptions);
            XmlElement untouched(nullptr, reinterpret_cast<XmlNode*>(16));
            XmlElement element = untouched;
            const bool bFound = parser.Select(stRow.pszPath, element);
            EXPECT_EQ(bFound, *stRow.szExpected != '\0');
            EXPECT_TRUE(bFound ? Short(element) == stRow.szExpected : element == untouched)
                << (bFound ? Short(element) : "");
            EXPECT_FALSE(bFound && ulOptions == XmlParser::KeepSelected && element.Parent());
        }
    }
}

TEST(XmlParser, RefusesADocumentThatIsNotWellFormedAnywhereAndTellsWhere)
{
    const struct
    {
        int iLine;
        std::string sDocument;
        std::uint32_t ulXmlCode;
        XmlPlace stPlace;
    } aRows[] = {
        {__LINE__, "", XML_ERROR_NO_ELEMENTS, {1, 1}},
        {__LINE__, "\0\0\0\0"s, XML_ERROR_INVALID_TOKEN, {1, 1}},
        {__LINE__, "<A>\n<B", XML_ERROR_UNCLOSED_TOKEN, {2, 1}},
        {__LINE__, "<A><B/>\n<C></A>", XML_ERROR_TAG_MISMATCH, {2, 6}}, // behind what is selected
        {__LINE__, "<A><B/></A>\n &", XML_ERROR_INVALID_TOKEN, {2, 2}},
        {__LINE__, "<A>\n a\0b</A>"s, XML_ERROR_INVALID_TOKEN, {2, 3}},
        {__LINE__, "<A>\n\xFF</A>", XML_ERROR_INVALID_TOKEN, {2, 1}},
        {__LINE__, "<A>\n\xED\xA0\x80</A>", XML_ERROR_INVALID_TOKEN, {2, 1}}, // half a surrogate pair
        {__LINE__, "<A>\n&none;</A>", XML_ERROR_UNDEFINED_ENTITY, {2, 1}},
        {__LINE__, "<?xml version='1.0' encoding='EBCDIC'?>\n<A/>", XML_ERROR_UNKNOWN_ENCODING, {1, 31}},
        {__LINE__, "<?xml version='1.0' encoding='UTF-16'?>\n<A/>", XML_ERROR_INCORRECT_ENCODING, {1, 31}},
        {__LINE__,
         "<!DOCTYPE A [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<A>&e;</A>",
         XML_ERROR_EXTERNAL_ENTITY_HANDLING,
         {2, 4}},
        {__LINE__,
         "<!DOCTYPE A [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>\n<A>&a;</A>",
         XML_ERROR_RECURSIVE_ENTITY_REF,
         {2, 4}},
    };
    const TempFolder folder;
    const std::wstring tszPath = folder.File(L"faulty.xml");
    for (const auto& stRow : aRows) {
        for (const std::uint32_t ulOptions : {XmlParser::KeepSelected, XmlParser::KeepWhole}) {
            SCOPED_TRACE("row of line " + std::to_string(stRow.iLine) + ", options " + std::to_string(ulOptions));
            folder.Write(L"faulty.xml", stRow.sDocument);
            XmlParser parser;
            XmlElement element;
            const auto failure = FailureOf([&] {
                parser.Load(tszPath, ulOptions);
                parser.Select(L"/A/B", element);
            });
            EXPECT_TRUE(failure == (XmlFailure{6, stRow.ulXmlCode, stRow.stPlace.ulLine, String::ToAnsi(tszPath)}));
            EXPECT_EQ(parser.FailurePlace().ulLine, stRow.stPlace.ulLine);
            EXPECT_EQ(parser.FailurePlace().ulColumn, stRow.stPlace.ulColumn);
            EXPECT_FALSE(element);
        }
    }
}

TEST(XmlParser, SelectsAgainAndKeepsWhatItSelected)
{
    XmlParser parser;
    parser.LoadText("<A><B>1</B><C>2</C></A>");
    XmlElement b;
    XmlElement c;
    EXPECT_TRUE(parser.Select(L"/A/B", b) && parser.Select(L"/A/C", c));
    EXPECT_EQ(Short(b) + Short(c), "B(1)C(2)");
    EXPECT_EQ(CodeOf([&] { parser.Select(L"/", b); }), 160U);
    parser.Close();
    EXPECT_EQ(CodeOf([&] { parser.Select(L"/A", b); }), 6U);
}

TEST(XmlParser, NoticesAPathThatMatchesNothing)
{
    const TempFolder folder;
    folder.Write(L"a.xml", "<A/>");
    XmlParser parser;
    parser.Load(folder.File(L"a.xml"));
    XmlElement element;
    TraceRecorder trace(TraceNotice);
    EXPECT_TRUE(!parser.Select(L"/A/B", element) && parser.Select(L"/A", element));
    EXPECT_THAT(trace.Messages(), testing::ElementsAre(L"*** XmlParser::Select() - [/A/B] was not found in [" +
                                                       folder.File(L"a.xml") + L"]."));
}

TEST(XmlParser, TellsTheLineOfEachElementWhenAsked)
{
    const std::string sDocument = "<?xml version='1.0'?>\n<A>\r\n<B>\n</B><C\nx='1'/>\n</A>";
    for (const std::uint32_t ulLines : {0U, 1U}) {
        XmlParser parser;
        parser.LoadText(sDocument, ulLines != 0 ? XmlParser::KeepLines : XmlParser::KeepSelected);
        XmlElement element;
        parser.Select(L"/A", element);
        EXPECT_EQ(element.Line(), 2 * ulLines);
        EXPECT_EQ(element.FirstChild(L"B").Line(), 3 * ulLines);
        EXPECT_EQ(element.FirstChild(L"C").Line(), 4 * ulLines);
    }
}

TEST(XmlParser, PropertiesAreCheckedAndTheEncodingIsUsed)
{
    XmlParser parser;
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"PathOfDll", L""); }), 160U);
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"", L"x"); }), 160U);
    EXPECT_EQ(CodeOf([&] { parser.SetProperty(L"PathOfDll", std::wstring(260, L'x')); }), 34U);
    EXPECT_TRUE(parser.SetProperty(L"PathOfDll", std::wstring(259, L'x')));
    EXPECT_TRUE(parser.SetProperty(L"NoSuchProperty", L"x"));

    const struct
    {
        int iLine;
        const wchar_t* pszEncoding;
        std::string sDocument;
        std::uint32_t ulCode;
    } aRows[] = {
        {__LINE__, L"UTF8", "<A>\xC3\xA4</A>", 0},        {__LINE__, L"ISO_8859_1", "<A>\xE4</A>", 0},
        {__LINE__, L"UTF16", Utf16(L"<A>\u00e4</A>"), 0}, {__LINE__, L"US_ASCII", "<A>&#228;</A>", 0},
        {__LINE__, L"US_ASCII", "<A>\xC3\xA4</A>", 6},    {__LINE__, L"UTF8", "<A>\xE4</A>", 6},
        {__LINE__, L"UTF-8", "<A>\xC3\xA4</A>", 160},
    };
    for (const auto& stRow : aRows) {
        XmlElement element;
        parser.SetProperty(L"Encoding", stRow.pszEncoding);
        parser.LoadText(stRow.sDocument);
        EXPECT_EQ(CodeOf([&] { parser.Select(L"/A", element); }), stRow.ulCode) << stRow.iLine;
        EXPECT_EQ(element.Text(), stRow.ulCode == 0 ? L"\u00e4" : L"") << stRow.iLine;
    }
}

TEST(XmlParser, FailsWithTheSystemsErrorWhenTheFileCannotBeRead)
{
    const TempFolder folder;
    folder.Write(L"locked.xml", "<A/>");
    const FileHandle lock(
        ::CreateFileW(folder.File(L"locked.xml").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    XmlParser parser;
    EXPECT_TRUE(FailureOf([&] { parser.Load(folder.File(L"missing.xml")); }) ==
                (XmlFailure{ERROR_FILE_NOT_FOUND, 0, 0, String::ToAnsi(folder.File(L"missing.xml"))}));
    EXPECT_EQ(CodeOf([&] { parser.Load(folder.File(L"none\\missing.xml")); }), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(CodeOf([&] { parser.Load(folder.Path().wstring()); }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(CodeOf([&] { parser.Load(folder.File(L"locked.xml")); }), DWORD{ERROR_SHARING_VIOLATION});
}

TEST(XmlParser, ReadsAFileThatSomebodyElseWritesAndDeletes)
{
    const TempFolder folder;
    FileHandle held(::CreateFileW(folder.File(L"held.xml").c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE,
                                  nullptr));
    DWORD ulWritten = 0;
    ASSERT_TRUE(::WriteFile(held.Get(), "<A>held</A>", 11, &ulWritten, nullptr));
    XmlElement element;
    {
        XmlParser parser;
        parser.Load(folder.File(L"held.xml"));
        ASSERT_TRUE(parser.Select(L"/A", element));
        EXPECT_EQ(element.Text(), L"held");
    }
    held.Reset();
    EXPECT_EQ(::GetFileAttributesW(folder.File(L"held.xml").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(XmlParser, ReadsAFileOfManyPiecesToItsEnd)
{
    std::string sBlock;
    while (sBlock.size() < 1U << 20) {
        sBlock += "<!-- 0123456789 \xC3\xA4 0123456789 0123456789 0123456789 0123456789 0123456789 0123456789 -->\n";
    }
    const TempFolder folder;
    for (const char* szEnd : {"<C>late</C></A>", "<C>late</A>"}) {
        {
            std::ofstream file(folder.Path() / L"large.xml", std::ios::binary);
            file << "<A><B>early</B>\n";
            for (int i = 0; i < 129; ++i) {
                file << sBlock;
            }
            file << szEnd;
        }
        XmlParser parser;
        XmlElement b;
        XmlElement c;
        parser.Load(folder.File(L"large.xml"));
        const std::uint32_t ulCode =
            CodeOf([&] { EXPECT_TRUE(parser.Select(L"/A/B", b) && parser.Select(L"/A/C", c)); });
        EXPECT_EQ(Short(b) + Short(c), ulCode == 0 ? "B(early)C(late)" : "");
        EXPECT_EQ(ulCode, szEnd == std::string_view("<C>late</A>") ? 6U : 0U);
    }
}

TEST(XmlParser, TakesTheLibraryOfTheGivenFolderElseTheOneBesideTheModule)
{
    const TempFolder own;
    const TempFolder broken;
    ASSERT_TRUE(::CopyFileW((ProgramFolder() + L"\\libexpat.dll").c_str(), own.File(L"libexpat.dll").c_str(), TRUE));
    broken.Write(L"libexpat.dll", "no library");
    const auto LibraryOf = [](const std::wstring& _tszFolder) {
        XmlParser parser;
        parser.SetProperty(L"PathOfDll", _tszFolder);
        XmlElement element;
        parser.LoadText("<A/>");
        parser.Select(L"/A", element);
        std::wstring tszPath(1024, L'\0');
        tszPath.resize(::GetModuleFileNameW(::GetModuleHandleW(L"libexpat.dll"), tszPath.data(), 1024));
        return tszPath.substr(0, tszPath.find_last_of(L'\\'));
    };
    EXPECT_EQ(LibraryOf(own.Path().wstring()), own.Path().wstring());
    EXPECT_EQ(LibraryOf(own.Path().wstring() + L"\\"), own.Path().wstring());
    EXPECT_EQ(LibraryOf(L"C:\\NoSuchFolder"), ProgramFolder());
    EXPECT_EQ(CodeOf([&] { LibraryOf(broken.Path().wstring()); }), DWORD{ERROR_BAD_EXE_FORMAT});

    // The library of a folder that is not told in full is nobody's: it would depend on the current folder.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(own.Path());
    EXPECT_EQ(LibraryOf(L"."), ProgramFolder());
    std::filesystem::current_path(before);

    // It is free again, so that it can be replaced.
    EXPECT_EQ(::GetModuleHandleW(L"libexpat.dll"), nullptr);
    EXPECT_TRUE(::DeleteFileW(own.File(L"libexpat.dll").c_str()));
}

TEST(ExpatLibrary, LoadsFromAFolderOnceAndBindsAll)
{
    const TempFolder other; // another library under that name
    ASSERT_TRUE(::CopyFileW((ProgramFolder() + L"\\Recorder\\ZkDbgLog.dll").c_str(),
                            other.File(L"libexpat.dll").c_str(), TRUE));
    const struct
    {
        int iLine;
        std::wstring tszFolder;
        std::uint32_t ulError;
    } aRows[] = {
        {__LINE__, ProgramFolder(), 0},
        {__LINE__, ProgramFolder() + L"\\", 0},
        {__LINE__, L"C:\\NoSuchFolder", ERROR_MOD_NOT_FOUND},
        {__LINE__, std::wstring(L"C:\\\0x", 5), ERROR_BAD_ARGUMENTS},
        {__LINE__, other.Path().wstring(), ERROR_PROC_NOT_FOUND},
    };
    for (const auto& stRow : aRows) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        Library::Expat library;
        std::uint32_t ulError = 0;
        EXPECT_EQ(library.Load(stRow.tszFolder, ulError) ? 0 : ulError, stRow.ulError);
        EXPECT_EQ(library.IsBound(), stRow.ulError == 0);
        if (stRow.ulError == 0) {
            EXPECT_EQ(library.ExpatVersion(), std::string("expat_2.5.0"));
            EXPECT_TRUE(!library.Load(ProgramFolder(), ulError) && library.IsBound());
            EXPECT_EQ(ulError, 5010U);
        }
    }
}

TEST_F(RelativeQueries, TakeTheFirstMatchOfAPathOfChildNames)
{
    const struct
    {
        int iLine;
        const wchar_t* pszPath;
        const char* szExpected;
    } aRows[] = {
        {__LINE__, L"./A", "A"},      {__LINE__, L"A", "A"},
        {__LINE__, L"./A/B", "B"},    {__LINE__, L"./A/C", "C[k=][k2=v](two)"}, // in a later A
        {__LINE__, L"./A/C/D", ""},   {__LINE__, L"./a", ""},
        {__LINE__, L"./A//C", ""},    {__LINE__, L"", ""},
        {__LINE__, L"./", ""},        {__LINE__, L"/R", ""},
        {__LINE__, L"./Unheard", ""}, {__LINE__, L"./Z", "Z( last )"},
    };
    for (const auto& stRow : aRows) {
        EXPECT_EQ(Short(m_root.Child(stRow.pszPath)), stRow.szExpected) << stRow.iLine;
    }
    EXPECT_EQ(m_root.Child(L"."), m_root);
    EXPECT_EQ(m_root.ChildText(L"./A/C", L"none"), L"two");
    EXPECT_EQ(m_root.ChildText(L"./E", L"none"), L""); // it is there
    EXPECT_EQ(m_root.ChildText(L"./F", L"none"), L"none");
    EXPECT_EQ(m_root.ChildText(m_root.FindName(L"Z")), L" last ");
    EXPECT_EQ(m_root.ChildText(m_root.FindName(L"F"), L"none"), L"none");
    const XmlElement c = m_root.Child(L"./A/C");
    EXPECT_EQ(c.Attribute(L"k", L"none"), L"");
    EXPECT_EQ(c.Attribute(L"K2", L"none"), L"none");
    EXPECT_EQ(c.Attribute(c.FindName(L"k2")), L"v");
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
    EXPECT_FALSE(last.NextSibling());
    EXPECT_FALSE(m_root.FirstChild(L"A").NextSibling(L"Unheard"));
    EXPECT_TRUE(m_root.FirstNode().IsComment() && m_root.FirstNode().Name().empty());
    EXPECT_EQ(m_root.Text(), L"text");
}

TEST_F(RelativeQueries, AreAllDefinedOnAnElementThatIsNotThere)
{
    XmlElement none;
    for (XmlElement element : {none, none.FirstChild(), none.NextSibling(), none.NextNamesake(), none.Parent(),
                               none.Child(L"./A"), none.FirstNode(), none.NextNode(), m_root.Child(L"./Q/R")}) {
        EXPECT_FALSE(element);
        EXPECT_EQ(Short(element), "");
        EXPECT_EQ(element.ChildText(L"./A", L"d"), L"d");
        EXPECT_EQ(element.Attribute(L"A", L"d"), L"d");
        EXPECT_EQ(element.Line(), 0U);
        EXPECT_FALSE(element.IsComment());
        element.SetText(L"x");
        element.SetAttribute(L"x", L"y");
        EXPECT_FALSE(element.AddChild(L"x"));
        EXPECT_FALSE(element.AddComment(L"x"));
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
    EXPECT_EQ(Short(e), "E(u){X[a=b],!(c),Y}");
    EXPECT_EQ(e.FirstChild().Parent(), e);

    e.SetAttribute(L"", L"x");
    EXPECT_FALSE(e.AddChild(L"") || e.AddComment(L"") || e.FirstNode().NextNode().AddChild(L"in a comment"));
    EXPECT_EQ(Short(e), "E(u){X[a=b],!(c),Y}");
}
