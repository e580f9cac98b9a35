#include "Arguments.h"

#include "ZkComn_String.h"

#include <optional>
#include <windows.h>

namespace Vrnt {

std::wstring ToWide(const std::string& _rsUtf8)
{
    return ZkCommon::String::FromUtf8(_rsUtf8);
}

std::wstring ToFullPath(const std::string& _rsUtf8)
{
    if (_rsUtf8.empty()) {
        throw UsageError("an empty path names no file");
    }
    if (_rsUtf8.find('"') != std::string::npos) {
        throw UsageError("a quotation mark is in the path \"" + _rsUtf8 +
                         "\": leave out the backslash before the closing quotation mark");
    }
    return std::filesystem::absolute(ToWide(_rsUtf8)).wstring();
}

std::uint32_t ToNumber(const char* _szOption, const std::string& _rsUtf8)
{
    const std::optional<std::uint32_t> ulValue = ZkCommon::String::ToWholeNumber(ToWide(_rsUtf8));
    if (!ulValue) {
        throw UsageError(std::string(_szOption) + ": \"" + _rsUtf8 + "\" is not a number of 32 bits");
    }
    return *ulValue;
}

std::filesystem::path ToolFolder()
{
    std::wstring tszPath(MAX_PATH, L'\0');
    for (;;) {
        const DWORD ulLength = ::GetModuleFileNameW(nullptr, tszPath.data(), static_cast<DWORD>(tszPath.size()));
        if (ulLength < tszPath.size()) {
            tszPath.resize(ulLength);
            return std::filesystem::path(tszPath).parent_path();
        }
        tszPath.resize(tszPath.size() * 2);
    }
}

} // namespace Vrnt
