// Local updates: what of a description is read and what becomes of its file; what an update does to the registry and to
// ini files, what a rehearsal says that it would do, and the way back; the lines of a whole update.

#include "Documents/LocalUpdate.h"

#include "FunctionXml.h"
#include "TraceRecorder.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateUndo.h"
#include "UpdateBench.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <random>
#include <sddl.h>
#include <sstream>

using namespace SrvFrwk;
using namespace Varnhelt;
using namespace ZkCommon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** What was decided: the items' roots, a letter for each entry's effect, and all reasons. */
class Decisions : public UpdateObserver
{
public:
    void OnItem(const LocalUpdateKey& _rstItem, UpdateReason _enReason) override
    {
        vecRoot.push_back(_rstItem.tszRoot);
        if (_enReason != UpdateReason::None) {
            vecReason.push_back(_enReason);
        }
    }
    void OnEntry(const LocalUpdateEntry&, const UpdateDecision& _rstDecision) override
    {
        tszEffects += L"cwar-!"[static_cast<std::size_t>(_rstDecision.enEffect)];
        vecReason.push_back(_rstDecision.enReason);
        ulError = std::max(ulError, _rstDecision.ulError);
    }

    std::vector<std::wstring> vecRoot;
    std::wstring tszEffects;
    std::vector<UpdateReason> vecReason;
    std::uint32_t ulError = 0;
};

class LocalUpdate : public testing::Test
{
protected:
    /** Carries the description out on a storage; its file stays. */
    static void Run(const std::wstring& _rtszPath, UpdateStorages& _rStorages, Decisions& _rDecisions)
    {
        LocalUpdateConfig stConfig;
        bool bStay = false;
        Worker stWorker;
        ASSERT_EQ(Documents::QueryValueAsLocalUpdate(stWorker, &stConfig, &_rtszPath, &bStay), Result::g_ulSuccess);
        CLocalUpdateManager cManager(_rStorages, &_rDecisions);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        ASSERT_EQ(cManager.DoActionConfig(stConfig), Result::g_ulSuccess);
    }

    /**
     * Rehearses, applies and undoes; the state must be the rehearsed one and then, if nothing is left, the old one.
     * @return the effects, and the lines that only one of the two states has
     */
    std::vector<std::wstring> RoundTrip(const std::wstring& _rtszPath)
    {
        const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
        RecordingStorage cRecord;
        Decisions cDecisions;
        Run(_rtszPath, cRecord, cDecisions);
        const std::vector<std::wstring> vecRehearsed = m_cBench.Snapshot(&cRecord);
        EXPECT_EQ(m_cBench.Snapshot(), vecBefore) << "the rehearsal changed something";
        const UpdateUndo stUndo = UndoOf(cRecord);
        EXPECT_EQ(UpdateBench::Send(_rtszPath), Result::g_ulSuccess);
        EXPECT_EQ(m_cBench.Snapshot(), vecRehearsed) << "the update did something else than its rehearsal";
        EXPECT_EQ(UpdateBench::Send(m_cBench.Describe(L"undo.xml", stUndo.sDescription)), Result::g_ulSuccess);
        m_vecLeft = stUndo.vecLeft;
        if (m_vecLeft.empty()) {
            EXPECT_EQ(m_cBench.Snapshot(), vecBefore) << stUndo.sDescription;
        }
        std::vector<std::wstring> vecOutcome = {cDecisions.tszEffects};
        std::ranges::set_symmetric_difference(vecBefore, vecRehearsed, std::back_inserter(vecOutcome));
        return vecOutcome;
    }

    std::uint32_t Read(const std::wstring& _rtszPath)
    {
        return Documents::QueryValueAsLocalUpdate(m_stWorker, &m_stConfig, &_rtszPath);
    }

    UpdateBench m_cBench;
    Worker m_stWorker;
    LocalUpdateConfig m_stConfig;
    std::vector<std::wstring> m_vecLeft; // by the last undo
};

using Texts = std::vector<std::string>;

/** Entries from "action name type value+flags"; the flag "over" is that of overwriting, others are of all access. */
std::string Entries(const Texts& _rvecText, const std::string& _rsOpening, const std::string& _rsClosing)
{
    std::string sEntries;
    for (const std::string& sText : _rvecText) {
        const std::size_t uFlags = std::min(sText.find('+'), sText.size());
        std::istringstream cText(sText.substr(0, uFlags));
        sEntries += _rsOpening;
        for (const std::string sField : {"Action", "Name", "Type", "Value"}) {
            std::string sWord;
            std::getline(cText, sWord, sField == "Value" ? '\0' : ' ');
            sEntries += "<" + sField + ">" + sWord + "</" + sField + ">";
        }
        for (const auto& [szFlag, szField] :
             {std::pair("+over", "<OverWrite>yes</OverWrite>"), std::pair("+Over", "<OverWrite>Yes</OverWrite>"),
              std::pair("+no", "<AllAccess>no</AllAccess>"), std::pair("+yes", "<AllAccess>yes</AllAccess>"),
              std::pair("+Yes", "<AllAccess>Yes</AllAccess>")}) {
            sEntries += sText.find(szFlag, uFlags) != std::string::npos ? szField : "";
        }
        sEntries += _rsClosing;
    }
    return sEntries;
}

std::string Key(const Texts& _rvecEntry, const std::string& _rsPath = "@K@", const std::string& _rsRoot = "HKLM",
                const std::string& _rsMode = "")
{
    return "<registry><Root>" + _rsRoot + "</Root><Path>" + _rsPath + "</Path><AccessMode>" + _rsMode +
           "</AccessMode>" + Entries(_rvecEntry, "<Key target='registry'>", "</Key>") + "</registry>";
}

std::string Ini(const Texts& _rvecEntry, const std::string& _rsSection = "A",
                const std::string& _rsPath = "@F@\\test.ini")
{
    return "<inifile><Path>" + _rsPath + "</Path><Section>" + _rsSection + "</Section>" +
           Entries(_rvecEntry, "<Entry target='inifile'>", "</Entry>") + "</inifile>";
}

/** What the machine has before: a key with a value of each type and keys below it, and an ini file. */
const std::string g_sFurniture = Key({"create+no", "create Sub+no+over", "write s string text", "write d uint32 5",
                                      "write q uint64 0x1FFFFFFFF", "write b binary 0aFF"}) +
                                 Key({"write x string below+no"}, "@K@\\Sub\\Deep") +
                                 Ini({"write k string v", "write n uint32 12"}) +
                                 Ini({"write o string \" quoted \""}, "B");

TEST_F(LocalUpdate, EveryActionDoesWhatItsRehearsalSaysAndIsUndone)
{
    const std::wstring tszText = L"64 s \"text\"";
    const std::wstring tszDeep = L"64\\Sub\\Deep";
    const std::tuple<int, std::string, std::vector<std::wstring>> aRow[] = {
        {__LINE__, Key({"create New+no", "create New+no+over"}), {L"-c", L"64\\New"}},
        {__LINE__, Key({"create+Yes"}, "@K@\\N") + Key({"create+no"}, "@K@\\N\\M"), {L"-c", L"64\\N", L"64\\N\\M"}},
        {__LINE__, Key({"create+no"}, "@K@\\N", "HKLM", "eMode32bit"), {L"c", L"64\\N"}},
        {__LINE__, Key({"create+yes"}, "@K@\\N", "HKLM", "eMode32bit"), {L"c", L"32", L"32\\N"}},
        {__LINE__, Key({"create+no"}, "@K@", "HKCU") + Key({"create+no"}, "@K@", "hklm"), {L"c", L"user"}},
        {__LINE__, Key({"write s string new+Over", "write S string ab+over"}), {L"-w", L"64 s \"ab\"", tszText}},
        // A value of another type does not count.
        {__LINE__, Key({"write s uint32 010"}), {L"w", L"64 s 4: 8 0 0 0", tszText}},
        {__LINE__, Key({"write m uint64 0xffffffffffffffff"}), {L"w", L"64 m 11: 255 255 255 255 255 255 255 255"}},
        {__LINE__, Key({"write m binary fFa", "append f binary 34"}), {L"wa", L"64 m 3: 255", L"64 f 3: 52"}},
        {__LINE__, Key({"append s string !", "append s string !+over"}), {L"-a", L"64 s \"text!\"", tszText}},
        {__LINE__, Key({"append b binary 123+over"}), {L"a", L"64 b 3: 10 255 18", L"64 b 3: 10 255"}},
        {__LINE__, Key({"append d uint32 1+over", "append d string 1+over"}), {L"!!"}},
        {__LINE__, Key({"remove d", "remove d", "remove no"}), {L"r!!", L"64 d 4: 5 0 0 0"}},
        // The rehearsal sees what it did before: a key that goes and comes back is empty.
        {__LINE__, Key({"remove", "remove"}, "@K@\\Sub"), {L"r-", L"64\\Sub", tszDeep, tszDeep + L" x \"below\""}},
        {__LINE__,
         Key({"remove", "write y uint32 1+no"}, "@K@\\Sub") +
             Key({"write y uint32 2"}, "@K@\\Sub", "HKLM", "eMode64bit"),
         {L"rw-", L"64\\Sub y 4: 1 0 0 0", tszDeep, tszDeep + L" x \"below\""}},
        {__LINE__, Ini({"write k string w", "write K binary w+over"}), {L"-w", L"[A] k \"w\"", L"[A] k \"v\""}},
        {__LINE__, Ini({"write k text w+over", "write  string w"}), {L"!!"}},
        {__LINE__, Ini({"append k string w+over", "append n uint32 3+over"}), {L"a!", L"[A] k \"vw\"", L"[A] k \"v\""}},
        {__LINE__, Ini({"append j binary z", "create"}) + Ini({"create"}, "C"), {L"a-c", L"[A] j \"z\"", L"[C]"}},
        {__LINE__, Ini({"write a string 1"}, "D") + Ini({"remove"}, "C"), {L"w-", L"[D]", L"[D] a \"1\""}},
        {__LINE__, Ini({"remove k"}) + Ini({"remove"}, "B"), {L"rr", L"[A] k \"v\"", L"[B]", L"[B] o \" quoted \""}},
        {__LINE__, Ini({"create"}, "") + Ini({"create"}, "A", "") + Ini({"create"}, "A", "Z:\\"), {L"!!"}},
    };
    ASSERT_EQ(m_cBench.Apply(g_sFurniture), Result::g_ulSuccess);
    for (const auto& [iLine, sItems, vecOutcome] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        EXPECT_THAT(RoundTrip(m_cBench.Describe(sItems)), testing::UnorderedElementsAreArray(vecOutcome));
        EXPECT_THAT(m_vecLeft, IsEmpty());
    }
}

TEST_F(LocalUpdate, ARandomUpdateDoesWhatItsRehearsalSaysAndIsUndone)
{
    std::mt19937 cRandom(17);
    const auto Any = [&](std::initializer_list<const char*> _lstText) -> std::string {
        return *(_lstText.begin() + cRandom() % _lstText.size());
    };
    ASSERT_EQ(m_cBench.Apply(g_sFurniture + Key({"write v uint32 1+yes"}, "@K@\\Sub", "HKLM", "eMode32bit")),
              Result::g_ulSuccess);
    for (int iRound = 0; iRound < 12; ++iRound) {
        const testing::ScopedTrace cRound(__FILE__, iRound, "round");
        std::string sItems;
        for (int i = 0; i < 8; ++i) {
            Texts vecEntry;
            for (int k = 0; k < 3; ++k) {
                vecEntry.push_back(Any({"create ", "write ", "append ", "remove ", "write "}) +
                                   Any({"", "s", "d", "new", "Sub"}) +
                                   Any({" string", " uint32", " binary", " uint64"}) + Any({" 12", " 0x1F", " ab"}) +
                                   Any({"+no", "+yes", "+over", "+over+no"}));
            }
            const std::string sPath = Any({"@K@", "@K@\\Sub", "@K@\\Sub\\Deep", "@K@\\N\\M"});
            sItems += Key(vecEntry, sPath, Any({"HKLM", "HKLM", "HKCU"}), Any({"", "eMode32bit", "eMode64bit"}));
            sItems += Ini({Any({"write ", "append ", "remove ", "create "}) + Any({"", "k", "n", "z"}) +
                           Any({" string 1", " string &quot;q&quot;", " string \xC3\xA4 "}) + Any({"+over", ""})},
                          Any({"A", "B", "C"}));
        }
        RoundTrip(m_cBench.Describe(sItems));
        // What is left can only be the unnamed value, which no description removes, and access lists.
        EXPECT_THAT(m_vecLeft, testing::Each(testing::AnyOf(testing::StartsWith(L"the unnamed value"),
                                                            testing::EndsWith(L"another access list"))));
    }
}

TEST_F(LocalUpdate, TheSampleIsCarriedOutAndUndone)
{
    m_cBench.Folder().Write(L"service.ini", "[Legacy]\na=\"1\"\nb=\n[Service]\nLogLevel=1\nRestartDelay=5\n");
    m_cBench.Folder().Write(L"pattern.ini", std::string("\xFF\xFE[\0P\0]\0\r\0\n\0k\0=\0\x2D\x4E\r\0\n\0", 24));
    m_cBench.Folder().Write(L"pelto17.ini", "[Setup]\r\nInstalledBy=17.1\r\n");
    ASSERT_EQ(m_cBench.Apply(Key({"write old uint64 16+yes"}, "@K@\\16\\Deep", "HKLM", "eMode32bit") +
                             Key({"write PendingMigration binary 00+no"}, "@K@\\17\\Setup")),
              Result::g_ulSuccess);
    std::ifstream cFile(std::filesystem::path(SAMPLES_FOLDER) / "updates/settings-17.2.xml", std::ios::binary);
    const std::vector<std::wstring> vecOutcome =
        RoundTrip(m_cBench.Describe(L"sample.xml", {std::istreambuf_iterator<char>(cFile), {}}));
    EXPECT_EQ(std::ranges::count(vecOutcome[0], L'!'), 1); // of the entry that is there no more
    EXPECT_GT(vecOutcome.size(), 100U);
    EXPECT_THAT(m_vecLeft, IsEmpty());
}

TEST_F(LocalUpdate, WhatADescriptionCannotSayIsNamedAndTheRestIsUndone)
{
    const std::pair<std::wstring, Storage::Registry::Value> aOld[] = {
        {L"empty", {REG_BINARY, {}}},
        {L"expand", {REG_EXPAND_SZ, {'%', 0, 0, 0}}},
        {L"line", Storage::Registry::Value::Of(L"a\r\nb")},
        {L"list", {REG_MULTI_SZ, {'a', 0, 0, 0, 0, 0}}},
        {L"odd", {REG_DWORD, {1}}}};
    Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, m_cBench.Key());
    cKey.WriteString(L"plain", L" p\t\n ");
    Texts vecEntry = {"write plain string 1+over", "write  string 1", "write new string 1"};
    const std::wstring tszOf = L" of the key HKLM\\" + m_cBench.Key();
    std::vector<std::wstring> vecLeft = {L"the unnamed value" + tszOf + L" stays"};
    for (const auto& [tszName, stValue] : aOld) {
        cKey.Write(tszName, stValue);
        vecEntry.push_back("write " + String::ToUtf8(tszName) + " string 1+over");
        vecLeft.push_back(L"the value \"" + tszName + L"\"" + tszOf + L" is not what it was");
    }
    vecLeft.push_back(L"the file " + m_cBench.Folder().File(L"new.ini") + L" stays");
    RoundTrip(m_cBench.Describe(Key(vecEntry) + Ini({"create"}, "A", "@F@\\new.ini")));
    EXPECT_EQ(m_vecLeft, vecLeft);
    EXPECT_EQ(cKey.ReadString(L"plain"), L" p\t\n ");
    EXPECT_EQ(cKey.Find(L"new"), std::nullopt);
}

TEST_F(LocalUpdate, AnAllAccessKeyGetsItsAccessListBackFromAnUndo)
{
    ASSERT_EQ(m_cBench.Apply(Key({"create+yes"})), Result::g_ulSuccess);
    for (int i = 0; i < 2; ++i) { // the second time it is the key from the undo
        RoundTrip(m_cBench.Describe(Key({"remove"})));
        EXPECT_THAT(m_vecLeft, IsEmpty());
    }
    RoundTrip(m_cBench.Describe(Key({"remove", "create+no"})));
    EXPECT_THAT(m_vecLeft, ElementsAre(L"the key HKLM\\" + m_cBench.Key() + L" has another access list"));
}

void SetAccessList(const RegKey& _rhKey, const wchar_t* _pszList)
{
    PSECURITY_DESCRIPTOR pList = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(_pszList, SDDL_REVISION_1, &pList, nullptr));
    EXPECT_EQ(::RegSetKeySecurity(_rhKey.Get(), DACL_SECURITY_INFORMATION, pList), ERROR_SUCCESS);
    ::LocalFree(pList);
}

TEST_F(LocalUpdate, ABadEntryFailsWithItsCodeAndTheNextItemGoesOn)
{
    const std::string sLong(40000, 'x');
    std::string sDeep = "@K@";
    for (int i = 0; i < 20000; ++i) {
        sDeep += "\\y";
    }
    const Texts vecWrite = {"write v uint32 1+no"};
    const std::tuple<int, std::string, std::uint32_t> aRow[] = {
        {__LINE__, Key({"write v uint32 4294967296"}), ERROR_INVALID_DATA},
        {__LINE__, Key({"write v uint64 0x10000000000000000"}), ERROR_INVALID_DATA},
        {__LINE__, Key({"write v binary a"}), ERROR_INVALID_DATA},
        {__LINE__, Key({"write v binary 0g"}), ERROR_INVALID_DATA},
        {__LINE__, Key({"write v dword 1"}), ERROR_INVALID_PARAMETER},
        {__LINE__, Key({"write " + sLong + " string 1"}), ERROR_INVALID_PARAMETER},
        {__LINE__, Key(vecWrite, ""), ERROR_BAD_ARGUMENTS},
        {__LINE__, Key(vecWrite, "\\Software\\" + sLong), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Key(vecWrite, "\\Software"), ERROR_BAD_PATHNAME},
        {__LINE__, Key(vecWrite, "@K@\\" + sLong.substr(0, 300)), ERROR_INVALID_PARAMETER},
        {__LINE__, Key(vecWrite, sDeep), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Key({"write v uint32 1"}, "@K@\\none"), ERROR_FILE_NOT_FOUND},
        {__LINE__, Key({"write v uint32 1"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Key({"write v uint32 1+yes"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Key({"remove"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Key({"fly"}), 0},
        {__LINE__, Ini(vecWrite, "A", "@F@\\readonly.ini"), ERROR_ACCESS_DENIED},
        {__LINE__, Ini(vecWrite, "A", "@F@"), 0},
        {__LINE__, Ini(vecWrite, "A", "C:\\" + sLong), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Ini(vecWrite, "A", "@F@\\no folder\\x.ini"), 0},
    };
    ASSERT_EQ(m_cBench.Apply(g_sFurniture + Key({"create+no"}, "@K@", "HKCU")), Result::g_ulSuccess);
    m_cBench.Folder().Write(L"readonly.ini", "[A]\r\n");
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    RegKey hSub;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, (m_cBench.Key() + L"\\Sub").c_str(), 0, WRITE_DAC, hSub.Receive());
    SetAccessList(hSub, L"D:(A;CI;0x20019;;;WD)"); // everyone may read, and nothing else
    const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
    for (const auto& [iLine, sItem, ulError] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        const std::wstring tszPath = m_cBench.Describe(sItem + Key({"write next uint32 1"}, "@K@", "HKCU"));
        RecordingStorage cRecord;
        SystemStorage cSystem;
        Decisions cRehearsed;
        Decisions cDone;
        Run(tszPath, cRecord, cRehearsed);
        Run(tszPath, cSystem, cDone);
        EXPECT_EQ(cDone.tszEffects, sItem.starts_with("<inifile") ? L"w!" : L"!w");
        EXPECT_EQ(std::tie(cRehearsed.tszEffects, cRehearsed.vecReason), std::tie(cDone.tszEffects, cDone.vecReason));
        EXPECT_TRUE(ulError == 0 || (cRehearsed.ulError == ulError && cDone.ulError == ulError))
            << cRehearsed.ulError << " and " << cDone.ulError;
        EXPECT_EQ(m_cBench.Snapshot(&cRecord), m_cBench.Snapshot());
        m_cBench.Apply(Key({"remove next"}, "@K@", "HKCU"));
        EXPECT_EQ(m_cBench.Snapshot(), vecBefore);
    }
    SetAccessList(hSub, L"D:(A;CI;0xf003f;;;WD)");
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(LocalUpdate, ALargeUpdateIsCarriedOutWithoutAHandleLeft)
{
    const std::string sItems =
        Key({"create+no", "write big binary " + std::string(2 << 20, 'a') + "+over"}) + Ini({"write k string "});
    DWORD aHandles[2] = {};
    for (DWORD& rulHandles : aHandles) {
        m_cBench.Apply(sItems);
        ::GetProcessHandleCount(::GetCurrentProcess(), &rulHandles);
    }
    EXPECT_EQ(aHandles[1], aHandles[0]);
    EXPECT_EQ(Storage::Registry(HKEY_LOCAL_MACHINE, m_cBench.Key()).ReadBinary(L"big").size(), 1U << 20);
}

TEST_F(LocalUpdate, OneMacroOfAnIniPathIsExpandedTheFirstInTheirOrder)
{
    wchar_t szWindows[MAX_PATH];
    ::GetWindowsDirectoryW(szWindows, MAX_PATH);
    wchar_t szSystem[MAX_PATH];
    ::GetSystemDirectoryW(szSystem, MAX_PATH);
    const std::wstring tszCurrent = String::WithBackslash(std::filesystem::current_path().wstring());
    RecordingStorage cRecord;
    Decisions cDecisions;
    Run(m_cBench.Describe(Ini({}, "A", "$SYSTEM$\\$WINDOWS$\\x.ini") + Ini({}, "A", "$SYSTEM$x.ini") +
                          Ini({}, "A", "$CURRENT$x.ini$CURRENT$") + Ini({}, "A", "$install$x.ini")),
        cRecord, cDecisions);
    EXPECT_THAT(cDecisions.vecRoot,
                ElementsAre(L"$SYSTEM$\\" + std::wstring(szWindows) + L"\\\\x.ini", std::wstring(szSystem) + L"\\x.ini",
                            tszCurrent + L"x.ini$CURRENT$", L"$install$x.ini"));
}

TEST_F(LocalUpdate, VersionsAreComparedAsFarAsBothHaveThem)
{
    const std::tuple<const wchar_t*, const wchar_t*, std::optional<std::int32_t>> aRow[] = {
        {L"6.0.1101", L"6.0.1100", 1}, {L"6.0", L"6.0.1234", 0},       {L"6..0", L"6.1", -1},
        {L"0x10", L"16", 0},           {L"010.1", L"8.0", 1},          {L"0", L"4294967295", 1},
        {L"1", L"", std::nullopt},     {L"1.a", L"1.2", std::nullopt}, {L"1.a", L"2.2", -1},
        {L".1", L"1", std::nullopt},   {L"1.", L"1", std::nullopt},    {L"1", L"2.", std::nullopt}};
    for (const auto& [pszLeft, pszRight, lResult] : aRow) {
        EXPECT_EQ(CompareVersion(pszLeft, pszRight), lResult) << pszLeft << " and " << pszRight;
    }
}

TEST_F(LocalUpdate, ConditionsDecideForItemsAndEntriesAlikeAndOnlyWhenTheyAreToCount)
{
    using enum UpdateReason;
    // minimum, maximum, product, language, platform
    constexpr std::pair<const char*, UpdateReason> aRow[] = {{"17.1.1040 17.1.1040 qmrpro de vistaorlater", None},
                                                             {"1 18 qmrorpro de xporlater", None},
                                                             {"17.1.1041 18 all all all", VersionTooLow},
                                                             {"1 17.1.1039 all all all", VersionTooHigh},
                                                             {"1  all all all", BadVersion},
                                                             {"1 18 lumorqmr all all", OtherProduct},
                                                             {"1 18 QMRPRO all all", OtherProduct},
                                                             {"1 18 all de,fr all", OtherLanguage},
                                                             {"1 18 all all xp32or64", OtherPlatform},
                                                             {"1 18 all all XP32", UnknownPlatform}};
    const auto Item = [](const char* _szRoot, const std::string& _rsConditions, const std::string& _rsOfEntry) {
        return "<registry" + _rsConditions + "><Root>" + _szRoot + "</Root><Path>@K@</Path><Key target='registry'" +
               _rsOfEntry + "><Action>create</Action><AllAccess>no</AllAccess></Key></registry>";
    };
    for (const auto& [szWords, enReason] : aRow) {
        SCOPED_TRACE(szWords);
        std::string sConditions;
        std::istringstream cWords(szWords);
        for (const char* szName : {" minversion='", " maxversion='", " product='", " language='", " platform='"}) {
            std::string sWord;
            std::getline(cWords, sWord, ' ');
            sConditions += sWord.empty() ? "" : szName + sWord + "'";
        }
        for (const char* szCheck : {"check='yes'", "check='YES'"}) {
            const UpdateReason enExpected = szCheck[7] == 'y' ? enReason : None;
            RecordingStorage cRecord;
            Decisions cDecisions;
            Run(m_cBench.Describe(Item("HKCU", sConditions, " @ALL@") + Item("HKLM", " @ALL@", sConditions), szCheck),
                cRecord, cDecisions);
            EXPECT_THAT(cDecisions.vecReason, ElementsAre(enExpected, enExpected));
            EXPECT_EQ(cRecord.Changes().empty(), enExpected != None);
        }
    }
}

TEST_F(LocalUpdate, TheEnvironmentComesFromTheProductsKey)
{
    constexpr std::tuple<const wchar_t*, std::uint32_t, const wchar_t*> aRow[] = {
        {L"QI", 1, L"17/qmr/en_us"}, {L"QE", 3, L"17/qmrpro/en_us"}, {L"QB", 1048576, L"17/lum/fr_ca"},
        {L"Qe", 16, L"17//en_us"},   {L"", 8, L"17/unknown/cn"},     {L"Q", 65536, L"17//en_gb"}};
    RecordingStorage cRecord;
    CLocalUpdateManager cManager(cRecord);
    for (const auto& [pszPid, ulLanguage, pszExpected] : aRow) {
        UpdateBench::SetEnvironment(L"17", pszPid, ulLanguage);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        const UpdateEnvironment& rstHere = cManager.Environments();
        EXPECT_EQ(rstHere.tszVersion + L"/" + rstHere.tszProduct + L"/" + rstHere.tszLanguage, pszExpected);
    }

    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, L"Language", REG_SZ, L"de", sizeof(L"de"));
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulUndetermined);
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(L"!!! *** CLocalUpdateManager::SetLanguageType() - Got ZkCommon::Exception::Base(). [0x0000070c]",
                    L"!!! *** CLocalUpdateManager::Initialize() - SetLanguageType() failed. [0x80040202]"));
}

TEST_F(LocalUpdate, ItemsAreKnownByTheLettersTheyHaveAndEntriesByTheirTarget)
{
    const std::wstring tszPath = m_cBench.Describe(L"all.xml", R"(<Quillmar version="17.2" stay="yes"><!-- nothing -->
<Reg><Key target="registry"><Value> v </Value></Key><Key target="inifile"/><Key target="Registry"/><Key/>
<key target="registry"/></Reg><I><Entry target="inifile"/><Entry target="registry"/></I><dir/></Quillmar>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Read(tszPath), Result::g_ulSuccess);
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionXml::QueryValueAsLocalUpdate()...",
                            L".w. *** CFunctionXml::SetLocalUpdateRegistry() - clear pConfig->Items.",
                            L".w. *** CFunctionXml::QueryValueAsLocalUpdate() - Read XmlFile [" + tszPath + L"]",
                            L".w. [Enter] CFunctionXml::SetLocalUpdateRegistry()...",
                            L".w. *** CFunctionXml::SetLocalUpdateRegistry() - clear _pstKey->Entries.",
                            L".w. [Leave] CFunctionXml::SetLocalUpdateKey()...",
                            L".w. [Enter] CFunctionXml::SetLocalUpdateIniFile()...",
                            L".w. *** CFunctionXml::SetLocalUpdateIniFile() - clear _pstIniFile->Entries.",
                            L".w. [Leave] CFunctionXml::SetLocalUpdateKey()...",
                            L".w. [Enter] CFunctionXml::SetLocalUpdateDirectory()...",
                            L".w. [Leave] CFunctionXml::SetLocalUpdateDirectory()...",
                            L".w. [Leave] CFunctionXml::QueryValueAsLocalUpdate()..."));
    EXPECT_EQ(m_stConfig.tszVersion, L"17.2");
    EXPECT_EQ(m_stConfig.lstDirectory.size(), 1U);
    ASSERT_TRUE(m_stConfig.lstRegistry.size() == 1 && m_stConfig.lstIniFile.size() == 1);
    EXPECT_EQ(m_stConfig.lstIniFile.front().lstEntry.size(), 1U);
    ASSERT_EQ(m_stConfig.lstRegistry.front().lstEntry.size(), 1U);
    EXPECT_EQ(m_stConfig.lstRegistry.front().lstEntry.front().tszValue, L" v ");
}

TEST_F(LocalUpdate, TheFileIsConsumedUnlessItAsksToStayEvenWhenItIsFaulty)
{
    constexpr std::tuple<const char*, std::uint32_t, bool, std::size_t> aRow[] = {
        {"<Quillmar/>", Result::g_ulSuccess, false, 0},
        {"<Quillmar stay='yes'/>", Result::g_ulSuccess, true, 0},
        {"<Quillmar stay='Yes'/>", Result::g_ulSuccess, false, 0},
        {"<Other stay='yes'><registry/></Other>", Result::g_ulSuccess, false, 0},
        {"<Quillmar><registry/><registryx/><registry/></Quillmar>", Result::g_ulRefused, false, 1},
        {"<Quillmar stay='yes'><folder/></Quillmar>", Result::g_ulRefused, true, 0},
        {"<Quillmar stay='yes'><registry/>", Result::g_ulFailed, false, 0},
        {"", Result::g_ulFailed, false, 0},
    };
    for (const auto& [szDocument, ulResult, bStays, uRegistries] : aRow) {
        SCOPED_TRACE(szDocument);
        const std::wstring tszPath = m_cBench.Describe(L"file.xml", szDocument);
        EXPECT_EQ(Read(tszPath), ulResult);
        EXPECT_EQ(std::filesystem::exists(tszPath), bStays);
        EXPECT_EQ(m_stConfig.lstRegistry.size(), uRegistries);
    }
}

TEST_F(LocalUpdate, WhatIsMissingOrCannotBeLookedForOrReadIsToldApart)
{
    const std::wstring tszMissing = m_cBench.Folder().File(L"missing.xml");
    const std::wstring tszBad = m_cBench.Describe(L"bad.xml", "<Quillmar>\n<registry></Quillmar>");
    const TraceRecorder cTrace(0x110);
    EXPECT_EQ(Documents::DoActionAsLocalUpdate(m_stWorker, &tszMissing), Result::g_ulPartialSuccess);
    EXPECT_EQ(UpdateBench::Send(m_cBench.Folder().File(L"no folder\\x.xml")), Result::g_ulUndetermined);
    EXPECT_EQ(Read(L""), Result::g_ulUndetermined);
    EXPECT_EQ(Read(tszBad), Result::g_ulFailed);
    EXPECT_EQ(CFunctionXml().SendMessage(1, 7, 0, nullptr, 0, 0, nullptr), Result::g_ulMissingObject);
    const std::wstring tszQuery = L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - ";
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(tszQuery + L"File [" + tszMissing + L"] was not found.",
                    L"@@@ *** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() partially failed. [" +
                        tszMissing + L"] [0x00040202]",
                    L"@@@ _ulMessageType: 0x00000001, _ulMessageSubType: 0x00000000, _ulMessageOption: 0x00000000, "
                    L"_ulOption: 0x00000000",
                    tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x00000003]",
                    L"!!! *** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() failed. [0x80040202]",
                    L"!!! *** CFunctionProvider::SendMessage() - pFunctionXml->DoAction() failed. [0x80040202], "
                    L"MT[0x00000001],MST[0x00000000]",
                    tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x000000a0]",
                    tszQuery + L"Got ZkCommon::Storage::XmlException(). [0x00000006]",
                    tszQuery + L"Xml Error [0x00000007] line [2] file [" + String::FromAnsi(String::ToAnsi(tszBad)) +
                        L"]",
                    tszQuery + L"ptszXmlPath was invalid."));
}

TEST_F(LocalUpdate, ADescriptionThatSomebodyElseHasOpenStaysAndNothingIsApplied)
{
    const std::string sItems = Key({"create+no"}, "@K@", "HKCU");
    constexpr DWORD aHolder[][2] = {{GENERIC_WRITE, 0},
                                    {GENERIC_WRITE, FILE_SHARE_READ},
                                    {GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE},
                                    {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}};
    for (const auto& [ulAccess, ulShare] : aHolder) {
        const std::wstring tszPath = m_cBench.Describe(sItems);
        const FileHandle hFile(::CreateFileW(tszPath.c_str(), ulAccess, ulShare, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess) << ulAccess << " with " << ulShare;
        EXPECT_TRUE(std::filesystem::exists(tszPath));
        EXPECT_TRUE(m_cBench.Snapshot().empty());
    }
    const std::wstring tszPath = m_cBench.Describe(sItems);
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_READONLY);
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - "
                                            L"ZkCommon::Storage::File::Delete() failed. [0x00000005]"));
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulSuccess);
    EXPECT_THAT(m_cBench.Snapshot(), ElementsAre(L"user"));
}

TEST_F(LocalUpdate, AFailedEntryIsLoggedByItsCode)
{
    const TraceRecorder cTrace(0x100);
    ASSERT_EQ(m_cBench.Apply(Key({"create+no", "remove absent"}) + Ini({"erase n string v"})), Result::g_ulSuccess);
    const std::wstring tszAgent = L"!!! *** CLocalUpdateAgentKey::";
    const std::wstring tszItem =
        L"!!! *** CLocalUpdateManager::DoActionKeyConfig() - pAgent->DoAction failed(). tszTargetType ";
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(tszAgent + L"Remove() - Got ZkCommon::Exception::Base(). [0x00000002]",
                            tszAgent + L"OnAction() - OnAction() failed().  _stKey.tszAction[remove] [0x80040201]",
                            tszAgent + L"DoAction() - Name[absent] Type[] Value[] failed. [0x80040201]",
                            tszItem + L"[registry] [0x80040201]",
                            tszAgent + L"OnAction() - specified _stKey.tszAction[erase] was invalid.",
                            tszAgent + L"DoAction() - Name[n] Type[string] Value[v] failed. [0x80040203]",
                            tszItem + L"[inifile] [0x80040203]"));
}

TEST_F(LocalUpdate, ASuccessfulUpdateTellsEachStep)
{
    const std::wstring tszPath =
        m_cBench.Describe(Key({"create Sub+no", "remove+no"}, "@K@", "HKCU") + Ini({"write n string v"}));
    const TraceRecorder cTrace;
    ASSERT_EQ(Documents::DoActionAsLocalUpdate(m_stWorker, &tszPath), Result::g_ulSuccess);

    // ">" and "<" stand for entry and leave lines.
    std::wstring tszLines;
    for (const std::wstring& tszLine : cTrace.Lines()) {
        tszLines += tszLine + L"\n";
    }
    const std::pair<std::wstring, std::wstring> aShort[] = {{m_cBench.Key(), L"@K@"},
                                                            {m_cBench.Folder().Path().wstring(), L"@F@"},
                                                            {L".w. [Enter] ", L"> "},
                                                            {L".w. [Leave] ", L"< "},
                                                            {L"()...", L""}};
    for (const auto& [tszFrom, tszTo] : aShort) {
        ReplaceAll(tszLines, tszFrom, tszTo);
    }
    EXPECT_EQ(tszLines, LR"(> CFunctionXml::DoActionAsLocalUpdate
> CFunctionXml::QueryValueAsLocalUpdate
.w. *** CFunctionXml::SetLocalUpdateRegistry() - clear pConfig->Items.
.w. *** CFunctionXml::QueryValueAsLocalUpdate() - Read XmlFile [@F@\update.xml]
> CFunctionXml::SetLocalUpdateRegistry
.w. *** CFunctionXml::SetLocalUpdateRegistry() - clear _pstKey->Entries.
< CFunctionXml::SetLocalUpdateKey
> CFunctionXml::SetLocalUpdateIniFile
.w. *** CFunctionXml::SetLocalUpdateIniFile() - clear _pstIniFile->Entries.
< CFunctionXml::SetLocalUpdateKey
< CFunctionXml::QueryValueAsLocalUpdate
> CLocalUpdateManager::Initialize
> CLocalUpdateManager::CheckMinimumPlatform
< CLocalUpdateManager::CheckMinimumPlatform
> CLocalUpdateManager::SetVersionType
< CLocalUpdateManager::SetVersionType
> CLocalUpdateManager::SetProductType
< CLocalUpdateManager::SetProductType
> CLocalUpdateManager::SetLanguageType
< CLocalUpdateManager::SetLanguageType
< CLocalUpdateManager::Initialize
> CLocalUpdateManager::DoActionConfig
> CLocalUpdateAgent::Initialize
< CLocalUpdateAgent::Initialize
> CLocalUpdateAgentKey::DoAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
@@@ *** CLocalUpdateAgentKey::CreateKey() - Root[0x80000001]
@@@ *** CLocalUpdateAgentKey::DoAction() - Root[HKCU] Base[@K@]
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [create]
> CLocalUpdateAgentKey::Create
< CLocalUpdateAgentKey::Create
< CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [remove]
> CLocalUpdateAgentKey::Remove
@@@ *** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[@K@]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - Got Sections [1]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - section[Sub]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[@K@\Sub]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - Got Sections [0]
< CLocalUpdateAgentKey::Remove
< CLocalUpdateAgentKey::OnAction
< CLocalUpdateAgentKey::DoAction
> CLocalUpdateAgent::UnInitialize
< CLocalUpdateAgent::UnInitialize
> CLocalUpdateAgent::Initialize
< CLocalUpdateAgent::Initialize
> CLocalUpdateAgentKey::DoAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
@@@ *** CLocalUpdateAgentKey::ReplacePath() - _tszPath [@F@\test.ini]
@@@ *** CLocalUpdateAgentKey::CreateKey() - _stKey.tszRoot[@F@\test.ini]
@@@ *** CLocalUpdateAgentKey::DoAction() - Root[@F@\test.ini] Base[A]
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [write]
> CLocalUpdateAgentKey::Write
< CLocalUpdateAgentKey::Write
< CLocalUpdateAgentKey::OnAction
< CLocalUpdateAgentKey::DoAction
> CLocalUpdateAgent::UnInitialize
< CLocalUpdateAgent::UnInitialize
< CLocalUpdateManager::DoActionConfig
> CLocalUpdateManager::UnInitialize
< CLocalUpdateManager::UnInitialize
< CFunctionXml::DoActionAsLocalUpdate
)");
}

} // namespace
