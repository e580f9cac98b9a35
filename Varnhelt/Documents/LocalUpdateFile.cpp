#include "Documents/LocalUpdateFile.h"

#include "ZkComn_Exception.h"
#include "ZkComn_File.h"

#include <algorithm>
#include <limits>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

FileHandle Open(const std::wstring& _rtszPath, DWORD _ulAccess, DWORD _ulShare, std::uint32_t& _rulError)
{
    FileHandle hFile(
        ::CreateFileW(_rtszPath.c_str(), _ulAccess, _ulShare, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    _rulError = hFile ? ERROR_SUCCESS : ::GetLastError();
    return hFile;
}

} // namespace

LocalUpdateFile::LocalUpdateFile(const std::wstring& _rtszPath)
{
    m_hFile = Open(_rtszPath, GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE, m_ulError);
    if (!m_hFile) { // one that asks to stay is read all the same
        m_hFile = Open(_rtszPath, GENERIC_READ, Storage::File::g_ulShareAll, m_ulReadError);
    }
}

std::string LocalUpdateFile::Read() const
{
    LARGE_INTEGER stSize{};
    std::uint32_t ulError = m_ulReadError;
    if (ulError == ERROR_SUCCESS && !::GetFileSizeEx(m_hFile.Get(), &stSize)) {
        ulError = ::GetLastError();
    }
    if (ulError == ERROR_SUCCESS && stSize.QuadPart > std::numeric_limits<std::uint32_t>::max()) {
        ulError = ERROR_FILE_TOO_LARGE;
    }
    std::string sText(ulError == ERROR_SUCCESS ? static_cast<std::size_t>(stSize.QuadPart) : 0, '\0');
    std::size_t uRead = 0;
    while (ulError == ERROR_SUCCESS && uRead < sText.size()) {
        const auto ulWanted = static_cast<DWORD>(std::min<std::size_t>(sText.size() - uRead, 1U << 30));
        DWORD ulRead = 0;
        if (!::ReadFile(m_hFile.Get(), sText.data() + uRead, ulWanted, &ulRead, nullptr)) {
            ulError = ::GetLastError();
        } else if (ulRead == 0) {
            ulError = ERROR_HANDLE_EOF; // it became shorter
        }
        uRead += ulRead;
    }
    if (ulError != ERROR_SUCCESS) {
        throw new Storage::XmlException(ulError);
    }
    return sText;
}

std::uint32_t LocalUpdateFile::Delete()
{
    if (m_ulError != ERROR_SUCCESS) {
        return m_ulError;
    }
    FILE_DISPOSITION_INFO stDisposition{};
    stDisposition.DeleteFile = TRUE;
    if (!::SetFileInformationByHandle(m_hFile.Get(), FileDispositionInfo, &stDisposition, sizeof(stDisposition))) {
        return ::GetLastError();
    }
    m_hFile.Reset();
    return ERROR_SUCCESS;
}

std::uint32_t LocalUpdateFile::DeletionError() const
{
    BY_HANDLE_FILE_INFORMATION stFile{};
    const bool bReadOnly = m_ulError == ERROR_SUCCESS && ::GetFileInformationByHandle(m_hFile.Get(), &stFile) &&
                           (stFile.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    return bReadOnly ? ERROR_ACCESS_DENIED : m_ulError;
}

} // namespace Varnhelt
