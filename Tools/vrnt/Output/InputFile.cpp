#include "Output/InputFile.h"

#include "Output/Output.h"
#include "Tool.h"
#include "ZkComn_File.h"

namespace Vrnt {

std::string ReadInputFile(const std::string& _rsPath)
{
    namespace File = ZkCommon::Storage::File;
    ZkCommon::ByteArray cContent;
    const File::ReadResult stResult = File::Read(ToFullPath(_rsPath), cContent, File::g_ulShareAll);
    if (stResult.enFailed == File::ReadStep::Memory) {
        throw UsageError("cannot read \"" + _rsPath + "\": out of memory");
    }
    if (stResult.enFailed != File::ReadStep::None) {
        throw UsageError("cannot read \"" + _rsPath + "\": " + SystemErrorText(stResult.ulError));
    }
    const auto spanBytes = cContent.Bytes();
    return {spanBytes.begin(), spanBytes.end()};
}

std::uint64_t ReadableSize(const std::string& _rsPath)
{
    const ZkCommon::FileHandle hFile(::CreateFileW(ToFullPath(_rsPath).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER stSize{};
    if (!hFile || ::GetFileSizeEx(hFile.Get(), &stSize) == FALSE) {
        throw UsageError("cannot read \"" + _rsPath + "\": " + SystemErrorText(::GetLastError()));
    }
    return static_cast<std::uint64_t>(stSize.QuadPart);
}

} // namespace Vrnt
