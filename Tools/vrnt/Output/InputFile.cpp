#include "Output/InputFile.h"

#include "Arguments.h"
#include "Output/Output.h"
#include "ZkComn_File.h"

#include <array>
#include <windows.h>

namespace Vrnt {

namespace {

std::string ReadStandardInput()
{
    std::string sContent;
    std::array<char, 65536> aPiece{};
    DWORD ulRead = 0;
    while (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), aPiece.data(), static_cast<DWORD>(aPiece.size()), &ulRead,
                      nullptr) &&
           ulRead != 0) {
        sContent.append(aPiece.data(), ulRead);
    }
    return sContent;
}

} // namespace

std::string ReadInputFile(const std::string& _rsPath)
{
    if (_rsPath == "-") {
        return ReadStandardInput();
    }
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

Json RecordsIn(Json _jsInput, const std::string& _rsName)
{
    const Json* pResult = _jsInput.Find("result");
    const Json* pData = _jsInput.Find("data");
    if (pResult == nullptr || pData == nullptr) {
        return _jsInput;
    }
    const auto* pCode = pResult->As<std::string>();
    if (pCode == nullptr || !pCode->starts_with("0x0")) {
        throw UsageError(Quoted(_rsName) +
                         " is the answer of a command that failed, so it may hold less than the whole");
    }
    return *pData;
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
