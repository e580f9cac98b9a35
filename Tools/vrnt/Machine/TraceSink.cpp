#include "Machine/TraceSink.h"

#include "ZkComn_DebugLog.h"
#include "ZkComn_Library.h"
#include "ZkComn_ZkDbgLine.h"
#include "ZkComn_ZkDbgSink.h"

#include <algorithm>

namespace Vrnt {

namespace Library = ZkCommon::Library;

/** All that look at lines. Calls of the sink come one at a time, but objects come and go beside them. */
struct TraceObserver
{
    ZkCommon::Synchronize::CriticalSection cLock;
    std::vector<ErrorLines*> vecCollector;
    ZkCommon::FileHandle hFile;
    std::uint32_t ulFileLevels = 0;
    ZkCommon::ModuleHandle hLibrary;
    Library::ZkDbgSetSinkFunction* pfnSetSink = nullptr;

    void See(const Library::ZkDbgLine& _rstLine)
    {
        const ZkCommon::Synchronize::SingleLock lock(&cLock);
        if (hFile && (_rstLine.ulLevel & ulFileLevels) != 0) {
            const std::string sText = Library::ToFileText(_rstLine.pszLine);
            DWORD ulWritten = 0;
            ::WriteFile(hFile.Get(), sText.data(), static_cast<DWORD>(sText.size()), &ulWritten, nullptr);
        }
        const std::uint32_t ulThread = ::GetCurrentThreadId();
        for (ErrorLines* const pCollector : vecCollector) {
            if (_rstLine.ulLevel == ZkCommon::TraceError && pCollector->m_ulThread == ulThread) {
                pCollector->Add(_rstLine.pszMessage);
            }
        }
    }
};

namespace {

constexpr std::size_t g_uMostLines = 50; // the rest says how the failure went up

TraceObserver& Observer()
{
    static TraceObserver s_stObserver;
    return s_stObserver;
}

void SeeLine(void* /*_pContext*/, const Library::ZkDbgLine* _pstLine)
{
    try {
        Observer().See(*_pstLine);
    } catch (...) { // memory ran out: the line is lost to us
    }
}

/** Loads the trace library, and sets the sink. @return false without a trace library that has one */
bool Watch(const std::filesystem::path& _tszFolder, std::uint32_t _ulLevelMask)
{
    TraceObserver& rObserver = Observer();
    if (!rObserver.hLibrary) {
        rObserver.hLibrary.Reset(::LoadLibraryW((_tszFolder / L"ZkDbgLog.dll").c_str()));
        rObserver.pfnSetSink = rObserver.hLibrary ? Library::FunctionAt<Library::ZkDbgSetSinkFunction>(
                                                        ::GetProcAddress(rObserver.hLibrary.Get(), "ZkDbgSetSink"))
                                                  : nullptr;
    }
    if (rObserver.pfnSetSink == nullptr) {
        return false;
    }
    rObserver.pfnSetSink(&SeeLine, nullptr, _ulLevelMask);
    ZkCommon::g_cDebugLog.AttachSink(); // that of the readers in this program
    return true;
}

} // namespace

void WatchTrace(const std::filesystem::path& _tszFolder)
{
    [[maybe_unused]] static const bool s_bWatched =
        Observer().hLibrary || Watch(_tszFolder, ZkCommon::TraceError); // RecordTrace watches, too
}

bool RecordTrace(const std::filesystem::path& _tszFolder, std::uint32_t _ulLevelMask, ZkCommon::FileHandle _hFile)
{
    Observer().hFile = std::move(_hFile);
    Observer().ulFileLevels = _ulLevelMask;
    return Watch(_tszFolder, _ulLevelMask | ZkCommon::TraceError | Library::g_ulSinkAlone);
}

void EndRecording()
{
    Watch({}, ZkCommon::TraceError); // returns when the last line is in the file
    Observer().hFile.Reset();
}

ErrorLines::ErrorLines() : m_ulThread(::GetCurrentThreadId())
{
    const ZkCommon::Synchronize::SingleLock lock(&Observer().cLock);
    Observer().vecCollector.push_back(this);
}

ErrorLines::~ErrorLines()
{
    const ZkCommon::Synchronize::SingleLock lock(&Observer().cLock);
    std::erase(Observer().vecCollector, this);
}

void ErrorLines::Add(const wchar_t* _pszMessage)
{
    if (m_vecMessage.size() < g_uMostLines) {
        m_vecMessage.emplace_back(_pszMessage);
    }
}

} // namespace Vrnt
