#include "ZkComn_Registry.h"

#include "Failure.h"
#include "TestKey.h"

#include <functional>
#include <gmock/gmock-more-matchers.h>
#include <tuple>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using namespace std::string_view_literals;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

void ExpectCodes(std::initializer_list<std::tuple<int, std::uint32_t, std::function<void()>>> _listRow)
{
    for (const auto& [iLine, ulCode, fnOperation] : _listRow) {
        EXPECT_EQ(CodeOf<RegException>(fnOperation), ulCode) << "row of line " << iLine;
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

TEST(Registry, ReadsWhatItWroteUnderNamesOfAnyLength)
{
    const TestKey key;
    const std::wstring tszLongKey(255, L'k');
    const std::wstring tszLongName(5000, L'v');
    const std::wstring tszLong(100000, L'\u4e2d');
    const std::vector<std::uint8_t> vecBytes = {0, 1, 255};
    Registry registry;
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\a\\" + tszLongKey);
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\a\\\u4e2d");
    registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\a");
    registry.WriteString(L"", L"default value");
    registry.WriteString(tszLongName, tszLong);
    registry.WriteNumber(L"number", 0xFFFFFFFF);
    registry.WriteNumber64(L"number64", 0x123456789ABCDEF0);
    registry.WriteBinary(L"binary", vecBytes);
    registry.WriteBinary(L"no bytes", {});
    registry.Flush();

    const Registry reader(HKEY_CURRENT_USER, key.Path() + L"\\a");
    EXPECT_EQ(reader.ReadString(L""), L"default value");
    EXPECT_EQ(reader.ReadString(tszLongName), tszLong);
    EXPECT_EQ(reader.ReadNumber(L"number"), 0xFFFFFFFFU);
    EXPECT_EQ(reader.ReadNumber64(L"number64"), 0x123456789ABCDEF0U);
    EXPECT_EQ(reader.ReadBinary(L"binary"), vecBytes);
    EXPECT_THAT(reader.ReadBinary(L"no bytes"), IsEmpty());
    registry.OpenForEnumeration(HKEY_CURRENT_USER, key.Path() + L"\\a");
    EXPECT_THAT(registry.SubKeys(), UnorderedElementsAre(tszLongKey, L"\u4e2d"));
    EXPECT_THAT(registry.ValueNames(),
                UnorderedElementsAre(L"", tszLongName, L"number", L"number64", L"binary", L"no bytes"));
}

TEST(Registry, CopesWithStringsAsOthersStoreThem)
{
    const TestKey key;
    const std::tuple<int, DWORD, std::string_view, const wchar_t*> aRows[] = {
        {__LINE__, REG_SZ, "a\0b\0"sv, L"ab"},            // not terminated
        {__LINE__, REG_SZ, "a\0b\0c"sv, L"ab"},           // half a character more
        {__LINE__, REG_SZ, "a\0\0\0b\0\0\0"sv, L"a"},     // a zero in it
        {__LINE__, REG_SZ, "a"sv, L""},                   // half a character
        {__LINE__, REG_SZ, ""sv, L""},                    // nothing at all
        {__LINE__, REG_EXPAND_SZ, "%\0a\0%\0"sv, L"%a%"}, // as it is stored
    };
    for (const auto& [iLine, ulType, svBytes, pszExpected] : aRows) {
        PutRaw(key, L"value", ulType, svBytes);
        EXPECT_EQ(Registry(HKEY_CURRENT_USER, key.Path()).ReadString(L"value"), pszExpected) << iLine;
    }
}

TEST(Registry, RefusesValuesOfAnotherTypeOrSize)
{
    const TestKey key;
    PutRaw(key, L"string", REG_SZ, "a\0\0\0"sv);
    PutRaw(key, L"number", REG_DWORD, "abcd"sv);
    PutRaw(key, L"short number", REG_DWORD, "abc"sv);
    PutRaw(key, L"long number", REG_QWORD, "abcdefghi"sv);
    const Registry registry(HKEY_CURRENT_USER, key.Path());
    ExpectCodes({
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadString(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"long number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber64(L"number"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadBinary(L"string"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.ReadString(L"absent"); }},
        {__LINE__, ERROR_INVALID_DATATYPE, [&] { registry.ReadNumber(L"string", 1); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber(L"short number"); }},
        {__LINE__, ERROR_INVALID_DATA, [&] { registry.ReadNumber64(L"long number"); }},
    });
    EXPECT_EQ(registry.ReadString(L"absent", L"default"), L"default");
    EXPECT_EQ(registry.ReadNumber(L"absent", 7), 7U);
}

TEST(Registry, TellsWhyAKeyCannotBeOpenedOrDeleted)
{
    const TestKey key;
    Registry registry;
    const std::wstring tszAbsent = key.Path() + L"\\absent";
    ExpectCodes({
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { registry.Create(HKEY_CURRENT_USER, L""); }},
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { Registry::DeleteKeyAt(HKEY_CURRENT_USER, L"\\"); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.Open(nullptr, tszAbsent); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.OpenForDeletion(HKEY_CURRENT_USER, tszAbsent); }},
        // A failed opening closes what was open; the object may be used again.
        {__LINE__, 0, [&] { registry.Create(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.Open(HKEY_CURRENT_USER, tszAbsent); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.WriteNumber(L"value", 1); }},
        {__LINE__, ERROR_INVALID_HANDLE, [&] { registry.SubKeys(); }},
        {__LINE__, 0, [&] { registry.Open(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, ERROR_ACCESS_DENIED, [&] { registry.WriteNumber(L"value", 1); }}, // it is open for reading
        // A key is deleted without its children only.
        {__LINE__, 0, [&] { registry.Create(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child"); }},
        {__LINE__, 0, [&] { registry.Create(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, 0, [&] { registry.WriteNumber(L"value", 1); }},
        {__LINE__, 0, [&] { registry.OpenForDeletion(HKEY_CURRENT_USER, key.Path()); }},
        {__LINE__, ERROR_ACCESS_DENIED, [&] { registry.DeleteKey(L"parent"); }},
        {__LINE__, ERROR_BAD_ARGUMENTS, [&] { registry.DeleteKey(L""); }},
        {__LINE__, 0, [&] { registry.DeleteValue(L"value"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.DeleteValue(L"value"); }},
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_CURRENT_USER, key.Path() + L"\\parent\\child"); }},
        {__LINE__, 0, [&] { registry.DeleteKey(L"parent"); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { registry.DeleteKey(L"parent"); }},
    });
}

TEST(Registry, KeepsTheViewsApart)
{
    const TestKey key;
    const std::wstring tszChild = key.Path() + L"\\child";
    for (const RegistryView enView : {View32, View64}) {
        Registry registry;
        registry.Create(HKEY_LOCAL_MACHINE, tszChild, enView);
        registry.WriteNumber(L"view", enView);
    }
    for (const RegistryView enView : {ViewDefault, View32, View64}) { // this is a 64-bit process
        EXPECT_EQ(Registry(HKEY_LOCAL_MACHINE, tszChild, enView).ReadNumber(L"view"),
                  enView == View32 ? View32 : View64);
    }
    ExpectCodes({
        // Each view's key goes, the other's stays.
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, tszChild, View32); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { Registry(HKEY_LOCAL_MACHINE, tszChild, View32); }},
        {__LINE__, 0, [&] { Registry(HKEY_LOCAL_MACHINE, tszChild, View64); }},
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, tszChild, View64); }},
        // The child of a redirected key.
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path(), View32); }},
        {__LINE__, 0, [&] { Registry(HKEY_LOCAL_MACHINE, key.Path(), View64); }},
        {__LINE__, 0, [&] { Registry::DeleteKeyAt(HKEY_LOCAL_MACHINE, key.Path() + L"\\", View64); }},
        {__LINE__, ERROR_FILE_NOT_FOUND, [&] { Registry(HKEY_LOCAL_MACHINE, key.Path(), View64); }},
    });
}
