#include "Arguments.h"

#include "ZkComn_Library.h"
#include "ZkComn_String.h"

#include <optional>

extern "C" IMAGE_DOS_HEADER __ImageBase; // NOLINT: the linker's name for where a module is loaded

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
    if (_rsUtf8 == "-") {
        throw UsageError("a file or folder is needed here: - stands for a stream only where the help says so");
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
    auto* const hSelf = reinterpret_cast<HMODULE>(&__ImageBase);
    return std::filesystem::path(ZkCommon::Library::ModulePath(hSelf)).parent_path();
}

} // namespace Vrnt
