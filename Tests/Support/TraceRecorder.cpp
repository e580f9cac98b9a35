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

/** Behind the blank that follows the thread's number: "day time process:thread TAG <module> message - file(line)". */
std::wstring FromTag(const std::wstring& _rtszRaw)
{
    std::size_t uAt = 0;
    for (int i = 0; i < 3; ++i) {
        uAt = _rtszRaw.find(L' ', uAt) + 1;
    }
    return _rtszRaw.substr(uAt);
}

std::wstring MessageOf(const std::wstring& _rtszRaw)
{
    const std::wstring tszRest = FromTag(_rtszRaw);
    const std::size_t uStart = tszRest.find(L"> ") + 2;
    return tszRest.substr(uStart, tszRest.rfind(L" - ") - uStart);
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
    for (std::wstring& tszLine : vecLines) {
        tszLine = FromTag(tszLine).substr(0, 4) + MessageOf(tszLine);
    }
    return vecLines;
}

std::vector<std::wstring> TraceRecorder::Messages() const
{
    std::vector<std::wstring> vecLines = RawLines();
    std::ranges::transform(vecLines, vecLines.begin(), MessageOf);
    return vecLines;
}

void TraceRecorder::Clear()
{
    m_pRecord->pfnClear();
}
