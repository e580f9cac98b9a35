#include "AllocationFault.h"

#include <cstdlib>
#include <new>

namespace {

int g_iUntilRefusal = 0; // 0: none is refused
std::size_t g_uLarge = 0;

void* Allocate(std::size_t _uSize) noexcept
{
    const bool bRefuse = g_iUntilRefusal > 0 && _uSize >= g_uLarge && --g_iUntilRefusal == 0;
    return bRefuse ? nullptr : std::malloc(_uSize == 0 ? 1 : _uSize);
}

} // namespace

AllocationFault::AllocationFault(int _iNth, std::size_t _uLarge)
{
    g_iUntilRefusal = _iNth;
    g_uLarge = _uLarge;
}

AllocationFault::~AllocationFault()
{
    g_iUntilRefusal = 0;
}

void* operator new(std::size_t _uSize, const std::nothrow_t&) noexcept
{
    return Allocate(_uSize);
}

void* operator new[](std::size_t _uSize, const std::nothrow_t&) noexcept
{
    return Allocate(_uSize);
}
