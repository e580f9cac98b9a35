#pragma once

#include "ZkComn_Owner.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/** The lines that the library, and the readers in this program, write in this process. */
namespace Vrnt {

/**
 * Has this process's error lines seen from now on, for those who collect them. To be called before the library is
 * loaded; once is enough, further calls do nothing. Any thread may call. Without the trace library nothing is seen; the machine's
 * trace settings do not matter.
 * @param _tszFolder  of the trace library
 */
void WatchTrace(const std::filesystem::path& _tszFolder);

/**
 * As WatchTrace, and has the lines of the given levels written to a file in the form of a trace file. What the machine's
 * settings ask for is not written meanwhile.
 * @return false without the trace library
 */
bool RecordTrace(const std::filesystem::path& _tszFolder, std::uint32_t _ulLevelMask, ZkCommon::FileHandle _hFile);
void EndRecording();

/** Collects the error lines that this thread's calls write while the object lives. */
class ErrorLines
{
public:
    ErrorLines();
    ErrorLines(const ErrorLines&) = delete;
    ErrorLines& operator=(const ErrorLines&) = delete;
    ~ErrorLines();

    /** What the first lines say, the deepest cause first: the texts without time and source. */
    const std::vector<std::wstring>& Messages() const { return m_vecMessage; }
    void Clear() { m_vecMessage.clear(); }

private:
    friend struct TraceObserver;
    void Add(const wchar_t* _pszMessage);

    std::uint32_t m_ulThread;
    std::vector<std::wstring> m_vecMessage;
};

} // namespace Vrnt
