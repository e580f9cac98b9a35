#pragma once

#include "ZkComn_Owner.h"

#include <cstdint>
#include <string>

namespace ZkCommon::Storage::File {

/**
 * Serialises the stores of one file across threads, processes and sessions. The lock is a file beside it, ".lock" behind
 * its name, that only the user, the Administrators and Local System can open: nobody else can hold it. The system lets
 * go of it with the object, or with the process. An object belongs to one thread.
 */
class StoreLock
{
public:
    /** The longest wait of a store, in milliseconds. */
    static constexpr DWORD g_ulWait = 10000;

    /**
     * @param _ulWait  how long to wait for another holder, in milliseconds; 0: not at all
     * @return the system's error when the lock could not be had; the caller may then go on without it
     */
    std::uint32_t Acquire(const std::wstring& _tszFile, DWORD _ulWait);

private:
    FileHandle m_hFile;
};

} // namespace ZkCommon::Storage::File
