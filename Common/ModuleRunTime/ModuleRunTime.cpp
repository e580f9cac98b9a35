// For our DLLs, which have GCC's run time linked in: makes it give everything back when the module is unloaded.
//
// The run time keeps what a thread has thrown and caught in emulated thread-local storage on top of its POSIX threads.
// Neither is ever torn down with a module: each load and unload in which something was thrown would leave four handles and
// some blocks behind. Here that state lies in the system's fiber-local storage, which frees it when a thread ends, and of
// all threads when the module goes. The spare pool for exceptions without memory, 73 KB, is freed then too.

#if defined(__GLIBCXX__) || defined(__MINGW32__)

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

class ModuleRunTime
{
public:
    ModuleRunTime() noexcept
        // NOLINTNEXTLINE(*-no-malloc): no C++ run time under this
        : m_ulSlot(::FlsAlloc([](void* _pState) { std::free(_pState); }))
    {}
    ModuleRunTime(const ModuleRunTime&) = delete;
    ModuleRunTime& operator=(const ModuleRunTime&) = delete;
    ~ModuleRunTime()
    {
        ::FlsFree(m_ulSlot);
        __gnu_cxx::__freeres();
    }

    void* State() const noexcept
    {
        void* pState = ::FlsGetValue(m_ulSlot);
        if (pState == nullptr) {
            pState = std::calloc(1, sizeof(ExceptionState)); // NOLINT(*-no-malloc)
            if (pState == nullptr || ::FlsSetValue(m_ulSlot, pState) == FALSE) {
                std::abort(); // as the run time does: nothing can be thrown without it
            }
        }
        return pState;
    }

private:
    DWORD m_ulSlot;
};

// Made before and destroyed after every other object, since those may throw and catch.
__attribute__((init_priority(101))) const ModuleRunTime g_cModuleRunTime;

} // namespace

namespace __cxxabiv1 { // NOLINT: replaces the run time's functions of these names

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept
{
    return static_cast<__cxa_eh_globals*>(g_cModuleRunTime.State());
}

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept
{
    return __cxa_get_globals();
}

} // namespace __cxxabiv1

#endif
