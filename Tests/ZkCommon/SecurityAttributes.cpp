#include "ZkComn_SecurityAttributes.h"

#include "Failure.h"
#include "TestKey.h"
#include "ZkComn_PrivateAccess.h"
#include "ZkComn_Registry.h"

#include <array>
#include <gtest/gtest.h>
#include <regex>
#include <sddl.h>
#include <string>

using namespace ZkCommon;
using namespace ZkCommon::AccessControl;

namespace {

/** An access list in the system's notation. */
std::wstring ListOf(PSECURITY_DESCRIPTOR _pDescriptor)
{
    wchar_t* pszList = nullptr;
    EXPECT_TRUE(::ConvertSecurityDescriptorToStringSecurityDescriptorW(_pDescriptor, SDDL_REVISION_1,
                                                                       DACL_SECURITY_INFORMATION, &pszList, nullptr));
    std::wstring tszList = pszList != nullptr ? pszList : L"";
    ::LocalFree(pszList);
    return tszList;
}

/** A list in that notation as the system itself writes it. */
std::wstring ListOf(const wchar_t* _pszList)
{
    PSECURITY_DESCRIPTOR pList = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(_pszList, SDDL_REVISION_1, &pList, nullptr));
    std::wstring tszList = ListOf(pList);
    ::LocalFree(pList);
    return tszList;
}

std::wstring ListOfKey(const std::wstring& _rtszPath, REGSAM _ulView)
{
    RegKey hKey;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, _rtszPath.c_str(), 0, READ_CONTROL | _ulView, hKey.Receive());
    std::array<DWORD, 1024> aDescriptor{};
    DWORD ulSize = sizeof aDescriptor;
    EXPECT_EQ(::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, aDescriptor.data(), &ulSize), ERROR_SUCCESS);
    return ListOf(aDescriptor.data());
}

constexpr const wchar_t* g_pszKeyList = L"D:(A;CI;0x1003f;;;BA)(A;CI;0x3f;;;PU)(A;CI;0x1003f;;;SY)(A;CI;0x20009;;;AU)"
                                        L"(A;CI;0x20009;;;BU)(A;CI;0xf003f;;;CO)(A;CI;0x20009;;;IU)";

} // namespace

TEST(SecurityAttributes, GrantsSevenAccountsTheRightsOfTheKindOfObject)
{
    for (const bool bFile : {false, true}) {
        SecurityAttributes security(bFile ? ObjectKind::File : ObjectKind::RegistryKey, bFile);
        EXPECT_EQ(security.Get()->nLength, 24U);
        EXPECT_EQ(security.Get()->bInheritHandle, bFile ? TRUE : FALSE);
        ASSERT_TRUE(::IsValidSecurityDescriptor(security.Get()->lpSecurityDescriptor));
        EXPECT_EQ(ListOf(security.Get()->lpSecurityDescriptor),
                  ListOf(bFile ? L"D:(A;;0x13013f;;;BA)(A;;0x12002f;;;PU)(A;;0x13013f;;;SY)(A;;0x120029;;;AU)"
                                 L"(A;;0x120029;;;BU)(A;;0x1f01ff;;;CO)(A;;0x120029;;;IU)"
                               : g_pszKeyList));
    }
}

TEST(SecurityAttributes, AreGivenToANewKeyAndLeaveAnOldOneAlone)
{
    const TestKey key;
    Storage::Registry registry;
    registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\new", Storage::View32);
    registry.WriteNumber(L"value", 1);
    EXPECT_EQ(ListOfKey(key.Path() + L"\\new", KEY_WOW64_32KEY), ListOf(g_pszKeyList));
    registry.Create(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", Storage::View64);
    const std::wstring tszOld = ListOfKey(key.Path() + L"\\old", KEY_WOW64_64KEY);
    registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", Storage::View64);
    EXPECT_EQ(ListOfKey(key.Path() + L"\\old", KEY_WOW64_64KEY), tszOld);
}

TEST(PrivateAccess, LetsInTheUserTheAdministratorsAndTheSystemAlone)
{
    PrivateAccess cAccess; // protected from what the folder hands down
    const std::wregex pattern(L"D:P\\(A;;FA;;;[^)]+\\)\\(A;;FA;;;BA\\)\\(A;;FA;;;SY\\)");
    EXPECT_TRUE(std::regex_match(ListOf(cAccess.Get()->lpSecurityDescriptor), pattern));
}

TEST(SecurityAttributes, TellsWhetherTheCallerBelongsToAGroup)
{
    EXPECT_TRUE(IsMember(WinWorldSid));
    EXPECT_FALSE(IsMember(WinNullSid));
    EXPECT_EQ(CodeOf<AccessControl::Exception>([] { IsMember(static_cast<WELL_KNOWN_SID_TYPE>(127)); }),
              DWORD{ERROR_INVALID_PARAMETER});
}
