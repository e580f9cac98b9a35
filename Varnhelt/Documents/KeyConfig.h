#pragma once

#include "Descriptions/DescriptionReader.h"
#include "Descriptions/YesNo.h"
#include "Documents/RegistryWords.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** Registry values to act on: "regkycfg.xml", and a part of every deployment component. */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aKeyType[] = {{L"string", REG_SZ}, {L"dword", REG_DWORD}, {L"binary", REG_BINARY}};
inline constexpr Frwk::Word g_aKeyAction[] = {
    {L"append", 1}, {L"createkey", 2}, {L"remove", 3}, {L"removekey", 4}, {L"write", 5}};
inline constexpr Frwk::Word g_aKeyOn[] = {{L"install", 1}, {L"uninstall", 2}, {L"", 3}}; // nothing means both
inline constexpr Frwk::Word g_aKeyAccessMode[] = {{L"default", 0}, {L"32bitKey", 1}, {L"64bitKey", 2}};
static_assert(Frwk::IsDistinct(g_aKeyType) && Frwk::IsDistinct(g_aKeyAction) && Frwk::IsDistinct(g_aKeyOn));
static_assert(Frwk::IsDistinct(g_aKeyAccessMode));
inline constexpr Frwk::WordTable g_stKeyType{.aWord = g_aKeyType, .stDefaults = {}, .bAnyCase = true};
inline constexpr Frwk::WordTable g_stKeyAction{.aWord = g_aKeyAction, .stDefaults = {}, .bAnyCase = true};
inline constexpr Frwk::WordTable g_stKeyOn{.aWord = g_aKeyOn, .stDefaults = {}, .bAnyCase = true};
inline constexpr Frwk::WordTable g_stKeyAccessMode{.aWord = g_aKeyAccessMode, .stDefaults = {}, .bAnyCase = true};
inline constexpr Frwk::WordTable g_stKeyFlag{.aWord = g_aYesNo, .stDefaults = {}, .bAnyCase = true};

// What is around a value, and decides where it is and on which systems and for which programs it applies.
inline constexpr std::wstring_view g_svRegistry = L"Registry";
inline constexpr std::wstring_view g_svRegistryRoot = L"Root";
inline constexpr std::wstring_view g_svRegistryKey = L"Key";
inline constexpr std::wstring_view g_svOsType = L"OsType";
inline constexpr std::wstring_view g_svAssign = L"Assign";
/** Walked like a "Registry"; nothing is taken from it. */
inline constexpr std::wstring_view g_svIniFile = L"IniFile";

inline constexpr auto g_stDeployKey = Describe<SrvFrwk::DeployKey>(
    L"RegistryValue", Derived(g_svRegistryRoot, &SrvFrwk::DeployKey::hRoot, RegistryRoot()).Key("root"),
    Derived(g_svRegistryKey, &SrvFrwk::DeployKey::strKey, Text()).Key("key"),
    Attribute(L"Name", &SrvFrwk::DeployKey::strName, Text()).Key("name"),
    Attribute(L"Type", &SrvFrwk::DeployKey::ulType, Words(g_stKeyType)).Else("read as no type").Key("type"),
    OwnText(&SrvFrwk::DeployKey::strData, Text()).Key("data"),
    Attribute(L"Action", &SrvFrwk::DeployKey::eAction, Words(g_stKeyAction)).Required().Key("action"),
    Attribute(L"On", &SrvFrwk::DeployKey::eOn, Words(g_stKeyOn)).Required().Optional().Key("on"),
    Attribute(L"OverWrite", &SrvFrwk::DeployKey::bOverWrite, Words(g_stKeyFlag)).Required().Key("overWrite"),
    Attribute(L"AllAccess", &SrvFrwk::DeployKey::bAllAccess, Words(g_stKeyFlag)).Required().Key("allAccess"),
    Attribute(L"AccessMode", &SrvFrwk::DeployKey::eAccessMode, Words(g_stKeyAccessMode)).Required().Key("accessMode"));

/** Reads the registry values of one element of a document after another. */
class KeyReader
{
public:
    explicit KeyReader(const ZkCommon::Storage::XmlElement& _rElement);

    /**
     * The values below the element's "Registry" children, in document order. What is not for this system or program, and
     * what is not complete, is left out. A "Registry" without a root of its own has that of the one before it.
     * @return g_ulFailed for a system that does not exist, or when the program does not know its own name, which is
     *         logged; the values so far stay
     */
    std::uint32_t GetKeyConfig(const ZkCommon::Storage::XmlElement& _rElement,
                               std::vector<SrvFrwk::DeployKey>& _rvecKey);

private:
    /** Of the children that are parsed. */
    std::size_t CountValues(const ZkCommon::Storage::XmlElement& _rElement) const noexcept;
    /** std::nullopt when it is not known. */
    std::optional<bool> IsForThisProgram(const ZkCommon::Storage::XmlElement& _rValue);

    ZkCommon::Storage::XmlName m_registry;
    ZkCommon::Storage::XmlName m_root;
    ZkCommon::Storage::XmlName m_key;
    ZkCommon::Storage::XmlName m_value;
    ZkCommon::Storage::XmlName m_osType;
    ZkCommon::Storage::XmlName m_assign;
    Bound<std::remove_const_t<decltype(g_stDeployKey)>> m_cKey;
    std::optional<std::wstring> m_tszProgram; // filled on first use
};

/** Reads the document of the request's directory into a vector of DeployKey; contract as Handler. */
std::uint32_t QueryValueAsKeyConfig(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
