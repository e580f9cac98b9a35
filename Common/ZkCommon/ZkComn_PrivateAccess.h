#pragma once

#include <cstddef>
#include <windows.h>

namespace ZkCommon::AccessControl {

/**
 * Security attributes of a file that only this process's (or the impersonated) user, the Administrators and Local
 * System may touch; nothing is inherited from its folder. To be given when the file is created. Never throws.
 */
class PrivateAccess
{
public:
    PrivateAccess() noexcept;
    PrivateAccess(const PrivateAccess&) = delete;
    PrivateAccess& operator=(const PrivateAccess&) = delete;

    /** For CreateFileW; null, with the last error set, when they could not be built: then create no file. */
    SECURITY_ATTRIBUTES* Get() noexcept;

private:
    bool Build() noexcept;
    bool Allow(PSID _pSid) noexcept;

    static constexpr std::size_t g_uAccounts = 3;

    SECURITY_ATTRIBUTES m_stAttributes{};
    SECURITY_DESCRIPTOR m_stDescriptor{};
    alignas(ACL) std::byte m_aAcl[sizeof(ACL) + g_uAccounts * (sizeof(ACCESS_ALLOWED_ACE) + SECURITY_MAX_SID_SIZE)]{};
    DWORD m_ulError = ERROR_SUCCESS;
};

} // namespace ZkCommon::AccessControl
