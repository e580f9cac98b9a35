#pragma once

#include <cstddef>

/**
 * While it lives, the _iNth block (counted from 1) of at least _uLarge bytes that is asked for without exceptions, as
 * the buffers of whole files and the module's own objects are, is refused. At most one object at a time.
 */
class AllocationFault
{
public:
    AllocationFault(int _iNth, std::size_t _uLarge);
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();
};
