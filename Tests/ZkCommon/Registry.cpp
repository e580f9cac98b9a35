#include "ZkComn_Registry.h"

#include "TestKey.h"
#include "ZkComn_Exception.h"

#include <array>
#include <functional>
#include <gmock/gmock.h>
#include <sddl.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr RegistryView g_aView[] = {ViewDefault, View32, View64};

/** The code with which _fnBody fails; 0 when it does not. */
std::uint32_t CodeOf(const std::function<void()>& _fnBody)
{
    try {
        _fnBody();
        return 0;
    } catch (RegException* _pError) {
        const ZkCommon::Exception::Caught pCaught(_pError);
        EXPECT_THAT(pCaught->SourceFile(), testing::EndsWith("ZkComn_Registry.cpp"));
        return pCaught->ErrorCode();
    }
}

/** Puts a value of any type and any bytes below the test's key. */
void PutRaw(const TestKey& _rKey, const wchar_t* _pszName, DWORD _ulType, std::string_view _svBytes)
{
    RegKey hKey;
    ASSERT_EQ(::RegCreateKeyW(HKEY_CURRENT_USER, _rKey.Path().c_str(), hKey.Receive()), ERROR_SUCCESS);
    ASSERT_EQ(::RegSetValueExW(hKey.Get(), _pszName, 0, _ulType, reinterpret_cast<const BYTE*>(_svBytes.data()),
                               static_cast<DWORD>(_svBytes.size())),
              ERROR_SUCCESS);
}

} // namespace

TEST(Registry, ReadsWhatItWrote)
{
    const TestKey key;
    Registry registry;
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\a\\b");
    const std::wstring tszLong(100000, L'\u4e2d');
    const std::vector<std::uint8_t> vecBytes = {0, 1, 255};
    registry.WriteString(L"", L"default value");
    registry.WriteString(L"string", tszLong);
    registry.WriteNumber(L"number", 0xFFFFFFFF);
    registry.WriteNumber64(L"number64", 0x123456789ABCDEF0);
    registry.WriteBinary(L"binary", vecBytes);
    registry.WriteBinary(L"no bytes", {});
    registry.Flush();
    registry.Close();

    const Registry reader(HKEY_CURRENT_USER, key.Path() + L"\\a\\b");
    EXPECT_EQ(reader.ReadString(L""), L"default value");
    EXPECT_EQ(reader.ReadString(L"string"), tszLong);
    EXPECT_EQ(reader.ReadNumber(L"number"), 0xFFFFFFFFU);
    EXPECT_EQ(reader.ReadNumber64(L"number64"), 0x123456789ABCDEF0U);
    EXPECT_EQ(reader.ReadBinary(L"binary"), vecBytes);
    EXPECT_THAT(reader.ReadBinary(L"no bytes"), IsEmpty());
}

TEST(Registry, CopesWithStringsAsOthersStoreThem)
{
    struct Row
    {
        int iLine;
        DWORD ulType;
        std::string_view svBytes;
        const wchar_t* pszExpected;
    };
    using namespace std::string_view_literals;
    const TestKey key;
    const Row aRow[] = {
        {__LINE__, REG_SZ, "a\0b\0\0\0"sv, L"ab"},
        {__LINE__, REG_SZ, "a\0b\0"sv, L"ab"},            // not terminated
        {__LINE__, REG_SZ, "a\0b\0c"sv, L"ab"},           // half a character more
        {__LINE__, REG_SZ, "a\0\0\0b\0\0\0"sv, L"a"},     // a zero in it
        {__LINE__, REG_SZ, "a"sv, L""},                   // half a character
        {__LINE__, REG_SZ, ""sv, L""},                    // nothing at all
        {__LINE__, REG_EXPAND_SZ, "%\0a\0%\0"sv, L"%a%"}, // as it is stored
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        PutRaw(key, L"value", stRow.ulType, stRow.svBytes);
        EXPECT_EQ(Registry(HKEY_CURRENT_USER, key.Path()).ReadString(L"value"), stRow.pszExpected);
    }
}

TEST(Registry, RefusesValuesOfAnotherTypeOrSize)
{
    using namespace std::string_view_literals;
    const TestKey key;
    PutRaw(key, L"string", REG_SZ, "a\0\0\0"sv);
    PutRaw(key, L"number", REG_DWORD, "abcd"sv);
    PutRaw(key, L"number64", REG_QWORD, "abcdefgh"sv);
    PutRaw(key, L"short number", REG_DWORD, "abc"sv);
    PutRaw(key, L"long number", REG_QWORD, "abcdefghi"sv);
    PutRaw(key, L"list", REG_MULTI_SZ, "a\0\0\0\0\0"sv);
    const Registry registry(HKEY_CURRENT_USER, key.Path());
    struct Row
    {
        int iLine;
        std::uint32_t ulCode;
        std::function<void()> fnRead;
    };
    const Row aRow[] = {
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadString(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadString(L"list"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"string"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"number64"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber64(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadBinary(L"string"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"string", 1); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber(L"short number"); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber64(L"long number"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.ReadString(L"absent"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.ReadNumber(L"absent"); }},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace row(__FILE__, stRow.iLine, "");
        EXPECT_EQ(CodeOf(stRow.fnRead), stRow.ulCode);
    }
    EXPECT_EQ(registry.ReadString(L"absent", L"default"), L"default");
    EXPECT_EQ(registry.ReadNumber(L"absent", 7), 7U);
}

TEST(Registry, TellsWhyAKeyCannotBeOpened)
{
    const TestKey key;
    Registry registry;
    const std::wstring tszAbsent = key.Path() + L"\\absent";
    EXPECT_EQ(CodeOf([&] { registry.Open(HKEY_CURRENT_USER, L""); }), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(CodeOf([&] { registry.Create(HKEY_CURRENT_USER, L""); }), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(CodeOf([&] { registry.CreateAllAccess(HKEY_CURRENT_USER, L""); }), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(CodeOf([&] { Registry::DeleteKeyAt(HKEY_CURRENT_USER, L"\\"); }), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(CodeOf([&] { registry.Open(HKEY_CURRENT_USER, tszAbsent); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(CodeOf([&] { registry.Open(nullptr, tszAbsent); }), ERROR_INVALID_HANDLE);
    EXPECT_EQ(CodeOf([&] { registry.OpenForDeletion(HKEY_CURRENT_USER, tszAbsent); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(CodeOf([&] { registry.OpenForEnumeration(HKEY_CURRENT_USER, tszAbsent); }), ERROR_FILE_NOT_FOUND);

    // A failed opening closes what was open; the object may be used again.
    registry.Create(HKEY_CURRENT_USER, key.Path());
    EXPECT_EQ(CodeOf([&] { registry.Open(HKEY_CURRENT_USER, tszAbsent); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(CodeOf([&] { registry.WriteNumber(L"value", 1); }), ERROR_INVALID_HANDLE);
    registry.Close();
    registry.Open(HKEY_CURRENT_USER, key.Path());
    EXPECT_EQ(CodeOf([&] { registry.WriteNumber(L"value", 1); }), ERROR_ACCESS_DENIED); // it is open for reading
}

TEST(Registry, KeepsTheViewsApart)
{
    const TestKey key;
    for (const RegistryView enView : {View32, View64}) {
        Registry registry;
        registry.Create(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", enView);
        registry.WriteNumber(L"view", enView);
    }
    for (const RegistryView enView : g_aView) { // this is a 64-bit process
        EXPECT_EQ(Registry(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", enView).ReadNumber(L"view"),
                  enView == View32 ? View32 : View64);
    }
    // Each view's key goes, the other's stays.
    Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", View32);
    Registry registry;
    EXPECT_EQ(CodeOf([&] { registry.Open(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", View32); }),
              ERROR_FILE_NOT_FOUND);
    registry.Open(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", View64);
    registry.Close();
    Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path() + L"\\child", View64);
    Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path(), View32); // the child of a redirected key
    registry.Open(HKEY_LOCAL_MACHINE, key.Path(), View64);
    registry.Close();
    Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path() + L"\\", View64);
    EXPECT_EQ(CodeOf([&] { registry.Open(HKEY_LOCAL_MACHINE, key.Path(), View64); }), ERROR_FILE_NOT_FOUND);
}

TEST(Registry, DeletesKeysWithoutChildrenAndValues)
{
    const TestKey key;
    Registry registry;
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child");
    registry.Create(HKEY_CURRENT_USER, key.Path());
    registry.WriteNumber(L"value", 1);

    registry.OpenForDeletion(HKEY_CURRENT_USER, key.Path());
    EXPECT_EQ(CodeOf([&] { registry.DeleteKey(L"parent"); }), ERROR_ACCESS_DENIED);
    EXPECT_EQ(CodeOf([&] { registry.DeleteKey(L""); }), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(CodeOf([&] { registry.DeleteKey(L"absent"); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(CodeOf([&] { registry.DeleteValue(L"absent"); }), ERROR_FILE_NOT_FOUND);
    registry.DeleteValue(L"value");
    EXPECT_EQ(CodeOf([&] { registry.DeleteValue(L"value"); }), ERROR_FILE_NOT_FOUND);
    Registry::DeleteKeyAt(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child");
    registry.DeleteKey(L"parent");
    registry.OpenForEnumeration(HKEY_CURRENT_USER, key.Path());
    EXPECT_THAT(registry.SubKeys(), IsEmpty());
}

TEST(Registry, EnumeratesNamesOfAnyLength)
{
    const TestKey key;
    const std::wstring tszLongKey(255, L'k');
    const std::wstring tszLongValue(5000, L'v');
    Registry registry;
    for (const std::wstring& tszName : {std::wstring(L"a"), tszLongKey, std::wstring(L"\u4e2d")}) {
        registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\" + tszName);
    }
    registry.Create(HKEY_CURRENT_USER, key.Path());
    registry.WriteNumber(L"one", 1);
    registry.WriteString(tszLongValue, L"x");
    registry.WriteString(L"", L"default");

    registry.OpenForEnumeration(HKEY_CURRENT_USER, key.Path());
    EXPECT_THAT(registry.SubKeys(), UnorderedElementsAre(L"a", tszLongKey, L"\u4e2d"));
    EXPECT_THAT(registry.ValueNames(), UnorderedElementsAre(L"one", tszLongValue, L""));
    registry.Close();
    EXPECT_EQ(CodeOf([&] { registry.SubKeys(); }), ERROR_INVALID_HANDLE);
}

TEST(Registry, GivesANewKeyTheAllAccessListAndLeavesAnOldOneAlone)
{
    const TestKey key;
    const auto EntriesOf = [](const std::wstring& _rtszPath, RegistryView _enView) {
        RegKey hKey;
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, _rtszPath.c_str(), 0,
                        READ_CONTROL | (_enView == View32 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY), hKey.Receive());
        std::array<DWORD, 1024> aDescriptor{};
        DWORD ulSize = sizeof aDescriptor;
        EXPECT_EQ(::RegGetKeySecurity(hKey.Get(), DACL_SECURITY_INFORMATION, aDescriptor.data(), &ulSize),
                  ERROR_SUCCESS);
        BOOL bPresent = FALSE;
        BOOL bDefaulted = FALSE;
        ACL* pAcl = nullptr;
        ::GetSecurityDescriptorDacl(aDescriptor.data(), &bPresent, &pAcl, &bDefaulted);
        std::vector<std::wstring> vecEntry;
        for (DWORD i = 0; pAcl != nullptr && i < pAcl->AceCount; ++i) {
            void* pEntry = nullptr;
            ::GetAce(pAcl, i, &pEntry);
            auto* const pAllowed = static_cast<ACCESS_ALLOWED_ACE*>(pEntry);
            EXPECT_EQ(pAllowed->Header.AceType, ACCESS_ALLOWED_ACE_TYPE);
            wchar_t* pszSid = nullptr;
            ::ConvertSidToStringSidW(&pAllowed->SidStart, &pszSid);
            wchar_t aszMask[16] = {};
            ::swprintf_s(aszMask, 16, L" %08lx", pAllowed->Mask);
            vecEntry.push_back(std::wstring(pszSid) + aszMask);
            ::LocalFree(pszSid);
        }
        return vecEntry;
    };
    const auto AllAccess =
        ElementsAre(L"S-1-5-32-544 0001003f", L"S-1-5-32-547 0000003f", L"S-1-5-18 0001003f", L"S-1-5-11 00020009",
                    L"S-1-5-32-545 00020009", L"S-1-3-0 000f003f", L"S-1-5-4 00020009");
    Registry registry;
    for (const RegistryView enView : {View32, View64}) {
        registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\new", enView);
        registry.WriteNumber(L"value", 1);
        EXPECT_THAT(EntriesOf(key.Path() + L"\\new", enView), AllAccess);
    }
    registry.Create(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", View64);
    const std::vector<std::wstring> vecOld = EntriesOf(key.Path() + L"\\old", View64);
    registry.CreateAllAccess(HKEY_LOCAL_MACHINE, key.Path() + L"\\old", View64);
    EXPECT_EQ(EntriesOf(key.Path() + L"\\old", View64), vecOld);
}
