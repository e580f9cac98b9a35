// What an update does to the registry and to ini files, what a rehearsal says that it would do, and the way back.

#include "LocalUpdateAgent.h"

#include "FunctionXml.h"
#include "LocalUpdateManager.h"
#include "SrvFrwk_ResultCode.h"
#include "TraceRecorder.h"
#include "UpdateBench.h"
#include "UpdateRecording.h"
#include "UpdateUndo.h"
#include "ZkComn_Exception.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <random>
#include <string>

using namespace SrvFrwk;
using namespace Varnhelt;
using namespace ZkCommon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** The decisions of a rehearsal: a letter for each entry's effect, and its reason where it has one. */
class Decisions : public UpdateObserver
{
public:
    void OnItem(const LocalUpdateKey&, UpdateReason _enReason) override
    {
        if (_enReason != UpdateReason::None) {
            vecReason.push_back(_enReason);
        }
    }
    void OnEntry(const LocalUpdateEntry&, const UpdateDecision& _rstDecision) override
    {
        sEffects += "cwar-!"[static_cast<std::size_t>(_rstDecision.enEffect)];
        vecReason.push_back(_rstDecision.enReason);
        ulError = std::max(ulError, _rstDecision.ulError);
    }

    std::string sEffects;
    std::vector<UpdateReason> vecReason;
    std::uint32_t ulError = 0;
};

class LocalUpdateActions : public testing::Test
{
protected:
    /** The description's rehearsal on the record. */
    void Rehearse(const std::wstring& _rtszPath, RecordingStorage& _rStorage, UpdateObserver* _pObserver = nullptr)
    {
        LocalUpdateConfig stConfig;
        bool bStay = false;
        ASSERT_EQ(CFunctionXml().QueryValueAsLocalUpdate(&stConfig, &_rtszPath, &bStay), Result::g_ulSuccess);
        CLocalUpdateManager cManager(_rStorage, _pObserver);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        ASSERT_EQ(cManager.DoActionConfig(stConfig), Result::g_ulSuccess);
        cManager.UnInitialize();
    }

    /** Rehearses, applies and undoes; the state must be the rehearsed one and then the old one, but for what is told. */
    void RoundTrip(const std::string& _rsItems, std::size_t _uLeft = 0)
    {
        const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
        const std::wstring tszPath = m_cBench.Describe(_rsItems);
        RecordingStorage cRecord;
        Rehearse(tszPath, cRecord, &m_cDecisions);
        const std::vector<std::wstring> vecRehearsed = m_cBench.Snapshot(cRecord);
        EXPECT_EQ(m_cBench.Snapshot(), vecBefore) << "the rehearsal changed something";
        EXPECT_TRUE(std::filesystem::exists(tszPath));

        const UpdateUndo stUndo = UndoOf(cRecord);
        EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulSuccess);
        EXPECT_EQ(m_cBench.Snapshot(), vecRehearsed) << "the update did something else than its rehearsal";

        m_vecLeft = stUndo.vecLeft;
        EXPECT_EQ(m_vecLeft.size(), _uLeft) << testing::PrintToString(m_vecLeft);
        EXPECT_EQ(UpdateBench::Send(m_cBench.Describe(L"undo.xml", stUndo.sDescription)), Result::g_ulSuccess);
        if (_uLeft == 0) {
            EXPECT_EQ(m_cBench.Snapshot(), vecBefore) << stUndo.sDescription;
        }
    }

    UpdateBench m_cBench;
    Decisions m_cDecisions;
    std::vector<std::wstring> m_vecLeft;
};

std::string RegistryItem(const std::string& _rsEntries, const char* _szRoot = "HKLM", const char* _szMode = "",
                         const char* _szBelow = "")
{
    return std::string("<registry><Root>") + _szRoot + "</Root><Path>@K@" + _szBelow + "</Path><AccessMode>" + _szMode +
           "</AccessMode>" + _rsEntries + "</registry>";
}

std::string IniItem(const std::string& _rsEntries, const char* _szSection = "A", const char* _szPath = "@F@\\test.ini")
{
    return std::string("<inifile><Path>") + _szPath + "</Path><Section>" + _szSection + "</Section>" + _rsEntries +
           "</inifile>";
}

std::string Entry(const char* _szAction, const char* _szName = "", const char* _szType = "",
                  const std::string& _rsValue = "", const char* _szMore = "", const char* _szElement = "Key")
{
    return std::string("<") + _szElement + " target=\"" + (_szElement[0] == 'K' ? "registry" : "inifile") +
           "\"><Action>" + _szAction + "</Action><Name>" + _szName + "</Name><Type>" + _szType + "</Type><Value>" +
           _rsValue + "</Value>" + _szMore + "</" + _szElement + ">";
}

std::string IniEntry(const char* _szAction, const char* _szName = "", const char* _szType = "string",
                     const std::string& _rsValue = "", const char* _szMore = "")
{
    return Entry(_szAction, _szName, _szType, _rsValue, _szMore, "Entry");
}

constexpr const char* g_szNo = "<AllAccess>no</AllAccess>";
constexpr const char* g_szYes = "<AllAccess>yes</AllAccess>";
constexpr const char* g_szOver = "<OverWrite>yes</OverWrite>";

/** What the machine has before the rows: a key with a value of each type and keys below it, and an ini file. */
std::string Furniture()
{
    return RegistryItem(Entry("create", "", "", "", g_szNo) +
                        Entry("create", "Sub", "", "", "<AllAccess>no</AllAccess><OverWrite>yes</OverWrite>") +
                        Entry("write", "s", "string", "text") + Entry("write", "d", "uint32", "5") +
                        Entry("write", "q", "uint64", "0x1FFFFFFFF") + Entry("write", "b", "binary", "0aFF")) +
           RegistryItem(Entry("write", "x", "string", "below", g_szNo), "HKLM", "", "\\Sub\\Deep") +
           IniItem(IniEntry("write", "k", "string", "v") + IniEntry("write", "n", "uint32", "12")) +
           IniItem(IniEntry("write", "other", "string", "\" quoted \""), "B");
}

struct ActionRow
{
    int iLine;
    std::string sItems;
    const char* szEffects;
    std::vector<std::wstring> vecGained; // lines of the snapshot
    std::vector<std::wstring> vecLost;
};

const std::vector<ActionRow>& ActionRows()
{
    static const std::vector<ActionRow> vecRow = {
        {__LINE__, RegistryItem(Entry("create", "New", "", "", g_szNo)), "-", {}, {}},
        {__LINE__,
         RegistryItem(Entry("create", "New", "", "", "<AllAccess>no</AllAccess><OverWrite>yes</OverWrite>")),
         "c",
         {L"HKLM64\\New"},
         {}},
        {__LINE__,
         RegistryItem(Entry("create", "", "", "", g_szNo), "HKLM", "", "\\N\\M"),
         "c",
         {L"HKLM64\\N", L"HKLM64\\N\\M"},
         {}},
        {__LINE__,
         RegistryItem(Entry("create", "", "", "", g_szNo), "HKLM", "eMode32bit", "\\N"),
         "c",
         {L"HKLM64\\N"},
         {}},
        {__LINE__,
         RegistryItem(Entry("create", "", "", "", g_szYes), "HKLM", "eMode32bit", "\\N"),
         "c",
         {L"HKLM32", L"HKLM32\\N"},
         {}},
        {__LINE__, RegistryItem(Entry("create"), "HKLM", "", "\\N"), "-", {}, {}},
        {__LINE__,
         RegistryItem(Entry("create", "", "", "", "<AllAccess>Yes</AllAccess>"), "HKLM", "", "\\N"),
         "-",
         {},
         {}},
        {__LINE__, RegistryItem(Entry("write", "s", "string", "new")), "-", {}, {}},
        {__LINE__, RegistryItem(Entry("write", "s", "string", "new", "<OverWrite>Yes</OverWrite>")), "-", {}, {}},
        {__LINE__,
         RegistryItem(Entry("write", "S", "string", "ab", g_szOver)),
         "w",
         {L"HKLM64 s 1: 97 0 98 0 0 0"},
         {L"HKLM64 s 1: 116 0 101 0 120 0 116 0 0 0"}},
        {__LINE__,
         RegistryItem(Entry("write", "s", "uint32", "010")),
         "w", // a value of another type does not count
         {L"HKLM64 s 4: 8 0 0 0"},
         {L"HKLM64 s 1: 116 0 101 0 120 0 116 0 0 0"}},
        {__LINE__,
         RegistryItem(Entry("write", "m", "uint64", "0xffffffffffffffff") + Entry("write", "m2", "binary", "fFa")),
         "ww",
         {L"HKLM64 m 11: 255 255 255 255 255 255 255 255", L"HKLM64 m2 3: 255"},
         {}},
        {__LINE__, RegistryItem(Entry("write", "v", "string", "1"), "HKLM", "", "\\N"), "!", {}, {}},
        {__LINE__,
         RegistryItem(Entry("write", "v", "string", "1", g_szYes), "HKLM", "", "\\N"),
         "w",
         {L"HKLM64\\N", L"HKLM64\\N v 1: 49 0 0 0"},
         {}},
        {__LINE__,
         RegistryItem(Entry("append", "s", "string", "!") + Entry("append", "s", "string", "!", g_szOver) +
                      Entry("append", "b", "binary", "1", g_szOver) + Entry("append", "b", "binary", "12", g_szOver) +
                      Entry("append", "f", "binary", "34")),
         "-aaaa",
         {L"HKLM64 b 3: 10 255 18", L"HKLM64 f 3: 52", L"HKLM64 s 1: 116 0 101 0 120 0 116 0 33 0 0 0"},
         {L"HKLM64 b 3: 10 255", L"HKLM64 s 1: 116 0 101 0 120 0 116 0 0 0"}},
        {__LINE__,
         RegistryItem(Entry("append", "d", "uint32", "1") + Entry("append", "d", "uint32", "1", g_szOver) +
                      Entry("append", "d", "string", "1", g_szOver)),
         "-!!",
         {},
         {}},
        {__LINE__,
         RegistryItem(Entry("remove", "d") + Entry("remove", "d") + Entry("remove", "no")),
         "r!!",
         {},
         {L"HKLM64 d 4: 5 0 0 0"}},
        {__LINE__,
         RegistryItem(Entry("remove"), "HKLM", "", "\\Sub") + RegistryItem(Entry("remove"), "HKLM", "", "\\Sub"),
         "r-",
         {},
         {L"HKLM64\\Sub", L"HKLM64\\Sub\\Deep", L"HKLM64\\Sub\\Deep x 1: 98 0 101 0 108 0 111 0 119 0 0 0"}},
        // The rehearsal sees what it did before: a key that goes and comes back is empty.
        {__LINE__,
         RegistryItem(Entry("remove"), "HKLM", "", "\\Sub") +
             RegistryItem(Entry("write", "y", "uint32", "1", g_szNo), "HKLM", "", "\\Sub") +
             RegistryItem(Entry("write", "y", "uint32", "2"), "HKLM", "eMode64bit", "\\Sub"),
         "rw-",
         {L"HKLM64\\Sub y 4: 1 0 0 0"},
         {L"HKLM64\\Sub\\Deep", L"HKLM64\\Sub\\Deep x 1: 98 0 101 0 108 0 111 0 119 0 0 0"}},
        {__LINE__,
         RegistryItem(Entry("create", "", "", "", g_szNo), "HKCU", "", "\\U") +
             RegistryItem(Entry("create", "", "", "", g_szNo), "hklm", "", "\\U"),
         "c",
         {L"HKCU", L"HKCU\\U"},
         {}},
        {__LINE__,
         IniItem(IniEntry("write", "k", "string", "w") + IniEntry("write", "K", "binary", "w", g_szOver)),
         "-w",
         {L"[A] k 1: 119 0 0 0"},
         {L"[A] k 1: 118 0 0 0"}},
        {__LINE__,
         IniItem(IniEntry("write", "k", "text", "w", g_szOver) + IniEntry("write", "", "string", "w")),
         "!!",
         {},
         {}},
        {__LINE__,
         IniItem(IniEntry("append", "k", "string", "w", g_szOver) + IniEntry("append", "n", "uint32", "3", g_szOver) +
                 IniEntry("append", "j", "binary", "z")),
         "a!a",
         {L"[A] k 1: 118 0 119 0 0 0", L"[A] j 1: 122 0 0 0"},
         {L"[A] k 1: 118 0 0 0"}},
        {__LINE__,
         IniItem(IniEntry("create"), "C") + IniItem(IniEntry("create"), "A") +
             IniItem(IniEntry("write", "a", "string", "1"), "D"),
         "c-w",
         {L"[C]", L"[D]", L"[D] a 1: 49 0 0 0"},
         {}},
        {__LINE__,
         IniItem(IniEntry("remove", "k")) + IniItem(IniEntry("remove"), "B") + IniItem(IniEntry("remove"), "C"),
         "rr-",
         {},
         {L"[A] k 1: 118 0 0 0", L"[B]", L"[B] other 1: 32 0 113 0 117 0 111 0 116 0 101 0 100 0 32 0 0 0"}},
        {__LINE__,
         IniItem(IniEntry("create"), "") + IniItem(IniEntry("create"), "A", "") +
             IniItem(IniEntry("create"), "A", "Z:\\"),
         "!!",
         {},
         {}},
    };
    return vecRow;
}

TEST_F(LocalUpdateActions, EveryActionDoesWhatItsRehearsalSaysAndIsUndone)
{
    for (const ActionRow& stRow : ActionRows()) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        ASSERT_EQ(m_cBench.Apply(Furniture()), Result::g_ulSuccess);
        const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
        RecordingStorage cRecord;
        m_cDecisions.sEffects.clear();
        RoundTrip(stRow.sItems);
        EXPECT_EQ(m_cDecisions.sEffects, stRow.szEffects);

        Rehearse(m_cBench.Describe(stRow.sItems), cRecord);
        std::vector<std::wstring> vecGained;
        std::vector<std::wstring> vecLost;
        const std::vector<std::wstring> vecAfter = m_cBench.Snapshot(cRecord);
        std::ranges::set_difference(vecAfter, vecBefore, std::back_inserter(vecGained));
        std::ranges::set_difference(vecBefore, vecAfter, std::back_inserter(vecLost));
        EXPECT_THAT(vecGained, testing::UnorderedElementsAreArray(stRow.vecGained));
        EXPECT_THAT(vecLost, testing::UnorderedElementsAreArray(stRow.vecLost));
        ASSERT_EQ(m_cBench.Apply(RegistryItem(Entry("remove")) + RegistryItem(Entry("remove"), "HKLM", "eMode32bit") +
                                 RegistryItem(Entry("remove"), "HKCU")),
                  Result::g_ulSuccess);
        std::filesystem::remove(m_cBench.Ini());
    }
}

TEST_F(LocalUpdateActions, ARandomUpdateDoesWhatItsRehearsalSaysAndIsUndone)
{
    std::mt19937 cRandom(17);
    const auto Any = [&](std::initializer_list<const char*> _lstText) {
        return *(_lstText.begin() + cRandom() % _lstText.size());
    };
    ASSERT_EQ(m_cBench.Apply(Furniture() +
                             RegistryItem(Entry("write", "v", "uint32", "1", g_szYes), "HKLM", "eMode32bit", "\\Sub")),
              Result::g_ulSuccess);
    for (int iRound = 0; iRound < 12; ++iRound) {
        const testing::ScopedTrace cRound(__FILE__, iRound, "round");
        std::string sItems;
        for (int i = 0; i < 8; ++i) {
            std::string sEntries;
            for (int k = 0; k < 3; ++k) {
                sEntries +=
                    Entry(Any({"create", "write", "append", "remove", "write"}), Any({"", "s", "d", "new", "Sub"}),
                          Any({"string", "uint32", "binary", "uint64"}), Any({"12", "0x1F", "ab"}),
                          Any({g_szNo, g_szYes, g_szOver, "<OverWrite>yes</OverWrite><AllAccess>no</AllAccess>"}));
            }
            sItems += RegistryItem(sEntries, Any({"HKLM", "HKLM", "HKCU"}), Any({"", "eMode32bit", "eMode64bit"}),
                                   Any({"", "\\Sub", "\\Sub\\Deep", "\\N\\M"}));
            sItems += IniItem(IniEntry(Any({"write", "append", "remove", "create"}), Any({"", "k", "n", "z"}), "string",
                                       Any({"1", "&quot;q&quot;", "\xC3\xA4 "}), Any({g_szOver, ""})),
                              Any({"A", "B", "C"}));
        }
        // What is left can only be the unnamed value, which no description removes, and access lists.
        const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
        RecordingStorage cRecord;
        Rehearse(m_cBench.Describe(sItems), cRecord);
        const UpdateUndo stUndo = UndoOf(cRecord);
        for (const std::wstring& tszLeft : stUndo.vecLeft) {
            EXPECT_TRUE(tszLeft.starts_with(L"the unnamed value") || tszLeft.ends_with(L"another access list"))
                << testing::PrintToString(tszLeft);
        }
        RoundTrip(sItems, stUndo.vecLeft.size());
        if (stUndo.vecLeft.empty()) {
            EXPECT_EQ(m_cBench.Snapshot(), vecBefore);
        }
    }
}

/** The sections and entries of all ini files of a folder. */
std::vector<std::wstring> IniLines(const std::filesystem::path& _rFolder)
{
    std::vector<std::wstring> vecLine;
    for (const auto& cEntry : std::filesystem::directory_iterator(_rFolder)) {
        if (cEntry.path().extension() != L".ini") {
            continue;
        }
        Storage::IniFile cFile(cEntry.path().wstring());
        for (const std::wstring& tszSection : cFile.SectionNames()) {
            cFile.SetSection(tszSection);
            const std::wstring tszHeading = cEntry.path().filename().wstring() + L" [" + tszSection + L"]";
            vecLine.push_back(tszHeading);
            for (const std::wstring& tszLine : cFile.Section()) {
                vecLine.push_back(tszHeading + L" " + tszLine);
            }
        }
    }
    std::ranges::sort(vecLine);
    return vecLine;
}

TEST_F(LocalUpdateActions, TheSampleIsCarriedOutAndUndone)
{
    std::ifstream cFile(std::filesystem::path(SAMPLES_FOLDER) / "updates/settings-17.2.xml", std::ios::binary);
    std::string sSample{std::istreambuf_iterator<char>(cFile), {}};
    const auto Replace = [&](const std::string& _rsOld, const std::string& _rsNew) {
        ASSERT_NE(sSample.find(_rsOld), std::string::npos);
        for (std::size_t uAt = 0; (uAt = sSample.find(_rsOld, uAt)) != std::string::npos; uAt += _rsNew.size()) {
            sSample.replace(uAt, _rsOld.size(), _rsNew);
        }
    };
    Replace("Software\\Kestrovane\\Pelto", "@K@");
    Replace("$WINDOWS$", "$INSTALL$");
    m_cBench.Folder().Write(L"service.ini",
                            "[Legacy]\r\na=\"1\"\r\nb=\r\n[Service]\r\nLogLevel=1\r\nRestartDelay=5\r\n");
    m_cBench.Folder().Write(L"pattern.ini", std::string("\xFF\xFE[\0P\0]\0\r\0\n\0k\0=\0\x2D\x4E\r\0\n\0", 24));
    m_cBench.Folder().Write(L"pelto17.ini", "[Setup]\r\nInstalledBy=17.1\r\n");
    ASSERT_EQ(m_cBench.Apply(
                  RegistryItem(Entry("write", "old", "uint64", "16", g_szYes), "HKLM", "eMode32bit", "\\16\\Deep") +
                  RegistryItem(Entry("write", "PendingMigration", "binary", "00", g_szNo), "HKLM", "", "\\17\\Setup") +
                  RegistryItem(Entry("write", "ExcludedFolders", "string", "C:\\x", g_szNo), "HKLM", "",
                               "\\17\\RealTimeScan")),
              Result::g_ulSuccess);
    const std::vector<std::wstring> vecRegistry = m_cBench.Snapshot();
    const std::vector<std::wstring> vecIni = IniLines(m_cBench.Folder().Path());

    const std::wstring tszPath = m_cBench.Describe(L"sample.xml", sSample);
    RecordingStorage cRecord;
    Rehearse(tszPath, cRecord, &m_cDecisions);
    EXPECT_EQ(std::ranges::count(m_cDecisions.sEffects, '!'), 1); // of the entry that is there no more
    const std::vector<std::wstring> vecRehearsed = m_cBench.Snapshot(cRecord);
    EXPECT_EQ(IniLines(m_cBench.Folder().Path()), vecIni);
    const UpdateUndo stUndo = UndoOf(cRecord);
    EXPECT_THAT(stUndo.vecLeft, IsEmpty());
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulSuccess);
    EXPECT_EQ(m_cBench.Snapshot(), vecRehearsed);
    EXPECT_GT(vecRehearsed.size(), vecRegistry.size() + 60);
    EXPECT_NE(IniLines(m_cBench.Folder().Path()), vecIni);
    EXPECT_EQ(UpdateBench::Send(m_cBench.Describe(L"undo.xml", stUndo.sDescription)), Result::g_ulSuccess);
    EXPECT_EQ(m_cBench.Snapshot(), vecRegistry);
    EXPECT_EQ(IniLines(m_cBench.Folder().Path()), vecIni);
}

TEST_F(LocalUpdateActions, WhatADescriptionCannotSayIsNamedAndTheRestIsUndone)
{
    Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, m_cBench.Key());
    cKey.Write(L"expand", {REG_EXPAND_SZ, {'%', 0, 0, 0}});
    cKey.Write(L"list", {REG_MULTI_SZ, {'a', 0, 0, 0, 0, 0}});
    cKey.Write(L"empty", {REG_BINARY, {}});
    cKey.Write(L"odd", {REG_DWORD, {1}});
    cKey.WriteString(L"line", L"a\r\nb");
    cKey.WriteString(L"control\x01", L"c");
    cKey.WriteString(L"plain", L" p\t\n ");
    const std::string sWrite =
        Entry("write", "expand", "string", "1", g_szOver) + Entry("write", "list", "string", "1", g_szOver) +
        Entry("write", "empty", "string", "1", g_szOver) + Entry("write", "odd", "string", "1", g_szOver) +
        Entry("write", "line", "string", "1", g_szOver) + Entry("write", "plain", "string", "1", g_szOver) +
        Entry("write", "", "string", "1", g_szOver) + Entry("write", "new", "string", "1");
    RoundTrip(RegistryItem(sWrite) + IniItem(IniEntry("create"), "A", "@F@\\new.ini"), 7);
    const std::wstring tszOf = L" of the key HKLM\\" + m_cBench.Key();
    EXPECT_THAT(m_vecLeft, ElementsAre(L"the unnamed value" + tszOf + L" stays",
                                       L"the value \"empty\"" + tszOf + L" is not what it was",
                                       L"the value \"expand\"" + tszOf + L" is not what it was",
                                       L"the value \"line\"" + tszOf + L" is not what it was",
                                       L"the value \"list\"" + tszOf + L" is not what it was",
                                       L"the value \"odd\"" + tszOf + L" is not what it was",
                                       L"the file " + m_cBench.Folder().File(L"new.ini") + L" stays"));
    cKey.Open(HKEY_LOCAL_MACHINE, m_cBench.Key());
    EXPECT_EQ(cKey.ReadString(L"plain"), L" p\t\n ");
    EXPECT_EQ(cKey.Find(L"new"), std::nullopt);
}

TEST_F(LocalUpdateActions, AnAllAccessKeyCarriesItsAccessListAndGetsItBackFromAnUndo)
{
    ASSERT_EQ(m_cBench.Apply(RegistryItem(Entry("create", "", "", "", g_szYes))), Result::g_ulSuccess);
    const auto EntriesOf = [&] {
        std::vector<std::wstring> vecEntry;
        RegKey hKey;
        EXPECT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, m_cBench.Key().c_str(), 0, READ_CONTROL, hKey.Receive()),
                  ERROR_SUCCESS);
        std::vector<std::uint8_t> vecDescriptor(4096);
        DWORD ulSize = static_cast<DWORD>(vecDescriptor.size());
        EXPECT_EQ(::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, vecDescriptor.data(), &ulSize),
                  ERROR_SUCCESS);
        BOOL bPresent = FALSE;
        BOOL bDefaulted = FALSE;
        ACL* pAcl = nullptr;
        EXPECT_TRUE(::GetSecurityDescriptorDacl(vecDescriptor.data(), &bPresent, &pAcl, &bDefaulted));
        for (DWORD i = 0; pAcl != nullptr && i < pAcl->AceCount; ++i) {
            void* pAce = nullptr;
            EXPECT_TRUE(::GetAce(pAcl, i, &pAce));
            auto* const pAllowed = static_cast<ACCESS_ALLOWED_ACE*>(pAce);
            const auto* pSid = reinterpret_cast<const SID*>(&pAllowed->SidStart);
            std::wstring tszEntry = std::to_wstring(pAllowed->Header.AceType) + L" S-1-" +
                                    std::to_wstring(pSid->IdentifierAuthority.Value[5]);
            for (BYTE k = 0; k < pSid->SubAuthorityCount; ++k) {
                tszEntry += L"-" + std::to_wstring(pSid->SubAuthority[k]);
            }
            vecEntry.push_back(tszEntry + L" " + std::to_wstring(pAllowed->Mask));
        }
        return vecEntry;
    };
    const std::vector<std::wstring> vecExpected = {
        L"0 S-1-5-32-544 65599",  L"0 S-1-5-32-547 63", L"0 S-1-5-18 65599", L"0 S-1-5-11 131081",
        L"0 S-1-5-32-545 131081", L"0 S-1-3-0 983103",  L"0 S-1-5-4 131081"};
    EXPECT_EQ(EntriesOf(), vecExpected);
    RoundTrip(RegistryItem(Entry("remove")));
    EXPECT_EQ(EntriesOf(), vecExpected);
    RoundTrip(RegistryItem(Entry("remove")) + RegistryItem(Entry("create", "", "", "", g_szNo)), 1);
    EXPECT_THAT(m_vecLeft, ElementsAre(L"the key HKLM\\" + m_cBench.Key() + L" has another access list"));
}

/** A key that nobody may change while the object lives. */
class DeniedKey
{
public:
    explicit DeniedKey(const std::wstring& _rtszPath)
    {
        EXPECT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, _rtszPath.c_str(), 0, WRITE_DAC, m_hKey.Receive()),
                  ERROR_SUCCESS);
        Grant(KEY_READ);
    }
    DeniedKey(const DeniedKey&) = delete;
    DeniedKey& operator=(const DeniedKey&) = delete;
    ~DeniedKey() { Grant(KEY_ALL_ACCESS); }

private:
    void Grant(DWORD _ulRights) const
    {
        SID stEveryone{SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
        std::vector<DWORD> vecAcl(64);
        ACL* const pAcl = reinterpret_cast<ACL*>(vecAcl.data());
        ::InitializeAcl(pAcl, 256, ACL_REVISION);
        ::AddAccessAllowedAceEx(pAcl, ACL_REVISION, CONTAINER_INHERIT_ACE, _ulRights, &stEveryone);
        SECURITY_DESCRIPTOR stDescriptor{};
        ::InitializeSecurityDescriptor(&stDescriptor, SECURITY_DESCRIPTOR_REVISION);
        ::SetSecurityDescriptorDacl(&stDescriptor, TRUE, pAcl, FALSE);
        EXPECT_EQ(::RegSetKeySecurity(m_hKey.Get(), DACL_SECURITY_INFORMATION, &stDescriptor), ERROR_SUCCESS);
    }

    RegKey m_hKey;
};

struct HostileRow
{
    int iLine;
    std::string sItem; // one entry that fails
    std::uint32_t ulError;
};

TEST_F(LocalUpdateActions, ABadEntryFailsWithItsCodeAndTheNextItemGoesOn)
{
    const std::string sLong(40000, 'x');
    std::string sDeep;
    for (int i = 0; i < 20000; ++i) {
        sDeep += "\\y";
    }
    ASSERT_EQ(m_cBench.Apply(Furniture() + RegistryItem(Entry("create", "", "", "", g_szNo), "HKCU")),
              Result::g_ulSuccess);
    m_cBench.Folder().Write(L"readonly.ini", "[A]\r\n");
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    const auto AtPath = [](const std::string& _rsPath, const char* _szMore = g_szNo) {
        return "<registry><Root>HKLM</Root><Path>" + _rsPath + "</Path>" + Entry("write", "v", "uint32", "1", _szMore) +
               "</registry>";
    };
    const HostileRow aRow[] = {
        {__LINE__, RegistryItem(Entry("write", "v", "uint32", "")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "uint32", "-1")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "uint32", "+1")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "uint32", "12x")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "uint32", "4294967296")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "uint64", "0x10000000000000000")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "binary", "a")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "binary", "0g")), ERROR_INVALID_DATA},
        {__LINE__, RegistryItem(Entry("write", "v", "dword", "1")), ERROR_INVALID_PARAMETER},
        {__LINE__, RegistryItem(Entry("write", sLong.c_str(), "string", "1")), ERROR_INVALID_PARAMETER},
        {__LINE__, AtPath(""), ERROR_BAD_ARGUMENTS},
        {__LINE__, AtPath("\\Software\\" + sLong), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, AtPath("\\Software"), ERROR_BAD_PATHNAME},
        {__LINE__, AtPath("@K@\\" + sLong.substr(0, 300)), ERROR_INVALID_PARAMETER},
        {__LINE__, AtPath("@K@" + sDeep), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, AtPath("@K@\\none", ""), ERROR_FILE_NOT_FOUND},
        {__LINE__, AtPath("@K@\\Sub", ""), ERROR_ACCESS_DENIED},
        {__LINE__, AtPath("@K@\\Sub", g_szYes), ERROR_ACCESS_DENIED},
        {__LINE__, RegistryItem(Entry("remove"), "HKLM", "", "\\Sub"), ERROR_ACCESS_DENIED},
        {__LINE__, RegistryItem(Entry("fly")), 0},
        {__LINE__, IniItem(IniEntry("write", "k", "string", "1"), "A", "@F@\\readonly.ini"), ERROR_ACCESS_DENIED},
        {__LINE__, IniItem(IniEntry("write", "k", "string", "1"), "A", "@F@"), 0},
        {__LINE__, IniItem(IniEntry("write", "k", "string", "1"), "A", sLong.c_str()), ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, IniItem(IniEntry("write", "k", "string", "1"), "A", ("C:\\" + sLong).c_str()),
         ERROR_FILENAME_EXCED_RANGE},
        {__LINE__, IniItem(IniEntry("write", "k", "string", "1"), "A", "@F@\\no folder\\x.ini"), 0},
    };
    const DeniedKey cDenied(m_cBench.Key() + L"\\Sub");
    const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
    for (const HostileRow& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const std::string sItems = stRow.sItem + RegistryItem(Entry("write", "next", "uint32", "1"), "HKCU");
        const std::wstring tszPath = m_cBench.Describe(sItems);
        RecordingStorage cRecord;
        Decisions cRehearsed;
        Rehearse(tszPath, cRecord, &cRehearsed);
        SystemStorage cSystem;
        Decisions cDone;
        LocalUpdateConfig stConfig;
        ASSERT_EQ(CFunctionXml().QueryValueAsLocalUpdate(&stConfig, &tszPath), Result::g_ulSuccess);
        CLocalUpdateManager cManager(cSystem, &cDone);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        cManager.DoActionConfig(stConfig);
        const bool bIni = stRow.sItem.starts_with("<inifile");
        EXPECT_EQ(cDone.sEffects, bIni ? "w!" : "!w");
        EXPECT_EQ(cRehearsed.sEffects, cDone.sEffects);
        EXPECT_EQ(cRehearsed.vecReason, cDone.vecReason);
        if (stRow.ulError != 0) {
            EXPECT_EQ(cDone.ulError, stRow.ulError);
            EXPECT_EQ(cRehearsed.ulError, stRow.ulError);
        }
        EXPECT_EQ(m_cBench.Snapshot(cRecord), m_cBench.Snapshot());
        m_cBench.Apply(RegistryItem(Entry("remove", "next"), "HKCU"));
        EXPECT_EQ(m_cBench.Snapshot(), vecBefore);
    }
    ::SetFileAttributesW(m_cBench.Folder().File(L"readonly.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(LocalUpdateActions, AFailedEntryIsLoggedByItsCode)
{
    ASSERT_EQ(m_cBench.Apply(RegistryItem(Entry("create", "", "", "", g_szNo))), Result::g_ulSuccess);
    const TraceRecorder cTrace(0x100);
    ASSERT_EQ(m_cBench.Apply(RegistryItem(Entry("remove", "absent"))), Result::g_ulSuccess);
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(L"!!! *** CLocalUpdateAgentKey::Remove() - Got ZkCommon::Exception::Base(). [0x00000002]",
                    L"!!! *** CLocalUpdateAgentKey::OnAction() - OnAction() failed().  _stKey.tszAction[remove] "
                    L"[0x80040201]",
                    L"!!! *** CLocalUpdateAgentKey::DoAction() - Name[absent] Type[] Value[] failed. [0x80040201]",
                    L"!!! *** CLocalUpdateManager::DoActionKeyConfig() - pAgent->DoAction failed(). tszTargetType "
                    L"[registry] [0x80040201]"));
}

TEST_F(LocalUpdateActions, ALargeUpdateIsCarriedOutWithoutAHandleLeft)
{
    std::string sEntries = Entry("write", "big", "binary", std::string(2 << 20, 'a'), g_szNo);
    for (int i = 0; i < 50000; ++i) {
        sEntries += "<Key target=\"addon\"><Name>" + std::to_string(i) + "</Name></Key><Key target=\"registry\"/>";
    }
    const std::string sItems = RegistryItem(sEntries) + IniItem(IniEntry("write", "k"));
    m_cBench.Apply(sItems);
    DWORD ulBefore = 0;
    DWORD ulAfter = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &ulBefore);
    m_cBench.Apply(sItems);
    RecordingStorage().Exists(m_cBench.Place(HKEY_LOCAL_MACHINE, Storage::View64));
    ::GetProcessHandleCount(::GetCurrentProcess(), &ulAfter);
    EXPECT_EQ(ulAfter, ulBefore);
    EXPECT_EQ(SystemStorage().Find(m_cBench.Place(HKEY_LOCAL_MACHINE, Storage::View64), L"big")->vecData.size(),
              1U << 20);
}

TEST_F(LocalUpdateActions, OneMacroOfAnIniPathIsExpandedTheFirstInTheirOrder)
{
    wchar_t szFolder[MAX_PATH];
    ::GetWindowsDirectoryW(szFolder, MAX_PATH);
    const std::wstring tszWindows = szFolder;
    ::GetSystemDirectoryW(szFolder, MAX_PATH);
    const std::wstring tszSystem = szFolder;
    ::GetCurrentDirectoryW(MAX_PATH, szFolder);
    const std::wstring tszCurrent = String::WithBackslash(szFolder);
    struct Row
    {
        const wchar_t* szPath;
        std::wstring tszExpanded;
    };
    const Row aRow[] = {
        {L"$SYSTEM$\\$WINDOWS$\\x.ini", L"$SYSTEM$\\" + tszWindows + L"\\\\x.ini"},
        {L"$SYSTEM$x.ini", tszSystem + L"\\x.ini"},
        {L"$CURRENT$x.ini$CURRENT$", tszCurrent + L"x.ini$CURRENT$"},
        {L"$INSTALL$x.ini", m_cBench.Folder().Path().wstring() + L"\\x.ini"},
        {L"$install$x.ini", L"$install$x.ini"},
    };
    RecordingStorage cRecord;
    LocalUpdateConfig stConfig;
    for (const Row& stRow : aRow) {
        LocalUpdateKey stKey;
        stKey.tszKind = g_szIniFileKind;
        stKey.tszRoot = stRow.szPath;
        stConfig.lstIniFile.push_back(stKey);
    }
    CLocalUpdateManager cManager(cRecord);
    ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    ASSERT_EQ(cManager.DoActionConfig(stConfig), Result::g_ulSuccess);
    std::size_t i = 0;
    for (const LocalUpdateKey& stKey : stConfig.lstIniFile) {
        EXPECT_EQ(stKey.tszRoot, aRow[i++].tszExpanded);
    }
}

struct VersionRow
{
    int iLine;
    const wchar_t* szLeft;
    const wchar_t* szRight;
    std::optional<std::int32_t> lResult;
};

const VersionRow g_aVersion[] = {
    {__LINE__, L"6.0.1100", L"6.0.1100", 0}, {__LINE__, L"6.0.1101", L"6.0.1100", 1},
    {__LINE__, L"6.0", L"6.0.1234", 0},      {__LINE__, L"6..0", L"6.1", -1},
    {__LINE__, L"0x10", L"16", 0},           {__LINE__, L"010.1", L"8.0", 1},
    {__LINE__, L"0", L"4294967295", 1},      {__LINE__, L"", L"1", std::nullopt},
    {__LINE__, L"1", L"", std::nullopt},     {__LINE__, L"1.a", L"1.2", std::nullopt},
    {__LINE__, L"1.a", L"2.2", -1},          {__LINE__, L"1.4294967296", L"1.2", std::nullopt},
    {__LINE__, L".1", L"1", std::nullopt},   {__LINE__, L"1.", L"1", std::nullopt},
    {__LINE__, L"1", L"2.", std::nullopt},
};

TEST(LocalUpdateVersion, NumbersAreComparedAsFarAsBothHaveThem)
{
    for (const VersionRow& stRow : g_aVersion) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        EXPECT_EQ(CompareVersion(stRow.szLeft, stRow.szRight), stRow.lResult);
    }
}

struct ConditionRow
{
    int iLine;
    const char* szConditions; // minimum, maximum, product, language, platform
    UpdateReason enReason;
};

const ConditionRow g_aCondition[] = {
    {__LINE__, "minversion='17.1.1040' maxversion='17.1.1040' product='qmrpro' language='de' platform='vistaorlater'",
     UpdateReason::None},
    {__LINE__, "minversion='1' maxversion='18' product='all' language='all' platform='all'", UpdateReason::None},
    {__LINE__, "minversion='1' maxversion='18' product='qmrorpro' language='de' platform='xporlater'",
     UpdateReason::None},
    {__LINE__, "minversion='17.1.1041' maxversion='18' product='all' language='all' platform='all'",
     UpdateReason::VersionTooLow},
    {__LINE__, "minversion='1' maxversion='17.1.1039' product='all' language='all' platform='all'",
     UpdateReason::VersionTooHigh},
    {__LINE__, "minversion='1' product='all' language='all' platform='all'", UpdateReason::BadVersion},
    {__LINE__, "minversion='1' maxversion='18' product='lumorqmr' language='all' platform='all'",
     UpdateReason::OtherProduct},
    {__LINE__, "minversion='1' maxversion='18' product='QMRPRO' language='all' platform='all'",
     UpdateReason::OtherProduct},
    {__LINE__, "minversion='1' maxversion='18' language='all' platform='all'", UpdateReason::OtherProduct},
    {__LINE__, "minversion='1' maxversion='18' product='all' language='de,fr' platform='all'",
     UpdateReason::OtherLanguage},
    {__LINE__, "minversion='1' maxversion='18' product='all' language='all' platform='xp32or64'",
     UpdateReason::OtherPlatform},
    {__LINE__, "minversion='1' maxversion='18' product='all' language='all' platform='XP32'",
     UpdateReason::UnknownPlatform},
    {__LINE__, "minversion='1' maxversion='18' product='all' language='all'", UpdateReason::UnknownPlatform},
};

TEST_F(LocalUpdateActions, ConditionsDecideForItemsAndEntriesAlikeAndOnlyWhenTheyAreToCount)
{
    for (const ConditionRow& stRow : g_aCondition) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, stRow.szConditions);
        const std::string sOpen = "minversion='1' maxversion='18' product='all' language='all' platform='all'";
        for (const bool bItem : {true, false}) {
            const std::string sItem = std::string("<registry ") + (bItem ? stRow.szConditions : sOpen.c_str()) +
                                      "><Root>HKCU</Root><Path>@K@</Path><Key target='registry' " +
                                      (bItem ? sOpen.c_str() : stRow.szConditions) +
                                      "><Action>create</Action><AllAccess>no</AllAccess></Key></registry>";
            for (const char* szCheck : {"check='yes'", "check='YES'"}) {
                const UpdateReason enExpected = szCheck[7] == 'y' ? stRow.enReason : UpdateReason::None;
                RecordingStorage cRecord;
                Decisions cDecisions;
                Rehearse(m_cBench.Describe(sItem, szCheck), cRecord, &cDecisions);
                EXPECT_THAT(cDecisions.vecReason, ElementsAre(enExpected));
                EXPECT_EQ(cRecord.Changes().empty(), enExpected != UpdateReason::None);
            }
        }
    }
}

TEST_F(LocalUpdateActions, TheEnvironmentComesFromTheProductsKey)
{
    struct Row
    {
        int iLine;
        const wchar_t* szPid;
        std::uint32_t ulLanguage;
        const wchar_t* szProduct;
        const wchar_t* szLanguage;
    };
    const Row aRow[] = {
        {__LINE__, L"QI", 1, L"qmr", L"en_us"},       {__LINE__, L"QE", 3, L"qmrpro", L"en_us"},
        {__LINE__, L"QB", 1048576, L"lum", L"fr_ca"}, {__LINE__, L"Qe", 16, L"", L"en_us"},
        {__LINE__, L"", 8, L"unknown", L"cn"},        {__LINE__, L"Q", 65536, L"", L"en_gb"},
    };
    RecordingStorage cRecord;
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        m_cBench.SetEnvironment(L"17", stRow.szPid, stRow.ulLanguage);
        CLocalUpdateManager cManager(cRecord);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        EXPECT_EQ(cManager.Environments().tszVersion, L"17");
        EXPECT_EQ(cManager.Environments().tszProduct, stRow.szProduct);
        EXPECT_EQ(cManager.Environments().tszLanguage, stRow.szLanguage);
    }

    Storage::Registry cKey;
    cKey.OpenForWriting(HKEY_LOCAL_MACHINE, L"Software\\Kestrovane\\Pelto");
    cKey.WriteString(L"Language", L"de");
    const TraceRecorder cTrace(0x100);
    CLocalUpdateManager cManager(cRecord);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulUndetermined);
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(L"!!! *** CLocalUpdateManager::SetLanguageType() - Got ZkCommon::Exception::Base(). [0x0000070c]",
                    L"!!! *** CLocalUpdateManager::Initialize() - SetLanguageType() failed. [0x80040202]"));
}

} // namespace
