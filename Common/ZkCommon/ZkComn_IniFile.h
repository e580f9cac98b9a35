#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ZkCommon::Storage {

/**
 * One section of one ini file, through the system's private-profile functions; section and entry names have no case. An
 * empty path, section or key throws Storage::Exception* with ERROR_BAD_ARGUMENTS (160) before any call; a failing call
 * throws it with the system's last error. A file, section or entry that is not there is no failure to a reader. A new
 * file is written in the ANSI code page; one that begins with a UTF-16 mark stays UTF-16. Not thread-safe.
 */
class IniFile
{
public:
    /** @param _tszPath  full path: the system would look for a mere name in its own folder */
    explicit IniFile(std::wstring _tszPath, std::wstring _tszSection = {})
        : m_tszPath(std::move(_tszPath)), m_tszSection(std::move(_tszSection))
    {}

    void SetSection(std::wstring _tszSection) { m_tszSection = std::move(_tszSection); }

    /** Has the system write its cached copy of the file. */
    void Flush();

    /** The entry's text; nothing when there is no such entry. */
    std::optional<std::wstring> Find(const std::wstring& _rtszKey) const;
    std::wstring ReadString(const std::wstring& _rtszKey, const std::wstring& _rtszDefault) const;
    std::uint32_t ReadNumber(const std::wstring& _rtszKey, std::uint32_t _ulDefault) const;

    void WriteString(const std::wstring& _rtszKey, const std::wstring& _rtszValue);
    /** In decimal. @throws String::Exception* when memory runs out */
    void WriteNumber(const std::wstring& _rtszKey, std::uint32_t _ulValue);
    void DeleteEntry(const std::wstring& _rtszKey);

    bool SectionExists() const;
    /** Makes the section, without entries, unless it exists. */
    void CreateSection();
    void DeleteSection();

    /** In the order of the file. */
    std::vector<std::wstring> SectionNames() const;
    /** The section's lines ("key=value") in the order of the file. */
    std::vector<std::wstring> Section() const;
    /** The section's entries, each a key and its text as the file has it, quotation marks included. */
    std::vector<std::pair<std::wstring, std::wstring>> Entries() const;

private:
    const wchar_t* Path() const;
    const wchar_t* SectionName() const;
    void Write(const wchar_t* _pszKey, const wchar_t* _pszValue);

    std::wstring m_tszPath;
    std::wstring m_tszSection;
};

} // namespace ZkCommon::Storage
