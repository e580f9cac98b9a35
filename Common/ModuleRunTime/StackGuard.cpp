// The value by which functions see that their stack was overwritten, and what happens then; for mingw-w64, whose own run
// time draws the value from a cryptographic provider. For that the system loads three libraries whenever a module is
// loaded: with the parser library it took longer than reading most documents.

#include <cstdint>
#include <windows.h>

extern "C" {

/** Documented as RtlGenRandom, under this name in advapi32.dll. */
BOOLEAN NTAPI SystemFunction036(PVOID _pBuffer, ULONG _ulLength);

// The compiler gives the names. NOLINTBEGIN(bugprone-reserved-identifier)
std::uintptr_t __stack_chk_guard;

/** Ends the process at once: what is on the stack cannot be trusted, and no handler runs on it. */
[[noreturn]] void __stack_chk_fail()
{
    EXCEPTION_RECORD stRecord{};
    stRecord.ExceptionCode = STATUS_STACK_BUFFER_OVERRUN;
    ::RaiseFailFastException(&stRecord, nullptr, FAIL_FAST_GENERATE_EXCEPTION_ADDRESS);
    ::ExitProcess(STATUS_STACK_BUFFER_OVERRUN); // not reached
}

/** The same for a checked copy that does not fit. */
[[noreturn]] void __chk_fail()
{
    __stack_chk_fail();
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

/** Before all else of the module: a function that began with another value would find it changed. */
[[gnu::constructor(101)]] void DrawStackGuard()
{
    LARGE_INTEGER stCount{};
    ::QueryPerformanceCounter(&stCount); // for a system that has no random numbers
    __stack_chk_guard = static_cast<std::uintptr_t>(stCount.QuadPart) ^ reinterpret_cast<std::uintptr_t>(&stCount);
    ::SystemFunction036(&__stack_chk_guard, sizeof(__stack_chk_guard));
}

} // namespace
