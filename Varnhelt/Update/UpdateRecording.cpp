#include "Update/UpdateRecording.h"

#include "Update/UpdateKeyName.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <set>

namespace Varnhelt {

using namespace ZkCommon;
using Storage::RegException;

namespace {

[[noreturn]] void Fail(std::uint32_t _ulError, std::uint32_t _ulLine = __builtin_LINE())
{
    throw new Storage::Exception(_ulError, __FILE__, _ulLine);
}

void CheckRegistry(LSTATUS _lResult, std::uint32_t _ulLine = __builtin_LINE())
{
    if (_lResult != ERROR_SUCCESS) {
        throw new RegException(static_cast<std::uint32_t>(_lResult), __FILE__, _ulLine);
    }
}

/** What the system takes: a longer name is an invalid parameter. */
constexpr std::size_t g_uKeyName = 255;
constexpr std::size_t g_uValueName = 16383;

std::wstring ParentOf(const std::wstring& _rtszPath)
{
    const std::size_t uBackslash = _rtszPath.rfind(L'\\');
    return uBackslash == std::wstring::npos ? std::wstring() : _rtszPath.substr(0, uBackslash);
}

std::wstring NameOf(const UpdatePlace& _rstReal)
{
    return RootNameOf(_rstReal.hRoot) + (L"\\" + _rstReal.tszPath);
}

UpdatePlace PlaceOf(const std::wstring& _rtszName)
{
    const std::size_t uBackslash = _rtszName.find(L'\\');
    UpdatePlace stPlace;
    stPlace.hRoot = _rtszName.compare(0, uBackslash, RootNameOf(HKEY_USERS)) == 0 ? HKEY_USERS : HKEY_LOCAL_MACHINE;
    stPlace.enView = Storage::View64;
    stPlace.tszPath = _rtszName.substr(uBackslash + 1);
    return stPlace;
}

/** The file that the system means by the path: a mere name is one of its own folder. */
std::wstring FullIniPath(const std::wstring& _rtszPath)
{
    wchar_t szPath[MAX_PATH + 1];
    std::wstring tszPath = _rtszPath;
    if (tszPath.find_first_of(L"\\/:") == std::wstring::npos) {
        const UINT ulLength = ::GetWindowsDirectoryW(szPath, MAX_PATH);
        tszPath = String::WithBackslash(std::wstring(szPath, ulLength <= MAX_PATH ? ulLength : 0)) + tszPath;
    }
    const DWORD ulLength = ::GetFullPathNameW(tszPath.c_str(), MAX_PATH, szPath, nullptr);
    return ulLength == 0 || ulLength >= MAX_PATH ? tszPath : std::wstring(szPath, ulLength);
}

/** Throws what writing the file would. */
void CheckWritable(const std::wstring& _rtszFullPath)
{
    const DWORD ulAttributes = ::GetFileAttributesW(_rtszFullPath.c_str());
    if (ulAttributes != INVALID_FILE_ATTRIBUTES) {
        if ((ulAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
            Fail(ERROR_ACCESS_DENIED);
        }
        const FileHandle hFile(::CreateFileW(_rtszFullPath.c_str(), GENERIC_READ | GENERIC_WRITE,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                             FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!hFile) {
            Fail(::GetLastError());
        }
        return;
    }
    const FileHandle hFolder(::CreateFileW(ParentOf(_rtszFullPath).append(L"\\").c_str(), FILE_ADD_FILE,
                                           Storage::File::g_ulShareAll, nullptr, OPEN_EXISTING,
                                           FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!hFolder) {
        Fail(::GetLastError());
    }
}

/** A name in the folder for temporary files that nothing bears. */
std::wstring NewCopyName()
{
    wchar_t szPath[MAX_PATH + 1];
    if (::GetTempFileNameW(Storage::File::SystemTempFolder().c_str(), L"vrn", 0, szPath) == 0) {
        Fail(::GetLastError());
    }
    return szPath;
}

/** The first entry of a name counts. */
using Entries = std::map<std::wstring, std::wstring, LessNoCase>;
Entries EntriesOf(const UpdatePlace& _rstPlace)
{
    const auto vecEntry = Storage::IniFile(_rstPlace.tszPath, _rstPlace.tszSection).Entries();
    return {vecEntry.begin(), vecEntry.end()};
}

void AddEntryChanges(const UpdatePlace& _rstPlace, const Entries& _rmapBefore, const Entries& _rmapAfter,
                     std::vector<UpdateChange>& _rvecChange)
{
    for (const auto& [tszName, tszText] : _rmapBefore) {
        const auto itAfter = _rmapAfter.find(tszName);
        if (itAfter == _rmapAfter.end() || itAfter->second != tszText) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstPlace, tszName, UpdateStorage::Value::Of(tszText)});
        }
    }
    for (const auto& [tszName, tszText] : _rmapAfter) {
        if (!_rmapBefore.contains(tszName)) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstPlace, tszName});
        }
    }
}

bool IsPresent(const std::wstring& _rtszFile)
{
    return ::GetFileAttributesW(_rtszFile.c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace

bool LessNoCase::operator()(const std::wstring& _rtszLeft, const std::wstring& _rtszRight) const noexcept
{
    return ::CompareStringOrdinal(_rtszLeft.c_str(), static_cast<int>(_rtszLeft.size()), _rtszRight.c_str(),
                                  static_cast<int>(_rtszRight.size()), TRUE) == CSTR_LESS_THAN;
}

RecordingStorage::~RecordingStorage()
{
    for (const auto& [tszPath, stCopy] : m_mapIni) {
        Storage::File::Delete(stCopy.tszCopy);
    }
}

// Registry. A key is known by its real place, whatever an update calls it.

const UpdatePlace& RecordingStorage::RealKey(const UpdatePlace& _rstPlace)
{
    if (m_stLastAsked.hRoot != _rstPlace.hRoot || m_stLastAsked.enView != _rstPlace.enView ||
        m_stLastAsked.tszPath != _rstPlace.tszPath) {
        m_cPresent.Exists(_rstPlace); // refuses what is no path
        m_stLastReal = RealPlaceOf(_rstPlace);
        m_stLastAsked = _rstPlace;
    }
    return m_stLastReal;
}

RecordingStorage::KeyState* RecordingStorage::StateOf(const UpdatePlace& _rstReal)
{
    const auto itKey = m_mapKey.find(NameOf(_rstReal));
    return itKey == m_mapKey.end() ? nullptr : &itKey->second;
}

bool RecordingStorage::RealExists(const UpdatePlace& _rstReal)
{
    if (_rstReal.tszPath.empty()) {
        return true; // a root
    }
    const KeyState* pState = StateOf(_rstReal);
    return pState != nullptr ? pState->bExists : m_cPresent.Exists(_rstReal);
}

/** The state of a key that exists. */
RecordingStorage::KeyState& RecordingStorage::Touch(const UpdatePlace& _rstReal)
{
    return m_mapKey.try_emplace(NameOf(_rstReal)).first->second;
}

/** Opens the key with a right, as the machine would before it uses it; a key that only the record has grants all. */
void RecordingStorage::CheckRight(const UpdatePlace& _rstReal, REGSAM _ulRight)
{
    if (!RealExists(_rstReal)) {
        CheckRegistry(ERROR_FILE_NOT_FOUND);
    }
    if (const KeyState* pState = StateOf(_rstReal); pState == nullptr || !pState->bNew) {
        RegKey hKey;
        CheckRegistry(
            ::RegOpenKeyExW(_rstReal.hRoot, _rstReal.tszPath.c_str(), 0, _ulRight | KEY_WOW64_64KEY, hKey.Receive()));
    }
}

bool RecordingStorage::Exists(const UpdatePlace& _rstPlace)
{
    return _rstPlace.IsRegistry() ? RealExists(RealKey(_rstPlace)) : m_cPresent.Exists(OnCopy(_rstPlace));
}

std::optional<UpdateStorage::Value> RecordingStorage::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    if (!_rstPlace.IsRegistry()) {
        return m_cPresent.Find(OnCopy(_rstPlace), _rtszName);
    }
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    if (const KeyState* pState = StateOf(rstReal)) {
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

std::vector<std::wstring> RecordingStorage::Names(const UpdatePlace& _rstPlace)
{
    if (!_rstPlace.IsRegistry()) {
        return m_cPresent.Names(OnCopy(_rstPlace));
    }
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    const KeyState* pState = StateOf(rstReal);
    if (pState == nullptr) {
        return m_cPresent.Names(rstReal);
    }
    // A value that is written over keeps its name as it was spelt.
    std::set<std::wstring, LessNoCase> setName;
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

std::vector<std::wstring> RecordingStorage::SubKeys(const UpdatePlace& _rstPlace)
{
    if (!_rstPlace.IsRegistry()) {
        return {};
    }
    const UpdatePlace stReal = RealKey(_rstPlace);
    CheckRight(stReal, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS);
    std::set<std::wstring, LessNoCase> setName;
    if (const KeyState* pState = StateOf(stReal); pState == nullptr || !pState->bNew) {
        for (std::wstring& rtszName : m_cPresent.SubKeys(stReal)) {
            setName.insert(std::move(rtszName));
        }
    }
    const std::wstring tszPrefix = NameOf(stReal) + L"\\";
    for (auto itKey = m_mapKey.lower_bound(tszPrefix); itKey != m_mapKey.end(); ++itKey) {
        const std::wstring& rtszName = itKey->first;
        if (!String::EqualsNoCase(rtszName, tszPrefix, tszPrefix.size())) {
            break;
        }
        if (rtszName.find(L'\\', tszPrefix.size()) == std::wstring::npos) {
            const std::wstring tszSubKey = rtszName.substr(tszPrefix.size());
            if (itKey->second.bExists) {
                setName.insert(tszSubKey);
            } else {
                setName.erase(tszSubKey);
            }
        }
    }
    return {setName.begin(), setName.end()};
}

void RecordingStorage::Create(const UpdatePlace& _rstPlace, bool _bAllAccess)
{
    if (!_rstPlace.IsRegistry()) {
        if (!m_cPresent.Exists(OnCopy(_rstPlace))) {
            m_cPresent.Create(OnNewCopy(_rstPlace), false);
        }
        return;
    }
    UpdatePlace stReal = RealKey(_rstPlace);
    if (RealExists(stReal)) {
        CheckRight(stReal, _bAllAccess ? KEY_ALL_ACCESS : KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY);
        return;
    }
    std::vector<std::wstring> vecMissing;
    do {
        if (stReal.tszPath.size() - (stReal.tszPath.rfind(L'\\') + 1) > g_uKeyName) {
            CheckRegistry(ERROR_INVALID_PARAMETER);
        }
        vecMissing.push_back(NameOf(stReal));
        stReal.tszPath = ParentOf(stReal.tszPath);
    } while (!RealExists(stReal));
    CheckRight(stReal, KEY_CREATE_SUB_KEY);
    for (const std::wstring& tszName : vecMissing) {
        m_mapKey[tszName] = {true, true, _bAllAccess && tszName == vecMissing.front(), {}};
    }
}

void RecordingStorage::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    if (!_rstPlace.IsRegistry()) {
        m_cPresent.Write(OnNewCopy(_rstPlace), _rtszName, _rstValue);
        return;
    }
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    CheckRight(rstReal, KEY_SET_VALUE);
    if (_rtszName.size() > g_uValueName) {
        CheckRegistry(ERROR_INVALID_PARAMETER);
    }
    Touch(rstReal).mapValue[_rtszName] = _rstValue;
}

void RecordingStorage::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    if (!_rstPlace.IsRegistry()) {
        m_cPresent.RemoveValue(OnNewCopy(_rstPlace), _rtszName);
        return;
    }
    const UpdatePlace& rstReal = RealKey(_rstPlace);
    CheckRight(rstReal, DELETE | KEY_SET_VALUE);
    if (!Find(_rstPlace, _rtszName)) {
        CheckRegistry(ERROR_FILE_NOT_FOUND);
    }
    Touch(rstReal).mapValue[_rtszName] = std::nullopt;
}

void RecordingStorage::Remove(const UpdatePlace& _rstPlace)
{
    if (!_rstPlace.IsRegistry()) {
        m_cPresent.Remove(OnNewCopy(_rstPlace));
        return;
    }
    const UpdatePlace stReal = RealKey(_rstPlace);
    UpdatePlace stParent = stReal;
    stParent.tszPath = ParentOf(stReal.tszPath);
    if (!stParent.tszPath.empty()) {
        CheckRight(stParent, DELETE | KEY_SET_VALUE);
    }
    CheckRight(stReal, DELETE);
    if (!SubKeys(_rstPlace).empty()) {
        CheckRegistry(ERROR_ACCESS_DENIED);
    }
    m_mapKey[NameOf(stReal)] = {false, true, false, {}};
}

// Ini files. The system's own functions work on the copies, so that what they make of a text is what they make of it.

/** The section on the copy of its file, where there is one. */
UpdatePlace RecordingStorage::OnCopy(const UpdatePlace& _rstPlace) const
{
    UpdatePlace stPlace = _rstPlace;
    const auto itCopy = m_mapIni.find(FullIniPath(_rstPlace.tszPath));
    if (itCopy != m_mapIni.end()) {
        stPlace.tszPath = itCopy->second.tszCopy;
    }
    return stPlace;
}

/** The same before a change; the copy is made where there is none. */
UpdatePlace RecordingStorage::OnNewCopy(const UpdatePlace& _rstPlace)
{
    m_cPresent.Exists(_rstPlace); // refuses what is no path or no section
    const std::wstring tszFullPath = FullIniPath(_rstPlace.tszPath);
    CheckWritable(tszFullPath);
    if (!m_mapIni.contains(tszFullPath)) {
        IniCopy stCopy{_rstPlace.tszPath, NewCopyName(), !IsPresent(tszFullPath)};
        // A file that is not there is to be made by the system itself, in the encoding that it chooses.
        if (!(stCopy.bNew ? ::DeleteFileW(stCopy.tszCopy.c_str())
                          : ::CopyFileW(tszFullPath.c_str(), stCopy.tszCopy.c_str(), FALSE))) {
            const std::uint32_t ulError = ::GetLastError();
            Storage::File::Delete(stCopy.tszCopy);
            Fail(ulError);
        }
        m_mapIni.emplace(tszFullPath, std::move(stCopy));
    }
    return OnCopy(_rstPlace);
}

// The differences.

/** Values that the key does not have as it had them. */
void RecordingStorage::AddValueChanges(const UpdatePlace& _rstReal, std::vector<UpdateChange>& _rvecChange)
{
    std::set<std::wstring, LessNoCase> setName;
    for (UpdateStorage* pStorage : {static_cast<UpdateStorage*>(&m_cPresent), static_cast<UpdateStorage*>(this)}) {
        for (std::wstring& rtszName : pStorage->Names(_rstReal)) {
            setName.insert(std::move(rtszName));
        }
    }
    for (const std::wstring& tszName : setName) {
        std::optional<Value> stBefore = m_cPresent.Find(_rstReal, tszName);
        if (stBefore != Find(_rstReal, tszName)) {
            _rvecChange.push_back({UpdateChange::Kind::Value, _rstReal, tszName, std::move(stBefore)});
        }
    }
}

void RecordingStorage::AddKeyChanges(std::vector<UpdateChange>& _rvecChange)
{
    for (const auto& [tszName, stState] : m_mapKey) {
        const UpdatePlace stPlace = PlaceOf(tszName);
        const bool bBefore = m_cPresent.Exists(stPlace);
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
        AddValueChanges(stPlace, _rvecChange);
    }
}

void RecordingStorage::AddIniChanges(const IniCopy& _rstCopy, std::vector<UpdateChange>& _rvecChange)
{
    UpdatePlace stBefore;
    stBefore.enKind = UpdatePlace::Kind::IniFile;
    UpdatePlace stAfter = stBefore;
    stBefore.tszPath = _rstCopy.tszPath;
    stAfter.tszPath = _rstCopy.tszCopy;
    if (_rstCopy.bNew && IsPresent(_rstCopy.tszCopy)) {
        _rvecChange.push_back({UpdateChange::Kind::File, stBefore, {}});
    }
    std::set<std::wstring, LessNoCase> setSection;
    for (const UpdatePlace* pPlace : {&stBefore, &stAfter}) {
        for (std::wstring& rtszSection : Storage::IniFile(pPlace->tszPath).SectionNames()) {
            setSection.insert(std::move(rtszSection));
        }
    }
    for (const std::wstring& tszSection : setSection) {
        if (tszSection.empty()) {
            continue; // no update reaches it
        }
        stBefore.tszSection = tszSection;
        stAfter.tszSection = tszSection;
        const bool bBefore = m_cPresent.Exists(stBefore);
        const bool bAfter = m_cPresent.Exists(stAfter);
        if (bBefore != bAfter) {
            _rvecChange.push_back({bAfter ? UpdateChange::Kind::Created : UpdateChange::Kind::Removed, stBefore, {}});
        }
        if (bBefore) {
            AddEntryChanges(stBefore, EntriesOf(stBefore), EntriesOf(stAfter), _rvecChange);
        }
    }
}

std::vector<UpdateChange> RecordingStorage::Changes()
{
    std::vector<UpdateChange> vecChange;
    AddKeyChanges(vecChange);
    for (const auto& [tszPath, stCopy] : m_mapIni) {
        AddIniChanges(stCopy, vecChange);
    }
    return vecChange;
}

} // namespace Varnhelt
