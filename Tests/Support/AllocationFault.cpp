#include "AllocationFault.h"

#include <cstdlib>
#include <new>

void* operator new(std::size_t _uSize)
{
    void* pMemory = AllocationFault::Refuses(_uSize, true) ? nullptr : std::malloc(_uSize == 0 ? 1 : _uSize);
    return pMemory != nullptr ? pMemory : throw std::bad_alloc();
}

void* operator new(std::size_t _uSize, const std::nothrow_t&) noexcept
{
    return AllocationFault::Refuses(_uSize, false) ? nullptr : std::malloc(_uSize == 0 ? 1 : _uSize);
}

void* operator new[](std::size_t _uSize, const std::nothrow_t& _rstNoThrow) noexcept
{
    return operator new(_uSize, _rstNoThrow);
}
