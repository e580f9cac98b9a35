#include "ZkComn_File.h"

#include "ZkComn_PrivateAccess.h"
#include "ZkComn_Retry.h"
#include "ZkComn_String.h"

#include <cstdio>
#include <iterator>

namespace ZkCommon::Storage::File {

namespace {

std::uint32_t LastErrorUnless(BOOL _bDone) noexcept
{
    return _bDone ? ERROR_SUCCESS : ::GetLastError();
}

/**
 * What the names of temporary files for a file of that name begin with: "tmp", the name and a dot; "tmp" alone without a
 * name. They end in a number and ".tmp".
 */
std::wstring TempBeginning(const std::wstring& _tszName)
{
    constexpr std::size_t uLongest = 200; // a file's name has 255 characters at most
    return _tszName.empty() ? L"tmp" : L"tmp" + _tszName.substr(0, uLongest) + L".";
}

/**
 * Makes a file of a new name, and opens it. Not by GetTempFileNameW: that one leaves a file
 * that anybody may open before it is made again with the access that it should have, and knows no long path.
 */
std::uint32_t CreateUnique(const std::wstring& _tszBeginning, SECURITY_ATTRIBUTES* _pstSecurity, DWORD _ulShare,
                           DWORD _ulFlags, std::wstring& _rtszPath, FileHandle& _rhFile)
{
    LARGE_INTEGER stCounter{};
    ::QueryPerformanceCounter(&stCounter);
    const std::uint32_t ulFirst = stCounter.LowPart ^ (::GetCurrentProcessId() << 16);
    constexpr std::uint32_t ulTries = 32;
    std::uint32_t ulError = ERROR_SUCCESS;
    for (std::uint32_t ulTry = 0; ulTry < ulTries; ++ulTry) {
        wchar_t szEnd[20];
        ::_snwprintf_s(szEnd, std::size(szEnd), _TRUNCATE, L"%08x.tmp", ulFirst + ulTry);
        _rtszPath = _tszBeginning + szEnd;
        _rhFile.Reset(::CreateFileW(_rtszPath.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, _ulShare, _pstSecurity,
                                    CREATE_NEW, _ulFlags, nullptr));
        ulError = LastErrorUnless(static_cast<bool>(_rhFile));
        if (ulError != ERROR_FILE_EXISTS && ulError != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    if (ulError != ERROR_SUCCESS) {
        _rtszPath.clear();
    }
    return ulError;
}

std::uint32_t SizeOf(HANDLE _hFile, std::uint64_t& _rulSize) noexcept
{
    LARGE_INTEGER stSize{};
    if (!::GetFileSizeEx(_hFile, &stSize)) {
        return ::GetLastError();
    }
    _rulSize = static_cast<std::uint64_t>(stSize.QuadPart);
    return _rulSize > g_ulMaxSize ? ERROR_FILE_TOO_LARGE : ERROR_SUCCESS;
}

/** The open file then holds just these bytes. */
std::uint32_t WriteOpen(HANDLE _hFile, std::span<const std::uint8_t> _spanBytes) noexcept
{
    if (_spanBytes.size() > g_ulMaxSize) {
        return ERROR_FILE_TOO_LARGE;
    }
    DWORD ulWritten = 0;
    if (!::SetFilePointerEx(_hFile, {}, nullptr, FILE_BEGIN) ||
        !::WriteFile(_hFile, _spanBytes.data(), static_cast<DWORD>(_spanBytes.size()), &ulWritten, nullptr)) {
        return ::GetLastError();
    }
    if (ulWritten != _spanBytes.size()) {
        return ERROR_DISK_FULL;
    }
    // Most files are new, and looking costs less than cutting.
    LARGE_INTEGER stSize{};
    const bool bAtEnd = ::GetFileSizeEx(_hFile, &stSize) && stSize.QuadPart == static_cast<LONGLONG>(ulWritten);
    return LastErrorUnless(bAtEnd || ::SetEndOfFile(_hFile));
}

/** Whether the system removes the file when its handle is closed. */
std::uint32_t MarkForRemoval(HANDLE _hFile, bool _bRemove) noexcept
{
    FILE_DISPOSITION_INFO stDisposition{};
    stDisposition.DeleteFile = _bRemove ? TRUE : FALSE;
    return LastErrorUnless(
        ::SetFileInformationByHandle(_hFile, FileDispositionInfo, &stDisposition, sizeof(stDisposition)));
}

/** Calls _fnVisit with the path of each temporary file for a file of that name, until it answers false. */
template <class TVisit>
void ForEachTemp(const std::wstring& _tszFolder, const std::wstring& _tszName, const TVisit& _fnVisit)
{
    if (_tszName.empty()) { // whose temporary files look like those of others
        return;
    }
    const std::wstring tszFolder = String::WithBackslash(_tszFolder);
    WIN32_FIND_DATAW stFound{};
    const FindHandle hFind(::FindFirstFileW((tszFolder + TempBeginning(_tszName) + L"????????.tmp").c_str(), &stFound));
    for (BOOL bFound = hFind ? TRUE : FALSE; bFound; bFound = ::FindNextFileW(hFind.Get(), &stFound)) {
        if ((stFound.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && !_fnVisit(tszFolder + stFound.cFileName)) {
            break;
        }
    }
}

/** Whether the access list says that it is not to inherit, as a part of a call that sets it. */
SECURITY_INFORMATION InheritanceOf(PSECURITY_DESCRIPTOR _pDescriptor) noexcept
{
    SECURITY_DESCRIPTOR_CONTROL stControl = 0;
    DWORD ulRevision = 0;
    const bool bProtected =
        ::GetSecurityDescriptorControl(_pDescriptor, &stControl, &ulRevision) && (stControl & SE_DACL_PROTECTED) != 0;
    return bProtected ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
}

/** Gives a file the access list of another one, and its owner where that is allowed. */
std::uint32_t CopySecurity(const std::wstring& _tszFrom, const std::wstring& _tszTo) noexcept
{
    DWORD ulSize = 0;
    constexpr SECURITY_INFORMATION ulWhat = DACL_SECURITY_INFORMATION | OWNER_SECURITY_INFORMATION;
    ::GetFileSecurityW(_tszFrom.c_str(), ulWhat, nullptr, 0, &ulSize);
    ByteArray stDescriptor;
    if (!stDescriptor.Allocate(ulSize)) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    const auto pDescriptor = static_cast<PSECURITY_DESCRIPTOR>(stDescriptor.Data());
    if (ulSize == 0 || !::GetFileSecurityW(_tszFrom.c_str(), ulWhat, pDescriptor, ulSize, &ulSize)) {
        return ::GetLastError();
    }
    ::SetFileSecurityW(_tszTo.c_str(), OWNER_SECURITY_INFORMATION, pDescriptor); // refused to most users
    return LastErrorUnless(
        ::SetFileSecurityW(_tszTo.c_str(), DACL_SECURITY_INFORMATION | InheritanceOf(pDescriptor), pDescriptor));
}

} // namespace

bool IsFolder(const std::wstring& _tszPath) noexcept
{
    const DWORD ulAttributes = ::GetFileAttributesW(_tszPath.c_str());
    return ulAttributes != INVALID_FILE_ATTRIBUTES && (ulAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring FolderOf(const std::wstring& _tszPath)
{
    return _tszPath.substr(0, _tszPath.size() - NameOf(_tszPath).size());
}

std::wstring NameOf(const std::wstring& _tszPath)
{
    return _tszPath.substr(_tszPath.find_last_of(L"\\/:") + 1);
}

FileHandle OpenToRead(const std::wstring& _tszPath, DWORD _ulShare) noexcept
{
    FileHandle hFile;
    const Retry cRetry(1000, 10);
    do {
        hFile.Reset(::CreateFileW(_tszPath.c_str(), GENERIC_READ, _ulShare, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    } while (!hFile && ::GetLastError() == ERROR_SHARING_VIOLATION && cRetry.Again());
    return hFile;
}

bool HasLeftovers(const std::wstring& _tszFolder, const std::wstring& _tszName)
{
    bool bFound = false;
    ForEachTemp(_tszFolder, _tszName, [&](const std::wstring&) {
        bFound = true;
        return false;
    });
    return bFound;
}

void RemoveLeftovers(const std::wstring& _tszFolder, const std::wstring& _tszName)
{
    ForEachTemp(_tszFolder, _tszName, [](const std::wstring& _tszPath) {
        // Shared with nobody, it opens only what nobody has open, and closing it removes the file.
        const FileHandle hDead(
            ::CreateFileW(_tszPath.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        return true;
    });
}

bool Exists(const std::wstring& _tszPath) noexcept
{
    const DWORD ulAttributes = ::GetFileAttributesW(_tszPath.c_str());
    return ulAttributes != INVALID_FILE_ATTRIBUTES && (ulAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::uint32_t Delete(const std::wstring& _tszPath) noexcept
{
    return LastErrorUnless(::DeleteFileW(_tszPath.c_str()));
}

ReadResult ReadOpen(HANDLE _hFile, ByteArray& _rstContent) noexcept
{
    std::uint64_t ulSize = 0;
    if (const std::uint32_t ulError = SizeOf(_hFile, ulSize); ulError != ERROR_SUCCESS) {
        return {ReadStep::Size, ulError};
    }
    if (!_rstContent.Allocate(static_cast<std::size_t>(ulSize))) {
        return {ReadStep::Memory, ERROR_NOT_ENOUGH_MEMORY};
    }
    DWORD ulRead = 0;
    if (!::SetFilePointerEx(_hFile, {}, nullptr, FILE_BEGIN) ||
        !::ReadFile(_hFile, _rstContent.Data(), static_cast<DWORD>(ulSize), &ulRead, nullptr)) {
        return {ReadStep::Read, ::GetLastError()};
    }
    if (ulRead != ulSize) {
        return {ReadStep::Read, ERROR_HANDLE_EOF};
    }
    return {};
}

ReadResult Read(const std::wstring& _tszPath, ByteArray& _rstContent, DWORD _ulShare) noexcept
{
    const FileHandle hFile = OpenToRead(_tszPath, _ulShare);
    return hFile ? ReadOpen(hFile.Get(), _rstContent) : ReadResult{ReadStep::Open, ::GetLastError()};
}

std::wstring SystemTempFolder()
{
    wchar_t szFolder[MAX_PATH + 1];
    const DWORD ulLength = ::GetTempPathW(MAX_PATH + 1, szFolder);
    return ulLength <= MAX_PATH ? std::wstring(szFolder, ulLength) : std::wstring();
}

std::uint32_t TempFile::Create(const std::wstring& _tszFolder, const std::wstring& _tszName)
{
    if (!m_tszPath.empty()) {
        Remove();
    }
    AccessControl::PrivateAccess stAccess;
    SECURITY_ATTRIBUTES* const pstSecurity = stAccess.Get();
    if (pstSecurity == nullptr) {
        return ::GetLastError();
    }
    // The handle is what makes the system clean up after a killed process.
    return CreateUnique(String::WithBackslash(_tszFolder) + TempBeginning(_tszName), pstSecurity, g_ulShareAll,
                        FILE_ATTRIBUTE_TEMPORARY | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_FLAG_DELETE_ON_CLOSE,
                        m_tszPath, m_hFile);
}

std::uint32_t TempFile::Write(std::span<const std::uint8_t> _spanBytes) noexcept
{
    return WriteOpen(m_hFile.Get(), _spanBytes);
}

std::uint32_t TempFile::Remove() noexcept
{
    // Closing the handle removes the file, but reports no error.
    const std::uint32_t ulError = MarkForRemoval(m_hFile.Get(), true);
    m_hFile.Reset();
    m_tszPath.clear();
    return ulError;
}

std::uint32_t Replacement::Create()
{
    std::uint32_t ulError = CreateUnique(FolderOf(m_tszTarget) + TempBeginning(NameOf(m_tszTarget)), nullptr,
                                         FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, m_tszPath, m_hFile);
    if (ulError == ERROR_SUCCESS) {
        ulError = MarkForRemoval(m_hFile.Get(), true);
        if (ulError != ERROR_SUCCESS) {
            RemoveByName();
        }
    }
    return ulError;
}

std::uint32_t Replacement::Write(std::span<const std::uint8_t> _spanBytes) noexcept
{
    const std::uint32_t ulError = WriteOpen(m_hFile.Get(), _spanBytes);
    return ulError != ERROR_SUCCESS ? ulError : LastErrorUnless(::FlushFileBuffers(m_hFile.Get()));
}

std::uint32_t Replacement::ReadBack(ByteArray& _rstContent) noexcept
{
    return ReadOpen(m_hFile.Get(), _rstContent).ulError;
}

std::uint32_t Replacement::Commit() noexcept
{
    // Not every system refuses these by itself, and for them no waiting helps.
    const DWORD ulAttributes = ::GetFileAttributesW(m_tszTarget.c_str());
    constexpr DWORD ulNever = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
    if (ulAttributes != INVALID_FILE_ATTRIBUTES && (ulAttributes & ulNever) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    std::uint32_t ulError =
        ulAttributes != INVALID_FILE_ATTRIBUTES ? TakeOver(ulAttributes) : std::uint32_t{ERROR_SUCCESS};
    if (ulError != ERROR_SUCCESS) {
        return ulError;
    }
    const Retry cRetry(g_ulWait, g_ulPause);
    bool bInUse = false;
    do {
        ulError = Move();
        bInUse = ulError == ERROR_SHARING_VIOLATION || ulError == ERROR_ACCESS_DENIED;
    } while (bInUse && m_hFile && cRetry.Again());
    return ulError;
}

std::uint32_t Replacement::TakeOver(DWORD _ulAttributes) noexcept
{
    // A document that was closed to others must not be open after a store: better no store.
    if (const std::uint32_t ulError = CopySecurity(m_tszTarget, m_tszPath); ulError != ERROR_SUCCESS) {
        return ulError;
    }
    constexpr DWORD ulKept =
        FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD ulAttributes = _ulAttributes & ulKept;
    return LastErrorUnless(
        ::SetFileAttributesW(m_tszPath.c_str(), ulAttributes != 0 ? ulAttributes : FILE_ATTRIBUTE_NORMAL));
}

std::uint32_t Replacement::Move() noexcept
{
    if (const std::uint32_t ulError = MarkForRemoval(m_hFile.Get(), false); ulError != ERROR_SUCCESS) {
        return ulError;
    }
    // An open handle would go along with the file and shut out whoever reads the target next.
    m_hFile.Reset();
    const std::uint32_t ulError = LastErrorUnless(
        ::MoveFileExW(m_tszPath.c_str(), m_tszTarget.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    if (ulError != ERROR_SUCCESS) {
        m_hFile.Reset(::CreateFileW(m_tszPath.c_str(), DELETE, g_ulShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        if (!m_hFile || MarkForRemoval(m_hFile.Get(), true) != ERROR_SUCCESS) {
            RemoveByName();
        }
    }
    return ulError;
}

void Replacement::RemoveByName() noexcept
{
    m_hFile.Reset();
    Delete(m_tszPath);
}

std::uint32_t Replace(const std::wstring& _tszTarget, std::span<const std::uint8_t> _spanBytes,
                      const ReadBackCheck& _fnCheck)
{
    Replacement stNew(_tszTarget);
    std::uint32_t ulError = stNew.Create();
    if (ulError == ERROR_SUCCESS) {
        ulError = stNew.Write(_spanBytes);
    }
    if (ulError == ERROR_SUCCESS && _fnCheck) {
        ByteArray stWritten;
        ulError = stNew.ReadBack(stWritten);
        if (ulError == ERROR_SUCCESS && !_fnCheck(stWritten.Bytes())) {
            ulError = ERROR_INVALID_DATA;
        }
    }
    return ulError == ERROR_SUCCESS ? stNew.Commit() : ulError;
}

std::uint32_t Replace(const std::wstring& _tszTarget, std::string_view _svText, const ReadBackCheck& _fnCheck)
{
    return Replace(_tszTarget, {reinterpret_cast<const std::uint8_t*>(_svText.data()), _svText.size()}, _fnCheck);
}

} // namespace ZkCommon::Storage::File
