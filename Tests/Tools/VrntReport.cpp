// vrnt.exe writes the installed configuration on a page.

#include "VrntTest.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <filesystem>

namespace {

bool StandInOrder(const std::string& _rsPage, const std::vector<const char*>& _rvecText)
{
    std::size_t uAt = 0;
    return std::ranges::all_of(_rvecText, [&](const char* _szText) {
        uAt = _rsPage.find(_szText, uAt);
        return uAt != std::string::npos;
    });
}

std::string Unit(const std::string& _rsLayer, const std::string& _rsOrder, const std::string& _rsModule)
{
    return "<FrameworkService Layer='" + _rsLayer + "'><OrderOfLoading>" + _rsOrder + "</OrderOfLoading><ModuleName>" +
           _rsModule + "</ModuleName></FrameworkService>";
}

std::string Provider(const std::string& _rsProvider, const std::string& _rsOrder, const std::string& _rsNeeded)
{
    return "<P Controller='eFirewall' Provider='" + _rsProvider + "'><OrderOfLoading>" + _rsOrder +
           "</OrderOfLoading><DependencyController>eFirewall</DependencyController><DependencyProvider>" + _rsNeeded +
           "</DependencyProvider></P>";
}

TEST(VrntReport, ShowsWhatIsThereAsTextTellsWhatIsNotAndGivesNoKeyAway)
{
    const TestProduct cProduct;
    const TempFolder cOut;
    cProduct.Store(DocumentId::ServiceUnits,
                   "<BaseFramework>" + Unit("eServiceLayer", "1", "Last.dll") + Unit("eControlLayer", "3", "Next.dll") +
                       Unit("eControlLayer", "0x2", "&lt;script>'&amp;'&lt;/script>") + "</BaseFramework>");
    cProduct.Store(DocumentId::Policy, R"(<PolicyEnforceLayer><PolicyControllers>
        <PolicyController Controller="eFirewall"><Permission>ePartial</Permission><PolicyProviders>
          <PolicyProvider Controller="eFirewall" Provider="eHomeNetwork">
            <Permission>eAlow</Permission><Deploy>eWaitDownload</Deploy></PolicyProvider>
        </PolicyProviders></PolicyController></PolicyControllers></PolicyEnforceLayer>)");
    cProduct.Store(DocumentId::EnforceData,
                   "<DataEnforceLayer><DataControllers><DataController Controller='eFirewall'><DataProviders>" +
                       Provider("eHomeNetwork", "2", "eNeighborList") +
                       Provider("eNeighborList", "1", "eVulnerability") + Provider("eVulnerability", "3", "eBehavior") +
                       "</DataProviders></DataController></DataControllers></DataEnforceLayer>");
    EXPECT_EQ(RunVrnt({L"report", cOut.File(L"out.html")}).iExitStatus, 0);
    const std::string sPage = cOut.Read(L"out.html");

    for (const std::vector<const char*>& vecText : std::vector<std::vector<const char*>>{
             {"Made <time>20", "eControlLayer", "&lt;script&gt;&#39;&amp;&#39;&lt;", "Next.dll", "eServiceLayer",
              "Last.dll"},
             {"id=\"policy\"", ">partial<", "eHomeNetwork", ">denied<", ">waits for download<"},
             {"eFirewall eNeighborList</a>: needs eFirewall eVulnerability, which is not loaded before it",
              "eFirewall eVulnerability</a>: needs eFirewall eBehavior, which is not listed", "class=\"arrow fault\"",
              "class=\"arrow\"", "</svg>"},
             {"id=\"findings\"", "FwPolicy.xen", "eAlow"},
             {"3 of 6", "id=\"documents\"", "FwCompId.xml", "missing", "0x80040201: cannot read FwCompId.xml"}}) {
        EXPECT_TRUE(StandInOrder(sPage, vecText)) << vecText.back();
    }
    for (const char* szActive : {"<script", " src=", "url(", "@import"}) { // nothing runs, nothing is fetched
        EXPECT_THAT(sPage, Not(HasSubstr(szActive)));
    }
    for (const Varnhelt::Document& stDocument : Varnhelt::DocumentTable()) {
        EXPECT_TRUE(stDocument.szKey == nullptr || sPage.find(stDocument.szKey, 0, 8) == std::string::npos);
    }
}

TEST(VrntReport, InAFolderItIsNamedAfterTheMachineAndWithJsonItIsOneObject)
{
    const TestProduct cProduct;
    const TempFolder cOut;
    cProduct.Store(DocumentId::ServiceUnits,
                   "<BaseFramework>" + Unit("eControlLayer", "1", "One.dll") + "</BaseFramework>");
    ASSERT_EQ(RunVrnt({L"--json", L"report", cOut.Path().wstring()}).iExitStatus, 0);
    ASSERT_EQ(cOut.Names().size(), 1U);
    const std::wstring tszName = *cOut.Names().begin();
    const std::string sReport = cOut.Read(tszName);
    std::string sBeginning = R"("vrnt-)" + At(sReport, "/computer").substr(1);
    sBeginning.replace(sBeginning.size() - 1, 1, "-20"); // for the quotation mark
    EXPECT_THAT(Json(Quoted(ZkCommon::String::ToUtf8(tszName))), testing::StartsWith(sBeginning));
    EXPECT_EQ(At(sReport, "/service-units/0/moduleName"), R"("One.dll")");
    EXPECT_EQ(At(sReport, "/policy"), "null");
    EXPECT_THAT(At(sReport, "/failures"), HasSubstr(R"("FwPolicy.xen","text":"0x80040201: cannot open )"));
    EXPECT_EQ(At(sReport, "/productFolder"),
              Json(Quoted(ZkCommon::String::ToUtf8(cProduct.Folder().Path().wstring()))));
}

TEST(VrntSample, EveryDocumentIsCleanAndTheRegistrationIsPutBack)
{
    const TestProduct cProduct; // is registered
    const TempFolder cParent;
    const std::wstring tszFolder = cParent.File(L"sample");
    EXPECT_EQ(StartVrnt({L"sample", tszFolder, L"--register"}).iExitStatus, 2);
    EXPECT_FALSE(std::filesystem::exists(tszFolder));
    const ProgramRun stSample = StartVrnt({L"sample", tszFolder, L"--replace"});
    EXPECT_EQ(stSample.iExitStatus, 0) << stSample.sError;
    EXPECT_THAT(stSample.sOutput, HasSubstr("vrnt sample \"" + ZkCommon::String::ToUtf8(tszFolder) + "\" --remove"));
    EXPECT_EQ(RunVrnt({L"check", tszFolder}).sOutput, "");
    EXPECT_THAT(RunVrnt({L"query", L"threat-name", L"--engine", L"elmap", L"--id", L"1001"}).sOutput,
                HasSubstr("Spyware."));
    EXPECT_EQ(StartVrnt({L"sample", tszFolder}).iExitStatus, 2); // it is not empty
    EXPECT_EQ(StartVrnt({L"sample", tszFolder, L"--remove"}).iExitStatus, 0);
    EXPECT_FALSE(std::filesystem::exists(tszFolder));
    EXPECT_EQ(RunVrnt({L"sample", cProduct.Folder().Path().wstring(), L"--remove"}).iExitStatus, 2); // it is no sample
    EXPECT_THAT(RunVrnt({L"documents"}).sOutput,
                HasSubstr(ZkCommon::String::ToUtf8(cProduct.Folder().Path().wstring())));
}

TEST(VrntReport, WhatCannotBeReplacedStaysAndIsAFailure)
{
    const TempFolder cOut;
    cOut.Write(L"out.html", "old");
    const std::filesystem::path tszOut = cOut.File(L"out.html");
    std::filesystem::permissions(tszOut, std::filesystem::perms::owner_write, std::filesystem::perm_options::remove);
    EXPECT_THAT(RunVrnt({L"report", tszOut.wstring()}).sError, HasSubstr("exists; --force replaces it"));
    const ProgramRun stRun = RunVrnt({L"--json", L"report", tszOut.wstring(), L"--force"});
    std::filesystem::permissions(tszOut, std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
    EXPECT_EQ(stRun.iExitStatus, 1);
    EXPECT_EQ(At(stRun.sOutput, "/result"), R"("0x80040201")");
    EXPECT_THAT(stRun.sError, HasSubstr("out.html"));
    EXPECT_EQ(cOut.Read(L"out.html"), "old");
    EXPECT_THAT(cOut.Names(), ElementsAre(L"out.html"));
}

} // namespace
