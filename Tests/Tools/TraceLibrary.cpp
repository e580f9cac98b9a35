// The real trace library, called as the trace log calls it.

#include "RunProgram.h"
#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_Library.h"
#include "ZkComn_String.h"
#include "ZkComn_ZkDbg.h"

#include <gmock/gmock-more-matchers.h>
#include <tuple>

using namespace ZkCommon;

namespace {

Library::ZkDbgSettings SettingsOf(const std::wstring& _rtszFolder, WORD _usDay = 15)
{
    TraceSettings stSettings;
    stSettings.tszLogFolder = _rtszFolder;
    Library::ZkDbgSettings stRecord = Library::RecordOf(stSettings, L"Module");
    stRecord.stTime = {2026, 11, 0, _usDay, 0, 0, 0, 0};
    return stRecord;
}

/** One trace, opened with its settings. */
class OpenTrace
{
public:
    explicit OpenTrace(const Library::ZkDbgSettings& _rstSettings)
    {
        std::uint32_t ulError = 0; // the library lies beside the test program
        m_bOpen = m_Library.Load(L"") && m_Library.Bind(true, ulError) && m_Library.Initialize(m_pTrace, _rstSettings);
    }
    ~OpenTrace()
    {
        if (m_bOpen) {
            m_Library.Uninitialize(m_pTrace);
        }
    }

    bool IsOpen() const { return m_bOpen; }

    /** Writes a line as the log does, its date in front. */
    bool Line(WORD _usDay, const std::wstring& _rtszText, WORD _usSecond = 0)
    {
        std::wstring tszLine;
        String::Format(tszLine, L"%02d/11/2026 %s\r\n", _usDay, _rtszText.c_str());
        return m_Library.Trace(m_pTrace, {2026, 11, 0, _usDay, 0, 0, _usSecond, 0}, tszLine.c_str());
    }

private:
    Library::ZkDbg m_Library;
    void* m_pTrace = nullptr;
    bool m_bOpen = false;
};

std::wstring g_tszDebuggerText;

/** What the system raises for a debugger to see: the text, wide or, on some systems, in the ANSI code page. */
LONG CALLBACK SeeDebuggerText(EXCEPTION_POINTERS* _pException)
{
    const EXCEPTION_RECORD& rstRecord = *_pException->ExceptionRecord;
    if (rstRecord.ExceptionCode != 0x4001000A && rstRecord.ExceptionCode != 0x40010006) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const ULONG_PTR pText = rstRecord.ExceptionInformation[1];
    g_tszDebuggerText += rstRecord.ExceptionCode == 0x4001000A ? std::wstring(reinterpret_cast<const wchar_t*>(pText))
                                                               : String::FromAnsi(reinterpret_cast<const char*>(pText));
    return EXCEPTION_CONTINUE_EXECUTION;
}

constexpr int g_iChildLines = 400;
constexpr const wchar_t* g_pszFolderVariable = L"VARNHELT_TEST_FOLDER"; // where a second process writes

} // namespace

TEST(TraceLibrary, NamesItsFileAfterItsSettings)
{
    const TempFolder folder;
    const std::tuple<int, std::wstring, const wchar_t*, const wchar_t*, const wchar_t*, std::wstring> aRows[] = {
        {__LINE__, folder.File(L"a"), L"vqx", L"", L"log", folder.File(L"a\\vqxModule.log")},
        {__LINE__, folder.File(L"a\\"), L"vqx", L"File", L"txt", folder.File(L"a\\vqxFile.txt")},
        {__LINE__, folder.File(L"b\\c"), L"", L"\u00e4\u4e2d", L"", folder.File(L"b\\c\\\u00e4\u4e2d")},
        {__LINE__, L"", L"vqx", L"LibraryTest", L"log", ProgramFolder() + L"\\vqxLibraryTest.log"},
    };
    for (const auto& [iLine, tszFolder, pszPrefix, pszFile, pszExtension, tszExpected] : aRows) {
        Library::ZkDbgSettings stSettings = SettingsOf(tszFolder);
        Library::PutText(stSettings.aszLogPrefix, pszPrefix);
        Library::PutText(stSettings.aszLogFile, pszFile);
        Library::PutText(stSettings.aszLogExtension, pszExtension);
        std::filesystem::remove(tszExpected);
        EXPECT_TRUE(OpenTrace(stSettings).Line(15, L"\u00e4\u4e2d\U0001F600")) << iLine;
        EXPECT_EQ(folder.Read(tszExpected), "15/11/2026 \xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80\r\n") << iLine;
        std::filesystem::remove(tszExpected);
    }
}

TEST(TraceLibrary, StartsANewFileAtAChangeOfDayAndKeepsTheTenNewest)
{
    const TempFolder folder;
    folder.Write(L"vqxModule-20250101.log", "old");
    folder.Write(L"vqxModule-2025010x.log", "no date");
    folder.Write(L"vqxModule-20250101.txt", "another's");
    folder.Write(L"vqxModule.log", "01/11/2026 left from a former run\r\n");
    {
        OpenTrace trace(SettingsOf(folder.Path().wstring(), 2));
        for (WORD usDay = 2; usDay <= 13; ++usDay) {
            EXPECT_TRUE(trace.Line(usDay, L"first") && trace.Line(usDay, L"second"));
        }
        EXPECT_TRUE(trace.Line(12, L"late"));
    }
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "13/11/2026 first\r\n13/11/2026 second\r\n12/11/2026 late\r\n");
    EXPECT_EQ(folder.Read(L"vqxModule-20261112.log"), "12/11/2026 first\r\n12/11/2026 second\r\n");
    std::vector<std::wstring> vecExpected{L"vqxModule.log", L"vqxModule-2025010x.log", L"vqxModule-20250101.txt"};
    for (int iDay = 4; iDay <= 12; ++iDay) {
        vecExpected.push_back(L"vqxModule-" + std::to_wstring(20261100 + iDay) + L".log");
    }
    EXPECT_THAT(folder.Names(), testing::UnorderedElementsAreArray(vecExpected));
}

TEST(TraceLibrary, FindsAFreeNameForAFormerDayAndRemovesSuchFilesToo)
{
    const TempFolder folder;
    folder.Write(L"vqxModule-20251231-2.log", "old");
    folder.Write(L"vqxModule-20251231-x.log", "another's");
    folder.Write(L"vqxModule-20261101.log", "a copy");
    folder.Write(L"vqxModule.log", "01/11/2026 first\r\n");
    OpenTrace trace(SettingsOf(folder.Path().wstring(), 2));
    for (WORD usDay = 2; usDay <= 10; ++usDay) {
        EXPECT_TRUE(trace.Line(usDay, L"text"));
    }
    EXPECT_EQ(folder.Read(L"vqxModule-20261101-2.log"), "01/11/2026 first\r\n");
    EXPECT_EQ(folder.Read(L"vqxModule-20261101.log"), "");
    EXPECT_EQ(folder.Read(L"vqxModule-20251231-x.log"), "another's");
    EXPECT_EQ(folder.Read(L"vqxModule-20251231-2.log"), "");
}

TEST(TraceLibrary, WaitsOnceForALockThatSomebodyKeeps)
{
    const TempFolder folder;
    OpenTrace trace(SettingsOf(folder.Path().wstring()));
    const FileHandle hKeeper(::CreateFileW(folder.File(L"vqxModule.log").c_str(), GENERIC_READ | GENERIC_WRITE,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(::LockFile(hKeeper.Get(), 0, 0x7FFFFFFF, 1, 0));
    for (int i = 0; i < 1000; ++i) { // each line waiting anew would be more than half an hour
        ASSERT_TRUE(trace.Line(15, L"text"));
    }
}

TEST(TraceLibrary, LetsNoMessagePassForALineOfTheLog)
{
    const TempFolder folder;
    EXPECT_TRUE(OpenTrace(SettingsOf(folder.Path().wstring())).Line(15, L"a\r\n15/11/2026 b\rc\n"));
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "15/11/2026 a\r\n\t15/11/2026 b\r\n\tc\r\n\t\r\n");
}

TEST(TraceLibrary, LosesNoLineWhenSeveralWritersCrossADay)
{
    const TempFolder folder;
    OpenTrace first(SettingsOf(folder.Path().wstring()));
    OpenTrace second(SettingsOf(folder.Path().wstring()));
    EXPECT_TRUE(first.Line(15, L"1") && second.Line(15, L"2") && first.Line(16, L"3") && second.Line(15, L"4") &&
                second.Line(16, L"5"));
    EXPECT_EQ(folder.Read(L"vqxModule-20261115.log"), "15/11/2026 1\r\n15/11/2026 2\r\n15/11/2026 4\r\n");
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "16/11/2026 3\r\n16/11/2026 5\r\n");
}

/** What a second process does; run by the test below. */
TEST(TraceLibrary, DISABLED_Child)
{
    wchar_t szFolder[MAX_PATH] = {};
    ::GetEnvironmentVariableW(g_pszFolderVariable, szFolder, MAX_PATH);
    OpenTrace trace(SettingsOf(szFolder));
    for (int i = 0; i < g_iChildLines; ++i) {
        ASSERT_TRUE(trace.Line(i < g_iChildLines / 2 ? 15 : 16, std::wstring(200, L'x')));
    }
}

TEST(TraceLibrary, KeepsTheLinesOfSeveralProcessesWhole)
{
    const TempFolder folder;
    ::SetEnvironmentVariableW(g_pszFolderVariable, folder.Path().c_str());
    wchar_t szProgram[MAX_PATH];
    ::GetModuleFileNameW(nullptr, szProgram, MAX_PATH);
    const auto Start = [&] {
        return StartProgram(szProgram,
                            {L"--gtest_also_run_disabled_tests", L"--gtest_filter=TraceLibrary.DISABLED_Child"});
    };
    const Handle aChild[] = {Start(), Start()};
    EXPECT_EQ(ExitStatusOf(aChild[0]), 0);
    EXPECT_EQ(ExitStatusOf(aChild[1]), 0);
    const std::string sAll = folder.Read(L"vqxModule-20261115.log") + folder.Read(L"vqxModule.log");
    const std::string sLine = "/11/2026 " + std::string(200, 'x') + "\r\n"; // behind the day
    EXPECT_EQ(sAll.size(), (2 + sLine.size()) * 2 * g_iChildLines);
    for (std::size_t uAt = 2; uAt < sAll.size(); uAt += 2 + sLine.size()) {
        ASSERT_EQ(sAll.substr(uAt, sLine.size()), sLine);
    }
}

TEST(TraceLibrary, SendsItsLinesToTheDebuggerWhenItIsSet)
{
    const TempFolder folder;
    Library::ZkDbgSettings stSettings = SettingsOf(folder.Path().wstring());
    void* const pHandler = ::AddVectoredExceptionHandler(1, &SeeDebuggerText);
    for (const bool bDebugger : {false, true}) {
        g_tszDebuggerText.clear();
        stSettings.ucDebugger = bDebugger ? 1 : 0;
        EXPECT_TRUE(OpenTrace(stSettings).Line(15, L"text"));
        EXPECT_EQ(g_tszDebuggerText, bDebugger ? L"15/11/2026 text\r\n" : L"");
    }
    ::RemoveVectoredExceptionHandler(pHandler);
}

TEST(TraceLibrary, FlushesAndStartsAnewWhenSomebodyTookItsFileAway)
{
    const TempFolder folder;
    Library::ZkDbgSettings stSettings = SettingsOf(folder.Path().wstring());
    stSettings.ucRobust = 1;
    OpenTrace trace(stSettings);
    EXPECT_TRUE(trace.Line(15, L"gone")); // false when the handle has not the right to flush
    std::filesystem::rename(folder.File(L"vqxModule.log"), folder.File(L"elsewhere"));
    EXPECT_TRUE(trace.Line(15, L"new", 1));
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "15/11/2026 new\r\n");
}

TEST(TraceLibrary, AnswersAFailureWhenItsFileCannotBeOpened)
{
    const TempFolder folder;
    folder.Write(L"file", "");
    EXPECT_FALSE(OpenTrace(SettingsOf(folder.File(L"file"))).IsOpen()); // a folder below a file
    EXPECT_FALSE(OpenTrace(SettingsOf(folder.File(L"a?b"))).IsOpen());  // no name of a folder
    std::filesystem::create_directories(folder.Path() / L"vqxModule.log");
    EXPECT_FALSE(OpenTrace(SettingsOf(folder.Path().wstring())).IsOpen()); // a folder in its place
}
