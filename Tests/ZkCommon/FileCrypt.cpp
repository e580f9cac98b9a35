#include "ZkComn_FileCrypt.h"

#include "AllocationFault.h"
#include "ApiFault.h"
#include "TempFolder.h"
#include "TraceRecorder.h"

#include <array>
#include <gmock/gmock-more-matchers.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

constexpr std::array<std::uint8_t, 16> g_aKey{'k', 'e', 'y'};
constexpr std::size_t g_uLarge = 65536;

} // namespace

TEST(FileCrypt, PadsOnlyALastBlockThatIsNotFullAndWritesItsStepsToTheTraceLog)
{
    const TempFolder cFolder;
    for (const std::size_t uSize : {1U, 15U, 16U, 17U, 32U, 100000U}) {
        const TraceRecorder cTrace(0x111);
        cFolder.Write(L"plain", std::string(uSize, 'x'));
        ASSERT_TRUE(File::EncryptFile(cFolder.File(L"plain"), cFolder.File(L"cipher"), g_aKey) &&
                    File::DecryptFile(cFolder.File(L"cipher"), cFolder.File(L"back"), g_aKey));
        EXPECT_EQ(cFolder.Read(L"cipher").size(), (uSize + 15) / 16 * 16);
        EXPECT_EQ(cFolder.Read(L"back"), std::string(uSize, 'x'));
        EXPECT_EQ(cTrace.Lines(), Lines({L".w. [Enter] ZkCommon::Storage::File::EncryptFile()...",
                                         L".w. [Leave] ZkCommon::Storage::File::EncryptFile()...",
                                         L".w. [Enter] ZkCommon::Storage::File::DecryptFile()...",
                                         L"@@@ nLenConverted: " + std::to_wstring(uSize),
                                         L".w. [Leave] ZkCommon::Storage::File::DecryptFile()..."}));
    }
}

TEST(FileCrypt, TellsWhatFailedAndLeavesTheDestinationAlone)
{
    const TempFolder cFolder;
    cFolder.Write(L"good", std::string(g_uLarge, 'x'));
    cFolder.Write(L"empty", "");
    cFolder.Write(L"odd", std::string(g_uLarge + 1, 'x'));
    cFolder.Write(L"locked", std::string(16, 'x'));
    const FileHandle hLocked(::CreateFileW(cFolder.File(L"locked").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
    {
        const FileHandle hHuge(
            ::CreateFileW(cFolder.File(L"huge").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        LARGE_INTEGER stEnd{};
        stEnd.QuadPart = 0xFFFFFFF1; // one byte too many; the system keeps no bytes for the gap
        ASSERT_TRUE(::SetFilePointerEx(hHuge.Get(), stEnd, nullptr, FILE_BEGIN) && ::SetEndOfFile(hHuge.Get()));
    }
    const auto Named = [&](const wchar_t* _pszName) { return L"(" + cFolder.File(_pszName) + L")"; };
    const std::wstring tszOpen = L"Failed to open file";
    const std::wstring tszWrite = L"Failed to write file" + Named(L"out");
    struct Row
    {
        int iLine;
        const wchar_t* pszSource;
        std::wstring tszMessage;
        std::shared_ptr<void> (*pfnFault)(DWORD, int) = nullptr;
        int iRefuseLarge = 0;
        const wchar_t* pszDestination = L"out";
    };
    const Row aRows[] = {
        {__LINE__, L"missing", tszOpen + Named(L"missing") + L", error: 2"},
        {__LINE__, L"locked", tszOpen + Named(L"locked") + L", error: 32"},
        {__LINE__, L"huge", L"Failed to get file size" + Named(L"huge") + L", error: 223"},
        {__LINE__, L"empty", L"Empty file " + Named(L"empty")},
        {__LINE__, L"good", L"Failed to secure buffer", nullptr, 1},
        {__LINE__, L"good", L"Failed to read file " + Named(L"good"), &MakeFault<API(ReadFile)>},
        {__LINE__, L"odd", L"Failed to Rijndael::Convert(), error: 13"},
        {__LINE__, L"good", tszOpen + Named(L"no\\out") + L", error: 3", nullptr, 0, L"no\\out"},
        {__LINE__, L"good", tszWrite + L", error: 112", &MakeFault<API(WriteFile)>},
        {__LINE__, L"good", tszWrite + L", error: 112", &MakeFault<API(FlushFileBuffers)>},
        {__LINE__, L"good", tszOpen + Named(L"out") + L", error: 112", &MakeFault<API(MoveFileExW)>},
    };
    for (const Row& stRow : aRows) {
        const testing::ScopedTrace cScope(__FILE__, stRow.iLine, "");
        cFolder.Write(L"out", "old");
        const TraceRecorder cTrace(0x110);
        const std::shared_ptr<void> pFault = stRow.pfnFault != nullptr ? stRow.pfnFault(ERROR_DISK_FULL, 1) : nullptr;
        const AllocationFault cMemory(stRow.iRefuseLarge, g_uLarge);
        EXPECT_FALSE(File::DecryptFile(cFolder.File(stRow.pszSource), cFolder.File(stRow.pszDestination), g_aKey));
        std::vector<std::wstring> vecLines = cTrace.Lines();
        std::erase_if(vecLines, [](const std::wstring& _tsz) { return _tsz.starts_with(L"@@@ nLenConverted: "); });
        EXPECT_EQ(vecLines, Lines({L"!!! *** ZkCommon::Storage::File::DecryptFile() - " + stRow.tszMessage}));
        EXPECT_EQ(cFolder.Read(L"out"), "old");
        EXPECT_EQ(cFolder.Names().size(), 6U);
    }
}
