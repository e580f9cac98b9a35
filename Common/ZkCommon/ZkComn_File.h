#pragma once

#include "ZkComn_ByteArray.h"
#include "ZkComn_Owner.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/**
 * Files as a whole: read, made for a while, replaced. System errors are returned (0 is success) unless a function says
 * otherwise. Objects belong to one thread at a time; nothing here traces. What takes or gives a path may throw
 * std::bad_alloc, nothing else is thrown.
 */
namespace ZkCommon::Storage::File {

/** For opening a file that others may read, write and delete meanwhile. */
inline constexpr DWORD g_ulShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
/** The largest file that is read or written in one piece, in bytes; a whole number of cipher blocks. */
inline constexpr std::uint64_t g_ulMaxSize = 0xFFFFFFF0;

/** Whether the path names a file that is no folder. */
bool Exists(const std::wstring& _tszPath) noexcept;

std::uint32_t Delete(const std::wstring& _tszPath) noexcept;

bool IsFolder(const std::wstring& _tszPath) noexcept;

/** The folder of a path, its separator included; empty when the path is a bare name. */
std::wstring FolderOf(const std::wstring& _tszPath);
/** What follows the folder in a path. */
std::wstring NameOf(const std::wstring& _tszPath);

/**
 * Opens an existing file for reading. While somebody has it open in a way that shuts readers out, as the system has a
 * file that is just being moved, it is tried again for about a second.
 * @param _ulShare  what others may do to the file meanwhile
 * @return empty, with the last error set, on failure
 */
FileHandle OpenToRead(const std::wstring& _tszPath, DWORD _ulShare) noexcept;

/** What a failed Read was about. */
enum class ReadStep : std::uint32_t
{
    None,
    Open,
    Size,
    Memory,
    Read,
};
struct ReadResult
{
    ReadStep enFailed = ReadStep::None;
    std::uint32_t ulError = ERROR_SUCCESS;
};

/**
 * Reads a whole file into _rstContent, which holds exactly its bytes.
 * @param _ulShare  what others may do to the file meanwhile
 * @return at ReadStep::Size ERROR_FILE_TOO_LARGE for more than g_ulMaxSize bytes
 */
ReadResult Read(const std::wstring& _tszPath, ByteArray& _rstContent, DWORD _ulShare = FILE_SHARE_READ) noexcept;

/** As Read, of a file that its owner has open. */
ReadResult ReadOpen(HANDLE _hFile, ByteArray& _rstContent) noexcept;

/** The folder that the system names for temporary files, with a backslash at its end; empty when it names none. */
std::wstring SystemTempFolder();

/**
 * Temporary files of TempFile and Replacement that nobody has open: a system that died left them, or a process that was
 * killed in a move. Their names say which file they were made for, so that no other file is ever meant.
 * @param _tszName  the name of that file
 */
bool HasLeftovers(const std::wstring& _tszFolder, const std::wstring& _tszName);
void RemoveLeftovers(const std::wstring& _tszFolder, const std::wstring& _tszName);

/**
 * A new file that exists as long as this object: the system removes it when the object goes, and also when the process
 * ends in whatever way. Only the user, the Administrators and Local System may open it, and only with g_ulShareAll.
 */
class TempFile
{
public:
    /**
     * Makes the file in that folder; an earlier one of this object is removed first.
     * @param _tszName  of the file that it is made for; see RemoveLeftovers
     */
    std::uint32_t Create(const std::wstring& _tszFolder, const std::wstring& _tszName = {});

    /** The file then holds just these bytes; after a failure its content is undefined. */
    std::uint32_t Write(std::span<const std::uint8_t> _spanBytes) noexcept;

    /** Removes the file now. @return the error of removing it; the object has let go, and with that it is gone all the same */
    std::uint32_t Remove() noexcept;

    /** Empty when there is no file. */
    const std::wstring& Path() const noexcept { return m_tszPath; }

private:
    std::wstring m_tszPath;
    FileHandle m_hFile;
};

/**
 * A file's new content, written beside it and then moved over it. Until Commit succeeds the file is what it was, and
 * the content beside it is removed on every path; when the process is killed the system removes it, except in the moment
 * of its creation and of its move: see RemoveLeftovers. Flushed to disk before it is moved. The new file has the
 * attributes and the access list of the one that it replaces, and its owner where that is allowed, but not its times.
 */
class Replacement
{
public:
    explicit Replacement(std::wstring _tszTarget) : m_tszTarget(std::move(_tszTarget)) {}
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /** Empty before Create. */
    const std::wstring& Path() const noexcept { return m_tszPath; }

    /** Makes the file beside the target. */
    std::uint32_t Create();
    /** The whole content, down to the disk. */
    std::uint32_t Write(std::span<const std::uint8_t> _spanBytes) noexcept;
    /** What the file beside the target holds now, for those who check before they commit. */
    std::uint32_t ReadBack(ByteArray& _rstContent) noexcept;
    /**
     * Moves the file over the target. While somebody has the target open it is tried again for g_ulWait milliseconds,
     * with g_ulPause between the tries: amid many readers there are few moments at which none has it open. A folder or a
     * read-only file is never replaced.
     */
    std::uint32_t Commit() noexcept;

    static constexpr DWORD g_ulWait = 3000;
    static constexpr DWORD g_ulPause = 2;

private:
    std::uint32_t TakeOver(DWORD _ulAttributes) noexcept;
    std::uint32_t Move() noexcept;
    void RemoveByName() noexcept;

    std::wstring m_tszTarget;
    std::wstring m_tszPath;
    FileHandle m_hFile; // marked for removal as long as it is open
};

/** Looks at what was written, before it replaces anything; false refuses it. */
using ReadBackCheck = std::function<bool(std::span<const std::uint8_t>)>;

/**
 * Replaces a file, or makes it, by way of a Replacement.
 * @return ERROR_INVALID_DATA when the check refuses what was read back
 */
std::uint32_t Replace(const std::wstring& _tszTarget, std::span<const std::uint8_t> _spanBytes,
                      const ReadBackCheck& _fnCheck = {});
std::uint32_t Replace(const std::wstring& _tszTarget, std::string_view _svText, const ReadBackCheck& _fnCheck = {});

} // namespace ZkCommon::Storage::File
