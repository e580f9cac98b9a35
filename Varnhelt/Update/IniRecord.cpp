#include "Update/IniRecord.h"

#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <utility>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

/** A text that is the same for all names of a file or folder; empty when there is no such file. */
std::wstring SystemIdentityOf(const std::wstring& _rtszFullPath)
{
    const FileHandle hFile(::CreateFileW(_rtszFullPath.c_str(), FILE_READ_ATTRIBUTES, Storage::File::g_ulShareAll,
                                         nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION stFile{};
    if (!hFile || !::GetFileInformationByHandle(hFile.Get(), &stFile)) {
        return {};
    }
    return std::to_wstring(stFile.dwVolumeSerialNumber) + L":" + std::to_wstring(stFile.nFileIndexHigh) + L":" +
           std::to_wstring(stFile.nFileIndexLow);
}

/** Throws what writing the file would. */
void CheckWritable(const std::wstring& _rtszFullPath)
{
    const DWORD ulAttributes = ::GetFileAttributesW(_rtszFullPath.c_str());
    if (ulAttributes != INVALID_FILE_ATTRIBUTES) {
        if ((ulAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
            Exception::Throw<Storage::Exception>(ERROR_ACCESS_DENIED);
        }
        const FileHandle hFile(::CreateFileW(_rtszFullPath.c_str(), GENERIC_READ | GENERIC_WRITE,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                             FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!hFile) {
            Exception::Throw<Storage::Exception>(::GetLastError());
        }
        return;
    }
    const FileHandle hFolder(::CreateFileW(Storage::File::FolderOf(_rtszFullPath).c_str(), FILE_ADD_FILE,
                                           Storage::File::g_ulShareAll, nullptr, OPEN_EXISTING,
                                           FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!hFolder) {
        Exception::Throw<Storage::Exception>(::GetLastError());
    }
}

/**
 * Copies a file into the folder for temporary files. A file that is not there is to be made by the system itself, in the
 * encoding that it chooses: there is a name for it only.
 * @return the system's error
 */
std::uint32_t MakeCopy(IniRecord::Copy& _rstCopy)
{
    wchar_t szPath[MAX_PATH + 1];
    if (::GetTempFileNameW(Storage::File::SystemTempFolder().c_str(), L"vrn", 0, szPath) == 0) {
        return ::GetLastError();
    }
    _rstCopy.tszCopy = szPath;
    if (_rstCopy.bNew ? ::DeleteFileW(szPath) : ::CopyFileW(_rstCopy.tszPath.c_str(), szPath, FALSE)) {
        return ERROR_SUCCESS;
    }
    const std::uint32_t ulError = ::GetLastError();
    Storage::File::Delete(szPath);
    return ulError;
}

} // namespace

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

IniRecord::~IniRecord()
{
    for (const auto& [tszIdentity, stCopy] : m_mapCopy) {
        Storage::File::Delete(stCopy.tszCopy);
    }
}

/** One text for all names of a file; of one that is not there, for all names of its folder. */
const std::wstring& IniRecord::IdentityOf(const std::wstring& _rtszPath)
{
    if (m_tszLastIdentity.empty() || m_tszLastAsked != _rtszPath) {
        const std::wstring tszFullPath = FullIniPath(_rtszPath);
        m_tszLastIdentity = SystemIdentityOf(tszFullPath);
        if (m_tszLastIdentity.empty()) {
            const std::wstring tszFolder = Storage::File::FolderOf(tszFullPath);
            std::wstring tszName = tszFullPath.substr(tszFolder.size());
            ::CharUpperBuffW(tszName.data(), static_cast<DWORD>(tszName.size()));
            m_tszLastIdentity = SystemIdentityOf(tszFolder) + L"\\" + tszName;
        }
        m_tszLastAsked = _rtszPath;
    }
    return m_tszLastIdentity;
}

/** The section on the copy of its file, where there is one. */
UpdatePlace IniRecord::OnCopy(const UpdatePlace& _rstPlace)
{
    UpdatePlace stPlace = _rstPlace;
    if (!m_mapCopy.empty()) {
        const auto itCopy = m_mapCopy.find(IdentityOf(_rstPlace.tszPath));
        if (itCopy != m_mapCopy.end()) {
            stPlace.tszPath = itCopy->second.tszCopy;
        }
    }
    return stPlace;
}

/** The same before a change; the copy is made where there is none. */
UpdatePlace IniRecord::OnNewCopy(const UpdatePlace& _rstPlace)
{
    m_cFiles.Exists(_rstPlace); // refuses what is not a path or not a section
    const std::wstring tszFullPath = FullIniPath(_rstPlace.tszPath);
    CheckWritable(tszFullPath);
    if (const std::wstring& rtszIdentity = IdentityOf(_rstPlace.tszPath); !m_mapCopy.contains(rtszIdentity)) {
        Copy stCopy{tszFullPath, {}, ::GetFileAttributesW(tszFullPath.c_str()) == INVALID_FILE_ATTRIBUTES};
        if (const std::uint32_t ulError = MakeCopy(stCopy); ulError != ERROR_SUCCESS) {
            m_ulFailure = ulError;
            Exception::Throw<Storage::Exception>(ulError);
        }
        m_mapCopy.emplace(rtszIdentity, std::move(stCopy));
    }
    return OnCopy(_rstPlace);
}

bool IniRecord::Exists(const UpdatePlace& _rstPlace)
{
    return m_cFiles.Exists(OnCopy(_rstPlace));
}

std::optional<UpdateStorage::Value> IniRecord::Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    return m_cFiles.Find(OnCopy(_rstPlace), _rtszName);
}

std::vector<std::wstring> IniRecord::Names(const UpdatePlace& _rstPlace)
{
    return m_cFiles.Names(OnCopy(_rstPlace));
}

std::vector<std::wstring> IniRecord::SubKeys(const UpdatePlace&)
{
    return {};
}

void IniRecord::Create(const UpdatePlace& _rstPlace, bool)
{
    if (!Exists(_rstPlace)) {
        m_cFiles.Create(OnNewCopy(_rstPlace), false);
    }
}

void IniRecord::Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue)
{
    m_cFiles.Write(OnNewCopy(_rstPlace), _rtszName, _rstValue);
}

void IniRecord::RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName)
{
    m_cFiles.RemoveValue(OnNewCopy(_rstPlace), _rtszName);
}

void IniRecord::Remove(const UpdatePlace& _rstPlace)
{
    m_cFiles.Remove(OnNewCopy(_rstPlace));
}

std::vector<IniRecord::Copy> IniRecord::Touched() const
{
    std::vector<Copy> vecCopy;
    for (const auto& [tszIdentity, stCopy] : m_mapCopy) {
        vecCopy.push_back(stCopy);
    }
    std::ranges::sort(vecCopy, String::LessNoCase(), &Copy::tszPath);
    return vecCopy;
}

} // namespace Varnhelt
