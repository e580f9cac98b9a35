// The real trace library, called as the trace log calls it.

#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_Library.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"
#include "ZkComn_ZkDbg.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <vector>

using namespace ZkCommon;
using testing::UnorderedElementsAre;

namespace {

template <std::size_t N>
void Put(wchar_t (&_raField)[N], const std::wstring& _rtszText)
{
    _raField[_rtszText.copy(_raField, N - 1)] = L'\0';
}

SYSTEMTIME Day(WORD _usDay, WORD _usMonth = 11)
{
    SYSTEMTIME stTime{};
    stTime.wYear = 2026;
    stTime.wMonth = _usMonth;
    stTime.wDay = _usDay;
    return stTime;
}

Library::ZkDbgSettings SettingsOf(const std::wstring& _rtszFolder, const SYSTEMTIME& _rstTime = Day(15))
{
    Library::ZkDbgSettings stSettings{};
    stSettings.stTime = _rstTime;
    Put(stSettings.aszModuleName, L"Module");
    Put(stSettings.aszLogFolder, _rtszFolder);
    Put(stSettings.aszLogPrefix, L"vqx");
    Put(stSettings.aszLogExtension, L"log");
    return stSettings;
}

/** One trace, opened with its settings. */
class OpenTrace
{
public:
    explicit OpenTrace(const Library::ZkDbgSettings& _rstSettings)
    {
        std::uint32_t ulError = 0;
        if (m_Library.Load(L"") && m_Library.Bind(true, ulError)) { // it lies beside the test program
            m_bOpen = m_Library.Initialize(m_pTrace, _rstSettings);
        }
    }
    ~OpenTrace()
    {
        if (m_bOpen) {
            m_Library.Uninitialize(m_pTrace);
        }
    }
    OpenTrace(const OpenTrace&) = delete;
    OpenTrace& operator=(const OpenTrace&) = delete;

    bool IsOpen() const { return m_bOpen; }

    /** Writes a line as the log does, its date in front. */
    bool Line(const SYSTEMTIME& _rstTime, const std::wstring& _rtszText)
    {
        std::wstring tszLine;
        String::Format(tszLine, L"%02d/%02d/%04d %s\r\n", _rstTime.wDay, _rstTime.wMonth, _rstTime.wYear,
                       _rtszText.c_str());
        return m_Library.Trace(m_pTrace, _rstTime, tszLine.c_str());
    }

private:
    Library::ZkDbg m_Library;
    void* m_pTrace = nullptr;
    bool m_bOpen = false;
};

std::vector<std::wstring> FilesIn(const TempFolder& _rFolder)
{
    std::vector<std::wstring> vecName;
    for (const auto& rEntry : std::filesystem::directory_iterator(_rFolder.Path())) {
        vecName.push_back(rEntry.path().filename().wstring());
    }
    return vecName;
}

std::wstring g_tszDebuggerText;

/** What the system raises for a debugger to see: the text, wide or, on some systems, in the ANSI code page. */
LONG CALLBACK SeeDebuggerText(EXCEPTION_POINTERS* _pException)
{
    constexpr DWORD ulNarrowText = 0x40010006;
    constexpr DWORD ulWideText = 0x4001000A;
    const EXCEPTION_RECORD& rstRecord = *_pException->ExceptionRecord;
    const ULONG_PTR pText = rstRecord.ExceptionInformation[1];
    if (rstRecord.ExceptionCode == ulWideText) {
        g_tszDebuggerText += reinterpret_cast<const wchar_t*>(pText);
    } else if (rstRecord.ExceptionCode == ulNarrowText) {
        g_tszDebuggerText += String::FromAnsi(reinterpret_cast<const char*>(pText));
    } else {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
}

constexpr const wchar_t* g_szChildFolder = L"TRACE_LIBRARY_FOLDER";
constexpr int g_iChildLines = 400;

/** This program once more, as a process that runs the disabled test "Child" in that folder. */
Handle StartChild(const std::wstring& _rtszFolder)
{
    ::SetEnvironmentVariableW(g_szChildFolder, _rtszFolder.c_str());
    wchar_t aszProgram[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, aszProgram, MAX_PATH);
    std::wstring tszCommand = std::wstring(L"\"") + aszProgram +
                              L"\" --gtest_filter=TraceLibrary.DISABLED_Child --gtest_also_run_disabled_tests";
    STARTUPINFOW stStart{};
    stStart.cb = sizeof stStart;
    PROCESS_INFORMATION stProcess{};
    EXPECT_TRUE(::CreateProcessW(nullptr, tszCommand.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                                 nullptr, &stStart, &stProcess));
    const Handle hThread(stProcess.hThread);
    return Handle(stProcess.hProcess);
}

std::vector<std::string> SplitLines(const std::string& _rsText)
{
    std::vector<std::string> vecLine;
    for (std::size_t uAt = 0, uEnd = 0; (uEnd = _rsText.find("\r\n", uAt)) != std::string::npos; uAt = uEnd + 2) {
        vecLine.push_back(_rsText.substr(uAt, uEnd - uAt));
    }
    return vecLine;
}

} // namespace

TEST(TraceLibrary, NamesItsFileAfterItsSettings)
{
    const TempFolder folder;
    struct Row
    {
        int iLine;
        std::wstring tszFolder, tszPrefix, tszFile, tszExtension, tszExpected;
    };
    const Row aRow[] = {
        {__LINE__, folder.File(L"a"), L"vqx", L"", L"log", L"a\\vqxModule.log"},
        {__LINE__, folder.File(L"a\\"), L"vqx", L"File", L"txt", L"a\\vqxFile.txt"},
        {__LINE__, folder.File(L"b\\c"), L"", L"\u00e4\u4e2d", L"", L"b\\c\\\u00e4\u4e2d"},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        Library::ZkDbgSettings stSettings = SettingsOf(stRow.tszFolder);
        Put(stSettings.aszLogPrefix, stRow.tszPrefix);
        Put(stSettings.aszLogFile, stRow.tszFile);
        Put(stSettings.aszLogExtension, stRow.tszExtension);
        OpenTrace trace(stSettings);
        EXPECT_TRUE(trace.Line(Day(15), L"\u00e4\u4e2d\U0001F600"));
        EXPECT_EQ(folder.Read(stRow.tszExpected), "15/11/2026 \xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80\r\n");
    }
}

TEST(TraceLibrary, LiesBesideTheProgramWhenNoFolderIsSet)
{
    Library::ZkDbgSettings stSettings = SettingsOf(L"");
    Put(stSettings.aszLogFile, L"TraceLibraryTest");
    const std::filesystem::path file = std::filesystem::path(ProgramFolder()) / L"vqxTraceLibraryTest.log";
    std::filesystem::remove(file);
    {
        const OpenTrace trace(stSettings);
        EXPECT_TRUE(std::filesystem::exists(file));
    }
    std::filesystem::remove(file);
}

TEST(TraceLibrary, StartsANewFileAtAChangeOfDayAndKeepsTheTenNewest)
{
    const TempFolder folder;
    folder.Write(L"vqxModule-20250101.log", "old");
    folder.Write(L"vqxModule-2025010x.log", "no date");
    folder.Write(L"vqxModule-20250101.txt", "another's");
    folder.Write(L"vqxModule.log", "01/11/2026 left from a former run\r\n");
    {
        OpenTrace trace(SettingsOf(folder.Path().wstring(), Day(2)));
        for (WORD usDay = 2; usDay <= 13; ++usDay) {
            EXPECT_TRUE(trace.Line(Day(usDay), L"first"));
            EXPECT_TRUE(trace.Line(Day(usDay), L"second"));
        }
        EXPECT_TRUE(trace.Line(Day(12), L"late"));
    }
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "13/11/2026 first\r\n13/11/2026 second\r\n12/11/2026 late\r\n");
    EXPECT_EQ(folder.Read(L"vqxModule-20261112.log"), "12/11/2026 first\r\n12/11/2026 second\r\n");
    EXPECT_THAT(FilesIn(folder),
                UnorderedElementsAre(L"vqxModule.log", L"vqxModule-20261112.log", L"vqxModule-20261111.log",
                                     L"vqxModule-20261110.log", L"vqxModule-20261109.log", L"vqxModule-20261108.log",
                                     L"vqxModule-20261107.log", L"vqxModule-20261106.log", L"vqxModule-20261105.log",
                                     L"vqxModule-20261104.log", L"vqxModule-2025010x.log", L"vqxModule-20250101.txt"));
}

TEST(TraceLibrary, LosesNoLineWhenSeveralWritersCrossADay)
{
    const TempFolder folder;
    OpenTrace first(SettingsOf(folder.Path().wstring()));
    OpenTrace second(SettingsOf(folder.Path().wstring()));
    EXPECT_TRUE(first.Line(Day(15), L"1"));
    EXPECT_TRUE(second.Line(Day(15), L"2"));
    EXPECT_TRUE(first.Line(Day(16), L"3"));
    EXPECT_TRUE(second.Line(Day(15), L"4"));
    EXPECT_TRUE(second.Line(Day(16), L"5"));
    EXPECT_EQ(folder.Read(L"vqxModule-20261115.log"), "15/11/2026 1\r\n15/11/2026 2\r\n15/11/2026 4\r\n");
    EXPECT_EQ(folder.Read(L"vqxModule.log"), "16/11/2026 3\r\n16/11/2026 5\r\n");
}

/** What a second process does; run by the test below. */
TEST(TraceLibrary, DISABLED_Child)
{
    std::wstring tszFolder(MAX_PATH, L'\0');
    tszFolder.resize(::GetEnvironmentVariableW(g_szChildFolder, tszFolder.data(), MAX_PATH));
    OpenTrace trace(SettingsOf(tszFolder));
    for (int i = 0; i < g_iChildLines; ++i) {
        ASSERT_TRUE(trace.Line(Day(i < g_iChildLines / 2 ? 15 : 16), std::wstring(200, L'x')));
    }
}

TEST(TraceLibrary, KeepsTheLinesOfSeveralProcessesWhole)
{
    const TempFolder folder;
    const Handle aChild[] = {StartChild(folder.Path().wstring()), StartChild(folder.Path().wstring())};
    for (const Handle& hChild : aChild) {
        ASSERT_EQ(::WaitForSingleObject(hChild.Get(), 60000), WAIT_OBJECT_0);
        DWORD ulExit = 1;
        ::GetExitCodeProcess(hChild.Get(), &ulExit);
        EXPECT_EQ(ulExit, 0U);
    }
    std::vector<std::string> vecLine = SplitLines(folder.Read(L"vqxModule-20261115.log"));
    for (const std::string& sLine : SplitLines(folder.Read(L"vqxModule.log"))) {
        vecLine.push_back(sLine);
    }
    EXPECT_EQ(vecLine.size(), 2U * g_iChildLines);
    for (const std::string& sLine : vecLine) {
        EXPECT_EQ(sLine.substr(2), "/11/2026 " + std::string(200, 'x'));
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
        EXPECT_TRUE(OpenTrace(stSettings).Line(Day(15), L"text"));
        EXPECT_EQ(g_tszDebuggerText, bDebugger ? L"15/11/2026 text\r\n" : L"");
    }
    ::RemoveVectoredExceptionHandler(pHandler);
}

TEST(TraceLibrary, MayFlushItsFile)
{
    const TempFolder folder;
    Library::ZkDbgSettings stSettings = SettingsOf(folder.Path().wstring());
    stSettings.ucRobust = 1;
    EXPECT_TRUE(OpenTrace(stSettings).Line(Day(15), L"text")); // false when the handle has not the right to flush
}

TEST(TraceLibrary, StartsAnewWhenSomebodyTookItsFileAway)
{
    const TempFolder folder;
    OpenTrace trace(SettingsOf(folder.Path().wstring()));
    EXPECT_TRUE(trace.Line(Day(15), L"gone"));
    std::filesystem::rename(folder.File(L"vqxModule.log"), folder.File(L"elsewhere"));
    SYSTEMTIME stLater = Day(15);
    stLater.wSecond = 1;
    EXPECT_TRUE(trace.Line(stLater, L"new"));
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
