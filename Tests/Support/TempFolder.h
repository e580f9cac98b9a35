#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/** A new empty folder, whose name is not ASCII; removed with everything in it. */
class TempFolder
{
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::filesystem::path& Path() const { return m_Path; }
    /** The full path of a file in the folder. */
    std::wstring File(std::wstring_view _svName) const { return (m_Path / _svName).wstring(); }

    void Write(std::wstring_view _svName, std::string_view _svBytes) const;
    /** The file's bytes; empty when it is not there. */
    std::string Read(std::wstring_view _svName) const;
    /** Names of the files and folders in it, sorted. */
    std::vector<std::wstring> Names() const;

private:
    std::filesystem::path m_Path;
};
