#include "AccessList.h"

#include "ZkComn_Owner.h"

#include <array>
#include <gtest/gtest.h>
#include <sddl.h>

std::vector<std::string> EntriesOf(PSECURITY_DESCRIPTOR _pDescriptor, bool _bFlags)
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

std::vector<std::string> EntriesOf(const wchar_t* _pszList, bool _bFlags)
{
    PSECURITY_DESCRIPTOR pList = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(_pszList, SDDL_REVISION_1, &pList, nullptr));
    const std::vector<std::string> vecEntry = EntriesOf(pList, _bFlags);
    ::LocalFree(pList);
    return vecEntry;
}

std::vector<std::string> EntriesOfKey(const std::wstring& _rtszPath, REGSAM _ulView)
{
    ZkCommon::RegKey hKey;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, _rtszPath.c_str(), 0, READ_CONTROL | _ulView, hKey.Receive());
    std::array<DWORD, 1024> aDescriptor{};
    DWORD ulSize = sizeof aDescriptor;
    EXPECT_EQ(::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, aDescriptor.data(), &ulSize), ERROR_SUCCESS);
    return EntriesOf(aDescriptor.data());
}
