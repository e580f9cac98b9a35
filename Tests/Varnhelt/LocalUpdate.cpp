// Local updates: what an update does to the registry and to ini files, what its rehearsal says, and the way back.

#include "Update/UpdateRecording.h"
#include "UpdateTest.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock-more-matchers.h>
#include <sddl.h>

using namespace ZkCommon;

namespace {

/** What the machine has before: a key with a value of each type and keys below it, and an ini file. */
const std::string g_sFurniture = Reg({"create+no", "create Sub+no+over", "write s string text", "write d uint32 5",
                                      "write q uint64 0x1FFFFFFFF", "write b binary 0aFF"}) +
                                 Reg({"write x string below+no"}, "@K@\\Sub\\Deep") +
                                 Ini({"write k string v", "write n uint32 12"}) +
                                 Ini({"write o string \" quoted \""}, "B");

TEST_F(LocalUpdate, EveryActionDoesWhatItsRehearsalSaysAndIsUndone)
{
    const std::wstring tszText = L"64 s \"text\"";
    const std::tuple<int, std::string, std::vector<std::wstring>> aRow[] = {
        // what random updates do not hold
        {__LINE__, Reg({"create+Yes"}, "@K@\\N") + Reg({"create+no"}, "@K@\\N\\M"), {L"-c", L"64\\N", L"64\\N\\M"}},
        {__LINE__, Reg({"create+no"}, "@K@", "HKCU") + Reg({"create+no"}, "@K@", "hklm"), {L"c", L"user"}},
        {__LINE__, Reg({"write s string new+Over", "write S string ab+over"}), {L"-w", L"64 s \"ab\"", tszText}},
        // A value of another type is as none.
        {__LINE__, Reg({"write s uint32 010"}), {L"w", L"64 s 4: 8 0 0 0", tszText}},
        {__LINE__, Reg({"write m uint64 0xffffffffffffffff"}), {L"w", L"64 m 11: 255 255 255 255 255 255 255 255"}},
        {__LINE__, Reg({"write m binary fFa", "append f binary 34"}), {L"wa", L"64 m 3: 255", L"64 f 3: 52"}},
        {__LINE__, Reg({"append b binary 123+over"}), {L"a", L"64 b 3: 10 255 18", L"64 b 3: 10 255"}},
        {__LINE__, Ini({"write k string w", "write K binary w+over"}), {L"-w", L"[A] k \"w\"", L"[A] k \"v\""}},
        {__LINE__, Ini({"write k text w+over", "write  string w"}), {L"!!"}},
        {__LINE__, Ini({"append k string w+over", "append n uint32 3+over"}), {L"a!", L"[A] k \"vw\"", L"[A] k \"v\""}},
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

TEST_F(LocalUpdate, TheSampleIsCarriedOutAndUndone)
{
    m_cBench.WatchSampleFiles();
    m_cBench.Folder().Write(L"service.ini", "[Legacy]\na=\"1\"\nb=\n[Service]\nLogLevel=1\nRestartDelay=5\n");
    m_cBench.Folder().Write(L"pattern.ini", std::string("\xFF\xFE[\0P\0]\0\r\0\n\0k\0=\0\x2D\x4E\r\0\n\0", 22));
    m_cBench.Folder().Write(L"pelto17.ini", "[Setup]\r\nInstalledBy=17.1\r\n");
    ASSERT_EQ(m_cBench.Apply(Reg({"write old uint64 16+yes"}, "@K@\\16\\Deep", "HKLM", "eMode32bit") +
                             Reg({"write PendingMigration binary 00+no"}, "@K@\\17\\Setup")),
              Result::g_ulSuccess);
    std::ifstream cFile(std::filesystem::path(SAMPLES_FOLDER) / "updates/settings-17.2.xml", std::ios::binary);
    const std::vector<std::wstring> vecOutcome =
        RoundTrip(m_cBench.Describe(L"sample.xml", {std::istreambuf_iterator<char>(cFile), {}}));
    EXPECT_EQ(std::ranges::count(vecOutcome[0], L'!'), 1); // of the entry that is gone
    EXPECT_GT(vecOutcome.size(), 100U);
    EXPECT_THAT(m_vecLeft, IsEmpty());
}

TEST_F(LocalUpdate, WhatADescriptionCannotSayIsNamedAndTheRestIsUndone)
{
    const std::pair<std::wstring, Storage::Registry::Value> aOld[] = {{L"empty", {REG_BINARY, {}}},
                                                                      {L"expand", {REG_EXPAND_SZ, {'%', 0, 0, 0}}},
                                                                      {L"list", {REG_MULTI_SZ, {'a', 0, 0, 0, 0, 0}}},
                                                                      {L"odd", {REG_DWORD, {1}}},
                                                                      {L"zero", {REG_SZ, {'a', 0}}}};
    Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, m_cBench.Key());
    cKey.WriteString(L"plain", L" p\t\r\n ");
    Texts vecEntry = {"write plain string 1+over", "write  string 1", "write new string 1"};
    const std::wstring tszOf = L" of the key HKLM\\" + m_cBench.Key();
    std::vector<std::wstring> vecLeft = {L"the unnamed value" + tszOf + L" stays"};
    for (const auto& [tszName, stValue] : aOld) {
        cKey.Write(tszName, stValue);
        vecEntry.push_back("write " + String::ToUtf8(tszName) + " string 1+over");
        vecLeft.push_back(L"the value \"" + tszName + L"\"" + tszOf + L" is not what it was");
    }
    vecLeft.push_back(L"the file " + m_cBench.Folder().File(L"new.ini") + L" stays");
    RoundTrip(m_cBench.Describe(Reg(vecEntry) + Ini({"create"}, "A", "@F@\\new.ini")));
    EXPECT_EQ(m_vecLeft, vecLeft);
    EXPECT_EQ(cKey.ReadString(L"plain"), L" p\t\r\n ");
    EXPECT_EQ(cKey.Find(L"new"), std::nullopt);
}

TEST_F(LocalUpdate, AnAllAccessKeyGetsItsAccessListBackFromAnUndo)
{
    ASSERT_EQ(m_cBench.Apply(Reg({"create+yes"})), Result::g_ulSuccess);
    for (int i = 0; i < 2; ++i) { // the second time it is the key from the undo
        RoundTrip(m_cBench.Describe(Reg({"remove"})));
        EXPECT_THAT(m_vecLeft, IsEmpty());
    }
    RoundTrip(m_cBench.Describe(Reg({"remove", "create+no"})));
    EXPECT_EQ(m_vecLeft, std::vector<std::wstring>({L"the key HKLM\\" + m_cBench.Key() + L" has another access list"}));
}

void SetAccessList(const RegKey& _rhKey, const wchar_t* _pszList)
{
    PSECURITY_DESCRIPTOR pList = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(_pszList, SDDL_REVISION_1, &pList, nullptr));
    EXPECT_EQ(::RegSetKeySecurity(_rhKey.Get(), DACL_SECURITY_INFORMATION, pList), ERROR_SUCCESS);
    ::LocalFree(pList);
}

TEST_F(LocalUpdate, ARemovalThatFailsHalfWayIsRehearsedAndUndone)
{
    ASSERT_EQ(m_cBench.Apply(Reg({"write x uint32 1+no"}, "@K@\\_x") +
                             Reg({"create child+no+over", "create+no"}, "@K@\\A") +
                             Reg({"write y string z+no"}, "@K@\\b")),
              Result::g_ulSuccess);
    for (const wchar_t* pszDenied : {L"\\A", L"\\b"}) {
        RegKey hDenied;
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, (m_cBench.Key() + pszDenied).c_str(), 0, WRITE_DAC, hDenied.Receive());
        SetAccessList(hDenied, L"D:(A;CI;0x20019;;;WD)");
        EXPECT_GE(RoundTrip(m_cBench.Describe(Reg({"remove"}))).size(), 2U); // refused, and yet something went
        SetAccessList(hDenied, L"D:(A;CI;0xf003f;;;WD)");
    }
}

TEST_F(LocalUpdate, AKeyThatIsNotThereYetIsMadeAndUndoneWhereItsViewPutsIt)
{
    const std::wstring tszName = m_cBench.Key().substr(m_cBench.Key().rfind(L'\\') + 1);
    const std::wstring tszPath =
        m_cBench.Describe(Reg({"create+yes"}, String::ToUtf8(tszName), "HKCR", "eMode32bit") +
                          Reg({"create+yes"}, String::ToUtf8(tszName) + "\\B", "HKCR", "eMode64bit"));
    RoundTrip(tszPath);
    EXPECT_THAT(m_vecLeft, IsEmpty());
    Storage::Registry cKey;
    EXPECT_FALSE(cKey.TryOpen(HKEY_CLASSES_ROOT, tszName, Storage::View32));
    EXPECT_FALSE(cKey.TryOpen(HKEY_CLASSES_ROOT, tszName + L"\\B", Storage::View64));
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, tszName.c_str());
}

TEST_F(LocalUpdate, LinesThatAreNoEntriesAreNamedAndAFileOfAMarkOnlyHasNoSections)
{
    m_cBench.Folder().Write(L"test.ini", "[A]\r\nfoo.dll\r\nk=1\r\nk=2\r\n");
    RoundTrip(m_cBench.Describe(Ini({"remove"})));
    EXPECT_THAT(m_vecLeft, ElementsAre(testing::StartsWith(L"lines of the section [A] of ")));
    m_cBench.Folder().Write(L"test.ini", "\xEF\xBB\xBF[A]\r\nk=1\r\n");
    EXPECT_EQ(RoundTrip(m_cBench.Describe(Ini({"remove", "create"}))).front(), L"rc");
    EXPECT_THAT(m_vecLeft, IsEmpty());
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
        {__LINE__, Reg({"write v uint32 4294967296"}), ERROR_INVALID_DATA},
        {__LINE__, Reg({"write v uint64 0x10000000000000000"}), ERROR_INVALID_DATA},
        {__LINE__, Reg({"write v binary a"}), ERROR_INVALID_DATA},
        {__LINE__, Reg({"write v binary 0g"}), ERROR_INVALID_DATA},
        {__LINE__, Reg({"write v dword 1"}), ERROR_INVALID_PARAMETER},
        {__LINE__, Reg({"write " + sLong + " string 1"}), ERROR_INVALID_PARAMETER},
        {__LINE__, Reg(vecWrite, ""), ERROR_BAD_ARGUMENTS},
        {__LINE__, Reg(vecWrite, "\\Software\\" + sLong), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Reg(vecWrite, "\\Software"), ERROR_BAD_PATHNAME},
        {__LINE__, Reg(vecWrite, "@K@\\" + sLong.substr(0, 300)), ERROR_INVALID_PARAMETER},
        {__LINE__, Reg(vecWrite, sDeep), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Reg({"write v uint32 1"}, "@K@\\none"), ERROR_FILE_NOT_FOUND},
        {__LINE__, Reg({"write v uint32 1"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Reg({"write v uint32 1+yes"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Reg({"remove"}, "@K@\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, Reg({"fly"}), 0},
        {__LINE__, Ini(vecWrite, "A", "@F@\\readonly.ini"), ERROR_ACCESS_DENIED},
        {__LINE__, Ini(vecWrite, "A", "@F@"), 0},
        {__LINE__, Ini(vecWrite, "A", "C:\\" + sLong), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, Ini(vecWrite, "A", "@F@\\no folder\\x.ini"), 0},
    };
    ASSERT_EQ(m_cBench.Apply(g_sFurniture + Reg({"create+no"}, "@K@", "HKCU")), Result::g_ulSuccess);
    m_cBench.Folder().Write(L"readonly.ini", "[A]\r\n");
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    RegKey hSub;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, (m_cBench.Key() + L"\\Sub").c_str(), 0, WRITE_DAC, hSub.Receive());
    SetAccessList(hSub, L"D:(A;CI;0x20019;;;WD)"); // everyone may read, and nothing else
    const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
    for (const auto& [iLine, sItem, ulError] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        const std::wstring tszPath = m_cBench.Describe(sItem + Reg({"write next uint32 1"}, "@K@", "HKCU"));
        RecordingStorage cRecord;
        SystemStorage cSystem;
        Decisions cRehearsed;
        Decisions cDone;
        Run(tszPath, cRecord, cRehearsed);
        Run(tszPath, cSystem, cDone);
        EXPECT_EQ(cDone.tszEffects, sItem.starts_with("<inifile") ? L"w!" : L"!w");
        EXPECT_EQ(cRehearsed, cDone);
        const std::uint32_t ulSeen = std::ranges::max(cDone.vecError);
        EXPECT_TRUE(ulError == 0 || (ulSeen == ulError && cRehearsed.vecError == cDone.vecError)) << ulSeen;
        EXPECT_EQ(m_cBench.Snapshot(&cRecord), m_cBench.Snapshot());
        m_cBench.Apply(Reg({"remove next"}, "@K@", "HKCU"));
        EXPECT_EQ(m_cBench.Snapshot(), vecBefore);
    }
    SetAccessList(hSub, L"D:(A;CI;0xf003f;;;WD)");
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
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
    EXPECT_EQ(cDecisions.vecRoot, std::vector<std::wstring>({L"$SYSTEM$\\" + std::wstring(szWindows) + L"\\\\x.ini",
                                                             std::wstring(szSystem) + L"\\x.ini",
                                                             tszCurrent + L"x.ini$CURRENT$", L"$install$x.ini"}));
}

} // namespace
