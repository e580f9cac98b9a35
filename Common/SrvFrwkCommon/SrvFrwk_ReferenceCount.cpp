#include "SrvFrwk_ReferenceCount.h"

#include "ZkComn_DebugLog.h"

#include <limits>

namespace SrvFrwk::Utility {

using namespace ZkCommon;

ReferenceCount::ReferenceCount() noexcept
{
    const Synchronize::SingleLock cGuard(&m_cLock);
    m_ulCount = 0; // NOLINT(cppcoreguidelines-prefer-member-initializer): under the lock, as every access
}

void ReferenceCount::AddRef() noexcept
{
    if (m_ulCount == std::numeric_limits<std::uint32_t>::max()) {
        Trace(TraceError, L"***ReferenceCount::AddRef() - Reference Count was the upper limit.");
        return;
    }
    ++m_ulCount;
}

void ReferenceCount::Release() noexcept
{
    if (m_ulCount == 0) {
        Trace(TraceError, L"***ReferenceCount::AddRef() - Reference Count was the lower limit.");
        return;
    }
    --m_ulCount;
}

} // namespace SrvFrwk::Utility
