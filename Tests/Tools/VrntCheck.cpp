// What the tool reports to the authors of documents.

#include "Check/DocumentCheck.h"
#include "Files/DocumentTable.h"
#include "VrntTest.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <set>

namespace {

/** What a check finds, a line each: "12 error /A/B: what". */
std::vector<std::string> Findings(const std::wstring& _tszDocument, const std::wstring& _tszFile)
{
    std::vector<std::string> vecFinding;
    for (const Vrnt::Finding& stFinding : Vrnt::CheckDocument(*Varnhelt::FindDocument(_tszDocument), _tszFile)) {
        vecFinding.push_back(std::to_string(stFinding.ulLine) + " " + Vrnt::SeverityText(stFinding.enSeverity) + " " +
                             stFinding.sElement + ": " + stFinding.sText);
    }
    return vecFinding;
}

struct Row
{
    int iLine;
    const wchar_t* pszDocument;
    const char* szText;
    std::vector<std::string> vecFinding;
};

const Row g_aRow[] = {
    {__LINE__,
     L"policy",
     R"(<PolicyEnforceLayer><!-- spelt in every wrong way -->
<PolicyControllers>
<PolicyController Controler="eFirewall" label="x">
<Permission>eAlow</Permission><Permission>eDeny</Permission>
<AllowToLoadSetupMode>yes</AllowToLoadSetupMode><PolicyProviders><PolicyProvider
 Provider="eRealTimeScan" Controller="eFirewall" Deploy="eWait"><Permission>eallow</Permission><Comment/></PolicyProvider>
</PolicyProviders></PolicyController>
<PolicyController Controller="eNone"/>
</PolicyControllers><Extra/></PolicyEnforceLayer>)",
     {R"(3 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: no reader looks at attribute "Controler"; did you mean "Controller"?)",
      R"(3 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: attribute "Controller" is missing: read as "eNone")",
      R"(4 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/Permission: unknown word "eAlow" of the text: read as "eDeny"; did you mean "eAllow"?)",
      R"(4 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/Permission: "Permission" is here once more: only the first counts)",
      R"(5 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/AllowToLoadSetupMode: unknown word "yes" of the text: read as "false"; there is "false", "FALSE", "0", "true", "TRUE", "1")",
      R"(5 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/PolicyProviders/PolicyProvider: no reader looks at attribute "Deploy": it is read from an element)",
      R"(5 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/PolicyProviders/PolicyProvider: "Deploy" is missing: read as "eNoDeploy")",
      R"(6 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/PolicyProviders/PolicyProvider/Permission: unknown word "eallow" of the text: read as "eDeny"; did you mean "eAllow"?)",
      R"(6 warning /PolicyEnforceLayer/PolicyControllers/PolicyController/PolicyProviders/PolicyProvider/Comment: no reader looks at "Comment")",
      R"(8 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: the same "PolicyController" as in line 3: only the first counts)",
      R"(8 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: "Permission" is missing: read as "eDeny")",
      R"(8 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: "AllowToLoadSetupMode" is missing: read as "false")",
      R"(8 warning /PolicyEnforceLayer/PolicyControllers/PolicyController: "PolicyProviders" is missing: nothing is read there)",
      R"(9 warning /PolicyEnforceLayer/Extra: no reader looks at "Extra")"}},
    {__LINE__,
     L"registry-data",
     R"(<Quillmar><Component label="a"><Reg key="HKLM\a" access="none"><Element><Name>n</Name><Type>REG_DWORD</Type>
<Value>1 2</Value></Element><Element><Name>n</Name><Type>reg_sz</Type></Element></Reg><Reg access="al"/></Component>
</Quillmar>)",
     {R"(1 error /Quillmar/Component/Reg: attribute "key" is no key below HKEY_LOCAL_MACHINE: "HKLM\a": the reader refuses the document)",
      R"(2 warning /Quillmar/Component/Reg/Element/Value: the text is no whole number of 64 bits: "1 2" is read as 0)",
      R"(2 warning /Quillmar/Component/Reg: unknown word "al" of attribute "access": read as "none"; did you mean "all"?)",
      R"(2 error /Quillmar/Component/Reg: attribute "key" is missing: the reader refuses the document)"}},
    {__LINE__,
     L"pre-update-list",
     R"(<body other="1"><others/><product><componets/></product></body>)",
     {R"(1 error /body/product: "components" is missing: nothing is read there)"}},
    {__LINE__,
     L"local-update", // with conditions
     R"(<Quillmar check="yes"><REG minversion="1..2." maxversion="2" product="all" language="all" platform="all">
<Root>HKLM</Root><Path>p</Path><AccessMode>eMode64</AccessMode>
<Key target="registry" minversion="1" maxversion="6.x" product="all" language="all"><Name>n</Name><Type>uint32</Type>
<Value>-1</Value><Action>write</Action></Key></REG></Quillmar>)",
     {R"(1 error /Quillmar/REG: attribute "minversion" is no version: "1..2.": it is passed over)",
      R"(2 warning /Quillmar/REG/AccessMode: unknown word "eMode64" of the text: read as "eModeDefault"; did you mean "eMode64bit"?)",
      R"(3 error /Quillmar/REG/Key: attribute "maxversion" is no version: "6.x": it is passed over)",
      R"(3 error /Quillmar/REG/Key: attribute "platform" is missing: it is passed over)",
      R"(3 error /Quillmar/REG/Key: the value "-1" is no whole number of 32 bits: it is passed over)",
      R"(3 warning /Quillmar/REG/Key: "OverWrite" is missing: read as "no")",
      R"(3 warning /Quillmar/REG/Key: "AllAccess" is missing: no key is made)"}},
    {__LINE__,
     L"local-update", // without
     R"(<Quillmar><registry minversion="x"><Root>HKLM</Root><Path>p</Path><AccessMode>eMode64bit</AccessMode>
<Key target="registry"><Action>create</Action><OverWrite>no</OverWrite></Key>
<Key><Action>remove</Action></Key></registry><inifile><Path>a.ini</Path><Section>s</Section>
<Entry target="inifile"><Type>uint32</Type><Value>x</Value><Action>append</Action><OverWrite>yes</OverWrite></Entry></inifile>
<registryx/></Quillmar>)",
     {R"(2 error /Quillmar/registry/Key: "AllAccess" is missing: it is passed over)",
      R"(3 error /Quillmar/registry/Key: attribute "target" is missing: it is passed over)",
      R"(4 error /Quillmar/inifile/Entry: nothing can be appended to a number: it is passed over)",
      R"(4 error /Quillmar/inifile/Entry: "Name" is missing: it is passed over)",
      R"(5 error /Quillmar/registryx: no item is called "registryx": the reader refuses the document; did you mean "registry"?)"}},
    {__LINE__,
     L"alias",
     "<Alias/>",
     {R"(1 error /Alias: the root is "Alias", and the reader looks for "Aliases": nothing is read)"}},
    {__LINE__, L"alias", "<Aliases>\n\n<Alias>\n</Aliases>", {"4 error : not well-formed at column 3: mismatched tag"}},
};

TEST(VrntCheck, TellsWhatEachReaderWouldMakeOfADocument)
{
    const TempFolder folder;
    for (const Row& stRow : g_aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        folder.Write(L"document.xml", stRow.szText);
        EXPECT_THAT(Findings(stRow.pszDocument, folder.File(L"document.xml")),
                    testing::ElementsAreArray(stRow.vecFinding));
        EXPECT_EQ(folder.Read(L"document.xml"), stRow.szText);
    }
}

TEST(VrntCheck, KnowsTheLineInALongEncryptedDocumentAndSaysItsFindingsForPeople)
{
    const TempFolder folder;
    std::string sText = "<Aliases>\n";
    for (int i = 0; i < 100000; ++i) {
        sText += "<Alias Id=\"a" + std::to_string(i) + "\" Property=\"p\">\xC3\xA4</Alias>\n";
    }
    folder.Write(L"a.xml", sText + "</Aliases>");
    ASSERT_EQ(Encrypt(L"alias", folder.File(L"a.xml"), folder.File(L"a.xen")), 0);
    const ProgramRun stClean = RunVrnt({L"check", L"--document", L"alias", folder.File(L"a.xen")});
    EXPECT_EQ(stClean.sOutput + stClean.sError, "");
    EXPECT_EQ(stClean.iExitStatus, 0);

    folder.Write(L"b.xml", sText + "<Alias Id=\"b\" Propperty=\"\"/>\n</Aliases>");
    const std::wstring tszFile = folder.File(L"b.xml");
    const std::string sFile = ZkCommon::String::ToUtf8(tszFile);
    const ProgramRun stRun = RunVrnt({L"check", L"--document", L"alias", tszFile});
    EXPECT_EQ(stRun.iExitStatus, 1);
    EXPECT_EQ(
        stRun.sOutput,
        sFile +
            ":100002: warning: no reader looks at attribute \"Propperty\"; did you mean \"Property\"? "
            "[unknown-name]\n" +
            sFile +
            ":100002: warning: attribute \"Property\" is missing: read as empty [missing]\n0 errors, 2 warnings\n");

    EXPECT_THAT(Findings(L"component", folder.File(L"a.xen")),
                ElementsAre("1 error : neither XML nor encrypted with this document's key"));
    EXPECT_EQ(RunVrnt({L"check", L"--document", L"alias", folder.File(L"none")}).iExitStatus, 2);
}

TEST(VrntCheck, ReportsManyFilesByKindRuleAndStatus)
{
    const TempFolder folder;
    const std::string sShared = "<!-- <A> --><Quillmar check='no'>";
    std::filesystem::create_directory(folder.Path() / "sub");
    folder.Write(L"a.xml", "<Aliases>\n<!--\xC3\xA4--><Alias Id='1'/></Aliases>");
    folder.Write(L"plain.xml", "<Components><Install/><Uninstall/></Components>");
    folder.Write(L"antispy.XML", sShared + "</Quillmar>");
    folder.Write(L"sub\\update.xml", sShared + "<REG/></Quillmar>");
    folder.Write(L"sub\\other.xml", "<project/>");
    folder.Write(L"sub\\notes.txt", "<Aliases>");
    ASSERT_EQ(Encrypt(L"component", folder.File(L"plain.xml"), folder.File(L"sub\\c.xen")), 0);
    const ProgramRun stAll = RunVrnt({L"check", L"--format", L"json", folder.Path().wstring()});
    EXPECT_EQ(stAll.iExitStatus, 1);
    std::set<std::string> setKind;
    const std::size_t uFiles = SizeOf(At(stAll.sOutput, "/data"));
    ASSERT_EQ(uFiles, 6U);
    for (std::size_t u = 0; u < uFiles; ++u) {
        const std::string sFile = "/data/" + std::to_string(u);
        const std::string sName = At(stAll.sOutput, sFile + "/file");
        setKind.insert(sName.substr(sName.rfind('\\') + 1) + " " + At(stAll.sOutput, sFile + "/document"));
    }
    const std::set<std::string> setExpected = {R"(a.xml" "alias")",         R"(antispy.XML" "threats")",
                                               R"(c.xen" "component")",     R"(other.xml" null)",
                                               R"(plain.xml" "component")", R"(update.xml" "local-update")"};
    EXPECT_EQ(setKind, setExpected);

    const std::wstring tszAlias = folder.File(L"a.xml");
    EXPECT_EQ(DataOf({L"check", tszAlias}), Json(R"([{"line": 2, "column": 9, "severity": "warning", "rule": "missing",
                  "element": "/Aliases/Alias", "text": "attribute \"Property\" is missing: read as empty"}])"));
    struct
    {
        std::vector<std::wstring> vecArgument;
        int iStatus;
        const char* szOutput;
        const char* szError = "";
    } const aRow[] = {
        {{tszAlias, L"--fail-on", L"error"}, 0, "empty [missing]\n0 errors, 1 warning\n"},
        {{tszAlias, L"--fail-on", L"never"}, 0, "0 errors, 1 warning\n"},
        {{folder.File(L"none*"), tszAlias}, 2, "0 errors, 1 warning\n", "no file matches"},
        {{folder.File(L"none.xml"), tszAlias, L"--fail-on", L"never"}, 2, "0 errors, 1 warning\n", "cannot read"},
        {{folder.File(L"sub\\*")}, 1, "error", ""},
        {{folder.File(L"sub\\o*")}, 0, "0 errors, 0 warnings, 1 file of no known kind\n"},
        {{folder.File(L"sub\\other.xml")}, 2, "", "name its kind with --document"},
        {{L"--document", L"alias", folder.File(L"sub\\other.xml")}, 1, "[wrong-root]\n1 error, 0 warnings\n"},
        {{tszAlias, L"--json", L"--format", L"sarif"}, 2, "", "cannot be given together"},
        {{}, 2, "", "FILE is required"},
        {{L"--rules"}, 0, "unknown-word"},
    };
    for (const auto& stRow : aRow) {
        std::vector<std::wstring> vecArgument = {L"check"};
        vecArgument.insert(vecArgument.end(), stRow.vecArgument.begin(), stRow.vecArgument.end());
        const ProgramRun stRun = RunVrnt(vecArgument);
        EXPECT_EQ(stRun.iExitStatus, stRow.iStatus) << stRun.sOutput << stRun.sError;
        EXPECT_THAT(stRun.sOutput, HasSubstr(stRow.szOutput));
        EXPECT_THAT(stRun.sError,
                    *stRow.szError == '\0' ? testing::Matcher<std::string>("") : HasSubstr(stRow.szError));
    }
}

} // namespace
