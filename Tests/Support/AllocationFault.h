#pragma once

#include <cstddef>

/**
 * While it lives, the _iNth block (counted from 1) of at least _uLarge bytes is refused: of those that are asked for
 * without exceptions, as the buffers of whole files and the module's own objects are, or else of those with exceptions,
 * as texts and containers are. At most one object at a time.
 */
class AllocationFault
{
public:
    AllocationFault(int _iNth, std::size_t _uLarge, bool _bThrows = false)
    {
        m_iUntilRefusal = _iNth;
        m_uLarge = _uLarge;
        m_bThrows = _bThrows;
    }
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault() { m_iUntilRefusal = 0; }

    static bool Refuses(std::size_t _uSize, bool _bThrows)
    {
        return m_iUntilRefusal > 0 && _bThrows == m_bThrows && _uSize >= m_uLarge && --m_iUntilRefusal == 0;
    }

private:
    static inline int m_iUntilRefusal = 0; // 0: none is refused
    static inline std::size_t m_uLarge = 0;
    static inline bool m_bThrows = false;
};
