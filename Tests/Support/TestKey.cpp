#include "TestKey.h"

#include "ZkComn_Owner.h"

namespace {

int g_iNextKey = 0;

} // namespace

TestKey::TestKey()
    : m_tszName(L"VarnheltTest-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(g_iNextKey++)),
      m_tszPath(L"Software\\" + m_tszName)
{
    Remove();
}

TestKey::~TestKey()
{
    Remove();
}

void TestKey::Remove() const
{
    for (HKEY hRoot : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        for (const REGSAM ulView : {REGSAM{KEY_WOW64_32KEY}, REGSAM{KEY_WOW64_64KEY}}) {
            ZkCommon::RegKey hSoftware;
            if (::RegOpenKeyExW(hRoot, L"Software", 0, KEY_READ | KEY_WRITE | DELETE | ulView, hSoftware.Receive()) ==
                ERROR_SUCCESS) {
                ::RegDeleteTreeW(hSoftware.Get(), m_tszName.c_str());
            }
        }
    }
}
