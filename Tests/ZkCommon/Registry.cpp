#include "ZkComn_Registry.h"

#include "Failure.h"
#include "TestKey.h"

#include <functional>
#include <gmock/gmock.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using namespace std::string_view_literals;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

struct CodeRow
{
    int iLine;
    std::uint32_t ulCode;
    std::function<void()> fnOperation;
};

void ExpectCodes(std::initializer_list<CodeRow> _listRow)
{
    for (const CodeRow& stRow : _listRow) {
        EXPECT_EQ(CodeOf<RegException>(stRow.fnOperation), stRow.ulCode) << "row of line " << stRow.iLine;
    }
}

/** Puts a value of any type and any bytes below the test's key. */
void PutRaw(const TestKey& _rKey, const wchar_t* _pszName, DWORD _ulType, std::string_view _svBytes)
{
    ASSERT_EQ(::RegSetKeyValueW(HKEY_CURRENT_USER, _rKey.Path().c_str(), _pszName, _ulType, _svBytes.data(),
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
    const TestKey key;
    const Row aRow[] = {
        {__LINE__, REG_SZ, "a\0b\0"sv, L"ab"},            // not terminated
        {__LINE__, REG_SZ, "a\0b\0c"sv, L"ab"},           // half a character more
        {__LINE__, REG_SZ, "a\0\0\0b\0\0\0"sv, L"a"},     // a zero in it
        {__LINE__, REG_SZ, "a"sv, L""},                   // half a character
        {__LINE__, REG_SZ, ""sv, L""},                    // nothing at all
        {__LINE__, REG_EXPAND_SZ, "%\0a\0%\0"sv, L"%a%"}, // as it is stored
    };
    for (const Row& stRow : aRow) {
        PutRaw(key, L"value", stRow.ulType, stRow.svBytes);
        EXPECT_EQ(Registry(HKEY_CURRENT_USER, key.Path()).ReadString(L"value"), stRow.pszExpected) << stRow.iLine;
    }
}

TEST(Registry, RefusesValuesOfAnotherTypeOrSize)
{
    const TestKey key;
    PutRaw(key, L"string", REG_SZ, "a\0\0\0"sv);
    PutRaw(key, L"number", REG_DWORD, "abcd"sv);
    PutRaw(key, L"number64", REG_QWORD, "abcdefgh"sv);
    PutRaw(key, L"short number", REG_DWORD, "abc"sv);
    PutRaw(key, L"long number", REG_QWORD, "abcdefghi"sv);
    PutRaw(key, L"list", REG_MULTI_SZ, "a\0\0\0\0\0"sv);
    const Registry registry(HKEY_CURRENT_USER, key.Path());
    ExpectCodes({
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadString(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadString(L"list"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"number64"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber64(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadBinary(L"string"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"string", 1); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber(L"short number"); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber64(L"long number"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.ReadString(L"absent"); }},
    });
    EXPECT_EQ(registry.ReadString(L"absent", L"default"), L"default");
    EXPECT_EQ(registry.ReadNumber(L"absent", 7), 7U);
}

TEST(Registry, TellsWhyAKeyCannotBeOpened)
{
    const TestKey key;
    Registry registry;
    const std::wstring tszAbsent = key.Path() + L"\\absent";
    registry.Create(HKEY_CURRENT_USER, key.Path());
    ExpectCodes({
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { registry.Create(HKEY_CURRENT_USER, L""); }},
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { registry.CreateAllAccess(HKEY_CURRENT_USER, L""); }},
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { Registry::DeleteKeyAt(HKEY_CURRENT_USER, L"\\"); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.Open(nullptr, tszAbsent); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.OpenForDeletion(HKEY_CURRENT_USER, tszAbsent); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.OpenForEnumeration(HKEY_CURRENT_USER, tszAbsent); }},
        // A failed opening closes what was open; the object may be used again.
        {__LINE__, 0, [&] { registry.Create(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.Open(HKEY_CURRENT_USER, tszAbsent); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.WriteNumber(L"value", 1); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.SubKeys(); }},
        {__LINE__, 0, [&] { registry.Open(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, ERROR_ACCESS_DENIED, [&] { registry.WriteNumber(L"value", 1); }}, // it is open for reading
    });
}

TEST(Registry, KeepsTheViewsApart)
{
    const TestKey key;
    const std::wstring tszChild = key.Path() + L"\\child";
    Registry registry;
    for (const RegistryView enView : {View32, View64}) {
        registry.Create(HKEY_LOCAL_MACHINE, tszChild, enView);
        registry.WriteNumber(L"view", enView);
    }
    for (const RegistryView enView : {ViewDefault, View32, View64}) { // this is a 64-bit process
        EXPECT_EQ(Registry(HKEY_LOCAL_MACHINE, tszChild, enView).ReadNumber(L"view"),
                  enView == View32 ? View32 : View64);
    }
    registry.Close();
    // Each view's key goes, the other's stays.
    const auto Delete = [&](const std::wstring& _rtszPath, RegistryView _enView) {
        Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, _rtszPath, _enView);
    };
    const auto OpenAndClose = [&](const std::wstring& _rtszPath, RegistryView _enView) {
        registry.Open(HKEY_LOCAL_MACHINE, _rtszPath, _enView);
        registry.Close();
    };
    ExpectCodes({
        {__LINE__, 0, [&] { Delete(tszChild, View32); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { OpenAndClose(tszChild, View32); }},
        {__LINE__, 0, [&] { OpenAndClose(tszChild, View64); }},
        {__LINE__, 0, [&] { Delete(tszChild, View64); }},
        {__LINE__, 0, [&] { Delete(key.Path(), View32); }}, // the child of a redirected key
        {__LINE__, 0, [&] { OpenAndClose(key.Path(), View64); }},
        {__LINE__, 0, [&] { Delete(key.Path() + L"\\", View64); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { OpenAndClose(key.Path(), View64); }},
    });
}

TEST(Registry, DeletesKeysWithoutChildrenAndValues)
{
    const TestKey key;
    Registry registry;
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child");
    registry.Create(HKEY_CURRENT_USER, key.Path());
    registry.WriteNumber(L"value", 1);
    registry.OpenForDeletion(HKEY_CURRENT_USER, key.Path());
    ExpectCodes({
        {__LINE__, ERROR_ACCESS_DENIED, [&] { registry.DeleteKey(L"parent"); }},
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { registry.DeleteKey(L""); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.DeleteKey(L"absent"); }},
        {__LINE__, 0, [&] { registry.DeleteValue(L"value"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.DeleteValue(L"value"); }},
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child"); }},
        {__LINE__, 0, [&] { registry.DeleteKey(L"parent"); }},
    });
    registry.OpenForEnumeration(HKEY_CURRENT_USER, key.Path());
    EXPECT_THAT(registry.SubKeys(), IsEmpty());
}

TEST(Registry, EnumeratesNamesOfAnyLength)
{
    const TestKey key;
    const std::wstring tszLongKey(255, L'k');
    const std::wstring tszLongValue(5000, L'v');
    Registry registry;
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\" + tszLongKey);
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\\u4e2d");
    registry.Create(HKEY_CURRENT_USER, key.Path());
    registry.WriteNumber(L"one", 1);
    registry.WriteString(tszLongValue, L"x");
    registry.WriteString(L"", L"default");
    registry.OpenForEnumeration(HKEY_CURRENT_USER, key.Path());
    EXPECT_THAT(registry.SubKeys(), UnorderedElementsAre(tszLongKey, L"\u4e2d"));
    EXPECT_THAT(registry.ValueNames(), UnorderedElementsAre(L"one", tszLongValue, L""));
}
