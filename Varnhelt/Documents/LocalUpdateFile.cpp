#include "Documents/LocalUpdateFile.h"

#include "ZkComn_Exception.h"
#include "ZkComn_File.h"

#include <new>

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

ByteArray LocalUpdateFile::Read() const
{
    namespace File = Storage::File;
    ByteArray stContent;
    const File::ReadResult stResult = m_ulReadError == ERROR_SUCCESS
                                          ? File::ReadOpen(m_hFile.Get(), stContent)
                                          : File::ReadResult{File::ReadStep::Open, m_ulReadError};
    if (stResult.enFailed == File::ReadStep::Memory) {
        throw std::bad_alloc();
    }
    if (stResult.enFailed != File::ReadStep::None) {
        throw new Storage::XmlException(stResult.ulError);
    }
    return stContent;
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
