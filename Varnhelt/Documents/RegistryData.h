#pragma once

#include "Descriptions/Description.h"
#include "Documents/RegistryWords.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** Registry values of labelled components, from a document of the caller's. */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aRegistryDataType[] = {
    {L"REG_SZ", REG_SZ}, {L"REG_BINARY", REG_BINARY}, {L"REG_DWORD", REG_DWORD}, {L"REG_QWORD", REG_QWORD}};
static_assert(Frwk::IsDistinct(g_aRegistryDataType));
inline constexpr Frwk::WordTable g_stRegistryDataType{.aWord = g_aRegistryDataType, .stDefaults = {}, .bAnyCase = true};

// What is around a value, and says which component it belongs to, where it is, and who may use it.
inline constexpr std::wstring_view g_svRegistryComponent = L"Component";
inline constexpr std::wstring_view g_svComponentLabel = L"label";
inline constexpr std::wstring_view g_svReg = L"Reg";
inline constexpr std::wstring_view g_svRegKey = L"key";
inline constexpr std::wstring_view g_svRegAccess = L"access";
/** The only root that a key may name. */
inline constexpr std::wstring_view g_svRegRoot = L"HKEY_LOCAL_MACHINE";

inline constexpr Frwk::Word g_aRegAccess[] = {{L"all", 1}, {L"none", 0}, {L"", 0}};
static_assert(Frwk::IsDistinct(g_aRegAccess));
inline constexpr Frwk::WordTable g_stRegAccess{g_aRegAccess, {}};

/** A key as the document writes it: split at its first backslash. One without a backslash is all root. */
struct RegistryDataKey
{
    constexpr explicit RegistryDataKey(std::wstring_view _svKey)
        : svRoot(_svKey.substr(0, _svKey.find(L'\\'))),
          bSubKey(svRoot.size() < _svKey.size()),
          svSubKey(bSubKey ? _svKey.substr(svRoot.size() + 1) : std::wstring_view())
    {}

    std::wstring_view svRoot;
    bool bSubKey; // there is one, be it empty
    std::wstring_view svSubKey;
};

constexpr bool IsRegKey(std::wstring_view _svKey)
{
    const RegistryDataKey stKey(_svKey);
    return stKey.bSubKey && stKey.svRoot == g_svRegRoot;
}

/** The number of a value is used where its type is one. */
inline Strange WithoutNumber(const SrvFrwk::RegistryData& _rstData)
{
    const bool bNumber = _rstData.ulType == REG_DWORD || _rstData.ulType == REG_QWORD;
    return bNumber ? Strange::Default : Strange::Unread;
}

/** Bytes that are missing are worth a word; a text may be empty. */
inline Strange WithoutText(const SrvFrwk::RegistryData& _rstData)
{
    return _rstData.ulType == REG_BINARY ? Strange::Default : Strange::Unread;
}

inline constexpr auto g_stRegistryData = Describe<SrvFrwk::RegistryData>(
    L"Element", Derived(g_svRegKey, &SrvFrwk::RegistryData::hRoot, RegistryRoot()).Key("root"),
    Derived(g_svRegKey, &SrvFrwk::RegistryData::tszSubKey, Text()).Key("subKey"),
    Derived(g_svRegAccess, &SrvFrwk::RegistryData::bAllAccess, Boolean()).Key("allAccess"),
    Child(L"Name", &SrvFrwk::RegistryData::tszName, Text()).Key("name"),
    Child(L"Type", &SrvFrwk::RegistryData::ulType, Words(g_stRegistryDataType)).Else("read as no type").Key("type"),
    Child(L"Value", &SrvFrwk::RegistryData::tszValue, Text()).OnStrange(WithoutText).Key("text"),
    Child(L"Value", &SrvFrwk::RegistryData::ullValue, WholeNumber()).OnStrange(WithoutNumber).Key("number"));

/** Reads the file and the labels of a RegistryDataRequest into a vector of RegistryData; contract as Handler. */
std::uint32_t QueryValueAsRegistryData(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
