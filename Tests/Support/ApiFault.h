#pragma once

#include <memory>
#include <windows.h>

/**
 * Makes a system function fail as the code under test sees it: while the object lives, the calls from number _iFirst
 * (counted from 1) on, _iCount of them, answer a failure and leave _ulError as the last error. Functions are named by
 * API(WriteFile); only calls of this program's own code are concerned. At most one object per function at a time.
 */
template <class TFunction, void** _ppSlot>
class ApiFault;

template <class R, class... TArgs, void** _ppSlot>
class ApiFault<R(TArgs...), _ppSlot>
{
public:
    explicit ApiFault(DWORD _ulError, int _iFirst = 1, int _iCount = 1)
        : m_pReal(reinterpret_cast<R (*)(TArgs...)>(*_ppSlot))
    {
        m_ulError = _ulError;
        m_iFirst = _iFirst;
        m_iBehind = _iFirst + _iCount;
        m_iCalls = 0;
        m_pPresent = this;
        Patch(reinterpret_cast<void*>(&Call));
    }
    ApiFault(const ApiFault&) = delete;
    ApiFault& operator=(const ApiFault&) = delete;
    ~ApiFault() { Patch(reinterpret_cast<void*>(m_pReal)); }

    int Calls() const { return m_iCalls; }

private:
    static void Patch(void* _pFunction)
    {
        DWORD ulProtection = 0; // the imports may be in read-only memory
        ::VirtualProtect(_ppSlot, sizeof(*_ppSlot), PAGE_READWRITE, &ulProtection);
        *_ppSlot = _pFunction;
    }
    static R Call(TArgs... _args)
    {
        const int iCall = ++m_iCalls;
        if (iCall < m_iFirst || iCall >= m_iBehind) {
            return m_pPresent->m_pReal(_args...);
        }
        ::SetLastError(m_ulError);
        if constexpr (std::is_pointer_v<R>) {
            return INVALID_HANDLE_VALUE;
        } else {
            return R{};
        }
    }

    R (*m_pReal)(TArgs...);
    static inline ApiFault* m_pPresent = nullptr;
    static inline DWORD m_ulError = 0;
    static inline int m_iFirst = 0;
    static inline int m_iBehind = 0;
    static inline int m_iCalls = 0;
};

// The program's import slots, under the names that the compilers give them.
extern "C" {
extern void* __imp_CreateFileW;                // NOLINT
extern void* __imp_DeleteFileW;                // NOLINT
extern void* __imp_FlushFileBuffers;           // NOLINT
extern void* __imp_GetModuleFileNameW;         // NOLINT
extern void* __imp_MoveFileExW;                // NOLINT
extern void* __imp_ReadFile;                   // NOLINT
extern void* __imp_SetEndOfFile;               // NOLINT
extern void* __imp_SetFileInformationByHandle; // NOLINT
extern void* __imp_WriteFile;                  // NOLINT
}
#define API(name) decltype(::name), &__imp_##name

/** For tables of steps that fail: a fault that lives as long as the pointer. */
template <class TFunction, void** _ppSlot>
std::shared_ptr<void> MakeFault(DWORD _ulError, int _iFirst)
{
    return std::make_shared<ApiFault<TFunction, _ppSlot>>(_ulError, _iFirst);
}
