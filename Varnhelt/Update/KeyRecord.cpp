#include "Update/KeyRecord.h"

#include "Documents/RegistryWords.h"
#include "Update/SystemKey.h"
#include "ZkComn_Exception.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

std::wstring ParentOf(const std::wstring& _rtszPath)
{
    const std::size_t uBackslash = _rtszPath.rfind(L'\\');
    return uBackslash == std::wstring::npos ? std::wstring() : _rtszPath.substr(0, uBackslash);
}

using NameSet = std::set<std::wstring, String::LessNoCase>;

/**
 * Puts a name where the system would list it. Systems sort the names of keys without case, but not all of them sort
 * letters and other characters alike.
 */
void InsertSorted(std::vector<std::wstring>& _rvecName, std::wstring _tszName)
{
    const auto itBehind = std::ranges::find_if(
        _rvecName, [&](const std::wstring& _rtszName) { return String::LessNoCase()(_tszName, _rtszName); });
    _rvecName.insert(itBehind, std::move(_tszName));
}

} // namespace

std::wstring KeyNameOf(const UpdatePlace& _rstPlace)
{
    return Documents::RegistryRoot::Write(_rstPlace.hRoot) + L"\\" + _rstPlace.tszPath;
}

UpdatePlace KeyOfName(const std::wstring& _rtszName)
{
    const std::size_t uBackslash = _rtszName.find(L'\\');
    UpdatePlace stPlace;
    stPlace.hRoot = Documents::RegistryRoot::Read(_rtszName.substr(0, uBackslash));
    stPlace.enView = Storage::View64;
    stPlace.tszPath = _rtszName.substr(uBackslash + 1);
    return stPlace;
}

const UpdatePlace& KeyRecord::RealKey(const UpdatePlace& _rstPlace)
{
    if (m_stLastAsked.hRoot != _rstPlace.hRoot || m_stLastAsked.enView != _rstPlace.enView ||
        m_stLastAsked.tszPath != _rstPlace.tszPath) {
        m_cPresent.Exists(_rstPlace); // refuses what is not a path
        m_stLastReal = RealPlaceOf(_rstPlace);
        m_stLastAsked = _rstPlace;
    }
    return m_stLastReal;
}

KeyRecord::State* KeyRecord::StateOf(const UpdatePlace& _rstReal)
{
    const auto itKey = m_mapKey.find(KeyNameOf(_rstReal));
    return itKey == m_mapKey.end() ? nullptr : &itKey->second;
}

bool KeyRecord::RealExists(const UpdatePlace& _rstReal)
{
    if (_rstReal.tszPath.empty()) {
        return true; // a root
    }
    const State* pState = StateOf(_rstReal);
    return pState != nullptr ? pState->bExists : m_cPresent.Exists(_rstReal);
}

/** Opens the key with a right, as the machine would before it uses it; a key that only the record has grants all. */
void KeyRecord::CheckRight(const UpdatePlace& _rstReal, REGSAM _ulRight)
{
    if (!RealExists(_rstReal)) {
        Exception::ThrowOn<Storage::RegException>(ERROR_FILE_NOT_FOUND);
    }
    if (const State* pState = StateOf(_rstReal); pState == nullptr || !pState->bNew) {
        RegKey hKey;
        Exception::ThrowOn<Storage::RegException>(
            ::RegOpenKeyExW(_rstReal.hRoot, _rstReal.tszPath.c_str(), 0, _ulRight | KEY_WOW64_64KEY, hKey.Receive()));
    }
}

bool KeyRecord::Exists(const UpdatePlace& _rstPlace)
{
    return RealExists(RealKey(_rstPlace));
}

std::optional<UpdateStorage::Value> KeyRecord::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    if (const State* pState = StateOf(rstReal)) {
        const auto itValue = pState->mapValue.find(_rtszName);
        if (itValue != pState->mapValue.end()) {
            return itValue->second;
        }
        if (pState->bNew || !pState->bExists) {
            return std::nullopt;
        }
    }
    return m_cPresent.Find(rstReal, _rtszName);
}

std::vector<std::wstring> KeyRecord::Names(const UpdatePlace& _rstPlace)
{
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    const State* pState = StateOf(rstReal);
    if (pState == nullptr) {
        return m_cPresent.Names(rstReal);
    }
    // A value that is written over keeps its name as it was spelt.
    NameSet setName;
    if (pState->bExists && !pState->bNew) {
        for (std::wstring& rtszName : m_cPresent.Names(rstReal)) {
            setName.insert(std::move(rtszName));
        }
    }
    for (const auto& [tszName, stValue] : pState->mapValue) {
        if (stValue) {
            setName.insert(tszName);
        } else {
            setName.erase(tszName);
        }
    }
    return {setName.begin(), setName.end()};
}

/** In the machine's order: a removal that fails half-way has then removed the same keys. */
std::vector<std::wstring> KeyRecord::SubKeys(const UpdatePlace& _rstPlace)
{
    const UpdatePlace stReal = RealKey(_rstPlace);
    CheckRight(stReal, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS);
    std::vector<std::wstring> vecName;
    if (const State* pState = StateOf(stReal); pState == nullptr || !pState->bNew) {
        vecName = m_cPresent.SubKeys(stReal);
    }
    NameSet setPresent(vecName.begin(), vecName.end());
    NameSet setRemoved;
    const std::wstring tszPrefix = KeyNameOf(stReal) + L"\\";
    for (auto itKey = m_mapKey.lower_bound(tszPrefix); itKey != m_mapKey.end(); ++itKey) {
        const std::wstring& rtszName = itKey->first;
        if (!String::EqualsNoCase(rtszName, tszPrefix, tszPrefix.size())) {
            break;
        }
        if (rtszName.find(L'\\', tszPrefix.size()) != std::wstring::npos) {
            continue;
        }
        std::wstring tszSubKey = rtszName.substr(tszPrefix.size());
        if (!itKey->second.bExists) {
            setRemoved.insert(std::move(tszSubKey));
        } else if (!setPresent.contains(tszSubKey)) {
            InsertSorted(vecName, std::move(tszSubKey));
        }
    }
    std::erase_if(vecName, [&](const std::wstring& _rtszName) { return setRemoved.contains(_rtszName); });
    return vecName;
}

void KeyRecord::Create(const UpdatePlace& _rstPlace, bool _bAllAccess)
{
    UpdatePlace stReal = RealKey(_rstPlace);
    if (RealExists(stReal)) {
        CheckRight(stReal, _bAllAccess ? KEY_ALL_ACCESS : KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
        return;
    }
    std::vector<std::wstring> vecMissing;
    do {
        if (stReal.tszPath.size() - (stReal.tszPath.rfind(L'\\') + 1) > Storage::Registry::g_uLongestKeyName) {
            Exception::ThrowOn<Storage::RegException>(ERROR_INVALID_PARAMETER);
        }
        vecMissing.push_back(KeyNameOf(stReal));
        stReal.tszPath = ParentOf(stReal.tszPath);
    } while (!RealExists(stReal));
    CheckRight(stReal, KEY_CREATE_SUB_KEY);
    for (const std::wstring& tszName : vecMissing) {
        m_mapKey[tszName] = {true, true, _bAllAccess && tszName == vecMissing.front(), {}};
    }
}

void KeyRecord::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    CheckRight(rstReal, KEY_SET_VALUE);
    if (_rtszName.size() > Storage::Registry::g_uLongestValueName) {
        Exception::ThrowOn<Storage::RegException>(ERROR_INVALID_PARAMETER);
    }
    m_mapKey[KeyNameOf(rstReal)].mapValue[_rtszName] = _rstValue;
}

void KeyRecord::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    CheckRight(rstReal, DELETE | KEY_SET_VALUE);
    if (!Find(_rstPlace, _rtszName)) {
        Exception::ThrowOn<Storage::RegException>(ERROR_FILE_NOT_FOUND);
    }
    m_mapKey[KeyNameOf(rstReal)].mapValue[_rtszName] = std::nullopt;
}

void KeyRecord::Remove(const UpdatePlace& _rstPlace)
{
    const UpdatePlace stReal = RealKey(_rstPlace);
    UpdatePlace stParent = stReal;
    stParent.tszPath = ParentOf(stReal.tszPath);
    if (!stParent.tszPath.empty()) {
        CheckRight(stParent, DELETE | KEY_SET_VALUE);
    }
    CheckRight(stReal, DELETE);
    if (!SubKeys(_rstPlace).empty()) {
        Exception::ThrowOn<Storage::RegException>(ERROR_ACCESS_DENIED);
    }
    m_mapKey[KeyNameOf(stReal)] = {false, true, false, {}};
}

} // namespace Varnhelt
