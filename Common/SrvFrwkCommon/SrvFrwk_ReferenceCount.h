#pragma once

#include "ZkComn_Synchronize.h"

#include <cstdint>

namespace SrvFrwk::Utility {

/** A count that neither wraps nor falls below 0. The caller holds Lock() around every other operation. */
class ReferenceCount
{
public:
    ReferenceCount() noexcept;
    ReferenceCount(const ReferenceCount&) = delete;
    ReferenceCount& operator=(const ReferenceCount&) = delete;
    virtual ~ReferenceCount() = default;

    ZkCommon::Synchronize::Base* Lock() noexcept { return &m_cLock; }
    void AddRef() noexcept;
    void Release() noexcept;
    std::uint32_t Count() const noexcept { return m_ulCount; }

protected:
    ZkCommon::Synchronize::CriticalSection m_cLock;
    std::uint32_t m_ulCount;
};

} // namespace SrvFrwk::Utility
