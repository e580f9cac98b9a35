#include "ZkComn_PrivateAccess.h"

#include "ZkComn_Owner.h"

#include <cstdint>

namespace ZkCommon::AccessControl {

namespace {

/** The user of the token that decides what this thread may do. */
bool ReadCurrentUser(void* _pUser, DWORD _ulSize) noexcept
{
    // This handle needs no opening; Windows has it from version 8 on.
    const HANDLE hEffective =
        reinterpret_cast<HANDLE>(std::intptr_t{-6}); // NOLINT(performance-no-int-to-ptr): no pointer
    if (::GetTokenInformation(hEffective, TokenUser, _pUser, _ulSize, &_ulSize)) {
        return true;
    }
    Handle hToken;
    return (::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, hToken.Receive()) ||
            ::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, hToken.Receive())) &&
           ::GetTokenInformation(hToken.Get(), TokenUser, _pUser, _ulSize, &_ulSize);
}

} // namespace

PrivateAccess::PrivateAccess() noexcept
{
    if (!Build()) {
        m_ulError = ::GetLastError();
    }
}

SECURITY_ATTRIBUTES* PrivateAccess::Get() noexcept
{
    if (m_ulError != ERROR_SUCCESS) {
        ::SetLastError(m_ulError);
        return nullptr;
    }
    return &m_stAttributes;
}

bool PrivateAccess::Build() noexcept
{
    alignas(TOKEN_USER) std::byte aUser[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    if (!ReadCurrentUser(aUser, sizeof(aUser))) {
        return false;
    }
    const auto pAcl = reinterpret_cast<ACL*>(m_aAcl);
    if (!::InitializeAcl(pAcl, sizeof(m_aAcl), ACL_REVISION) ||
        !Allow(reinterpret_cast<const TOKEN_USER*>(aUser)->User.Sid)) {
        return false;
    }
    for (const WELL_KNOWN_SID_TYPE enAccount : {WinBuiltinAdministratorsSid, WinLocalSystemSid}) {
        alignas(SID) std::byte aSid[SECURITY_MAX_SID_SIZE];
        DWORD ulSid = sizeof(aSid);
        if (!::CreateWellKnownSid(enAccount, nullptr, aSid, &ulSid) || !Allow(aSid)) {
            return false;
        }
    }
    if (!::InitializeSecurityDescriptor(&m_stDescriptor, SECURITY_DESCRIPTOR_REVISION) ||
        !::SetSecurityDescriptorDacl(&m_stDescriptor, TRUE, pAcl, FALSE) ||
        !::SetSecurityDescriptorControl(&m_stDescriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED)) {
        return false;
    }
    m_stAttributes = {sizeof(m_stAttributes), &m_stDescriptor, FALSE};
    return true;
}

bool PrivateAccess::Allow(PSID _pSid) noexcept
{
    return ::AddAccessAllowedAce(reinterpret_cast<ACL*>(m_aAcl), ACL_REVISION, FILE_ALL_ACCESS, _pSid) != FALSE;
}

} // namespace ZkCommon::AccessControl
