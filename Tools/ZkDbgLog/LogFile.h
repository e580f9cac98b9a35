#pragma once

#include "ZkComn_Owner.h"
#include "ZkComn_ZkDbgSettings.h"

#include <cstdint>
#include <string>
#include <string_view>

/**
 * The file of one trace: folder\prefix + file + .extension holds the lines of today. At the first line of a new day it
 * is renamed with the date of its own first line (folder\prefix + file + -YYYYMMDD.extension, or -YYYYMMDD-2 and so on
 * when somebody has used that name), and of all these files the ten newest are kept. When somebody renames or deletes the file, a new one is begun within a
 * second. Any number of processes may write one file at once. Not thread-safe.
 */
class LogFile
{
public:
    /**
     * The folder of the program is used for an empty folder, the module's name for an empty file name. A folder that
     * is not there is created.
     */
    explicit LogFile(const ZkCommon::Library::ZkDbgSettings& _rstSettings);

    /** Opens the file for lines of that day. @return a system error, 0 on success */
    std::uint32_t Open(const SYSTEMTIME& _rstTime);
    /** Appends bytes of that day as one piece. @return a system error, 0 on success */
    std::uint32_t Append(const SYSTEMTIME& _rstTime, const std::string& _rsBytes);

private:
    std::wstring Path() const { return m_tszStem + m_tszExtension; }
    bool MoveToDay(std::uint32_t _ulDay) const;
    bool IsDated(std::wstring_view _svName) const;
    std::uint32_t OpenByName();
    bool IsStillNamed() const;
    std::uint32_t DayOfContent(std::uint32_t _ulWhenEmpty) const;
    void RemoveOld() const;

    std::wstring m_tszStem;      // folder\prefix + file
    std::wstring m_tszExtension; // with its dot, or empty
    bool m_bRobust;
    ZkCommon::FileHandle m_hFile;
    std::uint32_t m_ulDay = 0;      // YYYYMMDD of the lines that the file takes
    WORD m_usLookedAt = 0;          // second of the last look at the file's name
    ULONGLONG m_ullNoWaitUntil = 0; // the time until which nothing waits for the lock, in ticks
};
