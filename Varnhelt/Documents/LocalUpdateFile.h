#pragma once

#include "ZkComn_ByteArray.h"
#include "ZkComn_Owner.h"

#include <cstdint>
#include <string>

namespace Varnhelt {

/**
 * The file of a local update description, from its opening to its end: what is read is what is deleted, whatever its
 * path leads to meanwhile. Nobody else may write it then, so that nothing half written is consumed.
 */
class LocalUpdateFile
{
public:
    explicit LocalUpdateFile(const std::wstring& _rtszPath);

    /** @throws XmlException* with the system's error, ERROR_FILE_TOO_LARGE above File::g_ulMaxSize; std::bad_alloc */
    ZkCommon::ByteArray Read() const;

    /**
     * Deletes the file; it is gone when the last who has it open closes it.
     * @return the system's error; a file that somebody else has open for writing, or does not share for deletion, stays
     */
    std::uint32_t Delete();
    /** The error that Delete would return. */
    std::uint32_t DeletionError() const;

private:
    std::uint32_t m_ulError = 0;     // of opening the file for deletion
    std::uint32_t m_ulReadError = 0; // of opening it for reading
    ZkCommon::FileHandle m_hFile;
};

} // namespace Varnhelt
