#include "ZkComn_IniFile.h"

#include "ZkComn_Exception.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <windows.h>

namespace ZkCommon::Storage {

using ZkCommon::Exception::Throw;

namespace {

/** Handed in as the default, so that an absent entry differs from an empty one: nobody writes such a text. */
constexpr wchar_t g_szAbsent[] = L"\x01";

/** What a mere name becomes the longer by, at most: the system looks for it in a folder of its own. */
constexpr std::size_t g_uSystemFolder = 20;

const wchar_t* Filled(const std::wstring& _rtszText, SourcePlace _stPlace = SourcePlace::Here())
{
    if (_rtszText.empty()) {
        Throw<Exception>(ERROR_BAD_ARGUMENTS, _stPlace);
    }
    return _rtszText.c_str();
}

/** Whether a file is too small to hold a section. */
bool IsBelowSection(const wchar_t* _pszPath)
{
    WIN32_FILE_ATTRIBUTE_DATA stFile{};
    return ::GetFileAttributesExW(_pszPath, GetFileExInfoStandard, &stFile) && stFile.nFileSizeHigh == 0 &&
           stFile.nFileSizeLow <= 3;
}

/** The reading calls have no result for failure: the last error says whether it is absence or failure. */
void CheckRead(const wchar_t* _pszPath, SourcePlace _stPlace = SourcePlace::Here())
{
    switch (const std::uint32_t ulError = ::GetLastError()) {
    case ERROR_INVALID_PARAMETER: // also of a file that holds a byte-order mark and nothing else
        if (!IsBelowSection(_pszPath)) {
            Throw<Exception>(ulError, _stPlace);
        }
        return;
    case ERROR_SUCCESS:
    case ERROR_FILE_NOT_FOUND: // no such file, section or entry
    case ERROR_PATH_NOT_FOUND:
    case ERROR_MORE_DATA: // of an attempt whose buffer was too small
        return;
    default:
        Throw<Exception>(ulError, _stPlace);
    }
}

/**
 * What _fnRead(buffer, size) puts into a buffer that grows until the text is not cut off: the call then leaves
 * _uReserved characters unused at the least.
 */
template <class TRead>
std::wstring ReadGrowing(std::uint32_t _ulReserved, TRead&& _fnRead)
{
    std::wstring tszBuffer(256, L'\0');
    for (;;) {
        ::SetLastError(ERROR_SUCCESS);
        const DWORD ulSize = static_cast<DWORD>(tszBuffer.size());
        const DWORD ulLength = _fnRead(tszBuffer.data(), ulSize);
        if (ulLength + _ulReserved < ulSize) {
            tszBuffer.resize(ulLength);
            return tszBuffer;
        }
        tszBuffer.resize(tszBuffer.size() * 2);
    }
}

/** Splits texts that each end in a zero. */
std::vector<std::wstring> SplitList(const std::wstring& _rtszList)
{
    std::vector<std::wstring> vecTexts;
    for (std::size_t uAt = 0; uAt < _rtszList.size();) {
        const std::size_t uEnd = std::min(_rtszList.find(L'\0', uAt), _rtszList.size());
        vecTexts.emplace_back(_rtszList, uAt, uEnd - uAt);
        uAt = uEnd + 1;
    }
    return vecTexts;
}

} // namespace

const wchar_t* IniFile::Path() const
{
    const bool bName = m_tszPath.find_first_of(L"\\/") == std::wstring::npos;
    if (m_tszPath.size() + (bName ? g_uSystemFolder : 0) >= MAX_PATH) { // it would outgrow the system's buffers
        Throw<Exception>(ERROR_FILENAME_EXCED_RANGE);
    }
    return Filled(m_tszPath);
}

const wchar_t* IniFile::SectionName() const
{
    return Filled(m_tszSection);
}

void IniFile::Flush()
{
    // The call that flushes has no result: it answers "not done" even when it did.
    ::SetLastError(ERROR_SUCCESS);
    if (!::WritePrivateProfileStringW(nullptr, nullptr, nullptr, Path())) {
        CheckRead(Path());
    }
}

std::optional<std::wstring> IniFile::Find(const std::wstring& _rtszKey) const
{
    std::wstring tszText = ReadGrowing(1, [&](wchar_t* _pszBuffer, DWORD _ulSize) {
        return ::GetPrivateProfileStringW(SectionName(), Filled(_rtszKey), g_szAbsent, _pszBuffer, _ulSize, Path());
    });
    if (tszText != g_szAbsent) {
        return tszText;
    }
    CheckRead(Path());
    return std::nullopt;
}

std::wstring IniFile::ReadString(const std::wstring& _rtszKey, const std::wstring& _rtszDefault) const
{
    return Find(_rtszKey).value_or(_rtszDefault);
}

std::uint32_t IniFile::ReadNumber(const std::wstring& _rtszKey, std::uint32_t _ulDefault) const
{
    if (!Find(_rtszKey)) {
        return _ulDefault;
    }
    return ::GetPrivateProfileIntW(SectionName(), _rtszKey.c_str(), static_cast<INT>(_ulDefault), Path());
}

void IniFile::Write(const wchar_t* _pszKey, const wchar_t* _pszValue)
{
    // Whoever may write everywhere is not kept from it by the mark, so that it is asked for here.
    const DWORD ulAttributes = ::GetFileAttributesW(Path());
    if (ulAttributes != INVALID_FILE_ATTRIBUTES && (ulAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        Throw<Exception>(ERROR_ACCESS_DENIED);
    }
    ::SetLastError(ERROR_SUCCESS);
    if (!::WritePrivateProfileStringW(SectionName(), _pszKey, _pszValue, Path())) {
        const std::uint32_t ulError = ::GetLastError(); // not every system says why
        Throw<Exception>(ulError != ERROR_SUCCESS ? ulError : ZkCommon::Exception::g_ulNoSystemError);
    }
}

void IniFile::WriteString(const std::wstring& _rtszKey, const std::wstring& _rtszValue)
{
    Write(Filled(_rtszKey), _rtszValue.c_str());
}

void IniFile::WriteNumber(const std::wstring& _rtszKey, std::uint32_t _ulValue)
{
    std::wstring tszValue;
    String::Format(tszValue, L"%u", _ulValue);
    WriteString(_rtszKey, tszValue);
}

void IniFile::DeleteEntry(const std::wstring& _rtszKey)
{
    Write(Filled(_rtszKey), nullptr);
}

bool IniFile::SectionExists() const
{
    const std::wstring tszSection = SectionName();
    return std::ranges::any_of(
        SectionNames(), [&](const std::wstring& _rtszName) { return String::EqualsNoCase(_rtszName, tszSection); });
}

void IniFile::CreateSection()
{
    if (!SectionExists()) {
        // A section written as an empty list is not kept everywhere; one whose last entry went is.
        Write(L"-", L"");
        Write(L"-", nullptr);
        Flush();
    }
}

void IniFile::DeleteSection()
{
    Write(nullptr, nullptr);
}

std::vector<std::wstring> IniFile::SectionNames() const
{
    const std::wstring tszList = ReadGrowing(2, [&](wchar_t* _pszBuffer, DWORD _ulSize) {
        return ::GetPrivateProfileSectionNamesW(_pszBuffer, _ulSize, Path());
    });
    if (tszList.empty()) {
        CheckRead(Path());
    }
    return SplitList(tszList);
}

std::vector<std::wstring> IniFile::Section() const
{
    const std::wstring tszList = ReadGrowing(2, [&](wchar_t* _pszBuffer, DWORD _ulSize) {
        return ::GetPrivateProfileSectionW(SectionName(), _pszBuffer, _ulSize, Path());
    });
    if (tszList.empty()) {
        CheckRead(Path());
    }
    return SplitList(tszList);
}

std::vector<std::pair<std::wstring, std::wstring>> IniFile::Entries() const
{
    std::vector<std::pair<std::wstring, std::wstring>> vecEntry;
    for (const std::wstring& tszLine : Section()) {
        const std::size_t uEquals = tszLine.find(L'=');
        if (uEquals != 0 && uEquals != std::wstring::npos) {
            vecEntry.emplace_back(tszLine.substr(0, uEquals), tszLine.substr(uEquals + 1));
        }
    }
    return vecEntry;
}

} // namespace ZkCommon::Storage
