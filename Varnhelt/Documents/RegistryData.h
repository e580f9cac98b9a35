#pragma once

#include "Description.h"
#include "RegistryWords.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/** Registry values of labelled components, from a document of the caller's. */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aRegistryDataType[] = {
    {L"REG_SZ", REG_SZ}, {L"REG_BINARY", REG_BINARY}, {L"REG_DWORD", REG_DWORD}, {L"REG_QWORD", REG_QWORD}};
static_assert(Frwk::IsDistinct(g_aRegistryDataType));
inline constexpr Frwk::WordTable g_stRegistryDataType{.aWord = g_aRegistryDataType, .stDefaults = {}, .bAnyCase = true};

/** A number of 64 bits; 0 unless the whole text is one. */
struct WholeNumber
{
    static constexpr Show g_enShow = Show::Text;
    static constexpr const Frwk::WordTable* WordsOf() { return nullptr; }
    static std::uint64_t Read(std::wstring_view _svText)
    {
        return ZkCommon::String::ToWholeNumber64(_svText).value_or(0);
    }
    static std::wstring Write(std::uint64_t _ullValue) { return std::to_wstring(_ullValue); }
};

inline constexpr auto g_stRegistryData = Describe<SrvFrwk::RegistryData>(
    L"Element", Derived(L"key", &SrvFrwk::RegistryData::hRoot, RegistryRoot()).Key("root"),
    Derived(L"key", &SrvFrwk::RegistryData::tszSubKey, Text()).Key("subKey"),
    Derived(L"access", &SrvFrwk::RegistryData::bAllAccess, Boolean()).Key("allAccess"),
    Child(L"Name", &SrvFrwk::RegistryData::tszName, Text()).Key("name"),
    Child(L"Type", &SrvFrwk::RegistryData::ulType, Words(g_stRegistryDataType)).Key("type"),
    Child(L"Value", &SrvFrwk::RegistryData::tszValue, Text()).Key("text"),
    Child(L"Value", &SrvFrwk::RegistryData::ullValue, WholeNumber()).Key("number"));

} // namespace Varnhelt::Documents
