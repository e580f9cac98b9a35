#pragma once

#include "MethodTrace.h"
#include "ZkComn_File.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/**
 * An encrypted document and, for a while, a plaintext copy of it in a temporary file. Only the user, the
 * Administrators and Local System can open the copy, and only while sharing reading, writing and deletion; the system
 * removes it with this object, and when the process ends in whatever way. Every failure is logged and returned; only
 * paths that find no memory throw std::bad_alloc. An object belongs to one thread at a time.
 */
class CEncFile
{
public:
    /**
     * @param _tsFolderPath   where the copy is made: ZkCommon::Storage::File::SystemTempFolder() will do
     * @param _tsEncFilePath  the document
     * @param _svKey          its key, exactly 16 characters
     */
    CEncFile(std::wstring _tsFolderPath, std::wstring _tsEncFilePath, std::string_view _svKey);
    CEncFile(const CEncFile&) = delete;
    CEncFile& operator=(const CEncFile&) = delete;
    ~CEncFile();

    /** Makes a fresh copy; an earlier one is removed first. No copy is left after a failure. */
    bool Decrypt();

    /** Encrypts the copy and replaces the document by it: it is then the new one, whole, or else what it was. */
    bool Encrypt();

    /** Path of the copy, which is made when there is none; empty on failure. */
    std::wstring DecryptedPath();

    /** Gives the copy this content, and makes it when there is none: the first half of writing a document. */
    bool WritePlain(std::span<const std::uint8_t> _spanContent);
    bool WritePlain(std::string_view _svContent);

    /** Removes the copy, if there is one; false when that fails or somebody else removed it. */
    bool DeleteDecrypted();

private:
    bool MakeCopy(const Varnhelt::MethodLines& _rLines);
    bool RemoveCopy(const Varnhelt::MethodLines& _rLines) noexcept;
    bool CheckFields(const Varnhelt::MethodLines& _rLines) const noexcept;
    bool DecryptToCopy(const Varnhelt::MethodLines& _rLines);
    bool EncryptFromCopy(const Varnhelt::MethodLines& _rLines);
    bool WriteToCopy(std::span<const std::uint8_t> _spanContent, const Varnhelt::MethodLines& _rLines);

    std::wstring m_tsFolderPath;
    std::wstring m_tsEncFilePath;
    std::wstring m_tsDecFilePath;
    std::string m_sKey;
    ZkCommon::Storage::File::TempFile m_stDecFile;
};
