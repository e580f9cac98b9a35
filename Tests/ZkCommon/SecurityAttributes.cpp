#include "ZkComn_SecurityAttributes.h"

#include "Failure.h"
#include "TestKey.h"
#include "ZkComn_PrivateAccess.h"
#include "ZkComn_Registry.h"

#include <array>
#include <gtest/gtest.h>
#include <sddl.h>
#include <string>
#include <vector>

using namespace ZkCommon;
using namespace ZkCommon::AccessControl;

namespace {

constexpr const wchar_t* g_pszAllAccessKey =
    L"D:(A;CI;0x1003f;;;BA)(A;CI;0x3f;;;PU)(A;CI;0x1003f;;;SY)(A;CI;0x20009;;;AU)"
    L"(A;CI;0x20009;;;BU)(A;CI;0xf003f;;;CO)(A;CI;0x20009;;;IU)";

/** The entries of an access list, byte by byte: type, flags (0 unless asked for), size (2), mask (4), account. */
std::vector<std::string> EntriesOf(PSECURITY_DESCRIPTOR _pDescriptor, bool _bFlags = false)
{
    BOOL bPresent = FALSE;
    BOOL bDefaulted = FALSE;
    ACL* pAcl = nullptr;
    ::GetSecurityDescriptorDacl(_pDescriptor, &bPresent, &pAcl, &bDefaulted);
    std::vector<std::string> vecEntry;
    for (DWORD i = 0; pAcl != nullptr && i < pAcl->AceCount; ++i) {
        void* pEntry = nullptr;
        ::GetAce(pAcl, i, &pEntry);
        vecEntry.emplace_back(static_cast<const char*>(pEntry), static_cast<const ACE_HEADER*>(pEntry)->AceSize);
        vecEntry.back()[1] = _bFlags ? vecEntry.back()[1] : '\0';
    }
    return vecEntry;
}

/** The same of a list in the system's notation. */
std::vector<std::string> EntriesOf(const wchar_t* _pszList, bool _bFlags = false)
{
    PSECURITY_DESCRIPTOR pList = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(_pszList, SDDL_REVISION_1, &pList, nullptr));
    const std::vector<std::string> vecEntry = EntriesOf(pList, _bFlags);
    ::LocalFree(pList);
    return vecEntry;
}

std::vector<std::string> EntriesOfKey(const std::wstring& _rtszPath, REGSAM _ulView)
{
    RegKey hKey;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, _rtszPath.c_str(), 0, READ_CONTROL | _ulView, hKey.Receive());
    std::array<DWORD, 1024> aDescriptor{};
    DWORD ulSize = sizeof aDescriptor;
    EXPECT_EQ(::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, aDescriptor.data(), &ulSize), ERROR_SUCCESS);
    return EntriesOf(aDescriptor.data());
}

} // namespace

TEST(SecurityAttributes, GrantsSevenAccountsTheRightsOfTheKindOfObject)
{
    for (const bool bFile : {false, true}) {
        SecurityAttributes security(bFile ? ObjectKind::File : ObjectKind::RegistryKey, bFile);
        EXPECT_EQ(security.Get()->nLength, 24U);
        EXPECT_EQ(security.Get()->bInheritHandle, bFile ? TRUE : FALSE);
        ASSERT_TRUE(::IsValidSecurityDescriptor(security.Get()->lpSecurityDescriptor));
        EXPECT_EQ(EntriesOf(security.Get()->lpSecurityDescriptor, true),
                  EntriesOf(bFile ? L"D:(A;;0x13013f;;;BA)(A;;0x12002f;;;PU)(A;;0x13013f;;;SY)(A;;0x120029;;;AU)"
                                    L"(A;;0x120029;;;BU)(A;;0x1f01ff;;;CO)(A;;0x120029;;;IU)"
                                  : g_pszAllAccessKey,
                            true));
    }
}

TEST(SecurityAttributes, AreGivenToANewKeyAndLeaveAnOldOneAlone)
{
    const TestKey key;
    Storage::Registry registry;
    registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\new", Storage::View32);
    registry.WriteNumber(L"value", 1);
    EXPECT_EQ(EntriesOfKey(key.Path() + L"\\new", KEY_WOW64_32KEY), EntriesOf(g_pszAllAccessKey));
    registry.Create(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", Storage::View64);
    const std::vector<std::string> vecOld = EntriesOfKey(key.Path() + L"\\old", KEY_WOW64_64KEY);
    registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", Storage::View64);
    EXPECT_EQ(EntriesOfKey(key.Path() + L"\\old", KEY_WOW64_64KEY), vecOld);
}

TEST(PrivateAccess, LetsInTheUserTheAdministratorsAndTheSystemAlone)
{
    PrivateAccess cAccess;
    const PSECURITY_DESCRIPTOR pDescriptor = cAccess.Get()->lpSecurityDescriptor;
    SECURITY_DESCRIPTOR_CONTROL usControl = 0;
    DWORD ulRevision = 0;
    ASSERT_TRUE(::GetSecurityDescriptorControl(pDescriptor, &usControl, &ulRevision));
    EXPECT_TRUE(usControl & SE_DACL_PROTECTED);
    const std::vector<std::string> vecEntry = EntriesOf(pDescriptor, true);
    const std::vector<std::string> vecOthers = EntriesOf(L"D:(A;;0x1f01ff;;;BA)(A;;0x1f01ff;;;SY)", true);
    ASSERT_EQ(vecEntry.size(), 3U);
    EXPECT_EQ(vecEntry[0][0], ACCESS_ALLOWED_ACE_TYPE);
    EXPECT_EQ(vecEntry[0].substr(4, 4), vecOthers[0].substr(4, 4)); // the same rights
    EXPECT_EQ(std::vector(vecEntry.begin() + 1, vecEntry.end()), vecOthers);
}

TEST(SecurityAttributes, TellsWhetherTheCallerBelongsToAGroup)
{
    EXPECT_TRUE(IsMember(WinWorldSid));
    EXPECT_FALSE(IsMember(WinNullSid));
    EXPECT_EQ(CodeOf<AccessControl::Exception>([] { IsMember(static_cast<WELL_KNOWN_SID_TYPE>(127)); }),
              DWORD{ERROR_INVALID_PARAMETER});
}
