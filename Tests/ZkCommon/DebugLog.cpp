#include "ZkComn_DebugLog.h"

#include "../TraceLibraries/Recorder.h"
#include "TempFolder.h"
#include "TestKey.h"
#include "TraceRecorder.h"

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
        SetForTrace(m_Key, _pszName, _rValue);
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
        EXPECT_TRUE(own.Start() && own.TraceOneError() && !own.m_Log.Passes(TraceError) && own.m_Log.Uninitialize());
    };
    const auto ExpectNotInitialised = [&] { EXPECT_FALSE(own.TraceOneError() || own.m_Log.Uninitialize()); };
    ExpectNotInitialised();
    ExpectInitialisedAndDisabled(); // without the key
    ExpectNotInitialised();
    own.Set(L"Enable", 0U);
    ExpectInitialisedAndDisabled();

    // On, but the library is not there, lacks an entry point, or its folder is none.
    own.Set(L"Enable", 1U);
    for (const wchar_t* pszFolder : {L"\\NoSuchFolder", L"\\Incomplete", L"\\Incomplete\\ZkDbgLog.dll"}) {
        EXPECT_FALSE(own.Start(pszFolder));
        ExpectNotInitialised();
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
    }
    EXPECT_FALSE(
        own.m_Log.Initialize(L"Module", {2, HKEY_CURRENT_USER, own.m_Key.Path()}, ProgramFolder() + L"\\Recorder"));

    own.Set(L"LogPrefix", 1U); // not its type
    ExpectInitialisedAndDisabled();
}

TEST(DebugLog, UnloadsALibraryThatFailsAndGoesOnWhenALineIsRefused)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set(L"Enable", 1U);
    trace.Record().ulToInitialize = 5;
    EXPECT_FALSE(own.Start() || own.TraceOneError());
    EXPECT_EQ(trace.Record().iOpen, 1); // that of the recorder

    trace.Record().ulToInitialize = 0;
    trace.Record().ulToTrace = 5;
    EXPECT_TRUE(own.Start(L"\\Recorder\\"));
    EXPECT_FALSE(own.TraceOneError());
    trace.Record().ulToTrace = 0;
    EXPECT_TRUE(own.TraceOneError() && own.m_Log.Uninitialize());
    EXPECT_EQ(trace.Record().iOpen, 1);
}

TEST(DebugLog, HandsItsSettingsToTheLibrary)
{
    const TraceRecorder trace;
    const Library::ZkDbgSettings& stSettings = trace.Record().stSettings;
    const auto Texts = [&stSettings] {
        return std::vector<std::wstring>{stSettings.aszModuleName, stSettings.aszLogFolder, stSettings.aszLogPrefix,
                                         stSettings.aszLogFile, stSettings.aszLogExtension};
    };
    EXPECT_THAT(Texts(), ElementsAre(L"Varnhelt", L"", L"vqx", L"", L"log")); // the defaults
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
    EXPECT_THAT((std::vector<std::uint32_t>{stSettings.ulLogProcess, stSettings.ulLogUnitType, stSettings.ucRobust,
                                            stSettings.ucDebugger}),
                ElementsAre(11, 12, 1, 1));
    EXPECT_THAT(Texts(), ElementsAre(std::wstring(31, L'm'), std::wstring(259, L'f'), L"vqx", L"file", L"log")); // cut
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
    EXPECT_STREQ(trace.Record().stSettings.aszLogPrefix, L"p");
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
    EXPECT_EQ(trace.Record().iOpen, 1);
}

TEST(DebugLog, TakesLinesFromManyThreadsWhileItIsOpenedAndClosed)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set(L"Enable", 1U);
    std::vector<std::jthread> vecThread;
    for (int i = 0; i < 4; ++i) {
        vecThread.emplace_back([&](const std::stop_token& _rStop) {
            while (!_rStop.stop_requested()) {
                own.TraceOneError();
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(own.Start() && own.m_Log.Uninitialize());
        trace.Record().pfnClear();
    }
    vecThread.clear();
    EXPECT_EQ(trace.Record().iOpen, 1);
}
