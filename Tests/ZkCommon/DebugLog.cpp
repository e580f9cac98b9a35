#include "ZkComn_DebugLog.h"

#include "../TraceLibraries/Recorder.h"
#include "TempFolder.h"
#include "TestKey.h"
#include "TraceRecorder.h"
#include "ZkComn_Registry.h"

#include <gmock/gmock.h>
#include <regex>
#include <thread>

using namespace ZkCommon;
using testing::ElementsAre;

namespace {

/** A log, with settings of the test's own for sessions of both kinds. */
struct OwnLog
{
    template <class TValue>
    void Set(const wchar_t* _pszName, const TValue& _rValue) const
    {
        for (const wchar_t* pszSession : {L"\\InteractiveSession", L"\\ServiceSession"}) {
            Storage::Registry settings;
            settings.Create(HKEY_CURRENT_USER, m_Key.Path() + pszSession);
            if constexpr (std::is_integral_v<TValue>) {
                settings.WriteNumber(_pszName, _rValue);
            } else {
                settings.WriteString(_pszName, _rValue);
            }
        }
    }
    bool Start(const wchar_t* _pszFolder = L"\\Recorder", const wchar_t* _pszModule = L"Module")
    {
        return m_Log.Initialize(_pszModule, {Storage::Key::Registry, HKEY_CURRENT_USER, m_Key.Path()},
                                ProgramFolder() + _pszFolder);
    }
    bool TraceOneError() { return m_Log.Trace("Test.cpp", 1, TraceError, L"text"); }

    TestKey m_Key;
    DebugLog m_Log;
};

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
    for (const std::uint32_t ulLevel : {1U, 16U, 256U, 2U, 0U, 0x112U, 4U, 0x201U}) {
        const bool bWritten = g_cDebugLog.Passes(ulLevel);
        EXPECT_EQ(g_cDebugLog.Trace("Test.cpp", 1, ulLevel, L"%u", ulLevel), bWritten) << ulLevel;
    }
    EXPECT_THAT(trace.Lines(), ElementsAre(L"@@@ 16", L"!!! 256", L"??? 2", L"??? 274"));
}

TEST(DebugLog, WritesAMessageOfAnyLengthWhole)
{
    const TraceRecorder trace;
    for (const std::size_t uLength : {255U, 256U, 1000000U}) {
        const std::wstring tszText(uLength, L'x');
        Trace(TraceError, L"%s", tszText);
        EXPECT_EQ(trace.Messages().back(), tszText);
    }
}

TEST(DebugLog, IsSilentlyOffWithoutSettingsOrLibrary)
{
    OwnLog own;
    const auto ExpectInitialisedAndDisabled = [&] {
        EXPECT_TRUE(own.Start());
        EXPECT_TRUE(own.TraceOneError());
        EXPECT_FALSE(own.m_Log.Passes(TraceError));
        EXPECT_TRUE(own.m_Log.Uninitialize());
    };
    EXPECT_FALSE(own.TraceOneError());
    EXPECT_FALSE(own.m_Log.Uninitialize());
    ExpectInitialisedAndDisabled(); // without the key
    EXPECT_FALSE(own.TraceOneError());
    own.Set(L"Enable", 0U);
    ExpectInitialisedAndDisabled();

    // On, but the library is not there, lacks an entry point, or its folder is none.
    own.Set(L"Enable", 1U);
    for (const wchar_t* pszFolder : {L"\\NoSuchFolder", L"\\Incomplete", L"\\Incomplete\\ZkDbgLog.dll"}) {
        EXPECT_FALSE(own.Start(pszFolder));
        EXPECT_FALSE(own.TraceOneError());
        EXPECT_FALSE(own.m_Log.Uninitialize());
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
    }
    Storage::Key stUnknown{Storage::Key::Registry, HKEY_CURRENT_USER, own.m_Key.Path()};
    stUnknown.ulKind = 2;
    EXPECT_FALSE(own.m_Log.Initialize(L"Module", stUnknown, ProgramFolder() + L"\\Recorder"));

    own.Set(L"LogPrefix", 1U); // not its type
    ExpectInitialisedAndDisabled();
}

TEST(DebugLog, UnloadsALibraryThatFailsAndGoesOnWhenALineIsRefused)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set(L"Enable", 1U);
    trace.Record().Answer(5, 0);
    EXPECT_FALSE(own.Start());
    EXPECT_FALSE(own.TraceOneError());
    EXPECT_EQ(trace.Record().Open(), 1); // that of the recorder

    trace.Record().Answer(0, 5);
    EXPECT_TRUE(own.Start(L"\\Recorder\\"));
    EXPECT_FALSE(own.TraceOneError());
    trace.Record().Answer(0, 0);
    EXPECT_TRUE(own.TraceOneError());
    EXPECT_TRUE(own.m_Log.Uninitialize());
    EXPECT_EQ(trace.Record().Open(), 1);
}

TEST(DebugLog, HandsItsSettingsToTheLibrary)
{
    const TraceRecorder trace;
    const Library::ZkDbgSettings& stSettings = trace.Record().Settings();
    EXPECT_STREQ(stSettings.aszLogPrefix, L"vqx"); // the defaults
    EXPECT_STREQ(stSettings.aszLogExtension, L"log");
    EXPECT_STREQ(stSettings.aszLogFolder, L"");
    EXPECT_EQ(stSettings.ucRobust, 0);

    OwnLog own;
    own.Set(L"Enable", 1U);
    own.Set(L"LogProcess", 11U);
    own.Set(L"LogUnitType", 12U);
    own.Set(L"LogFolder", std::wstring(300, L'f'));
    own.Set(L"LogFile", std::wstring(L"file"));
    own.Set(L"Robust", 2U);
    own.Set(L"Debugger", 3U);
    ASSERT_TRUE(own.Start(L"\\Recorder", std::wstring(40, L'm').c_str()));
    EXPECT_THAT((std::vector{stSettings.ulLogProcess, stSettings.ulLogUnitType}), ElementsAre(11U, 12U));
    EXPECT_THAT((std::vector{stSettings.ucRobust, stSettings.ucDebugger}), ElementsAre(1, 1));
    EXPECT_EQ(stSettings.aszLogFolder, std::wstring(259, L'f')); // cut off to their fields
    EXPECT_EQ(stSettings.aszModuleName, std::wstring(31, L'm'));
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
    EXPECT_TRUE(log.Passes(TraceNotice) && !log.Passes(TraceError));
    EXPECT_STREQ(trace.Record().Settings().aszLogPrefix, L"p");
}

TEST(DebugLog, TakesOverSettingsButNoLibraryWhenInitialisedAgain)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set(L"Enable", 0U);
    EXPECT_TRUE(own.Start());
    own.Set(L"Enable", 1U);
    EXPECT_TRUE(own.Start());
    EXPECT_FALSE(own.TraceOneError()); // on, and without a library
    EXPECT_EQ(trace.Record().Open(), 1);
}

TEST(DebugLog, TakesLinesFromManyThreadsWhileItIsOpenedAndClosed)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set(L"Enable", 1U);
    std::atomic<bool> bStop = false;
    std::vector<std::thread> vecThread;
    for (int i = 0; i < 4; ++i) {
        vecThread.emplace_back([&] {
            while (!bStop) {
                own.TraceOneError();
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(own.Start());
        EXPECT_TRUE(own.m_Log.Uninitialize());
        trace.Record().Clear();
    }
    bStop = true;
    for (std::thread& rThread : vecThread) {
        rThread.join();
    }
    EXPECT_EQ(trace.Record().Open(), 1);
}
