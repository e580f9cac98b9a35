#include "ZkComn_Registry.h"

#include "ZkComn_Exception.h"
#include "ZkComn_SecurityAttributes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ZkCommon::Storage {

using ZkCommon::Exception::Throw;
using ZkCommon::Exception::ThrowOn;

namespace {

/** More characters than the system takes: it would use a part of the path. */
constexpr std::size_t g_uTooLong = 0x7FFF;

void RefuseBadPath(const std::wstring& _rtszPath, SourcePlace _stPlace = SourcePlace::Here())
{
    if (_rtszPath.empty()) {
        Throw<RegException>(ERROR_BAD_ARGUMENTS, _stPlace);
    }
    if (_rtszPath.size() >= g_uTooLong) {
        Throw<RegException>(ERROR_FILENAME_EXCED_RANGE, _stPlace);
    }
}

/** A key's path as the system is asked for it, without backslashes at its end: with them it may answer otherwise. */
std::wstring_view WithoutBackslash(std::wstring_view _svPath) noexcept
{
    return _svPath.substr(0, _svPath.find_last_not_of(L'\\') + 1);
}

std::wstring KeyPath(const std::wstring& _rtszPath, SourcePlace _stPlace = SourcePlace::Here())
{
    std::wstring tszPath(WithoutBackslash(_rtszPath));
    RefuseBadPath(tszPath, _stPlace);
    return tszPath;
}

std::vector<std::uint8_t> BytesOf(const void* _pData, std::size_t _uSize)
{
    const auto* pBytes = static_cast<const std::uint8_t*>(_pData);
    return {pBytes, pBytes + _uSize};
}

template <class T>
T NumberOf(const std::vector<std::uint8_t>& _rvecData)
{
    T ulNumber = 0;
    ThrowOn<RegException>(_rvecData.size() == sizeof ulNumber ? ERROR_SUCCESS : ERROR_INVALID_DATA);
    std::memcpy(&ulNumber, _rvecData.data(), sizeof ulNumber);
    return ulNumber;
}

/** Every name that _fnNext(index, buffer, in/out size) hands out, with a buffer that grows until each name fits. */
template <class TNext>
std::vector<std::wstring> Enumerate(TNext&& _fnNext)
{
    std::vector<std::wstring> vecNames;
    std::wstring tszBuffer(256, L'\0');
    for (;;) {
        DWORD ulSize = static_cast<DWORD>(tszBuffer.size());
        const LSTATUS lResult = _fnNext(static_cast<DWORD>(vecNames.size()), tszBuffer.data(), &ulSize);
        if (lResult == ERROR_NO_MORE_ITEMS) {
            return vecNames;
        }
        if (lResult == ERROR_MORE_DATA) {
            tszBuffer.resize(tszBuffer.size() * 2);
            continue;
        }
        ThrowOn<RegException>(lResult);
        vecNames.emplace_back(tszBuffer, 0, ulSize);
    }
}

} // namespace

REGSAM ViewFlag(RegistryView _enView) noexcept
{
    switch (_enView) {
    case View32:
        return KEY_WOW64_32KEY;
    case View64:
        return KEY_WOW64_64KEY;
    default:
        return 0;
    }
}

Registry::Value Registry::Value::Of(const std::wstring& _rtszText)
{
    const std::size_t uLength = std::min(_rtszText.size(), _rtszText.find(L'\0'));
    std::vector<std::uint8_t> vecData = BytesOf(_rtszText.data(), uLength * sizeof(wchar_t));
    vecData.resize(vecData.size() + sizeof(wchar_t));
    return {REG_SZ, std::move(vecData)};
}

Registry::Value Registry::Value::Of(std::uint32_t _ulNumber)
{
    return {REG_DWORD, BytesOf(&_ulNumber, sizeof _ulNumber)};
}

Registry::Value Registry::Value::Of(std::uint64_t _ullNumber)
{
    return {REG_QWORD, BytesOf(&_ullNumber, sizeof _ullNumber)};
}

std::wstring Registry::Value::Text() const
{
    ThrowOn<RegException>(ulType == REG_SZ || ulType == REG_EXPAND_SZ ? ERROR_SUCCESS : ERROR_INVALID_DATATYPE);
    std::wstring tszText(vecData.size() / sizeof(wchar_t), L'\0');
    std::memcpy(tszText.data(), vecData.data(), tszText.size() * sizeof(wchar_t));
    tszText.resize(std::min(tszText.size(), tszText.find(L'\0')));
    return tszText;
}

std::uint32_t Registry::Value::Number() const
{
    ThrowOn<RegException>(ulType == REG_DWORD ? ERROR_SUCCESS : ERROR_INVALID_DATATYPE);
    return NumberOf<std::uint32_t>(vecData);
}

std::uint64_t Registry::Value::Number64() const
{
    ThrowOn<RegException>(ulType == REG_QWORD ? ERROR_SUCCESS : ERROR_INVALID_DATATYPE);
    return NumberOf<std::uint64_t>(vecData);
}

const std::vector<std::uint8_t>& Registry::Value::Binary() const
{
    ThrowOn<RegException>(ulType == REG_BINARY ? ERROR_SUCCESS : ERROR_INVALID_DATATYPE);
    return vecData;
}

bool Registry::IsPath(std::wstring_view _svPath) noexcept
{
    std::wstring_view svRest = WithoutBackslash(_svPath);
    if (svRest.empty() || svRest.size() >= g_uTooLong || svRest.front() == L'\\') {
        return false;
    }
    while (!svRest.empty()) {
        const std::size_t uName = std::min(svRest.find(L'\\'), svRest.size());
        if (uName > g_uLongestKeyName) {
            return false;
        }
        svRest.remove_prefix(std::min(uName + 1, svRest.size()));
    }
    return true;
}

void Registry::OpenWith(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView, REGSAM _ulAccess)
{
    m_hKey.Reset();
    ThrowOn<RegException>(
        ::RegOpenKeyExW(_hRoot, KeyPath(_rtszPath).c_str(), 0, _ulAccess | ViewFlag(_enView), m_hKey.Receive()));
}

/** @return REG_CREATED_NEW_KEY or REG_OPENED_EXISTING_KEY */
DWORD Registry::CreateWith(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView, REGSAM _ulAccess,
                           SECURITY_ATTRIBUTES* _pSecurity)
{
    m_hKey.Reset();
    DWORD ulDisposition = 0;
    ThrowOn<RegException>(::RegCreateKeyExW(_hRoot, KeyPath(_rtszPath).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                            _ulAccess | ViewFlag(_enView), _pSecurity, m_hKey.Receive(),
                                            &ulDisposition));
    return ulDisposition;
}

void Registry::Open(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    OpenWith(_hRoot, _rtszPath, _enView, KEY_QUERY_VALUE);
}

bool Registry::TryOpen(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    m_hKey.Reset();
    const LSTATUS lResult =
        ::RegOpenKeyExW(_hRoot, KeyPath(_rtszPath).c_str(), 0, KEY_QUERY_VALUE | ViewFlag(_enView), m_hKey.Receive());
    if (lResult == ERROR_FILE_NOT_FOUND || lResult == ERROR_PATH_NOT_FOUND) {
        return false;
    }
    ThrowOn<RegException>(lResult);
    return true;
}

void Registry::OpenForWriting(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    OpenWith(_hRoot, _rtszPath, _enView, KEY_SET_VALUE);
}

void Registry::Create(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    CreateWith(_hRoot, _rtszPath, _enView, KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY, nullptr);
}

void Registry::CreateAllAccess(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    AccessControl::SecurityAttributes security(AccessControl::ObjectKind::RegistryKey, false);
    if (CreateWith(_hRoot, _rtszPath, _enView, KEY_ALL_ACCESS, security.Get()) == REG_CREATED_NEW_KEY) {
        // Some systems accept a descriptor at creation and drop it; where it was honoured this sets the same again.
        ThrowOn<RegException>(::RegSetKeySecurity(m_hKey.Get(), DACL_SECURITY_INFORMATION, security.Descriptor()));
    }
}

void Registry::OpenForDeletion(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    OpenWith(_hRoot, _rtszPath, _enView, DELETE | KEY_SET_VALUE);
}

void Registry::OpenForEnumeration(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    OpenWith(_hRoot, _rtszPath, _enView, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS);
}

void Registry::Close()
{
    if (m_hKey) {
        ThrowOn<RegException>(::RegCloseKey(m_hKey.Release()));
    }
}

void Registry::Flush()
{
    ThrowOn<RegException>(::RegFlushKey(m_hKey.Get()));
}

std::optional<Registry::Value> Registry::Find(const std::wstring& _rtszName) const
{
    Value stValue;
    stValue.vecData.resize(512);
    for (;;) {
        DWORD ulSize = static_cast<DWORD>(stValue.vecData.size());
        const LSTATUS lResult = ::RegQueryValueExW(m_hKey.Get(), _rtszName.c_str(), nullptr, &stValue.ulType,
                                                   stValue.vecData.data(), &ulSize);
        if (lResult == ERROR_FILE_NOT_FOUND) {
            return std::nullopt;
        }
        // Another writer may have made the value longer since its size was asked for, hence the loop.
        if (lResult != ERROR_MORE_DATA) {
            ThrowOn<RegException>(lResult);
            stValue.vecData.resize(ulSize);
            return stValue;
        }
        stValue.vecData.resize(ulSize);
    }
}

Registry::Value Registry::Read(const std::wstring& _rtszName) const
{
    std::optional<Value> stValue = Find(_rtszName);
    ThrowOn<RegException>(stValue ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
    return std::move(*stValue);
}

std::wstring Registry::ReadString(const std::wstring& _rtszName) const
{
    return Read(_rtszName).Text();
}

std::uint32_t Registry::ReadNumber(const std::wstring& _rtszName) const
{
    return Read(_rtszName).Number();
}

std::uint64_t Registry::ReadNumber64(const std::wstring& _rtszName) const
{
    return Read(_rtszName).Number64();
}

std::vector<std::uint8_t> Registry::ReadBinary(const std::wstring& _rtszName) const
{
    return Read(_rtszName).Binary();
}

std::wstring Registry::ReadString(const std::wstring& _rtszName, const std::wstring& _rtszDefault) const
{
    const std::optional<Value> stValue = Find(_rtszName);
    return stValue ? stValue->Text() : _rtszDefault;
}

std::uint32_t Registry::ReadNumber(const std::wstring& _rtszName, std::uint32_t _ulDefault) const
{
    const std::optional<Value> stValue = Find(_rtszName);
    return stValue ? stValue->Number() : _ulDefault;
}

void Registry::Write(const std::wstring& _rtszName, const Value& _rstValue)
{
    ThrowOn<RegException>(::RegSetValueExW(m_hKey.Get(), _rtszName.c_str(), 0, _rstValue.ulType,
                                           _rstValue.vecData.data(), static_cast<DWORD>(_rstValue.vecData.size())));
}

void Registry::WriteString(const std::wstring& _rtszName, const std::wstring& _rtszValue)
{
    Write(_rtszName, Value::Of(_rtszValue));
}

void Registry::WriteNumber(const std::wstring& _rtszName, std::uint32_t _ulValue)
{
    Write(_rtszName, Value::Of(_ulValue));
}

void Registry::WriteNumber64(const std::wstring& _rtszName, std::uint64_t _ullValue)
{
    Write(_rtszName, Value::Of(_ullValue));
}

void Registry::WriteBinary(const std::wstring& _rtszName, const std::vector<std::uint8_t>& _rvecValue)
{
    Write(_rtszName, Value::Of(_rvecValue));
}

void Registry::DeleteKey(const std::wstring& _rtszName)
{
    RefuseBadPath(_rtszName); // an empty name would delete the open key itself
    // The open key is in its view already: a name below it is never redirected again.
    ThrowOn<RegException>(::RegDeleteKeyW(m_hKey.Get(), _rtszName.c_str()));
}

void Registry::DeleteKeyAt(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView)
{
    const std::wstring tszPath = KeyPath(_rtszPath);
    const std::size_t uBackslash = tszPath.rfind(L'\\');
    if (uBackslash == std::wstring::npos) {
        ThrowOn<RegException>(
            ::RegDeleteKeyExW(_hRoot, tszPath.c_str(), ViewFlag(_enView), 0)); // the parent is the root itself
        return;
    }
    Registry parent;
    parent.OpenForDeletion(_hRoot, tszPath.substr(0, uBackslash), _enView);
    parent.DeleteKey(tszPath.substr(uBackslash + 1));
}

void Registry::DeleteValue(const std::wstring& _rtszName)
{
    ThrowOn<RegException>(::RegDeleteValueW(m_hKey.Get(), _rtszName.c_str()));
}

std::vector<std::wstring> Registry::SubKeys() const
{
    return Enumerate([this](DWORD _ulIndex, wchar_t* _pszName, DWORD* _pulSize) {
        return ::RegEnumKeyExW(m_hKey.Get(), _ulIndex, _pszName, _pulSize, nullptr, nullptr, nullptr, nullptr);
    });
}

std::vector<std::wstring> Registry::ValueNames() const
{
    return Enumerate([this](DWORD _ulIndex, wchar_t* _pszName, DWORD* _pulSize) {
        return ::RegEnumValueW(m_hKey.Get(), _ulIndex, _pszName, _pulSize, nullptr, nullptr, nullptr, nullptr);
    });
}

} // namespace ZkCommon::Storage
