// vrnt update: the rehearsal's JSON, the update, the way back, and what is refused.

#include "RunProgram.h"
#include "UpdateBench.h"
#include "ZkComn_Registry.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using testing::IsEmpty;
using Json = nlohmann::json;

namespace {

constexpr const char* g_szItems = R"(
<registry minversion="1" maxversion="18" product="all" language="de" platform="all"><Root>HKLM</Root><Path>@K@</Path>
<AccessMode>eMode64bit</AccessMode>
<Key target="registry" minversion="1" maxversion="18" product="all" language="all" platform="all"><Name>N</Name>
<Type>uint32</Type><Value>7</Value><Action>write</Action><AllAccess>no</AllAccess></Key>
<Key target="registry" minversion="1" maxversion="16" product="all" language="all" platform="all"><Action>remove</Action></Key>
<Key target="registry" minversion="1" maxversion="18" product="all" language="all" platform="all"><Action>fly</Action></Key>
</registry>
<registry minversion="1" maxversion="18" product="all" language="all" platform="all"><Root>hklm</Root><Path>P</Path>
<Key target="registry"><Name>M</Name></Key></registry>
<inifile minversion="1" maxversion="18" product="all" language="all" platform="all"><Path>$INSTALL$test.ini</Path>
<Section>A</Section><Entry target="inifile" minversion="1" maxversion="18" product="all" language="all" platform="all">
<Name>k</Name><Type>string</Type><Value>v</Value><Action>write</Action></Entry></inifile><dir/>)";

class VrntUpdate : public testing::Test
{
protected:
    UpdateBench m_cBench;
};

TEST_F(VrntUpdate, TheRehearsalTellsEveryItemAndEntryAndChangesNothing)
{
    const std::wstring tszPath = m_cBench.Describe(g_szItems, "check='yes'");
    const ProgramRun stRun = RunVrnt({L"--json", L"update", L"--dry-run", tszPath});
    EXPECT_EQ(stRun.iExitStatus, 0);
    EXPECT_THAT(stRun.sError, IsEmpty());
    Json jsExpected = Json::parse(R"({"result": "0x00040200", "data": {
        "environment": {"version": "17.1.1040", "product": "qmrpro", "language": "de"}, "check": true, "stay": false,
        "items": [
         {"kind": "registry", "root": "HKLM", "path": "", "accessMode": "eMode64bit", "update": true, "reason": null,
          "entries": [
           {"name": "N", "type": "uint32", "action": "write", "value": "7", "effect": "write", "reason": null},
           {"name": "", "type": "", "action": "remove", "value": "", "effect": "skip",
            "reason": "the installed version is above \"16\""},
           {"name": "", "type": "", "action": "fly", "value": "", "effect": "refuse", "reason": "no such action"}]},
         {"kind": "registry", "root": null, "path": "P", "accessMode": "", "update": false,
          "reason": "the root is none of HKCR, HKCU, HKLM, HKU",
          "entries": [{"name": "M", "type": "", "action": "", "value": "", "effect": "skip",
                       "reason": "the item is not updated"}]},
         {"kind": "inifile", "root": "", "path": "A", "accessMode": "", "update": true, "reason": null,
          "entries": [{"name": "k", "type": "string", "action": "write", "value": "v", "effect": "write",
                       "reason": null}]},
         {"kind": "directory", "root": null, "path": "", "accessMode": "", "update": false,
          "reason": "directories are never acted on", "entries": []}]}})");
    jsExpected["data"]["items"][0]["path"] = std::filesystem::path(m_cBench.Key()).string();
    jsExpected["data"]["items"][2]["root"] = [&] {
        const std::u8string s8Path = std::filesystem::path(m_cBench.Ini()).u8string();
        return std::string(s8Path.begin(), s8Path.end());
    }();
    EXPECT_EQ(Json::parse(stRun.sOutput), jsExpected);
    EXPECT_TRUE(std::filesystem::exists(tszPath));
    EXPECT_THAT(m_cBench.Snapshot(), IsEmpty());

    const ProgramRun stText = RunVrnt({L"update", L"--dry-run", tszPath});
    EXPECT_THAT(stText.sOutput, HasSubstr("version 17.1.1040, product qmrpro, language de"));
    EXPECT_THAT(stText.sOutput, HasSubstr("not updated, the root is none of"));
}

TEST_F(VrntUpdate, AnUpdateIsCarriedOutAndItsWayBackLeadsBack)
{
    const std::wstring tszUndo = m_cBench.Folder().File(L"back.xml");
    const ProgramRun stRun =
        RunVrnt({L"--json", L"update", L"--undo", tszUndo, m_cBench.Describe(g_szItems, "check='yes'")});
    EXPECT_EQ(stRun.iExitStatus, 0);
    EXPECT_EQ(Json::parse(stRun.sOutput), Json::parse(R"({"result": "0x00040200", "data": null})"));
    EXPECT_THAT(stRun.sError, HasSubstr("test.ini stays\n"));
    EXPECT_FALSE(std::filesystem::exists(m_cBench.Folder().File(L"update.xml")));
    EXPECT_EQ(m_cBench.Snapshot().size(), 4U); // key, value, section, entry

    const ProgramRun stBack = RunVrnt({L"update", tszUndo});
    EXPECT_EQ(stBack.iExitStatus, 0);
    EXPECT_THAT(stBack.sError, IsEmpty());
    EXPECT_THAT(m_cBench.Snapshot(), IsEmpty());
}

TEST_F(VrntUpdate, WhatIsNotAppliedIsToldAndWhatIsNoUpdateIsLeftAlone)
{
    const std::wstring tszMissing = m_cBench.Folder().File(L"missing.xml");
    const std::wstring tszOther = m_cBench.Describe(L"other.xml", "<BaseFramework/>");
    const std::wstring tszBroken = m_cBench.Describe(L"broken.xml", "<Quillmar stay='yes'>");
    const std::wstring tszGood = m_cBench.Describe(g_szItems);
    struct Row
    {
        int iLine;
        std::vector<std::wstring> vecArgument;
        int iExitStatus;
        const char* szError;
        std::wstring tszFile;
        bool bStays;
    };
    const Row aRow[] = {
        {__LINE__, {L"update", tszMissing}, 0, "nothing was applied", tszMissing, false},
        {__LINE__, {L"update", L"--dry-run", tszMissing}, 0, "nothing was applied", tszMissing, false},
        {__LINE__, {L"update", L"--undo", tszMissing, tszMissing}, 0, "nothing was applied", tszMissing, false},
        {__LINE__, {L"update", tszOther}, 2, "is no local update description", tszOther, true},
        {__LINE__, {L"update", L"--undo", tszMissing, tszOther}, 2, "is no local update description", tszOther, true},
        {__LINE__, {L"update", L"--dry-run", tszBroken}, 1, "0x80040201", tszBroken, true},
        {__LINE__, {L"update", L"--undo", tszMissing, tszBroken}, 1, "0x80040201", tszBroken, true},
        {__LINE__, {L"update", tszBroken}, 1, "0x80040201", tszBroken, false},
        {__LINE__, {L"update", L"--undo", L"Z:\\no folder\\x", tszGood}, 2, "cannot write", tszGood, true},
        {__LINE__, {L"update", L"--dry-run", L"--undo", L"x", tszGood}, 2, "--undo", tszGood, true},
        {__LINE__, {L"update", L""}, 2, "", tszGood, true},
        {__LINE__, {L"update"}, 2, "PATH", tszGood, true},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const ProgramRun stRun = RunVrnt(stRow.vecArgument);
        EXPECT_EQ(stRun.iExitStatus, stRow.iExitStatus);
        EXPECT_THAT(stRun.sError, HasSubstr(stRow.szError));
        EXPECT_EQ(std::count(stRun.sError.begin(), stRun.sError.end(), '\n'), 1) << stRun.sError;
        EXPECT_EQ(std::filesystem::exists(stRow.tszFile), stRow.bStays);
        EXPECT_FALSE(std::filesystem::exists(tszMissing));
    }
    EXPECT_THAT(m_cBench.Snapshot(), IsEmpty());
}

} // namespace
