#include "ZkComn_DebugLog.h"

#include "../TraceLibraries/Recorder.h"
#include "TempFolder.h"
#include "TestKey.h"
#include "TraceRecorder.h"
#include "ZkComn_Library.h"
#include "ZkComn_Registry.h"

#include <gmock/gmock.h>
#include <regex>
#include <thread>

using namespace ZkCommon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const wchar_t* g_aszSession[] = {L"\\InteractiveSession", L"\\ServiceSession"};

Storage::Key SettingsIn(const TestKey& _rKey)
{
    return {Storage::Key::Registry, HKEY_CURRENT_USER, _rKey.Path()};
}

void WriteSettings(const TestKey& _rKey, std::uint32_t _ulEnable)
{
    for (const wchar_t* pszSession : g_aszSession) {
        Storage::Registry settings;
        settings.Create(HKEY_CURRENT_USER, _rKey.Path() + pszSession);
        settings.WriteNumber(L"Enable", _ulEnable);
    }
}

bool TraceOneError(DebugLog& _rLog)
{
    return _rLog.Trace("Test.cpp", 1, TraceError, L"text");
}

} // namespace

TEST(DebugLog, WritesALineWithTimeProcessThreadTagModuleMessageAndSource)
{
    const TraceRecorder trace(0x111, L"Module");
    EXPECT_TRUE(g_cDebugLog.Trace("..\\Folder/FunctionManager.cpp", 50, TraceNotice, L"message %s - %d", L"text", 7));
    ASSERT_EQ(trace.RawLines().size(), 1U);
    const std::wregex pattern(
        L"\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d\\.\\d{3} [0-9a-f]{4,}:[0-9a-f]{4,} @@@ <Module> "
        L"message text - 7 - FunctionManager\\(50\\)\r\n");
    EXPECT_TRUE(std::regex_match(trace.RawLines()[0], pattern)) << testing::PrintToString(trace.RawLines()[0]);
    SYSTEMTIME stNow{};
    ::GetLocalTime(&stNow);
    EXPECT_EQ(std::stoi(trace.RawLines()[0].substr(6)), stNow.wYear); // behind the day and the month
}

TEST(DebugLog, WritesOnlyLevelsOfItsMaskAndTagsThem)
{
    const TraceRecorder trace(0x112);
    struct Row
    {
        int iLine;
        std::uint32_t ulLevel;
        bool bWritten;
    };
    constexpr Row aRow[] = {{__LINE__, 1, false}, {__LINE__, 16, true},    {__LINE__, 256, true},
                            {__LINE__, 2, true},  {__LINE__, 0, false},    {__LINE__, 0x112, true},
                            {__LINE__, 4, false}, {__LINE__, 0x201, false}};
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        EXPECT_EQ(g_cDebugLog.Passes(stRow.ulLevel), stRow.bWritten);
        EXPECT_EQ(g_cDebugLog.Trace("Test.cpp", 1, stRow.ulLevel, L"%u", stRow.ulLevel), stRow.bWritten);
    }
    EXPECT_THAT(trace.Lines(), ElementsAre(L"@@@ 16", L"!!! 256", L"??? 2", L"??? 274"));
}

TEST(DebugLog, WritesAMessageOfAnyLengthWhole)
{
    const TraceRecorder trace;
    for (const std::size_t uLength : {255U, 256U, 1000U, 1000000U}) {
        const std::wstring tszText(uLength, L'x');
        Trace(TraceError, L"%s", tszText);
        EXPECT_EQ(trace.Messages().back(), tszText);
    }
}

TEST(DebugLog, IsSilentlyOffWithoutSettingsOrLibrary)
{
    const TestKey key;
    DebugLog log;
    EXPECT_FALSE(TraceOneError(log));
    EXPECT_FALSE(log.Uninitialize());

    // Without the key: initialised and disabled.
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), L""));
    EXPECT_TRUE(TraceOneError(log));
    EXPECT_FALSE(log.Passes(TraceError));
    EXPECT_TRUE(log.Uninitialize());
    EXPECT_FALSE(TraceOneError(log));

    WriteSettings(key, 0);
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), L""));
    EXPECT_TRUE(TraceOneError(log));
    EXPECT_TRUE(log.Uninitialize());

    // On, but the library is not there, lacks an entry point, or its folder is none.
    WriteSettings(key, 1);
    for (const wchar_t* pszFolder : {L"\\NoSuchFolder", L"\\Incomplete", L"\\Incomplete\\ZkDbgLog.dll"}) {
        EXPECT_FALSE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + pszFolder));
        EXPECT_FALSE(TraceOneError(log));
        EXPECT_FALSE(log.Uninitialize());
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
    }

    Storage::Key stUnknown = SettingsIn(key);
    stUnknown.ulKind = 2;
    EXPECT_FALSE(log.Initialize(L"Module", stUnknown, ProgramFolder() + L"\\Recorder"));
}

TEST(DebugLog, IsOffWhenASettingHasAnotherType)
{
    const TestKey key;
    WriteSettings(key, 1);
    for (const wchar_t* pszSession : g_aszSession) {
        Storage::Registry settings;
        settings.Create(HKEY_CURRENT_USER, key.Path() + pszSession);
        settings.WriteNumber(L"LogPrefix", 1);
    }
    DebugLog log;
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder"));
    EXPECT_TRUE(TraceOneError(log));
}

TEST(DebugLog, UnloadsALibraryThatFailsAndGoesOnWhenALineIsRefused)
{
    const TraceRecorder trace;
    const TestKey key;
    WriteSettings(key, 1);
    DebugLog log;
    trace.Record().Answer(5, 0);
    EXPECT_FALSE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder"));
    EXPECT_FALSE(TraceOneError(log));
    EXPECT_EQ(trace.Record().Open(), 1); // that of the recorder

    trace.Record().Answer(0, 5);
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder\\"));
    EXPECT_FALSE(TraceOneError(log));
    trace.Record().Answer(0, 0);
    EXPECT_TRUE(TraceOneError(log));
    EXPECT_TRUE(log.Uninitialize());
    EXPECT_EQ(trace.Record().Open(), 1);
}

TEST(DebugLog, HandsItsSettingsToTheLibrary)
{
    const TraceRecorder trace;
    EXPECT_STREQ(trace.Record().Settings().aszLogPrefix, L"vqx"); // the defaults
    EXPECT_STREQ(trace.Record().Settings().aszLogExtension, L"log");
    EXPECT_STREQ(trace.Record().Settings().aszLogFolder, L"");
    EXPECT_EQ(trace.Record().Settings().ucRobust, 0);

    const TestKey key;
    WriteSettings(key, 1);
    for (const wchar_t* pszSession : g_aszSession) {
        Storage::Registry settings;
        settings.Create(HKEY_CURRENT_USER, key.Path() + pszSession);
        settings.WriteNumber(L"LogProcess", 11);
        settings.WriteNumber(L"LogUnitType", 12);
        settings.WriteString(L"LogFolder", std::wstring(300, L'f'));
        settings.WriteString(L"LogFile", L"file");
        settings.WriteNumber(L"Robust", 2);
        settings.WriteNumber(L"Debugger", 3);
    }
    DebugLog log;
    const std::wstring tszModule(40, L'm');
    ASSERT_TRUE(log.Initialize(tszModule.c_str(), SettingsIn(key), ProgramFolder() + L"\\Recorder"));
    const Library::ZkDbgSettings& stSettings = trace.Record().Settings();
    EXPECT_EQ(stSettings.ulLogProcess, 11U);
    EXPECT_EQ(stSettings.ulLogUnitType, 12U);
    EXPECT_EQ(stSettings.ucRobust, 1);
    EXPECT_EQ(stSettings.ucDebugger, 1);
    EXPECT_STREQ(stSettings.aszLogFolder, std::wstring(259, L'f').c_str()); // cut off to their fields
    EXPECT_STREQ(stSettings.aszModuleName, std::wstring(31, L'm').c_str());
    EXPECT_STREQ(stSettings.aszLogFile, L"file");
    EXPECT_NE(stSettings.stTime.wYear, 0);
}

TEST(DebugLog, ReadsItsSettingsFromAnIniFileToo)
{
    const TraceRecorder trace;
    const TempFolder folder;
    folder.Write(L"trace.ini", "[InteractiveSession]\r\nEnable=1\r\nLevel=16\r\nLogPrefix=p\r\n"
                               "[ServiceSession]\r\nEnable=1\r\nLevel=16\r\nLogPrefix=p\r\n");
    DebugLog log;
    ASSERT_TRUE(log.Initialize(L"Module", {Storage::Key::IniFile, nullptr, folder.File(L"trace.ini")},
                               ProgramFolder() + L"\\Recorder"));
    EXPECT_TRUE(log.Passes(TraceNotice));
    EXPECT_FALSE(log.Passes(TraceError));
    EXPECT_STREQ(trace.Record().Settings().aszLogPrefix, L"p");
}

TEST(DebugLog, TakesOverSettingsButNoLibraryWhenInitialisedAgain)
{
    const TraceRecorder trace;
    const TestKey key;
    WriteSettings(key, 0);
    DebugLog log;
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder"));
    WriteSettings(key, 1);
    EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder"));
    EXPECT_FALSE(TraceOneError(log)); // on, and without a library
    EXPECT_EQ(trace.Record().Open(), 1);
}

TEST(DebugLog, TakesLinesFromManyThreadsWhileItIsOpenedAndClosed)
{
    const TraceRecorder trace;
    const TestKey key;
    WriteSettings(key, 1);
    DebugLog log;
    std::atomic<bool> bStop = false;
    std::vector<std::thread> vecThread;
    for (int i = 0; i < 4; ++i) {
        vecThread.emplace_back([&] {
            while (!bStop) {
                TraceOneError(log);
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(log.Initialize(L"Module", SettingsIn(key), ProgramFolder() + L"\\Recorder"));
        EXPECT_TRUE(log.Uninitialize());
        trace.Record().Clear();
    }
    bStop = true;
    for (std::thread& rThread : vecThread) {
        rThread.join();
    }
    EXPECT_EQ(trace.Record().Open(), 1);
}
