#pragma once

#include <windows.h>

/** The library's only locks. */
namespace ZkCommon::Synchronize {

class Base
{
public:
    Base() = default;
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    virtual ~Base() = default;
    virtual void Lock() noexcept = 0;
    virtual void Unlock() noexcept = 0;
};

/** Owns one Windows critical section; the thread that holds it may lock it again. */
class CriticalSection final : public Base
{
public:
    CriticalSection() noexcept { ::InitializeCriticalSection(&m_stSection); }
    ~CriticalSection() override { ::DeleteCriticalSection(&m_stSection); }
    void Lock() noexcept override { ::EnterCriticalSection(&m_stSection); }
    void Unlock() noexcept override { ::LeaveCriticalSection(&m_stSection); }

private:
    CRITICAL_SECTION m_stSection{};
};

/** Holds a lock for the length of a scope. */
class SingleLock
{
public:
    explicit SingleLock(Base* _pLock) noexcept : m_pLock(_pLock)
    {
        if (m_pLock != nullptr) {
            m_pLock->Lock();
        }
    }
    SingleLock(const SingleLock&) = delete;
    SingleLock& operator=(const SingleLock&) = delete;
    virtual ~SingleLock()
    {
        if (m_pLock != nullptr) {
            m_pLock->Unlock();
        }
    }

private:
    Base* m_pLock;
};

} // namespace ZkCommon::Synchronize
