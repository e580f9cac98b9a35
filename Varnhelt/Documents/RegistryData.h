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

// What stands around a value, and says which component it belongs to, where it lies, and who may use it.
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
    L"Element", Derived(g_svRegKey, &SrvFrwk::RegistryData::hRoot, RegistryRoot()).Key("root"),
    Derived(g_svRegKey, &SrvFrwk::RegistryData::tszSubKey, Text()).Key("subKey"),
    Derived(g_svRegAccess, &SrvFrwk::RegistryData::bAllAccess, Boolean()).Key("allAccess"),
    Child(L"Name", &SrvFrwk::RegistryData::tszName, Text()).Key("name"),
    Child(L"Type", &SrvFrwk::RegistryData::ulType, Words(g_stRegistryDataType)).Key("type"),
    Child(L"Value", &SrvFrwk::RegistryData::tszValue, Text()).Key("text"),
    Child(L"Value", &SrvFrwk::RegistryData::ullValue, WholeNumber()).Key("number"));

/** Reads the file and the labels of a RegistryDataRequest into a vector of RegistryData; contract as Handler. */
std::uint32_t QueryValueAsRegistryData(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
