#include "Update/UpdateChanges.h"

#include "Update/SystemKey.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_String.h"

#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

using Changes = std::vector<UpdateChange>;
using NameSet = std::set<std::wstring, String::LessNoCase>;

bool IsPresent(const std::wstring& _rtszFile)
{
    return ::GetFileAttributesW(_rtszFile.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Registry.

void AddValueChanges(const UpdatePlace& _rstReal, KeyRecord& _rRecord, Changes& _rvecChange)
{
    SystemKeys cPresent;
    NameSet setName;
    for (UpdateStorage* pStorage : {static_cast<UpdateStorage*>(&cPresent), static_cast<UpdateStorage*>(&_rRecord)}) {
        for (std::wstring& rtszName : pStorage->Names(_rstReal)) {
            setName.insert(std::move(rtszName));
        }
    }
    for (const std::wstring& tszName : setName) {
        std::optional<UpdateStorage::Value> stBefore = cPresent.Find(_rstReal, tszName);
        if (stBefore != _rRecord.Find(_rstReal, tszName)) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstReal, tszName, std::move(stBefore)});
        }
    }
}

void AddKeyChanges(KeyRecord& _rRecord, Changes& _rvecChange)
{
    SystemKeys cPresent;
    for (const auto& [tszName, stState] : _rRecord.Touched()) {
        const UpdatePlace stPlace = KeyOfName(tszName);
        const bool bBefore = cPresent.Exists(stPlace);
        if (!bBefore) {
            if (stState.bExists) {
                _rvecChange.push_back({UpdateChange::Kind::Created, stPlace, {}});
            }
            continue;
        }
        if (!stState.bExists) {
            const bool bAllAccess = AccessListOf(stPlace) == AccessList::AllAccess;
            _rvecChange.push_back({UpdateChange::Kind::Removed, stPlace, {}, {}, bAllAccess});
        } else if (stState.bNew &&
                   AccessListOf(stPlace) != (stState.bAllAccess ? AccessList::AllAccess : AccessList::Inherited)) {
            _rvecChange.push_back({UpdateChange::Kind::AccessList, stPlace, {}});
        }
        AddValueChanges(stPlace, _rRecord, _rvecChange);
    }
}

// Ini files.

/** What a section holds. */
struct SectionContent
{
    std::map<std::wstring, std::wstring, String::LessNoCase> mapEntry; // of several with one name the first applies
    std::multiset<std::wstring> setOther;                              // all other lines
};

SectionContent ContentOf(const UpdatePlace& _rstPlace)
{
    SectionContent stContent;
    for (std::wstring& rtszLine : Storage::IniFile(_rstPlace.tszPath, _rstPlace.tszSection).Section()) {
        const std::size_t uEquals = rtszLine.find(L'=');
        const bool bEntry = uEquals != 0 && uEquals != std::wstring::npos;
        if (!bEntry || !stContent.mapEntry.emplace(rtszLine.substr(0, uEquals), rtszLine.substr(uEquals + 1)).second) {
            stContent.setOther.insert(std::move(rtszLine));
        }
    }
    return stContent;
}

void AddSectionChanges(const UpdatePlace& _rstBefore, const UpdatePlace& _rstAfter, Changes& _rvecChange)
{
    const SectionContent stBefore = ContentOf(_rstBefore);
    const SectionContent stAfter = ContentOf(_rstAfter);
    for (const auto& [tszName, tszText] : stBefore.mapEntry) {
        const auto itAfter = stAfter.mapEntry.find(tszName);
        if (itAfter == stAfter.mapEntry.end() || itAfter->second != tszText) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstBefore, tszName, UpdateStorage::Value::Of(tszText)});
        }
    }
    for (const auto& [tszName, tszText] : stAfter.mapEntry) {
        if (!stBefore.mapEntry.contains(tszName)) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstBefore, tszName});
        }
    }
    if (stBefore.setOther != stAfter.setOther) {
        _rvecChange.push_back({UpdateChange::Kind::Lines, _rstBefore, {}});
    }
}

UpdatePlace SectionAt(const std::wstring& _rtszPath, const std::wstring& _rtszSection)
{
    UpdatePlace stPlace;
    stPlace.enKind = UpdatePlace::Kind::IniFile;
    stPlace.tszPath = _rtszPath;
    stPlace.tszSection = _rtszSection;
    return stPlace;
}

void AddIniChanges(const IniRecord::Copy& _rstCopy, Changes& _rvecChange)
{
    if (_rstCopy.bNew && IsPresent(_rstCopy.tszCopy) && !IsPresent(_rstCopy.tszPath)) {
        _rvecChange.push_back({UpdateChange::Kind::File, SectionAt(_rstCopy.tszPath, {}), {}});
    }
    NameSet setSection;
    for (const std::wstring& tszPath : {_rstCopy.tszPath, _rstCopy.tszCopy}) {
        for (std::wstring& rtszSection : Storage::IniFile(tszPath).SectionNames()) {
            setSection.insert(std::move(rtszSection));
        }
    }
    SystemIniFiles cFiles;
    for (const std::wstring& tszSection : setSection) {
        if (tszSection.empty()) {
            continue; // no update reaches it
        }
        const UpdatePlace stBefore = SectionAt(_rstCopy.tszPath, tszSection);
        const UpdatePlace stAfter = SectionAt(_rstCopy.tszCopy, tszSection);
        const bool bBefore = cFiles.Exists(stBefore);
        const bool bAfter = cFiles.Exists(stAfter);
        if (bBefore != bAfter) {
            _rvecChange.push_back({bAfter ? UpdateChange::Kind::Created : UpdateChange::Kind::Removed, stBefore, {}});
        }
        if (bBefore) {
            AddSectionChanges(stBefore, stAfter, _rvecChange);
        }
    }
}

} // namespace

std::vector<UpdateChange> ChangesOf(KeyRecord& _rKeys, const IniRecord& _rIniFiles)
{
    Changes vecChange;
    AddKeyChanges(_rKeys, vecChange);
    for (const IniRecord::Copy& stCopy : _rIniFiles.Touched()) {
        AddIniChanges(stCopy, vecChange);
    }
    return vecChange;
}

} // namespace Varnhelt
