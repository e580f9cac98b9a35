// vrnt update: the rehearsal's JSON, the update, the way back, and what is refused.

#include "ReplaceAll.h"
#include "UpdateBench.h"
#include "VrntTest.h"
#include "ZkComn_String.h"

#include <filesystem>

namespace {

constexpr const char* g_szItems =
    R"(<registry @ALL@><Root>HKLM</Root><Path>@K@</Path><AccessMode>eMode64bit</AccessMode>
<Key target="registry" @ALL@><Name>N</Name><Type>uint32</Type><Value>7</Value><Action>write</Action>
<AllAccess>no</AllAccess></Key><Key target="registry" minversion="1" maxversion="16"><Action>remove</Action></Key>
<Key target="registry" @ALL@><Action>fly</Action></Key></registry><registry @ALL@><Root>hklm</Root><Path>P</Path>
<Key target="registry"><Name>M</Name></Key></registry><inifile @ALL@><Path>$INSTALL$test.ini</Path><Section>A</Section>
<Entry target="inifile" @ALL@><Name>k</Name><Type>string</Type><Value>v</Value><Action>write</Action></Entry></inifile>
<dir/>)";

TEST(VrntUpdate, TheRehearsalTellsEveryItemTheUpdateCarriesThemOutAndItsWayBackLeadsBack)
{
    const UpdateBench cBench;
    const std::wstring tszPath = cBench.Describe(g_szItems, "check='yes'");
    const ProgramRun stRehearsal = RunVrnt({L"--json", L"update", L"--dry-run", tszPath});
    EXPECT_EQ(stRehearsal.iExitStatus, 0);
    EXPECT_THAT(stRehearsal.sError, IsEmpty());
    std::string sExpected = R"({"result":"0x00040200", "data":{"check":true, "stay":false, "items":[
         {"kind":"registry", "root":"HKLM", "path":"@K@", "accessMode":"eMode64bit", "update":true, "reason":null,
          "entries":[{"name":"N", "type":"uint32", "action":"write", "value":"7", "effect":"write",
           "applied":true, "reason":null},
          {"name":"", "type":"", "action":"remove", "value":"", "effect":"skip", "applied":false,
           "reason":"the installed version is above \"16\""},
          {"name":"", "type":"", "action":"fly", "value":"", "effect":"refuse", "applied":false,
           "reason":"no such action"}]},
         {"kind":"registry", "root":null, "path":"P", "accessMode":"", "update":false, "entries":[
          {"name":"M", "type":"", "action":"", "value":"", "effect":"skip", "applied":false,
           "reason":"the item is not updated"}],
          "reason":"the root is none of HKCR, HKCU, HKLM, HKU"},
         {"kind":"inifile", "root":"@F@", "path":"A", "accessMode":"", "update":true, "reason":null, "entries":[
          {"name":"k", "type":"string", "action":"write", "value":"v", "effect":"write",
           "applied":true, "reason":null}]},
         {"kind":"directory", "root":null, "path":"", "accessMode":"", "update":false, "entries":[],
          "reason":"directories are never acted on"}],
         "environment":{"version":"17.1.1040", "product":"qmrpro", "language":"de"}}})";
    ReplaceAll(sExpected, R"("@K@")", Quoted(ZkCommon::String::ToUtf8(cBench.Key())));
    ReplaceAll(sExpected, R"("@F@")", Quoted(ZkCommon::String::ToUtf8(cBench.Folder().File(L"test.ini"))));
    std::string sRehearsed = Json(sExpected);
    ReplaceAll(sRehearsed, R"("applied":true,)", {});
    ReplaceAll(sRehearsed, R"("applied":false,)", {});
    EXPECT_EQ(Json(stRehearsal.sOutput), sRehearsed);
    const ProgramRun stText = RunVrnt({L"update", L"--dry-run", tszPath});
    EXPECT_THAT(stText.sOutput, HasSubstr("version 17.1.1040, product qmrpro, language de"));
    EXPECT_THAT(stText.sOutput, HasSubstr("not updated, the root is none of"));
    EXPECT_THAT(RunVrnt({L"update", L"--dry-run", L"--plain", tszPath}).sOutput,
                HasSubstr("\nregistry\t\tP\t\tno\tthe root is none of HKCR, HKCU, HKLM, HKU\n"
                          "registry\t\tP\tM\t\t\t\tskip\tthe item is not updated\n"));
    EXPECT_THAT(cBench.Snapshot(), IsEmpty());

    const std::wstring tszUndo = cBench.Folder().File(L"back.xml");
    const ProgramRun stRun = RunVrnt({L"--json", L"update", L"--undo", tszUndo, tszPath});
    EXPECT_EQ(stRun.iExitStatus, 0);
    EXPECT_EQ(Json(stRun.sOutput), Json(sExpected));
    EXPECT_THAT(stRun.sError, HasSubstr("test.ini stays\n"));
    EXPECT_FALSE(std::filesystem::exists(tszPath));
    EXPECT_EQ(cBench.Snapshot().size(), 4U); // key, value, section, entry

    EXPECT_EQ(RunVrnt({L"check", L"--document", L"local-update", tszUndo}).iExitStatus, 0);
    const ProgramRun stBack = RunVrnt({L"update", L"--strict", tszUndo});
    EXPECT_EQ(stBack.iExitStatus, 0);
    EXPECT_EQ(stBack.sOutput, "2 of 2 entries applied, 0 skipped, 0 refused\n");
    EXPECT_THAT(stBack.sError, IsEmpty());
    EXPECT_THAT(cBench.Snapshot(), IsEmpty());
}

TEST(VrntUpdate, StrictFailsWhereWhatIsMeantForThisMachineIsNotSo)
{
    const UpdateBench cBench;
    ZkCommon::Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, cBench.Key());
    cKey.WriteString(L"V", L"kept");
    const std::tuple<int, const char*, const char*, int> aRow[] = {
        {__LINE__, "", "<Name>none</Name><Action>remove</Action>", 0},
        {__LINE__, "\\none", "<Name>none</Name><Action>remove</Action>", 0},
        {__LINE__, "\\none", "<Action>remove</Action>", 0},
        {__LINE__, "", "<Name>V</Name><Type>string</Type><Action>write</Action>", 0},
        {__LINE__, "", "<Action>create</Action><OverWrite>yes</OverWrite>", 0},
        {__LINE__, "\\none", "<Action>create</Action>", 1},
        {__LINE__, "", "<Name>none</Name><Action>create</Action><AllAccess>no</AllAccess>", 1},
        {__LINE__, "", "<Name>n</Name><Type>uint32</Type><Value>x</Value><Action>write</Action>", 1},
        {__LINE__, "", "<Action>fly</Action>", 1},
    };
    for (const auto& [iLine, szBelow, szEntry, iExitStatus] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        const std::wstring tszPath = cBench.Describe(std::string("<registry><Root>HKLM</Root><Path>@K@") + szBelow +
                                                     "</Path><Key target='registry'>" + szEntry + "</Key></registry>");
        EXPECT_EQ(RunVrnt({L"update", L"--strict", L"--dry-run", tszPath}).iExitStatus, iExitStatus);
        const ProgramRun stRun = RunVrnt({L"update", L"--strict", tszPath});
        EXPECT_EQ(stRun.iExitStatus, iExitStatus) << stRun.sOutput;
        EXPECT_THAT(stRun.sOutput, HasSubstr(iExitStatus == 0 ? " 0 refused" : " 1 refused"));
        EXPECT_EQ(cBench.Snapshot().size(), 2U); // the key, and its value
    }
}

TEST(VrntUpdate, WhatIsNotAppliedIsToldAndWhatIsNoUpdateIsLeftAlone)
{
    const UpdateBench cBench;
    const std::wstring tszMissing = cBench.Folder().File(L"missing.xml");
    const std::wstring tszOther = cBench.Describe(L"other.xml", "<BaseFramework/>");
    const std::wstring tszBroken = cBench.Describe(L"broken.xml", "<Quillmar stay='yes'>");
    const std::wstring tszGood = cBench.Describe(g_szItems);
    const std::tuple<int, std::vector<std::wstring>, int, const char*> aRow[] = {
        {__LINE__, {L"update", tszMissing}, 0, "nothing was applied"},
        {__LINE__, {L"update", L"--dry-run", tszMissing}, 0, "nothing was applied"},
        {__LINE__, {L"update", L"--undo", tszMissing, tszMissing}, 0, "nothing was applied"},
        {__LINE__, {L"update", tszOther}, 2, "is no local update description"},
        {__LINE__, {L"update", L"--dry-run", tszBroken}, 1, "0x80040201"},
        {__LINE__, {L"update", L"--undo", tszMissing, tszBroken}, 1, "0x80040201"},
        {__LINE__, {L"update", tszBroken}, 1, "0x80040201"}, // it was left by the rehearsals
        {__LINE__, {L"update", L"--undo", L"Z:\\no folder\\x", tszGood}, 2, "cannot write"},
        {__LINE__, {L"update", L"--undo", tszGood, L"--replace", tszGood}, 2, "is the description itself"},
        {__LINE__, {L"update", L"--undo", tszOther, tszGood}, 2, "exists already"},
        {__LINE__, {L"update", cBench.Folder().Path().wstring()}, 0, "is a folder"},
        {__LINE__, {L"update", L"--strict", tszMissing}, 1, "does not exist"},
    };
    for (const auto& [iLine, vecArgument, iExitStatus, szError] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        const ProgramRun stRun = RunVrnt(vecArgument);
        EXPECT_EQ(stRun.iExitStatus, iExitStatus);
        EXPECT_THAT(stRun.sError, HasSubstr(szError));
        EXPECT_EQ(std::count(stRun.sError.begin(), stRun.sError.end(), '\n'), 1) << stRun.sError;
        EXPECT_FALSE(std::filesystem::exists(tszMissing));
    }
    EXPECT_TRUE(std::filesystem::exists(tszOther));
    EXPECT_TRUE(std::filesystem::exists(tszGood));
    EXPECT_FALSE(std::filesystem::exists(tszBroken));
    EXPECT_THAT(cBench.Snapshot(), IsEmpty());
}

} // namespace
