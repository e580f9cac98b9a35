#include "ZkComn_SecurityAttributes.h"

#include "AccessList.h"
#include "Failure.h"
#include "TestKey.h"
#include "ZkComn_PrivateAccess.h"
#include "ZkComn_Registry.h"

#include <gtest/gtest.h>

using namespace ZkCommon;
using namespace ZkCommon::AccessControl;

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
