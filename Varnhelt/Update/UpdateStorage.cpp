#include "Update/UpdateStorage.h"

#include "ZkComn_IniFile.h"

#include <utility>

namespace Varnhelt {

using ZkCommon::Storage::IniFile;
using ZkCommon::Storage::Registry;

namespace {

IniFile SectionOf(const UpdatePlace& _rstPlace)
{
    return IniFile(_rstPlace.tszPath, _rstPlace.tszSection);
}

} // namespace

bool SystemStorage::Exists(const UpdatePlace& _rstPlace)
{
    if (!_rstPlace.IsRegistry()) {
        return SectionOf(_rstPlace).SectionExists();
    }
    Registry cKey;
    return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
}

std::optional<UpdateStorage::Value> SystemStorage::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    if (!_rstPlace.IsRegistry()) {
        const std::optional<std::wstring> tszText = SectionOf(_rstPlace).Find(_rtszName);
        return tszText ? std::optional(Value::Of(*tszText)) : std::nullopt;
    }
    Registry cKey;
    return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView) ? cKey.Find(_rtszName) : std::nullopt;
}

std::vector<std::wstring> SystemStorage::Names(const UpdatePlace& _rstPlace)
{
    if (_rstPlace.IsRegistry()) {
        Registry cKey;
        return cKey.TryOpen(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView) ? cKey.ValueNames()
                                                                                  : std::vector<std::wstring>();
    }
    std::vector<std::wstring> vecName;
    for (auto& [tszName, tszText] : SectionOf(_rstPlace).Entries()) {
        vecName.push_back(std::move(tszName));
    }
    return vecName;
}

std::vector<std::wstring> SystemStorage::SubKeys(const UpdatePlace& _rstPlace)
{
    if (!_rstPlace.IsRegistry()) {
        return {};
    }
    Registry cKey;
    cKey.OpenForEnumeration(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    return cKey.SubKeys();
}

void SystemStorage::Create(const UpdatePlace& _rstPlace, bool _bAllAccess)
{
    if (!_rstPlace.IsRegistry()) {
        SectionOf(_rstPlace).CreateSection();
        return;
    }
    Registry cKey;
    if (_bAllAccess) {
        cKey.CreateAllAccess(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    } else {
        cKey.Create(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    }
}

void SystemStorage::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    if (!_rstPlace.IsRegistry()) {
        SectionOf(_rstPlace).WriteString(_rtszName, _rstValue.Text());
        return;
    }
    Registry cKey;
    cKey.OpenForWriting(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    cKey.Write(_rtszName, _rstValue);
}

void SystemStorage::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    if (!_rstPlace.IsRegistry()) {
        SectionOf(_rstPlace).DeleteEntry(_rtszName);
        return;
    }
    Registry cKey;
    cKey.OpenForDeletion(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    cKey.DeleteValue(_rtszName);
}

void SystemStorage::Remove(const UpdatePlace& _rstPlace)
{
    if (_rstPlace.IsRegistry()) {
        Registry::DeleteKeyAt(_rstPlace.hRoot, _rstPlace.tszPath, _rstPlace.enView);
    } else {
        SectionOf(_rstPlace).DeleteSection();
    }
}

} // namespace Varnhelt
