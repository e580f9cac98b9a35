#include "Files/EncFile.h"

#include "Boundary.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_FileCrypt.h"

#include <array>
#include <cstring>
#include <utility>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using Varnhelt::MethodTrace;

namespace {

/** The document's key as the cipher takes it, for the length of one operation. */
class CipherKey
{
public:
    CipherKey() = default;
    CipherKey(const CipherKey&) = delete;
    CipherKey& operator=(const CipherKey&) = delete;
    ~CipherKey() { ::SecureZeroMemory(m_aKey.data(), m_aKey.size()); }

    bool Copy(const std::string& _sKey, const wchar_t* _pszMethod) noexcept
    {
        const int iError = ::memcpy_s(m_aKey.data(), m_aKey.size(), _sKey.data(), _sKey.size());
        if (iError != 0) {
            Trace(TraceError, L"*** %s - ::memcpy_s() failed: %d", _pszMethod, iError);
        }
        return iError == 0;
    }
    File::KeySpan Bytes() const noexcept { return m_aKey; }

private:
    std::array<std::uint8_t, File::g_uKeySize> m_aKey{};
};

} // namespace

CEncFile::CEncFile(std::wstring _tsFolderPath, std::wstring _tsEncFilePath, std::string_view _svKey)
    : m_tsFolderPath(std::move(_tsFolderPath)), m_tsEncFilePath(std::move(_tsEncFilePath)), m_sKey(_svKey)
{}

CEncFile::~CEncFile()
{
    if (!m_tsDecFilePath.empty()) {
        RemoveCopy(L"CEncFile::~CEncFile()");
    }
    ::SecureZeroMemory(m_sKey.data(), m_sKey.size());
}

bool CEncFile::Decrypt()
{
    const MethodTrace cTrace(L"CEncFile::Decrypt()");
    return cTrace.Leave(DecryptToCopy()) != 0;
}

bool CEncFile::Encrypt()
{
    const MethodTrace cTrace(L"CEncFile::Encrypt()");
    return cTrace.Leave(EncryptFromCopy()) != 0;
}

std::wstring CEncFile::DecryptedPath()
{
    const MethodTrace cTrace(L"CEncFile::DecryptedPath()");
    if (m_tsDecFilePath.empty() && !Decrypt()) {
        Trace(TraceError, L"*** CEncFile::DecryptedPath() - CEncFile::Decrypt() failed");
    }
    cTrace.Leave(0);
    return m_tsDecFilePath;
}

bool CEncFile::WritePlain(std::span<const std::uint8_t> _spanContent)
{
    const MethodTrace cTrace(L"CEncFile::WritePlain()");
    return cTrace.Leave(WriteToCopy(_spanContent)) != 0;
}

bool CEncFile::WritePlain(std::string_view _svContent)
{
    return WritePlain(std::span(reinterpret_cast<const std::uint8_t*>(_svContent.data()), _svContent.size()));
}

bool CEncFile::DeleteDecrypted()
{
    constexpr const wchar_t* pszMethod = L"CEncFile::DeleteDecrypted()";
    const MethodTrace cTrace(pszMethod);
    return cTrace.Leave(m_tsDecFilePath.empty() || RemoveCopy(pszMethod)) != 0;
}

bool CEncFile::CheckFields(const wchar_t* _pszMethod) const noexcept
{
    if (m_tsFolderPath.empty()) {
        Trace(TraceError, L"*** %s - m_tsFolderPath is empty", _pszMethod);
    } else if (m_tsEncFilePath.empty()) {
        Trace(TraceError, L"*** %s - m_tsEncFilePath is empty", _pszMethod);
    } else if (m_sKey.size() != File::g_uKeySize) {
        Trace(TraceError, L"*** %s - m_sKey is invalid: %d", _pszMethod, static_cast<std::uint32_t>(m_sKey.size()));
    } else {
        return true;
    }
    return false;
}

bool CEncFile::MakeCopy(const wchar_t* _pszMethod)
{
    if (const std::uint32_t ulError = m_stDecFile.Create(m_tsFolderPath); ulError != ERROR_SUCCESS) {
        Trace(TraceError, L"*** %s - ::GetTempFileName() failed: 0x%08X", _pszMethod, ulError);
        return false;
    }
    m_tsDecFilePath = m_stDecFile.Path();
    return true;
}

bool CEncFile::RemoveCopy(const wchar_t* _pszMethod) noexcept
{
    const std::uint32_t ulError = m_stDecFile.Remove();
    m_tsDecFilePath.clear();
    if (ulError != ERROR_SUCCESS) {
        Trace(TraceError, L"*** %s - ::DeleteFile() failed: 0x%08X", _pszMethod, ulError);
    }
    return ulError == ERROR_SUCCESS;
}

bool CEncFile::DecryptToCopy()
{
    constexpr const wchar_t* pszMethod = L"CEncFile::Decrypt()";
    if (!CheckFields(pszMethod)) {
        return false;
    }
    if (!m_tsDecFilePath.empty()) {
        RemoveCopy(pszMethod);
    }
    if (!MakeCopy(pszMethod)) {
        return false;
    }
    CipherKey stKey;
    if (!stKey.Copy(m_sKey, pszMethod)) {
        RemoveCopy(pszMethod);
        return false;
    }
    File::Conversion stConversion(File::Conversion::Direction::Decrypt);
    if (!stConversion.Run(m_tsEncFilePath, FILE_SHARE_READ, stKey.Bytes()) || !stConversion.WriteTo(m_stDecFile)) {
        Trace(TraceError, L"*** CEncFile::Decrypt() - ZkCommon::Storage::File::DecryptFile() failed");
        RemoveCopy(pszMethod);
        return false;
    }
    return true;
}

bool CEncFile::EncryptFromCopy()
{
    constexpr const wchar_t* pszMethod = L"CEncFile::Encrypt()";
    if (!CheckFields(pszMethod)) {
        return false;
    }
    if (m_tsDecFilePath.empty()) {
        Trace(TraceError, L"*** CEncFile::Encrypt() - m_tsDecFilePath is empty");
        return false;
    }
    // Beside the document, which need not be where the copy is: only there is moving over it one step.
    File::Replacement stNew(m_tsEncFilePath);
    if (const std::uint32_t ulError = stNew.Create(); ulError != ERROR_SUCCESS) {
        Trace(TraceError, L"*** CEncFile::Encrypt() - ::GetTempFileName() failed: 0x%08X", ulError);
        return false;
    }
    CipherKey stKey;
    if (!stKey.Copy(m_sKey, pszMethod)) {
        return false;
    }
    File::Conversion stConversion(File::Conversion::Direction::Encrypt);
    if (!stConversion.Run(m_tsDecFilePath, File::g_ulShareAll, stKey.Bytes()) || !stConversion.WriteTo(stNew)) {
        Trace(TraceError, L"*** CEncFile::Encrypt() - ZkCommon::Storage::File::EncryptFile() failed");
        return false;
    }
    if (const std::uint32_t ulError = stNew.Commit(); ulError != ERROR_SUCCESS) {
        Trace(TraceError, L"*** CEncFile::Encrypt() - ::MoveFileEx() failed: 0x%08X", ulError);
        return false;
    }
    return true;
}

bool CEncFile::WriteToCopy(std::span<const std::uint8_t> _spanContent)
{
    constexpr const wchar_t* pszMethod = L"CEncFile::WritePlain()";
    if (m_tsDecFilePath.empty() && !MakeCopy(pszMethod)) {
        return false;
    }
    const std::uint32_t ulError = m_stDecFile.Write(_spanContent);
    if (ulError != ERROR_SUCCESS) {
        Trace(TraceError, L"*** %s - Failed to write file(%s), error: %d", pszMethod, m_tsDecFilePath, ulError);
        RemoveCopy(pszMethod); // half a document must not be encrypted
    }
    return ulError == ERROR_SUCCESS;
}
