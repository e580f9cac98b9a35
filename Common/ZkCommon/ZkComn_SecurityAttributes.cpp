#include "ZkComn_SecurityAttributes.h"

#include "ZkComn_Exception.h"
#include "ZkComn_Library.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace ZkCommon::AccessControl {

namespace {

struct Account
{
    BYTE ucAuthority;   // S-1-x
    BYTE ucSubCount;    // how many of the next two it has
    DWORD aulSub[2];    // -y-z
    DWORD ulKeyRights;  // on a registry key
    DWORD ulFileRights; // on a file
};

/** In the order of their entries in the access list. */
constexpr Account g_aAccount[] = {
    {5, 2, {32, 544}, 0x0001003F, 0x0013013F}, // Administrators
    {5, 2, {32, 547}, 0x0000003F, 0x0012002F}, // Power Users
    {5, 1, {18, 0}, 0x0001003F, 0x0013013F},   // Local System
    {5, 1, {11, 0}, 0x00020009, 0x00120029},   // Authenticated Users
    {5, 2, {32, 545}, 0x00020009, 0x00120029}, // Users
    {3, 1, {0, 0}, 0x000F003F, 0x001F01FF},    // Creator Owner
    {5, 1, {4, 0}, 0x00020009, 0x00120029},    // Interactive
};

/** Bytes of an access list with an entry for every account. */
constexpr DWORD AclSize()
{
    std::size_t uSize = sizeof(ACL);
    for (const Account& stAccount : g_aAccount) {
        uSize +=
            offsetof(ACCESS_ALLOWED_ACE, SidStart) + offsetof(SID, SubAuthority) + stAccount.ucSubCount * sizeof(DWORD);
    }
    return static_cast<DWORD>(uSize);
}

void Check(BOOL _bDone, SourcePlace _stPlace = SourcePlace::Here())
{
    if (!_bDone) {
        ZkCommon::Exception::Throw<Exception>(::GetLastError(), _stPlace);
    }
}

using SidBuffer = std::array<DWORD, (SECURITY_MAX_SID_SIZE + sizeof(DWORD) - 1) / sizeof(DWORD)>;

PSID MakeSid(const Account& _rstAccount, SidBuffer& _raBuffer)
{
    PSID pSid = _raBuffer.data();
    SID_IDENTIFIER_AUTHORITY stAuthority = {{0, 0, 0, 0, 0, _rstAccount.ucAuthority}};
    Check(::InitializeSid(pSid, &stAuthority, _rstAccount.ucSubCount));
    for (BYTE i = 0; i < _rstAccount.ucSubCount; ++i) {
        *::GetSidSubAuthority(pSid, i) = _rstAccount.aulSub[i];
    }
    return pSid;
}

} // namespace

SecurityAttributes::SecurityAttributes(ObjectKind _enKind, bool _bInheritHandle) : m_vecAcl(AclSize() / sizeof(DWORD))
{
    ACL* const pAcl = reinterpret_cast<ACL*>(m_vecAcl.data());
    Check(::InitializeAcl(pAcl, AclSize(), ACL_REVISION));
    const bool bKey = _enKind == ObjectKind::RegistryKey;
    for (const Account& stAccount : g_aAccount) {
        SidBuffer aSid{};
        // What is created below such a key later is as open as the key itself; a file has nothing below it.
        Check(::AddAccessAllowedAceEx(pAcl, ACL_REVISION, bKey ? CONTAINER_INHERIT_ACE : 0,
                                      bKey ? stAccount.ulKeyRights : stAccount.ulFileRights, MakeSid(stAccount, aSid)));
    }
    Check(::InitializeSecurityDescriptor(&m_stDescriptor, SECURITY_DESCRIPTOR_REVISION));
    Check(::SetSecurityDescriptorDacl(&m_stDescriptor, TRUE, pAcl, FALSE));
    m_stAttributes = {sizeof m_stAttributes, &m_stDescriptor, _bInheritHandle ? TRUE : FALSE};
    static_assert(sizeof m_stAttributes == 24);
}

bool IsMember(WELL_KNOWN_SID_TYPE _enGroup)
{
    const ModuleHandle hModule(::LoadLibraryW(L"advapi32.dll"));
    Check(static_cast<bool>(hModule));
    const auto pCreateSid =
        Library::FunctionAt<decltype(::CreateWellKnownSid)>(::GetProcAddress(hModule.Get(), "CreateWellKnownSid"));
    Check(pCreateSid != nullptr);
    const auto pCheckMembership =
        Library::FunctionAt<decltype(::CheckTokenMembership)>(::GetProcAddress(hModule.Get(), "CheckTokenMembership"));
    Check(pCheckMembership != nullptr);

    SidBuffer aSid{};
    DWORD ulSize = sizeof aSid;
    Check(pCreateSid(_enGroup, nullptr, aSid.data(), &ulSize));
    BOOL bMember = FALSE;
    Check(pCheckMembership(nullptr, aSid.data(), &bMember));
    return bMember != FALSE;
}

} // namespace ZkCommon::AccessControl
