#include "Update/UpdateStorage.h"

#include "ZkComn_IniFile.h"

#include <utility>

namespace Varnhelt {

using ZkCommon::Storage::IniFile;
using ZkCommon::Storage::Registry;

// Registry.

bool SystemKeys::Exists(const UpdatePlace& _rstPlace)
{
    Registry cKey;
    return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
}

std::optional<UpdateStorage::Value> SystemKeys::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    Registry cKey;
    return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView) ? cKey.Find(_rtszName) : std::nullopt;
}

std::vector<std::wstring> SystemKeys::Names(const UpdatePlace& _rstPlace)
{
    Registry cKey;
    return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView) ? cKey.ValueNames()
                                                                              : std::vector<std::wstring>();
}

std::vector<std::wstring> SystemKeys::SubKeys(const UpdatePlace& _rstPlace)
{
    Registry cKey;
    cKey.OpenForEnumeration(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    return cKey.SubKeys();
}

void SystemKeys::Create(const UpdatePlace& _rstPlace, bool _bAllAccess)
{
    Registry cKey;
    if (_bAllAccess) {
        cKey.CreateAllAccess(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    } else {
        cKey.Create(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    }
}

void SystemKeys::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    Registry cKey;
    cKey.OpenForWriting(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    cKey.Write(_rtszName, _rstValue);
}

void SystemKeys::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    Registry cKey;
    cKey.OpenForDeletion(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    cKey.DeleteValue(_rtszName);
}

void SystemKeys::Remove(const UpdatePlace& _rstPlace)
{
    Registry::DeleteKeyAt(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
}

// Ini files.

namespace {

IniFile SectionOf(const UpdatePlace& _rstPlace)
{
    return IniFile(_rstPlace.tszPath, _rstPlace.tszSection);
}

} // namespace

bool SystemIniFiles::Exists(const UpdatePlace& _rstPlace)
{
    return SectionOf(_rstPlace).SectionExists();
}

std::optional<UpdateStorage::Value> SystemIniFiles::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    const std::optional<std::wstring> tszText = SectionOf(_rstPlace).Find(_rtszName);
    return tszText ? std::optional(Value::Of(*tszText)) : std::nullopt;
}

std::vector<std::wstring> SystemIniFiles::Names(const UpdatePlace& _rstPlace)
{
    std::vector<std::wstring> vecName;
    for (auto& [tszName, tszText] : SectionOf(_rstPlace).Entries()) {
        vecName.push_back(std::move(tszName));
    }
    return vecName;
}

std::vector<std::wstring> SystemIniFiles::SubKeys(const UpdatePlace&)
{
    return {};
}

void SystemIniFiles::Create(const UpdatePlace& _rstPlace, bool)
{
    SectionOf(_rstPlace).CreateSection();
}

void SystemIniFiles::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    SectionOf(_rstPlace).WriteString(_rtszName, _rstValue.Text());
}

void SystemIniFiles::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    SectionOf(_rstPlace).DeleteEntry(_rtszName);
}

void SystemIniFiles::Remove(const UpdatePlace& _rstPlace)
{
    SectionOf(_rstPlace).DeleteSection();
}

} // namespace Varnhelt
