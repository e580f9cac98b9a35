#include "ZkComn_SecurityAttributes.h"

#include "ZkComn_Exception.h"

#include <gmock/gmock.h>
#include <sddl.h>
#include <string>
#include <vector>

using namespace ZkCommon;
using namespace ZkCommon::AccessControl;

TEST(SecurityAttributes, GrantsSevenAccountsTheRightsOfTheKindOfObject)
{
    struct Row
    {
        int iLine;
        ObjectKind enKind;
        const wchar_t* pszList; // in the system's own notation
    };
    constexpr Row aRow[] = {
        {__LINE__, ObjectKind::RegistryKey,
         L"D:(A;CI;0x1003f;;;BA)(A;CI;0x3f;;;PU)(A;CI;0x1003f;;;SY)(A;CI;0x20009;;;AU)"
         L"(A;CI;0x20009;;;BU)(A;CI;0xf003f;;;CO)(A;CI;0x20009;;;IU)"},
        {__LINE__, ObjectKind::File,
         L"D:(A;;0x13013f;;;BA)(A;;0x12002f;;;PU)(A;;0x13013f;;;SY)(A;;0x120029;;;AU)"
         L"(A;;0x120029;;;BU)(A;;0x1f01ff;;;CO)(A;;0x120029;;;IU)"},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        SecurityAttributes security(stRow.enKind, stRow.enKind == ObjectKind::File);
        EXPECT_EQ(security.Get()->nLength, 24U);
        EXPECT_EQ(security.Get()->bInheritHandle, stRow.enKind == ObjectKind::File ? TRUE : FALSE);
        ASSERT_TRUE(::IsValidSecurityDescriptor(security.Get()->lpSecurityDescriptor));

        PSECURITY_DESCRIPTOR pExpected = nullptr;
        ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(stRow.pszList, SDDL_REVISION_1, &pExpected,
                                                                           nullptr));
        const auto EntriesOf = [](PSECURITY_DESCRIPTOR _pDescriptor) {
            BOOL bPresent = FALSE;
            BOOL bDefaulted = FALSE;
            ACL* pAcl = nullptr;
            ::GetSecurityDescriptorDacl(_pDescriptor, &bPresent, &pAcl, &bDefaulted);
            std::vector<std::string> vecEntry;
            for (DWORD i = 0; pAcl != nullptr && i < pAcl->AceCount; ++i) {
                void* pEntry = nullptr;
                ::GetAce(pAcl, i, &pEntry);
                vecEntry.emplace_back(static_cast<const char*>(pEntry),
                                      static_cast<const ACE_HEADER*>(pEntry)->AceSize);
            }
            return vecEntry;
        };
        EXPECT_EQ(EntriesOf(security.Get()->lpSecurityDescriptor), EntriesOf(pExpected));
        EXPECT_EQ(EntriesOf(pExpected).size(), 7U);
        ::LocalFree(pExpected);
    }
}

TEST(SecurityAttributes, TellsWhetherTheCallerBelongsToAGroup)
{
    EXPECT_TRUE(IsMember(WinWorldSid));
    EXPECT_FALSE(IsMember(WinNullSid));
    try {
        IsMember(static_cast<WELL_KNOWN_SID_TYPE>(127));
        FAIL() << "there is no such group";
    } catch (AccessControl::Exception* _pError) {
        const ZkCommon::Exception::Caught pCaught(_pError);
        EXPECT_EQ(pCaught->ErrorCode(), ERROR_INVALID_PARAMETER);
    }
}
