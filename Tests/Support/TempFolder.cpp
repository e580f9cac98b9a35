#include "TempFolder.h"

#include <fstream>
#include <iterator>
#include <set>
#include <windows.h>

TempFolder::TempFolder()
{
    static int iNext = 0;
    m_Path = std::filesystem::temp_directory_path() /
             (L"varnhelt-\u00e4\u4e2d-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(iNext++));
    std::filesystem::remove_all(m_Path);
    std::filesystem::create_directories(m_Path);
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
}

void TempFolder::Write(std::wstring_view _svName, std::string_view _svBytes) const
{
    std::ofstream file(m_Path / _svName, std::ios::binary);
    file.write(_svBytes.data(), static_cast<std::streamsize>(_svBytes.size()));
}

std::string TempFolder::Read(std::wstring_view _svName) const
{
    std::ifstream file(m_Path / _svName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::wstring> TempFolder::Names() const
{
    std::set<std::wstring> setName;
    for (const auto& cEntry : std::filesystem::directory_iterator(m_Path)) {
        setName.insert(cEntry.path().filename().wstring());
    }
    return {setName.begin(), setName.end()};
}
