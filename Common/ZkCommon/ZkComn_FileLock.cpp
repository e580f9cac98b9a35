#include "ZkComn_FileLock.h"

#include "ZkComn_PrivateAccess.h"
#include "ZkComn_Retry.h"

namespace ZkCommon::Storage::File {

namespace {

/** Whether waiting may help. A lock file that is just being removed refuses access, as a folder without rights does. */
bool IsHeld(DWORD _ulError, const std::wstring& _tszPath) noexcept
{
    return _ulError == ERROR_SHARING_VIOLATION ||
           (_ulError == ERROR_ACCESS_DENIED && (::GetFileAttributesW(_tszPath.c_str()) != INVALID_FILE_ATTRIBUTES ||
                                                ::GetLastError() != ERROR_FILE_NOT_FOUND));
}

} // namespace

std::uint32_t StoreLock::Acquire(const std::wstring& _tszFile, DWORD _ulWait)
{
    AccessControl::PrivateAccess stAccess;
    SECURITY_ATTRIBUTES* const pstSecurity = stAccess.Get();
    if (pstSecurity == nullptr) {
        return ::GetLastError();
    }
    const std::wstring tszPath = _tszFile + L".lock";
    constexpr int iFreeTries = 3; // of refusals without a holder, who may have let go meanwhile
    int iFree = 0;
    const Retry cRetry(_ulWait, 5);
    DWORD ulError = ERROR_SUCCESS;
    bool bMayHelp = false;
    do {
        m_hFile.Reset(::CreateFileW(tszPath.c_str(), GENERIC_WRITE | DELETE, 0, pstSecurity, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                                    nullptr));
        if (m_hFile) {
            return ERROR_SUCCESS;
        }
        ulError = ::GetLastError();
        bMayHelp = IsHeld(ulError, tszPath) || (ulError == ERROR_ACCESS_DENIED && ++iFree < iFreeTries);
    } while (bMayHelp && cRetry.Again());
    return ulError;
}

} // namespace ZkCommon::Storage::File
