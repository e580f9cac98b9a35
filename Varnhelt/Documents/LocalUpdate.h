#pragma once

#include "Descriptions/Description.h"
#include "Documents/RegistryWords.h"
#include "Documents/UpdateVersion.h"
#include "Documents/UpdateWords.h"
#include "Request.h"
#include "ZkComn_Registry.h"

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <tuple>

/** A local update description: which registry values and ini entries to change, and on which machines. */
namespace Varnhelt {

/** On which machines an item or an entry of it counts; looked at only when the description asks for it. */
struct UpdateConditions
{
    std::wstring tszMaxVersion;
    std::wstring tszMinVersion;
    std::wstring tszProduct;
    std::wstring tszLanguage;
    std::wstring tszPlatform;
};

/** One value of a key, or one entry of a section. Every field is the document's text; what is absent is empty. */
struct LocalUpdateEntry : UpdateConditions
{
    std::wstring tszName;
    std::wstring tszType;
    std::wstring tszValue;
    std::wstring tszAction;
    std::wstring tszOverWrite;
    std::wstring tszAllAccess; // registry only
    std::wstring tszTarget;    // the kind of item that the entry is meant for
};

/** One registry key, or one section of an ini file. */
struct LocalUpdateKey : UpdateConditions
{
    std::wstring tszKind;       // g_szRegistryKind or g_szIniFileKind
    std::wstring tszRoot;       // the registry root; the path of the ini file
    std::wstring tszPath;       // the key's path; the section's name
    std::wstring tszAccessMode; // the registry view; registry only
    std::list<LocalUpdateEntry> lstEntry;
};

/** An item without data: accepted, never acted on. */
struct LocalUpdateDirectory
{
    std::wstring tszKind;
};

struct LocalUpdateConfig
{
    std::wstring tszVersion;
    std::wstring tszCheck; // "yes": the conditions count
    std::list<LocalUpdateKey> lstRegistry;
    std::list<LocalUpdateKey> lstIniFile;
    std::list<LocalUpdateDirectory> lstDirectory;
};

inline constexpr const wchar_t* g_szRegistryKind = L"registry";
inline constexpr const wchar_t* g_szIniFileKind = L"inifile";
inline constexpr const wchar_t* g_szDirectoryKind = L"directory";

/** Whether an item's name is that of its kind, or an abbreviation of it, in any case. */
inline bool IsOfKind(std::wstring_view _svName, std::wstring_view _svKind)
{
    return ZkCommon::String::EqualsNoCase(_svName, _svKind, _svName.size());
}

// The attributes of a description's root.
inline constexpr std::wstring_view g_svUpdateVersion = L"version";
inline constexpr std::wstring_view g_svUpdateCheck = L"check";
inline constexpr std::wstring_view g_svUpdateStay = L"stay";

namespace Documents {

// What an entry is meant for: the kind of its item.
inline constexpr Frwk::Word g_aRegistryTarget[] = {{g_szRegistryKind, 0}};
inline constexpr Frwk::Word g_aIniFileTarget[] = {{g_szIniFileKind, 0}};
inline constexpr Frwk::WordTable g_stRegistryTarget{g_aRegistryTarget, {}};
inline constexpr Frwk::WordTable g_stIniFileTarget{g_aIniFileTarget, {}};

/** A version, as the conditions compare it. */
struct VersionText : Text
{
    static constexpr const char* g_szForm = "version";
    static bool Accepts(std::wstring_view _svText) { return CompareVersion(_svText, _svText).has_value(); }
};

/** The path of a registry key, as the system takes it. */
struct KeyPathText : Text
{
    static constexpr const char* g_szForm = "path of a registry key";
    static bool Accepts(std::wstring_view _svText) { return ZkCommon::Storage::Registry::IsPath(_svText); }
};

/** The conditions of an item and of an entry. Where the description asks for them, all are needed. */
inline constexpr auto g_stUpdateConditions = Describe<UpdateConditions>(
    L"",
    Attribute(L"maxversion", &UpdateConditions::tszMaxVersion, VersionText())
        .OnStrange(Strange::Drop)
        .Key("maxVersion"),
    Attribute(L"minversion", &UpdateConditions::tszMinVersion, VersionText())
        .OnStrange(Strange::Drop)
        .Key("minVersion"),
    Attribute(L"product", &UpdateConditions::tszProduct, WordText(UpdateWords::g_stProductCondition))
        .OnStrange(Strange::Drop)
        .Key("product"),
    Attribute(L"language", &UpdateConditions::tszLanguage, WordText(UpdateWords::g_stLanguageCondition))
        .OnStrange(Strange::Drop)
        .Key("language"),
    Attribute(L"platform", &UpdateConditions::tszPlatform, WordText(UpdateWords::g_stPlatformCondition))
        .OnStrange(Strange::Drop)
        .Key("platform"));

/** A description of the given fields and, after them, the conditions. */
template <class TRecord, class... TFields>
constexpr auto DescribeWithConditions(std::wstring_view _svElement, TFields... _stFields)
{
    return std::apply(
        [&](const auto&... _stConditions) { return Describe<TRecord>(_svElement, _stFields..., _stConditions...); },
        g_stUpdateConditions.tplFields);
}

inline bool IsAction(const LocalUpdateEntry& _rstEntry, UpdateWords::Action _enAction)
{
    return _rstEntry.tszAction == Frwk::Utility::ToText(UpdateWords::g_stAction, _enAction);
}

/** Whether an entry has data. */
inline bool IsStoring(const LocalUpdateEntry& _rstEntry)
{
    return IsAction(_rstEntry, UpdateWords::ActionAppend) || IsAction(_rstEntry, UpdateWords::ActionWrite);
}

/** Without a name the unnamed value of a key is meant. */
inline Strange WithoutValueName(const LocalUpdateEntry& _rstEntry)
{
    return IsStoring(_rstEntry) ? Strange::Default : Strange::Unread;
}

/** An ini file has no such entry. */
inline Strange WithoutEntryName(const LocalUpdateEntry& _rstEntry)
{
    return IsStoring(_rstEntry) ? Strange::Drop : Strange::Unread;
}

/** Data without a type is not stored. */
inline Strange WithoutType(const LocalUpdateEntry& _rstEntry)
{
    return IsStoring(_rstEntry) ? Strange::Drop : Strange::Unread;
}

/** What is there stays, unless the entry says otherwise. */
inline Strange WithoutOverWrite(const LocalUpdateEntry& _rstEntry)
{
    const bool bAsked = IsStoring(_rstEntry) || IsAction(_rstEntry, UpdateWords::ActionCreate);
    return bAsked ? Strange::Default : Strange::Unread;
}

/** No key is made then: nothing is left to do of "create", and the rest is done where the key exists. */
inline Strange WithoutAllAccess(const LocalUpdateEntry& _rstEntry)
{
    if (IsAction(_rstEntry, UpdateWords::ActionCreate)) {
        return Strange::Drop;
    }
    return IsStoring(_rstEntry) ? Strange::Default : Strange::Unread;
}

/** An entry of either kind; only registry entries have more fields. */
template <class TName, class... TFields>
constexpr auto DescribeUpdateEntry(std::wstring_view _svElement, const Frwk::WordTable& _rstTarget, TName _stName,
                                   TFields... _stMoreFields)
{
    return DescribeWithConditions<LocalUpdateEntry>(
        _svElement, _stName,
        Child(L"Type", &LocalUpdateEntry::tszType, WordText(UpdateWords::g_stType)).OnStrange(WithoutType).Key("type"),
        Child(L"Value", &LocalUpdateEntry::tszValue, Text()).Optional().Key("value"),
        Child(L"Action", &LocalUpdateEntry::tszAction, WordText(UpdateWords::g_stAction))
            .OnStrange(Strange::Drop)
            .Key("action"),
        Child(L"OverWrite", &LocalUpdateEntry::tszOverWrite, WordText(UpdateWords::g_stYesNo))
            .OnStrange(WithoutOverWrite)
            .Key("overWrite"),
        _stMoreFields...,
        Attribute(L"target", &LocalUpdateEntry::tszTarget, WordText(_rstTarget)).Required().Key("target"));
}

inline constexpr auto g_stLocalUpdateValue =
    DescribeUpdateEntry(L"Key", g_stRegistryTarget,
                        Child(L"Name", &LocalUpdateEntry::tszName, Text()).OnStrange(WithoutValueName).Key("name"),
                        Child(L"AllAccess", &LocalUpdateEntry::tszAllAccess, WordText(UpdateWords::g_stYesNo))
                            .OnStrange(WithoutAllAccess)
                            .Else("no key is made")
                            .Key("allAccess"));

inline constexpr auto g_stLocalUpdateIniEntry = DescribeUpdateEntry(
    L"Entry", g_stIniFileTarget,
    Child(L"Name", &LocalUpdateEntry::tszName, FilledText()).OnStrange(WithoutEntryName).Key("name"));

// A rule decides of what kind an item is, not one name; the names here are those that a writer gives them.

inline constexpr auto g_stLocalUpdateRegistry = DescribeWithConditions<LocalUpdateKey>(
    g_szRegistryKind,
    Child(L"Root", &LocalUpdateKey::tszRoot, WordText(g_stUpdateRoot)).OnStrange(Strange::Drop).Key("root"),
    Child(L"Path", &LocalUpdateKey::tszPath, KeyPathText()).OnStrange(Strange::Drop).Key("path"),
    Child(L"AccessMode", &LocalUpdateKey::tszAccessMode, WordText(UpdateWords::g_stView)).Key("accessMode"),
    Children(L"", &LocalUpdateKey::lstEntry, g_stLocalUpdateValue).Key("entries"));

inline constexpr auto g_stLocalUpdateIniFile = DescribeWithConditions<LocalUpdateKey>(
    g_szIniFileKind, Child(L"Path", &LocalUpdateKey::tszRoot, FilledText()).OnStrange(Strange::Drop).Key("root"),
    Child(L"Section", &LocalUpdateKey::tszPath, FilledText()).OnStrange(Strange::Drop).Key("path"),
    Children(L"", &LocalUpdateKey::lstEntry, g_stLocalUpdateIniEntry).Key("entries"));

/**
 * Reads a local update description into the set, and deletes its file unless the description asks to stay.
 * @param _pbStay  where it is given, the file is only looked at: it stays, and the flag says what it asks for
 * @return g_ulPartialSuccess when there is no such file, or when it cannot be deleted: not to be applied then
 */
std::uint32_t QueryValueAsLocalUpdate(Worker& _rWorker, LocalUpdateConfig* _pConfig, const std::wstring* _ptszXmlPath,
                                      bool* _pbStay = nullptr);

} // namespace Documents

} // namespace Varnhelt
