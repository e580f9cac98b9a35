#pragma once

#include <cstddef>
#include <windows.h>

/** What this process holds at a moment, to see whether something was left behind. */
struct Footprint
{
    DWORD ulHandles = 0;
    DWORD ulThreads = 0;
    std::size_t uHeapBytes = 0;    // in use, over all heaps
    std::size_t uPrivateBytes = 0; // committed pages of its own

    static Footprint Now();

    /** @return true when nothing here exceeds _rBefore */
    bool IsWithin(const Footprint& _rBefore) const;
};
