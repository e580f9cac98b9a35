#pragma once

#include "ZkComn_ByteArray.h"
#include "ZkComn_File.h"
#include "ZkComn_Rijndael.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

// The system's headers give these names to functions of their own.
#undef EncryptFile
#undef DecryptFile

/**
 * Encrypted files: AES-128 in chained blocks from an all-zero initialisation vector, and nothing but its output. Only a
 * last block that is not full is padded, with bytes that hold their own number. A wrong key is not noticed.
 */
namespace ZkCommon::Storage::File {

inline constexpr std::size_t g_uKeySize = 16;
using KeySpan = std::span<const std::uint8_t, g_uKeySize>;

/**
 * Encrypts one file into another, which is replaced as a whole or stays what it was. Each failure is logged and gives
 * false; an empty source or one of more than g_ulMaxSize bytes is a failure. The file is held in memory in one piece.
 * @throws std::bad_alloc for paths only
 */
bool EncryptFile(const std::wstring& _tszSource, const std::wstring& _tszDestination, KeySpan _spanKey);

/** As EncryptFile, the other way; a source that is no whole number of blocks fails with the cipher's error 13. */
bool DecryptFile(const std::wstring& _tszSource, const std::wstring& _tszDestination, KeySpan _spanKey);

/**
 * What EncryptFile and DecryptFile do, for callers who have the file open themselves: a conversion is named
 * at its beginning, run, written, and writes its trace lines on the way. Its bytes are wiped with it.
 */
class Conversion
{
public:
    using Direction = Cryptograph::Rijndael::Direction;

    /** Writes the entry line. */
    explicit Conversion(Direction _enDirection) noexcept;
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    /** Reads and converts a file. _ulShare is what others may do to it meanwhile. @return false after logging why */
    bool Run(const std::wstring& _tszSource, DWORD _ulShare, KeySpan _spanKey) noexcept;
    /** Converts what is in memory. @return false after logging why */
    bool Run(ByteArray _stInput, KeySpan _spanKey) noexcept;

    /** The result, which ends with this object. */
    std::span<const std::uint8_t> Output() const noexcept { return m_stOutput.BytesAndRoom().first(m_uLength); }
    /** Puts the result into a file that its owner made, and writes the leave line. */
    template <class TFile>
    bool WriteTo(TFile& _rstFile) const noexcept
    {
        return Written(_rstFile.Path(), _rstFile.Write(Output())) && Leave();
    }
    /** Replaces a file by the result, and writes the leave line. */
    bool Replace(const std::wstring& _tszDestination) const;

private:
    bool ReadSource(const std::wstring& _tszSource, DWORD _ulShare, ByteArray& _rstInput) const noexcept;
    bool Convert(ByteArray _stInput, KeySpan _spanKey) noexcept;
    bool FailedToOpen(const std::wstring& _tszPath, std::uint32_t _ulError) const noexcept;
    bool Written(const std::wstring& _tszPath, std::uint32_t _ulError) const noexcept;
    bool Leave() const noexcept;

    Direction m_enDirection;
    const wchar_t* m_pszName;
    ByteArray m_stOutput;
    std::size_t m_uLength = 0;
};

} // namespace ZkCommon::Storage::File
