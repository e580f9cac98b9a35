// What changed between two documents, or two reports, as the tool reports it.

#include "VrntTest.h"

namespace {

constexpr const char* g_szPolicy = R"(<PolicyEnforceLayer><PolicyControllers>
<PolicyController Controller="eFirewall" label="a"><Permission>eAllow</Permission>
<AllowToLoadSetupMode>0</AllowToLoadSetupMode><PolicyProviders>
<PolicyProvider Controller="eFirewall" Provider="eHomeNetwork"><Permission>ePartial</Permission></PolicyProvider>
<PolicyProvider Controller="eFirewall" Provider="eNeighborList"><Permission>eAllow</Permission></PolicyProvider>
</PolicyProviders></PolicyController></PolicyControllers></PolicyEnforceLayer>)";

/** The same in another order, with other labels, a default in words, and what no reader looks at. */
constexpr const char* g_szSamePolicy = R"(<PolicyEnforceLayer><!-- --><PolicyControllers>
<PolicyController Controller="eFirewall" label="b"><PolicyProviders>
<PolicyProvider Controller="eFirewall" Provider="eNeighborList"><Permission>eAllow</Permission></PolicyProvider>
<PolicyProvider Controller="eFirewall" Provider="eHomeNetwork"><Permission>ePartial</Permission><Deploy>eNoDeploy</Deploy>
</PolicyProvider><PolicyProvider Provider="eNeighborList"><Permission>ePartial</Permission></PolicyProvider>
</PolicyProviders><Permission>eAllow</Permission><x/></PolicyController></PolicyControllers></PolicyEnforceLayer>)";

struct Row
{
    const wchar_t* pszKind;
    const char* szOld;
    const char* szNew;
    const char* szLines;
};

const Row g_aRow[] = {
    {L"policy", g_szPolicy, g_szSamePolicy, ""},
    {L"policy", g_szPolicy, R"(<PolicyEnforceLayer><PolicyControllers>
<PolicyController Controller="eFirewall"><Permission>eAlow</Permission><PolicyProviders>
<PolicyProvider Controller="eFirewall" Provider="eHomeNetwork"><Permission>eDeny</Permission></PolicyProvider>
</PolicyProviders></PolicyController><PolicyController Controller="eAntiVirus"/></PolicyControllers></PolicyEnforceLayer>)",
     R"(eFirewall: permission eAllow -> eDeny
eFirewall eHomeNetwork: permission ePartial -> eDeny
eFirewall eNeighborList: removed: controllerType eFirewall, providerType eNeighborList, permission eAllow, deployState eNoDeploy
eAntiVirus: added: controllerType eAntiVirus, permission eDeny, allowToLoadInSetupMode false
)"},
    {L"alias", R"(<Aliases><Alias Id="1" Property="p">v</Alias><Alias Id="2" Property="q">w</Alias></Aliases>)",
     R"(<Aliases><Alias Id="2" Property="q">w</Alias><Alias Id="1" Property="p">a b</Alias></Aliases>)",
     "Alias 1: removed: id 1, property p, value v\nAlias 1: added: id 1, property p, value \"a b\"\n"},
    {L"component",
     R"(<Components><Install><Component Id="a" Directory="d"><Shortcut Id="s" Action="remove" Name="n"/>
</Component></Install><Uninstall/></Components>)",
     R"(<Components><Install><Component Id="a" Directory="d"><Shortcut Id="s" Action="remove"/></Component>
<Component Id="x" Directory="d" Process="x86"/></Install><Uninstall/></Components>)", // what is passed over is not seen
     "Install Component a Shortcut s n: removed: id s, action remove, name n\n"},
    {L"threats", R"(<Quillmar><Threats><Threat id="16"><Name>a</Name></Threat></Threats></Quillmar>)",
     R"(<Quillmar><Threats><Threat id="0016"><Name>b
c</Name></Threat></Threats></Quillmar>)",
     "Threats 16: Name a -> \"b c\"\n"},
    {L"local-update",
     R"(<Quillmar check="no"><REG minversion="1"><Root>HKLM</Root><Path>p</Path><Key target="registry"><Name>n</Name>
<Type>uint32</Type><Value>1</Value><Action>write</Action></Key></REG></Quillmar>)",
     R"(<Quillmar check="yes"><registry minversion="1" maxversion="2" product="all" language="all" platform="all">
<Root>HKLM</Root><Path>p</Path></registry></Quillmar>)",
     "check no -> yes\n"},
};

TEST(VrntDiff, ReportsWhatReadersSeeOfADocumentPlainOrEncrypted)
{
    const TempFolder folder;
    for (const Row& stRow : g_aRow) {
        folder.Write(L"old.xml", stRow.szOld);
        folder.Write(L"new.xml", stRow.szNew);
        const ProgramRun stRun = RunVrnt({L"diff", folder.File(L"old.xml"), folder.File(L"new.xml")});
        EXPECT_THAT(stRun.sOutput, testing::StartsWith(stRow.szLines)) << stRun.sError;
        EXPECT_EQ(stRun.iExitStatus, *stRow.szLines != '\0');
        EXPECT_EQ(RunVrnt({L"diff", folder.File(L"old.xml"), folder.File(L"old.xml")}).sOutput, "");
        if (Encrypt(stRow.pszKind, folder.File(L"old.xml"), folder.File(L"old.xen")) == 0) {
            EXPECT_EQ(RunVrnt({L"diff", folder.File(L"old.xen"), folder.File(L"new.xml")}).sOutput, stRun.sOutput);
        }
    }
}

TEST(VrntDiff, ComparesWithTheInstalledOneAndForGitAndSaysWhatCannotBeCompared)
{
    const TestProduct product;
    product.Store(DocumentId::Policy, g_szPolicy);
    const TempFolder folder;
    std::string sNew = g_szPolicy;
    sNew.replace(sNew.find("ePartial"), 8, "eDeny");
    folder.Write(L"new.xml", sNew);
    folder.Write(L"alias.xml", "<Aliases/>");
    folder.Write(L"bad.xml", "<Aliases>\n<");
    folder.Write(L"other.xml", "<project/>");
    folder.Write(L"other.json", "{}");
    const std::wstring tszNew = folder.File(L"new.xml");
    EXPECT_EQ(JsonOf({L"diff", L"installed:policy", tszNew}), Json(R"({
        "result": "0x80040201", "data": [{"change": "changed", "where": "eFirewall eHomeNetwork",
        "field": "permission", "old": "ePartial", "new": "eDeny"}]})"));
    const ProgramRun stGit =
        RunVrnt({L"diff", L"docs/a.xml", L"/dev/null", L".", L".", folder.File(L"alias.xml"), L"0", L"100644"});
    EXPECT_EQ(stGit.sOutput + stGit.sError, "vrnt diff docs/a.xml\n");
    const ProgramRun stBad =
        RunVrnt({L"diff", L"a.xml", folder.File(L"other.xml"), L"0", L"100644", tszNew, L"0", L"100644"});
    EXPECT_THAT(stBad.sOutput, HasSubstr("is like no kind of document"));
    EXPECT_EQ(stBad.iExitStatus, 0) << "git would stop";

    const UsageRow aTrouble[] = {
        {__LINE__, {L"diff", tszNew, folder.File(L"none.xml")}, "cannot read"},
        {__LINE__, {L"diff", tszNew, folder.File(L"alias.xml")}, "is of the kind policy and"},
        {__LINE__, {L"diff", folder.File(L"alias.xml"), folder.File(L"bad.xml")}, "is not well-formed in line 2"},
        {__LINE__, {L"diff", folder.File(L"other.xml"), tszNew}, "name its kind with --document"},
        {__LINE__, {L"diff", L"--document", L"alias", tszNew, folder.File(L"alias.xml")}, "its root is"},
        {__LINE__, {L"diff", L"installed:alias", tszNew}, "no installed document: there are service-units, policy"},
        {__LINE__, {L"diff", L"-", L"-"}, "only one of OLD and NEW"},
        {__LINE__, {L"diff", folder.File(L"other.json"), folder.File(L"other.json")}, "what vrnt report --json writes"},
        {__LINE__, {L"diff", tszNew, tszNew, tszNew}, "OLD and NEW are all"},
    };
    ExpectUsageErrors(aTrouble);
}

TEST(VrntDiff, ReportsWhatChangedOnAMachineBetweenTwoReports)
{
    const TestProduct product;
    product.Store(DocumentId::Policy, g_szPolicy);
    const TempFolder folder;
    const auto Report = [&](const wchar_t* _pszName) {
        EXPECT_EQ(RunVrnt({L"report", L"--json", folder.File(_pszName)}).iExitStatus, 0);
        return folder.File(_pszName);
    };
    const std::wstring tszBefore = Report(L"before.json");
    std::string sNew = g_szPolicy;
    sNew.replace(sNew.find("ePartial"), 8, "eDeny");
    product.Store(DocumentId::Policy, sNew);
    const ProgramRun stRun = RunVrnt({L"diff", tszBefore, Report(L"after.json")});
    EXPECT_EQ(stRun.iExitStatus, 1);
    EXPECT_THAT(stRun.sOutput, HasSubstr("policy eFirewall eHomeNetwork: permission ePartial -> eDeny\n"));
    EXPECT_EQ(RunVrnt({L"diff", tszBefore, tszBefore}).sOutput, "");
}

} // namespace
