// For our DLLs, which have GCC's run time linked in: makes it give everything back when the module is unloaded, and throw
// when there is no memory.
//
// The run time keeps what a thread has thrown and caught in emulated thread-local storage on top of its POSIX threads.
// Neither is ever torn down with a module: each load and unload in which something was thrown would leave four handles and
// some blocks. Here that state is in the system's fiber-local storage, which frees it when a thread ends, and of all
// threads when the module goes.
//
// Its spare pool for exceptions without memory has a lock, for which memory is needed when it is first used. Where there is
// none, that fails, the failure is thrown, for which the pool is asked again, until the stack is full. The spare rooms for
// exceptions here need neither lock nor memory.

#include "ModuleRunTime.h"

#if defined(__GLIBCXX__) || defined(__MINGW32__)

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <exception>
#include <windows.h>

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

/** Memory for exceptions while there is no other. */
class SpareRooms
{
public:
    /** Null when all are taken, or when none is large enough. */
    void* Take(std::size_t _uSize) noexcept
    {
        for (Room& rstRoom : m_aRoom) {
            if (_uSize <= sizeof(rstRoom.aBytes) && !rstRoom.bTaken.exchange(true)) {
                return rstRoom.aBytes;
            }
        }
        return nullptr;
    }

    /** @return false when it is not one of them */
    bool GiveBack(const void* _pBytes) noexcept
    {
        for (Room& rstRoom : m_aRoom) {
            if (rstRoom.aBytes == _pBytes) {
                rstRoom.bTaken = false;
                return true;
            }
        }
        return false;
    }

private:
    struct Room
    {
        alignas(std::max_align_t) std::byte aBytes[512]{};
        std::atomic<bool> bTaken{false};
    };
    Room m_aRoom[64];
};

/** Takes and gives back the memory of exceptions; the program ends, as in the run time, when not even a spare room is left. */
class ExceptionMemory
{
public:
    /** Of so many bytes and the header, which is zeroed. */
    void* Take(std::size_t _uSize) noexcept
    {
        void* pMemory = std::malloc(m_uHeader + _uSize); // NOLINT(*-no-malloc)
        if (pMemory == nullptr) {
            pMemory = m_cSpare.Take(m_uHeader + _uSize);
        }
        if (pMemory == nullptr) {
            std::terminate();
        }
        return std::memset(pMemory, 0, m_uHeader);
    }
    void GiveBack(void* _pMemory) noexcept
    {
        if (!m_cSpare.GiveBack(_pMemory)) {
            std::free(_pMemory); // NOLINT(*-no-malloc)
        }
    }
    std::size_t Header() const noexcept { return m_uHeader; }

private:
    /** Bytes that the run time keeps before an exception; no header of it says how many. */
    static std::size_t HeaderSize() noexcept
    {
        alignas(std::max_align_t) std::byte aRoom[1024] = {};
        std::byte* const pException = aRoom + sizeof(aRoom) / 2;
        const auto* pHeader = abi::__cxa_init_primary_exception(pException, nullptr, nullptr);
        return static_cast<std::size_t>(pException - reinterpret_cast<const std::byte*>(pHeader));
    }

    const std::size_t m_uHeader = HeaderSize();
    SpareRooms m_cSpare{};
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
__attribute__((init_priority(101))) ExceptionMemory g_cExceptionMemory;

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

extern "C" void* __cxa_allocate_exception(std::size_t _uSize) noexcept
{
    return static_cast<std::byte*>(g_cExceptionMemory.Take(_uSize)) + g_cExceptionMemory.Header();
}

extern "C" void __cxa_free_exception(void* _pException) noexcept
{
    g_cExceptionMemory.GiveBack(static_cast<std::byte*>(_pException) - g_cExceptionMemory.Header());
}

// What rethrows an exception of a std::exception_ptr: a header alone, no larger than that of an exception.
extern "C" __cxa_dependent_exception* __cxa_allocate_dependent_exception() noexcept
{
    return static_cast<__cxa_dependent_exception*>(g_cExceptionMemory.Take(0));
}

extern "C" void __cxa_free_dependent_exception(__cxa_dependent_exception* _pException) noexcept
{
    g_cExceptionMemory.GiveBack(_pException);
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
