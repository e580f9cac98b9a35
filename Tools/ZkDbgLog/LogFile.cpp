#include "LogFile.h"

#include "ZkComn_File.h"
#include "ZkComn_Library.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

using namespace ZkCommon;

namespace {

constexpr std::size_t g_uKeptFiles = 10; // today's among them

std::uint32_t ToDay(unsigned _uYear, unsigned _uMonth, unsigned _uDay) noexcept
{
    return _uYear * 10000 + _uMonth * 100 + _uDay;
}

std::uint32_t ToDay(const SYSTEMTIME& _rstTime) noexcept
{
    return ToDay(_rstTime.wYear, _rstTime.wMonth, _rstTime.wDay);
}

/** The day of a line that begins with "DD/MM/YYYY"; 0 when it does not. */
std::uint32_t DayOfLine(std::string_view _svLine) noexcept
{
    if (_svLine.size() < 10 || _svLine[2] != '/' || _svLine[5] != '/') {
        return 0;
    }
    const auto Number = [_svLine](std::size_t _uAt, std::size_t _uDigits) {
        unsigned uNumber = 0;
        const char* const pFirst = _svLine.data() + _uAt;
        return std::from_chars(pFirst, pFirst + _uDigits, uNumber).ptr == pFirst + _uDigits ? uNumber : 0;
    };
    return ToDay(Number(6, 4), Number(3, 2), Number(0, 2));
}

std::wstring ProgramFolder()
{
    return Storage::File::FolderOf(Library::ModulePath(nullptr));
}

/** Creates the folders above a file, outermost first; what is there already is no failure. */
void CreateFolders(const std::wstring& _rtszFile)
{
    for (std::size_t uAt = _rtszFile.find(L'\\'); uAt != std::wstring::npos; uAt = _rtszFile.find(L'\\', uAt + 1)) {
        ::CreateDirectoryW(_rtszFile.substr(0, uAt).c_str(), nullptr);
    }
}

/**
 * Keeps other processes from writing and renaming the file, for the length of a scope. The lock is on a byte that no
 * file reaches; the system takes it back from a process that dies. One that is held up with the lock, in a debugger
 * say, must not hold up all the others: after a while they go on without it, and for a while nobody waits again.
 */
class FileLock
{
public:
    /** @param _rullNoWaitUntil  the time until which there is no waiting; moved on when waiting was in vain */
    FileLock(HANDLE _hFile, ULONGLONG& _rullNoWaitUntil) noexcept : m_hFile(_hFile)
    {
        const ULONGLONG ullStart = ::GetTickCount64();
        while (!TryLock()) {
            const ULONGLONG ullNow = ::GetTickCount64();
            if (ullStart < _rullNoWaitUntil) {
                return;
            }
            if (ullNow - ullStart >= g_ullLongestWait) {
                _rullNoWaitUntil = ullNow + g_ullNoWait;
                return;
            }
            ::Sleep(ullNow - ullStart < g_ullLongestWait / 10 ? 0 : 1);
        }
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock()
    {
        if (m_bLocked) {
            OVERLAPPED stPlace = Place();
            ::UnlockFileEx(m_hFile, 0, 1, 0, &stPlace);
        }
    }

private:
    static constexpr ULONGLONG g_ullLongestWait = 2000; // milliseconds
    static constexpr ULONGLONG g_ullNoWait = 60000;

    static OVERLAPPED Place() noexcept
    {
        OVERLAPPED stPlace{};
        stPlace.OffsetHigh = 0x7FFFFFFF;
        return stPlace;
    }
    bool TryLock() noexcept
    {
        OVERLAPPED stPlace = Place();
        m_bLocked = ::LockFileEx(m_hFile, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &stPlace) != 0;
        return m_bLocked;
    }

    HANDLE m_hFile;
    bool m_bLocked = false;
};

} // namespace

LogFile::LogFile(const Library::ZkDbgSettings& _rstSettings) : m_bRobust(_rstSettings.ucRobust != 0)
{
    const Library::ZkDbgFile stFile = Library::FileOf(_rstSettings);
    m_tszStem = Library::PathOf(stFile.tszFolder.empty() ? ProgramFolder() : stFile.tszFolder, stFile.tszName.c_str());
    m_tszExtension = stFile.tszExtension;
}

/** Renames the file after a day, under the first such name that is free. */
bool LogFile::MoveToDay(std::uint32_t _ulDay) const
{
    for (int i = 1; i < 100; ++i) {
        const std::wstring tszAgain = i == 1 ? std::wstring() : L"-" + std::to_wstring(i);
        const std::wstring tszDated = m_tszStem + L"-" + std::to_wstring(_ulDay) + tszAgain + m_tszExtension;
        if (::MoveFileExW(Path().c_str(), tszDated.c_str(), 0) != FALSE) {
            return true;
        }
        if (const DWORD ulError = ::GetLastError(); ulError != ERROR_ALREADY_EXISTS && ulError != ERROR_FILE_EXISTS) {
            return false;
        }
    }
    return false;
}

std::uint32_t LogFile::OpenByName()
{
    // Append access makes each write land at the end, wherever other processes have moved it. Sharing includes deletion:
    // another process renames the file under this handle, which then still leads to the old day's file.
    m_hFile.Reset(); // the name of a deleted file is free only when nobody has the file open
    const auto Attempt = [this] {
        m_hFile.Reset(::CreateFileW(Path().c_str(),
                                    FILE_APPEND_DATA | FILE_READ_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
        return m_hFile ? ERROR_SUCCESS : ::GetLastError();
    };
    std::uint32_t ulError = Attempt();
    if (ulError == ERROR_PATH_NOT_FOUND) {
        CreateFolders(Path());
        ulError = Attempt();
    }
    return ulError;
}

/** Whether the open file still has its name: another process renames it at a change of day, a user may delete it. */
bool LogFile::IsStillNamed() const
{
    const FileHandle hNamed(::CreateFileW(Path().c_str(), FILE_READ_ATTRIBUTES,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION stNamed{};
    BY_HANDLE_FILE_INFORMATION stOpen{};
    return hNamed && ::GetFileInformationByHandle(hNamed.Get(), &stNamed) &&
           ::GetFileInformationByHandle(m_hFile.Get(), &stOpen) && stNamed.nFileIndexLow == stOpen.nFileIndexLow &&
           stNamed.nFileIndexHigh == stOpen.nFileIndexHigh &&
           stNamed.dwVolumeSerialNumber == stOpen.dwVolumeSerialNumber;
}

/** The day of the first line: a line begins with "DD/MM/YYYY". The day of the last change when that is not so. */
std::uint32_t LogFile::DayOfContent(std::uint32_t _ulWhenEmpty) const
{
    OVERLAPPED stStart{};
    char aszDate[11] = {};
    DWORD ulRead = 0;
    if (!::ReadFile(m_hFile.Get(), aszDate, sizeof aszDate - 1, &ulRead, &stStart) || ulRead == 0) {
        return _ulWhenEmpty;
    }
    if (const std::uint32_t ulDay = DayOfLine({aszDate, ulRead}); ulDay != 0) {
        return ulDay;
    }
    FILETIME stChanged{};
    FILETIME stLocal{};
    SYSTEMTIME stTime{};
    return ::GetFileTime(m_hFile.Get(), nullptr, nullptr, &stChanged) &&
                   ::FileTimeToLocalFileTime(&stChanged, &stLocal) && ::FileTimeToSystemTime(&stLocal, &stTime)
               ? ToDay(stTime)
               : _ulWhenEmpty;
}

/** Whether a name of the folder is that of a former day's file. */
bool LogFile::IsDated(std::wstring_view _svName) const
{
    const auto IsDigits = [](std::wstring_view _svText) {
        return !_svText.empty() && _svText.find_first_not_of(L"0123456789") == std::wstring_view::npos;
    };
    const std::size_t uDate = m_tszStem.size() - (m_tszStem.find_last_of(L'\\') + 1) + 1;
    if (_svName.size() < uDate + 8 + m_tszExtension.size() || !IsDigits(_svName.substr(uDate, 8))) {
        return false;
    }
    const std::wstring_view svAgain = _svName.substr(uDate + 8, _svName.size() - uDate - 8 - m_tszExtension.size());
    return svAgain.empty() || (svAgain.front() == L'-' && IsDigits(svAgain.substr(1)));
}

/** Deletes the oldest files of former days. */
void LogFile::RemoveOld() const
{
    WIN32_FIND_DATAW stFound{};
    const FindHandle hFind(::FindFirstFileW((m_tszStem + L"-????????*" + m_tszExtension).c_str(), &stFound));
    if (!hFind) {
        return;
    }
    std::vector<std::wstring> vecName;
    do {
        // The pattern lets other texts pass than dates, and other files are nobody's to delete here.
        if (IsDated(stFound.cFileName)) {
            vecName.emplace_back(stFound.cFileName);
        }
    } while (::FindNextFileW(hFind.Get(), &stFound));

    // By day, and within a day by number: of texts of one length that is the order of the texts.
    const std::size_t uDay = m_tszStem.size() - (m_tszStem.find_last_of(L'\\') + 1) + 1 + 8;
    std::ranges::sort(vecName, std::ranges::greater(), [uDay](const std::wstring& _rtszName) {
        return std::tuple(_rtszName.substr(0, uDay), _rtszName.size(), _rtszName);
    });
    for (std::size_t i = g_uKeptFiles - 1; i < vecName.size(); ++i) {
        ::DeleteFileW((m_tszStem.substr(0, m_tszStem.find_last_of(L'\\') + 1) + vecName[i]).c_str());
    }
}

std::uint32_t LogFile::Open(const SYSTEMTIME& _rstTime)
{
    const std::uint32_t ulToday = ToDay(_rstTime);
    // Each turn follows a renaming, by this process or by another; a second one is rare.
    for (int i = 0; i < 8; ++i) {
        if (const std::uint32_t ulError = OpenByName(); ulError != ERROR_SUCCESS) {
            return ulError;
        }
        m_ulDay = ulToday;
        const FileLock lock(m_hFile.Get(), m_ullNoWaitUntil);
        const std::uint32_t ulDay = DayOfContent(ulToday);
        if (ulDay >= ulToday) {
            m_ulDay = ulDay; // the clock was set back: the file goes on until its day has passed
            return ERROR_SUCCESS;
        }
        if (IsStillNamed()) {
            if (!MoveToDay(ulDay)) {
                return ERROR_SUCCESS; // no line is lost: the old file goes on until the next day
            }
            RemoveOld();
        }
    }
    return ERROR_SUCCESS;
}

std::uint32_t LogFile::Append(const SYSTEMTIME& _rstTime, const std::string& _rsBytes)
{
    // Lines in a file that somebody has deleted or renamed are lost, but a look at the name costs a third of a line.
    const bool bLook = std::exchange(m_usLookedAt, _rstTime.wSecond) != _rstTime.wSecond;
    if (!m_hFile || ToDay(_rstTime) > m_ulDay || (bLook && !IsStillNamed())) {
        if (const std::uint32_t ulError = Open(_rstTime); ulError != ERROR_SUCCESS) {
            return ulError;
        }
    }
    {
        const FileLock lock(m_hFile.Get(), m_ullNoWaitUntil);
        DWORD ulWritten = 0;
        if (!::WriteFile(m_hFile.Get(), _rsBytes.data(), static_cast<DWORD>(_rsBytes.size()), &ulWritten, nullptr)) {
            return ::GetLastError();
        }
    }
    return m_bRobust && !::FlushFileBuffers(m_hFile.Get()) ? ::GetLastError() : ERROR_SUCCESS;
}
