// For our DLLs, which have GCC's run time linked in: makes it give everything back when the module is unloaded.
//
// The run time keeps what a thread has thrown and caught in emulated thread-local storage on top of its POSIX threads.
// Neither is ever torn down with a module: each load and unload in which something was thrown would leave four handles and
// some blocks. Here that state is in the system's fiber-local storage, which frees it when a thread ends, and of all
// threads when the module goes. The spare pool for exceptions without memory, 73 KB, is freed then too.

#include "ModuleRunTime.h"

#if defined(__GLIBCXX__) || defined(__MINGW32__)

#include <atomic>
#include <cstdlib>
#include <cxxabi.h>
#include <windows.h>

namespace __gnu_cxx { // NOLINT: the run time's own, declared in no header
void __freeres();
}

namespace {

/** The C++ ABI's __cxa_eh_globals, of which the run time shows no definition. */
struct ExceptionState
{
    void* pCaught;
    unsigned int uUncaught;
};

/** The states of threads whose own could not be had; one that is taken stays its thread's. */
class SpareStates
{
public:
    /** Null when all are taken. */
    ExceptionState* Find() noexcept
    {
        const DWORD ulThread = ::GetCurrentThreadId();
        for (Spare& rstSpare : m_aSpare) {
            DWORD ulFree = 0;
            if (rstSpare.ulThread.load() == ulThread || rstSpare.ulThread.compare_exchange_strong(ulFree, ulThread)) {
                return &rstSpare.stState;
            }
        }
        return nullptr;
    }

private:
    struct Spare
    {
        std::atomic<DWORD> ulThread{0};
        ExceptionState stState{};
    };
    Spare m_aSpare[64];
};

class RunTime
{
public:
    RunTime() noexcept
        // NOLINTNEXTLINE(*-no-malloc): no C++ run time under this
        : m_ulSlot(::FlsAlloc([](void* _pState) { std::free(_pState); })), m_bFiber(m_ulSlot != FLS_OUT_OF_INDEXES)
    {
        if (!m_bFiber) { // an older system has 128 for all modules; a thread's few bytes then stay when it ends
            m_ulSlot = ::TlsAlloc();
        }
    }
    RunTime(const RunTime&) = delete;
    RunTime& operator=(const RunTime&) = delete;
    ~RunTime()
    {
        if (m_bFiber) {
            ::FlsFree(m_ulSlot);
        } else if (HasSlot()) {
            ::TlsFree(m_ulSlot);
        }
        __gnu_cxx::__freeres();
    }

    bool HasSlot() const noexcept { return m_bFiber || m_ulSlot != TLS_OUT_OF_INDEXES; }

    void* State() noexcept
    {
        void* pState = m_bFiber ? ::FlsGetValue(m_ulSlot) : ::TlsGetValue(m_ulSlot);
        if (pState == nullptr) {
            pState = std::calloc(1, sizeof(ExceptionState)); // NOLINT(*-no-malloc)
            if (pState == nullptr || !(m_bFiber ? ::FlsSetValue(m_ulSlot, pState) : ::TlsSetValue(m_ulSlot, pState))) {
                std::free(pState); // NOLINT(*-no-malloc)
                pState = m_cSpare.Find();
            }
        }
        if (pState == nullptr) {
            std::abort(); // as the run time does: nothing can be thrown without it
        }
        return pState;
    }

private:
    DWORD m_ulSlot;
    bool m_bFiber;
    SpareStates m_cSpare{};
};

// Made before and destroyed after every other object, since those may throw and catch.
__attribute__((init_priority(101))) RunTime g_cRunTime;

} // namespace

namespace __cxxabiv1 { // NOLINT: replaces the run time's functions of these names

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept
{
    return static_cast<__cxa_eh_globals*>(g_cRunTime.State());
}

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept
{
    return __cxa_get_globals();
}

} // namespace __cxxabiv1

bool ModuleRunTime::Attach() noexcept
{
    return g_cRunTime.HasSlot();
}

#else

bool ModuleRunTime::Attach() noexcept
{
    return true;
}

#endif
