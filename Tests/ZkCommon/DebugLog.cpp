#include "ZkComn_DebugLog.h"

#include "../TraceLibraries/Recorder.h"
#include "TempFolder.h"
#include "TestKey.h"
#include "TraceRecorder.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <gmock/gmock-more-matchers.h>
#include <thread>

using namespace ZkCommon;
using testing::ElementsAre;

namespace {

/** A log with an ini file of its own. */
struct OwnLog
{
    /** Settings for sessions of both kinds: lines, each ended. */
    void Set(const std::string& _rsLines) const
    {
        m_Folder.Write(L"trace.ini", "[InteractiveSession]\r\n" + _rsLines + "[ServiceSession]\r\n" + _rsLines);
    }
    bool Start(const wchar_t* _pszFolder = L"\\Recorder", const wchar_t* _pszModule = L"Module")
    {
        return m_Log.Initialize(_pszModule, {Storage::Key::IniFile, nullptr, m_Folder.File(L"trace.ini")},
                                ProgramFolder() + _pszFolder);
    }
    bool TraceOneError() { return m_Log.Trace("Test.cpp", 1, TraceError, L"text"); }

    TempFolder m_Folder;
    DebugLog m_Log;
};

} // namespace

TEST(DebugLog, WritesALineWithTimeProcessThreadTagModuleMessageAndSource)
{
    const TraceRecorder trace(0x111, L"Module");
    EXPECT_TRUE(g_cDebugLog.Trace("..\\Folder/FunctionManager.cpp", 50, TraceNotice, L"message %s - %d", L"text", 7));
    ASSERT_EQ(trace.RawLines().size(), 1U);
    EXPECT_THAT(
        String::ToUtf8(trace.RawLines()[0]),
        testing::MatchesRegex("\\d\\d/\\d\\d/\\d\\d\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d \\w\\w\\w\\w+:\\w\\w\\w\\w+ "
                              "@@@ <Module> message text - 7 - FunctionManager\\(50\\)\r\n"));
    SYSTEMTIME stNow{};
    ::GetLocalTime(&stNow);
    EXPECT_EQ(std::stoi(trace.RawLines()[0].substr(6)), stNow.wYear); // behind the day and the month
}

TEST(DebugLog, WritesOnlyLevelsOfItsMaskTagsThemAndCutsNothingOff)
{
    const TraceRecorder trace(0x112);
    for (const std::uint32_t ulLevel : {1U, 16U, 256U, 2U, 0U, 0x112U, 4U, 0x201U}) {
        const bool bWritten = g_cDebugLog.Passes(ulLevel);
        EXPECT_EQ(g_cDebugLog.Trace("Test.cpp", 1, ulLevel, L"%u", ulLevel), bWritten) << ulLevel;
    }
    const std::wstring tszLong(1000000, L'x');
    Trace(TraceError, L"%s", tszLong);
    EXPECT_EQ(trace.Lines(), Lines({L"@@@ 16", L"!!! 256", L"??? 2", L"??? 274", L"!!! " + tszLong}));
}

TEST(DebugLog, IsSilentlyOffWithoutSettingsOrLibrary)
{
    OwnLog own;
    const auto ExpectInitialisedAndDisabled = [&] {
        EXPECT_TRUE(own.Start() && own.TraceOneError() && !own.m_Log.Passes(TraceError) && own.m_Log.Uninitialize());
    };
    const auto ExpectNotInitialised = [&] { EXPECT_FALSE(own.TraceOneError() || own.m_Log.Uninitialize()); };
    ExpectNotInitialised();
    ExpectInitialisedAndDisabled(); // without the file
    ExpectNotInitialised();
    own.Set("Enable=0\r\n");
    ExpectInitialisedAndDisabled();

    // Initialised again it takes over the settings, but no library.
    EXPECT_TRUE(own.Start());
    own.Set("Enable=1\r\n");
    EXPECT_TRUE(own.Start() && !own.TraceOneError() && own.m_Log.Uninitialize());
    EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);

    // On, but the library is not there, is missing an entry point, or its folder is not one.
    for (const wchar_t* pszFolder : {L"\\NoSuchFolder", L"\\Incomplete", L"\\Incomplete\\ZkDbgLog.dll"}) {
        EXPECT_FALSE(own.Start(pszFolder));
        ExpectNotInitialised();
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
    }
    const TestKey key;
    EXPECT_FALSE(own.m_Log.Initialize(L"Module", {2, HKEY_CURRENT_USER, key.Path()}, ProgramFolder() + L"\\Recorder"));

    for (const wchar_t* pszSession : {L"\\InteractiveSession", L"\\ServiceSession"}) {
        Storage::Registry settings;
        settings.Create(HKEY_CURRENT_USER, key.Path() + pszSession);
        settings.WriteNumber(L"Enable", 1);
        settings.WriteNumber(L"LogPrefix", 1); // not its type
    }
    EXPECT_TRUE(own.m_Log.Initialize(L"Module", {0, HKEY_CURRENT_USER, key.Path()}, ProgramFolder() + L"\\Recorder"));
    EXPECT_TRUE(own.TraceOneError() && !own.m_Log.Passes(TraceError));
}

TEST(DebugLog, UnloadsALibraryThatFailsAndGoesOnWhenALineIsRefused)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set("Enable=1\r\n");
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
    EXPECT_EQ(Texts(), Lines({L"Varnhelt", L"", L"vqx", L"", L"log"})); // the defaults
    EXPECT_EQ(stSettings.ucRobust, 0);

    OwnLog own;
    own.Set("Enable=1\r\nLevel=16\r\nLogProcess=11\r\nLogUnitType=12\r\nLogFolder=" + std::string(300, 'f') +
            "\r\nLogFile=file\r\nRobust=2\r\nDebugger=3\r\n");
    ASSERT_TRUE(own.Start(L"\\Recorder", std::wstring(40, L'm').c_str()));
    EXPECT_THAT((std::vector<std::uint32_t>{stSettings.ulLogProcess, stSettings.ulLogUnitType, stSettings.ucRobust,
                                            stSettings.ucDebugger}),
                ElementsAre(11, 12, 1, 1));
    EXPECT_EQ(Texts(), Lines({std::wstring(31, L'm'), std::wstring(259, L'f'), L"vqx", L"file", L"log"})); // cut
    EXPECT_NE(stSettings.stTime.wYear, 0);
    EXPECT_TRUE(own.m_Log.Passes(TraceNotice) && !own.m_Log.Passes(TraceError));
}

TEST(DebugLog, HandsLinesToTheSinkOfItsProcessWhateverTheSettingsSay)
{
    const ModuleHandle hLibrary(::LoadLibraryW((ProgramFolder() + L"\\ZkDbgLog.dll").c_str()));
    const auto SetSink =
        Library::FunctionAt<Library::ZkDbgSetSinkFunction>(::GetProcAddress(hLibrary.Get(), "ZkDbgSetSink"));
    ASSERT_NE(SetSink, nullptr);
    std::vector<std::wstring> vecMessage;
    const auto Keep = [](void* _pContext, const Library::ZkDbgLine* _pstLine) {
        EXPECT_TRUE(std::wstring(_pstLine->pszLine).ends_with(_pstLine->pszMessage + std::wstring(L" - Test(1)\r\n")));
        static_cast<std::vector<std::wstring>*>(_pContext)->emplace_back(_pstLine->pszMessage);
    };
    OwnLog own;
    own.m_Log.AttachSink();
    EXPECT_FALSE(own.m_Log.Passes(TraceError)); // there is none yet
    SetSink(Keep, &vecMessage, TraceError | TraceNotice);
    own.m_Log.AttachSink();
    EXPECT_TRUE(own.m_Log.Passes(TraceError) && !own.m_Log.Passes(TraceDetail));
    EXPECT_FALSE(own.TraceOneError() || own.m_Log.Uninitialize()); // as without a sink: not initialised
    EXPECT_TRUE(own.Start() && own.TraceOneError());               // initialised, and off
    EXPECT_FALSE(own.m_Log.Passes(TraceDetail));
    SetSink(nullptr, nullptr, 0);
    EXPECT_TRUE(own.TraceOneError() && own.m_Log.Uninitialize() && !own.m_Log.Passes(TraceError));
    EXPECT_EQ(vecMessage, Lines({L"text", L"text"}));
}

TEST(DebugLog, TakesLinesFromManyThreadsWhileItIsOpenedAndClosed)
{
    const TraceRecorder trace;
    OwnLog own;
    own.Set("Enable=1\r\n");
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
