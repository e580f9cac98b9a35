#include "ZkComn_FileCrypt.h"

#include "ZkComn_DebugLog.h"

namespace ZkCommon::Storage::File {

using Cryptograph::Rijndael;

Conversion::Conversion(Direction _enDirection) noexcept
    : m_enDirection(_enDirection), m_pszName(_enDirection == Direction::Encrypt ? L"EncryptFile" : L"DecryptFile")
{
    Trace(TraceDetail, L"[Enter] ZkCommon::Storage::File::%s()...", m_pszName);
}

bool Conversion::Run(const std::wstring& _tszSource, DWORD _ulShare, KeySpan _spanKey) noexcept
{
    ByteArray stInput;
    return ReadSource(_tszSource, _ulShare, stInput) && Run(std::move(stInput), _spanKey);
}

bool Conversion::Run(ByteArray _stInput, KeySpan _spanKey) noexcept
{
    if (!Convert(std::move(_stInput), _spanKey)) {
        return false;
    }
    if (m_enDirection == Direction::Decrypt) {
        Trace(TraceNotice, L"nLenConverted: %d", static_cast<std::uint32_t>(m_uLength));
    }
    return true;
}

bool Conversion::ReadSource(const std::wstring& _tszSource, DWORD _ulShare, ByteArray& _rstInput) const noexcept
{
    const ReadResult stResult = Read(_tszSource, _rstInput, _ulShare);
    switch (stResult.enFailed) {
    case ReadStep::None:
        break;
    case ReadStep::Open:
        return FailedToOpen(_tszSource, stResult.ulError);
    case ReadStep::Size:
        Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to get file size(%s), error: %d", m_pszName,
              _tszSource, stResult.ulError);
        return false;
    case ReadStep::Memory:
        Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to secure buffer", m_pszName);
        return false;
    case ReadStep::Read:
        Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to read file (%s)", m_pszName, _tszSource);
        return false;
    }
    if (_rstInput.Size() == 0) {
        Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Empty file (%s)", m_pszName, _tszSource);
        return false;
    }
    return true;
}

bool Conversion::Convert(ByteArray _stInput, KeySpan _spanKey) noexcept
{
    static_assert(ByteArray::g_uRoom >= Cryptograph::Aes::g_uBlock);
    m_stOutput = std::move(_stInput); // in place
    const std::span<std::uint8_t> spanOutput = m_stOutput.BytesAndRoom();
    Rijndael stCipher;
    std::uint32_t ulError = ERROR_SUCCESS;
    std::size_t uConverted = 0;
    std::size_t uFinished = 0;
    if (!stCipher.SetUp(m_enDirection, _spanKey, Rijndael::Mode::Cbc, {}, ulError) ||
        !stCipher.Convert(m_stOutput.Bytes(), spanOutput, uConverted, ulError) ||
        !stCipher.Finish(spanOutput.subspan(uConverted), uFinished, ulError)) {
        Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to Rijndael::Convert(), error: %d", m_pszName,
              ulError);
        return false;
    }
    m_uLength = uConverted + uFinished;
    return true;
}

bool Conversion::Replace(const std::wstring& _tszDestination) const
{
    Replacement stFile(_tszDestination);
    if (const std::uint32_t ulError = stFile.Create(); ulError != ERROR_SUCCESS) {
        return FailedToOpen(_tszDestination, ulError);
    }
    if (!Written(_tszDestination, stFile.Write(Output()))) {
        return false;
    }
    // The destination itself is touched only now: when it cannot be had, this is where it shows.
    if (const std::uint32_t ulError = stFile.Commit(); ulError != ERROR_SUCCESS) {
        return FailedToOpen(_tszDestination, ulError);
    }
    return Leave();
}

bool Conversion::FailedToOpen(const std::wstring& _tszPath, std::uint32_t _ulError) const noexcept
{
    Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to open file(%s), error: %d", m_pszName, _tszPath,
          _ulError);
    return false;
}

bool Conversion::Written(const std::wstring& _tszPath, std::uint32_t _ulError) const noexcept
{
    if (_ulError == ERROR_SUCCESS) {
        return true;
    }
    Trace(TraceError, L"*** ZkCommon::Storage::File::%s() - Failed to write file(%s), error: %d", m_pszName, _tszPath,
          _ulError);
    return false;
}

bool Conversion::Leave() const noexcept
{
    Trace(TraceDetail, L"[Leave] ZkCommon::Storage::File::%s()...", m_pszName);
    return true;
}

bool EncryptFile(const std::wstring& _tszSource, const std::wstring& _tszDestination, KeySpan _spanKey)
{
    Conversion stConversion(Conversion::Direction::Encrypt);
    return stConversion.Run(_tszSource, FILE_SHARE_READ, _spanKey) && stConversion.Replace(_tszDestination);
}

bool DecryptFile(const std::wstring& _tszSource, const std::wstring& _tszDestination, KeySpan _spanKey)
{
    Conversion stConversion(Conversion::Direction::Decrypt);
    return stConversion.Run(_tszSource, FILE_SHARE_READ, _spanKey) && stConversion.Replace(_tszDestination);
}

} // namespace ZkCommon::Storage::File
