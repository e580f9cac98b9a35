#pragma once

#include <windows.h>

namespace ZkCommon {

/**
 * For what another process may hinder for a moment: the body of a loop tries, its condition says whether waiting may
 * help and asks for another try. An object belongs to one loop.
 */
class Retry
{
public:
    /**
     * @param _ulWait   how long to try, from now on, in milliseconds; 0: once
     * @param _ulPause  the time between two tries, in milliseconds
     */
    Retry(DWORD _ulWait, DWORD _ulPause) noexcept : m_ulWait(_ulWait), m_ulPause(_ulPause) {}

    /** Waits for the pause; false, at once and with the last error as it was, when the time is over. */
    bool Again() const noexcept
    {
        if (::GetTickCount64() - m_ullStart >= m_ulWait) {
            return false;
        }
        ::Sleep(m_ulPause);
        return true;
    }

private:
    DWORD m_ulWait;
    DWORD m_ulPause;
    ULONGLONG m_ullStart = ::GetTickCount64();
};

} // namespace ZkCommon
