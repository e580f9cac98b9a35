#include "TraceRecorder.h"

#include "../TraceLibraries/Recorder.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Library.h"
#include "ZkComn_Registry.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

using namespace ZkCommon;

namespace {

/** "TAG message" of "day time process:thread TAG <module> message - file(line)". */
std::wstring TagAndMessage(const std::wstring& _rtszRaw)
{
    std::size_t uTag = 0;
    for (int i = 0; i < 3; ++i) {
        uTag = _rtszRaw.find(L' ', uTag) + 1;
    }
    const std::size_t uMessage = _rtszRaw.find(L"> ", uTag) + 2;
    return _rtszRaw.substr(uTag, 4) + _rtszRaw.substr(uMessage, _rtszRaw.rfind(L" - ") - uMessage);
}

} // namespace

std::wstring ProgramFolder()
{
    wchar_t aszPath[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, aszPath, MAX_PATH);
    return std::filesystem::path(aszPath).parent_path().wstring();
}

TraceRecorder::TraceRecorder(std::uint32_t _ulLevelMask, const wchar_t* _pszModuleName)
    : m_hLibrary(::LoadLibraryW((ProgramFolder() + L"\\Recorder\\ZkDbgLog.dll").c_str())),
      m_pRecord(Library::FunctionAt<RecordOfTraceFunction>(::GetProcAddress(m_hLibrary.Get(), "RecordOfTrace"))())
{
    Clear();
    for (const wchar_t* pszSession : {L"\\InteractiveSession", L"\\ServiceSession"}) {
        Storage::Registry settings;
        settings.Create(HKEY_CURRENT_USER, m_Key.Path() + pszSession);
        settings.WriteNumber(L"Enable", 1);
        settings.WriteNumber(L"Level", _ulLevelMask);
    }
    EXPECT_TRUE(g_cDebugLog.Initialize(_pszModuleName, {Storage::Key::Registry, HKEY_CURRENT_USER, m_Key.Path()},
                                       ProgramFolder() + L"\\Recorder"));
}

TraceRecorder::~TraceRecorder()
{
    g_cDebugLog.Uninitialize();
}

std::vector<std::wstring> TraceRecorder::RawLines() const
{
    std::vector<std::wstring> vecLines;
    while (const wchar_t* pszLine = m_pRecord->pfnLine(vecLines.size())) {
        vecLines.emplace_back(pszLine);
    }
    return vecLines;
}

std::vector<std::wstring> TraceRecorder::Lines() const
{
    std::vector<std::wstring> vecLines = RawLines();
    std::ranges::transform(vecLines, vecLines.begin(), &TagAndMessage);
    return vecLines;
}

std::vector<std::wstring> TraceRecorder::Messages() const
{
    std::vector<std::wstring> vecLines = Lines();
    std::ranges::for_each(vecLines, [](std::wstring& _rtszLine) { _rtszLine.erase(0, 4); });
    return vecLines;
}

void TraceRecorder::Clear()
{
    m_pRecord->pfnClear();
}
