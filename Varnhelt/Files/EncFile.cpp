#include "Files/EncFile.h"

#include "MethodTrace.h"
#include "ZkComn_FileCrypt.h"

#include <array>
#include <cstring>
#include <utility>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using Varnhelt::MethodLines;
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

    bool Copy(const std::string& _sKey, const MethodLines& _rLines) noexcept
    {
        const int iError = ::memcpy_s(m_aKey.data(), m_aKey.size(), _sKey.data(), _sKey.size());
        if (iError != 0) {
            _rLines.Error(L"::memcpy_s() failed: %d", iError);
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
        RemoveCopy(MethodLines(L"CEncFile::~CEncFile()"));
    }
    ::SecureZeroMemory(m_sKey.data(), m_sKey.size());
}

bool CEncFile::Decrypt()
{
    const MethodTrace cTrace(L"CEncFile::Decrypt()");
    return cTrace.Leave(DecryptToCopy(cTrace));
}

bool CEncFile::Encrypt()
{
    const MethodTrace cTrace(L"CEncFile::Encrypt()");
    return cTrace.Leave(EncryptFromCopy(cTrace));
}

std::wstring CEncFile::DecryptedPath()
{
    const MethodTrace cTrace(L"CEncFile::DecryptedPath()");
    if (m_tsDecFilePath.empty() && !Decrypt()) {
        cTrace.Error(L"CEncFile::Decrypt() failed");
    }
    cTrace.Leave();
    return m_tsDecFilePath;
}

bool CEncFile::WritePlain(std::span<const std::uint8_t> _spanContent)
{
    const MethodTrace cTrace(L"CEncFile::WritePlain()");
    return cTrace.Leave(WriteToCopy(_spanContent, cTrace));
}

bool CEncFile::WritePlain(std::string_view _svContent)
{
    return WritePlain(std::span(reinterpret_cast<const std::uint8_t*>(_svContent.data()), _svContent.size()));
}

bool CEncFile::DeleteDecrypted()
{
    const MethodTrace cTrace(L"CEncFile::DeleteDecrypted()");
    return cTrace.Leave(m_tsDecFilePath.empty() || RemoveCopy(cTrace));
}

bool CEncFile::CheckFields(const MethodLines& _rLines) const noexcept
{
    if (m_tsFolderPath.empty()) {
        _rLines.Error(L"m_tsFolderPath is empty");
    } else if (m_tsEncFilePath.empty()) {
        _rLines.Error(L"m_tsEncFilePath is empty");
    } else if (m_sKey.size() != File::g_uKeySize) {
        _rLines.Error(L"m_sKey is invalid: %d", static_cast<std::uint32_t>(m_sKey.size()));
    } else {
        return true;
    }
    return false;
}

bool CEncFile::MakeCopy(const MethodLines& _rLines)
{
    if (const std::uint32_t ulError = m_stDecFile.Create(m_tsFolderPath, File::NameOf(m_tsEncFilePath));
        ulError != ERROR_SUCCESS) {
        _rLines.Error(L"::GetTempFileName() failed: 0x%08X", ulError);
        return false;
    }
    m_tsDecFilePath = m_stDecFile.Path();
    return true;
}

bool CEncFile::RemoveCopy(const MethodLines& _rLines) noexcept
{
    const std::uint32_t ulError = m_stDecFile.Remove();
    m_tsDecFilePath.clear();
    if (ulError != ERROR_SUCCESS) {
        _rLines.Error(L"::DeleteFile() failed: 0x%08X", ulError);
    }
    return ulError == ERROR_SUCCESS;
}

bool CEncFile::DecryptToCopy(const MethodLines& _rLines)
{
    if (!CheckFields(_rLines)) {
        return false;
    }
    if (!m_tsDecFilePath.empty()) {
        RemoveCopy(_rLines);
    }
    if (!MakeCopy(_rLines)) {
        return false;
    }
    CipherKey stKey;
    if (!stKey.Copy(m_sKey, _rLines)) {
        RemoveCopy(_rLines);
        return false;
    }
    File::Conversion stConversion(File::Conversion::Direction::Decrypt);
    if (!stConversion.Run(m_tsEncFilePath, FILE_SHARE_READ, stKey.Bytes()) || !stConversion.WriteTo(m_stDecFile)) {
        _rLines.Error(L"ZkCommon::Storage::File::DecryptFile() failed");
        RemoveCopy(_rLines);
        return false;
    }
    return true;
}

bool CEncFile::EncryptFromCopy(const MethodLines& _rLines)
{
    if (!CheckFields(_rLines)) {
        return false;
    }
    if (m_tsDecFilePath.empty()) {
        _rLines.Error(L"m_tsDecFilePath is empty");
        return false;
    }
    // Beside the document, which need not be where the copy is: only there is moving over it one step.
    File::Replacement stNew(m_tsEncFilePath);
    if (const std::uint32_t ulError = stNew.Create(); ulError != ERROR_SUCCESS) {
        _rLines.Error(L"::GetTempFileName() failed: 0x%08X", ulError);
        return false;
    }
    CipherKey stKey;
    if (!stKey.Copy(m_sKey, _rLines)) {
        return false;
    }
    File::Conversion stConversion(File::Conversion::Direction::Encrypt);
    if (!stConversion.Run(m_tsDecFilePath, File::g_ulShareAll, stKey.Bytes()) || !stConversion.WriteTo(stNew)) {
        _rLines.Error(L"ZkCommon::Storage::File::EncryptFile() failed");
        return false;
    }
    if (const std::uint32_t ulError = stNew.Commit(); ulError != ERROR_SUCCESS) {
        _rLines.Error(L"::MoveFileEx() failed: 0x%08X", ulError);
        return false;
    }
    return true;
}

bool CEncFile::WriteToCopy(std::span<const std::uint8_t> _spanContent, const MethodLines& _rLines)
{
    if (m_tsDecFilePath.empty() && !MakeCopy(_rLines)) {
        return false;
    }
    const std::uint32_t ulError = m_stDecFile.Write(_spanContent);
    if (ulError != ERROR_SUCCESS) {
        _rLines.Error(L"Failed to write file(%s), error: %d", m_tsDecFilePath, ulError);
        RemoveCopy(_rLines); // half a document must not be encrypted
    }
    return ulError == ERROR_SUCCESS;
}
