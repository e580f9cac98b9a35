#include "ZkComn_File.h"

#include "ApiFault.h"
#include "TempFolder.h"
#include "ZkComn_FileLock.h"
#include "ZkComn_PrivateAccess.h"

#include <gmock/gmock-more-matchers.h>
#include <thread>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

using Names = std::vector<std::wstring>;

TEST(ReplacedFile, IsWholeOrUntouchedWhicheverStepFails)
{
    const std::tuple<int, std::shared_ptr<void> (*)(DWORD, int), int, DWORD> aRows[] = {
        {__LINE__, &MakeFault<API(CreateFileW)>, 1, ERROR_ACCESS_DENIED},
        {__LINE__, &MakeFault<API(SetFileInformationByHandle)>, 1, ERROR_NOT_SUPPORTED},
        {__LINE__, &MakeFault<API(WriteFile)>, 1, ERROR_DISK_FULL},
        {__LINE__, &MakeFault<API(FlushFileBuffers)>, 1, ERROR_WRITE_FAULT},
        {__LINE__, &MakeFault<API(ReadFile)>, 1, ERROR_CRC},
        {__LINE__, &MakeFault<API(SetFileInformationByHandle)>, 2, ERROR_NOT_SUPPORTED},
        {__LINE__, &MakeFault<API(MoveFileExW)>, 1, ERROR_NOT_SAME_DEVICE},
    };
    for (const auto& [iLine, pfnFault, iCall, ulError] : aRows) {
        for (const bool bExisted : {true, false}) {
            const testing::ScopedTrace cTrace(__FILE__, iLine, bExisted ? "existed" : "new");
            const TempFolder cFolder;
            if (bExisted) {
                cFolder.Write(L"a.xml", "old");
            }
            const std::shared_ptr<void> pFault = pfnFault(ulError, iCall);
            EXPECT_EQ(File::Replace(cFolder.File(L"a.xml"), "new", [](auto) { return true; }), ulError);
            EXPECT_EQ(cFolder.Read(L"a.xml"), bExisted ? "old" : "");
            EXPECT_EQ(cFolder.Names().size(), bExisted ? 1U : 0U);
        }
    }
}

TEST(ReplacedFile, IsReadBackBeforeItReplacesAnything)
{
    const TempFolder cFolder;
    cFolder.Write(L"a.xml", "old and longer");
    std::vector<std::string> vecSeen;
    const auto ReplaceBy = [&](std::string_view _svNew, bool _bAnswer) {
        return File::Replace(cFolder.File(L"a.xml"), _svNew, [&](std::span<const std::uint8_t> _spanBytes) {
            vecSeen.emplace_back(_spanBytes.begin(), _spanBytes.end());
            return _bAnswer;
        });
    };
    EXPECT_EQ(ReplaceBy("new", false), DWORD{ERROR_INVALID_DATA});
    EXPECT_EQ(cFolder.Read(L"a.xml"), "old and longer");
    EXPECT_EQ(ReplaceBy("", true), 0U);
    EXPECT_EQ(vecSeen, std::vector<std::string>({"new", ""}));
    EXPECT_EQ(cFolder.Names(), Names({L"a.xml"}));
    EXPECT_EQ(std::filesystem::file_size(cFolder.Path() / L"a.xml"), 0U);
}

TEST(ReplacedFile, WaitsForAReaderForABoundedTime)
{
    const TempFolder cFolder;
    cFolder.Write(L"a.xml", "old");
    FileHandle hReader(::CreateFileW(cFolder.File(L"a.xml").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, 0, nullptr));
    const ULONGLONG ulStart = ::GetTickCount64();
    EXPECT_NE(File::Replace(cFolder.File(L"a.xml"), "new"), 0U);
    const ULONGLONG ulTaken = ::GetTickCount64() - ulStart;
    EXPECT_TRUE(ulTaken >= 500 && ulTaken <= 10000) << ulTaken;
    EXPECT_EQ(cFolder.Read(L"a.xml"), "old");
    EXPECT_EQ(cFolder.Names(), Names({L"a.xml"}));

    const std::jthread cReader([&hReader] {
        ::Sleep(200);
        hReader.Reset();
    });
    EXPECT_EQ(File::Replace(cFolder.File(L"a.xml"), "new"), 0U);
    EXPECT_EQ(cFolder.Read(L"a.xml"), "new");
    EXPECT_EQ(cFolder.Names(), Names({L"a.xml"}));
}

TEST(ReplacedFile, KeepsItsAttributesAndItsAccessList)
{
    const TempFolder cFolder;
    const std::wstring tszPath = cFolder.File(L"a.xml");
    AccessControl::PrivateAccess stPrivate;
    FileHandle(::CreateFileW(tszPath.c_str(), GENERIC_WRITE, 0, stPrivate.Get(), CREATE_NEW,
                             FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, nullptr));
    const auto Descriptor = [](const std::wstring& _rtszPath) {
        std::vector<std::uint8_t> vecDescriptor(1000);
        DWORD ulSize = 0;
        EXPECT_TRUE(
            ::GetFileSecurityW(_rtszPath.c_str(), DACL_SECURITY_INFORMATION, vecDescriptor.data(), 1000, &ulSize));
        vecDescriptor.resize(ulSize);
        return vecDescriptor;
    };
    const std::vector<std::uint8_t> vecPrivate = Descriptor(tszPath);
    const DWORD ulAttributes = ::GetFileAttributesW(tszPath.c_str());
    ASSERT_EQ(File::Replace(tszPath, "new"), 0U);
    EXPECT_EQ(Descriptor(tszPath), vecPrivate);
    EXPECT_EQ(::GetFileAttributesW(tszPath.c_str()), ulAttributes);
    ASSERT_EQ(File::Replace(cFolder.File(L"b.xml"), "new"), 0U);
    EXPECT_NE(Descriptor(cFolder.File(L"b.xml")), vecPrivate);
}

TEST(StoreLock, IsHeldByOneAndLeavesNothing)
{
    const TempFolder cFolder;
    {
        File::StoreLock cFirst;
        File::StoreLock cSecond;
        EXPECT_EQ(cFirst.Acquire(cFolder.File(L"a.xml"), 0), 0U);
        EXPECT_EQ(cSecond.Acquire(cFolder.File(L"a.xml"), 50), DWORD{ERROR_SHARING_VIOLATION});
        EXPECT_EQ(cSecond.Acquire(cFolder.File(L"b.xml"), 0), 0U);
        EXPECT_NE(File::StoreLock().Acquire(cFolder.File(L"missing\\a.xml"), 10000), 0U);
    }
    EXPECT_EQ(File::StoreLock().Acquire(cFolder.File(L"a.xml"), 0), 0U);
    EXPECT_EQ(cFolder.Names(), Names());
}

TEST(ReplacedFile, FailsAtOnceWhereWaitingIsInVain)
{
    const TempFolder cFolder;
    std::filesystem::create_directory(cFolder.Path() / L"folder");
    cFolder.Write(L"fixed.xml", "old");
    ::SetFileAttributesW(cFolder.File(L"fixed.xml").c_str(), FILE_ATTRIBUTE_READONLY);
    for (const wchar_t* pszName : {L"fixed.xml", L"folder", L"missing\\a.xml"}) {
        ApiFault<API(MoveFileExW)> cMoves(ERROR_SUCCESS, 0, 0);
        EXPECT_NE(File::Replace(cFolder.File(pszName), "new"), 0U) << pszName;
        EXPECT_EQ(cMoves.Calls(), 0) << pszName;
    }
    EXPECT_EQ(cFolder.Read(L"fixed.xml"), "old");
    EXPECT_EQ(cFolder.Names(), Names({L"fixed.xml", L"folder"}));
    ::SetFileAttributesW(cFolder.File(L"fixed.xml").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(ReplacedFile, MayHaveALongPath)
{
    const TempFolder cFolder;
    std::wstring tszPath = L"\\\\?\\" + cFolder.Path().wstring();
    std::vector<std::wstring> vecFolder;
    for (int iDepth = 0; iDepth < 3; ++iDepth) {
        tszPath += L"\\" + std::wstring(100, L'\u00e9');
        ASSERT_TRUE(::CreateDirectoryW(tszPath.c_str(), nullptr));
        vecFolder.push_back(tszPath);
    }
    tszPath += L"\\\u4e2d.xml";
    EXPECT_TRUE(File::Replace(tszPath, "new") == 0 && File::Replace(tszPath, "newer") == 0);
    ByteArray stContent;
    EXPECT_TRUE(File::Read(tszPath, stContent).ulError == 0 && stContent.Size() == 5 && File::Delete(tszPath) == 0);
    for (; !vecFolder.empty(); vecFolder.pop_back()) { // the standard library does not reach down to them
        EXPECT_TRUE(::RemoveDirectoryW(vecFolder.back().c_str()));
    }
}

TEST(TempFile, ExistsAsLongAsItsOwnerUnderANameThatIsFree)
{
    const TempFolder cFolder;
    const std::uint8_t aContent[] = {'a', 'b', 'c'};
    {
        File::TempFile cFile;
        EXPECT_TRUE(cFile.Create(cFolder.File(L"missing")) == ERROR_PATH_NOT_FOUND && cFile.Path().empty());
        ASSERT_EQ(cFile.Create(cFolder.Path().wstring()), 0U);
        const ApiFault<API(CreateFileW)> cInUse(ERROR_FILE_EXISTS, 1, 3);
        ASSERT_EQ(cFile.Create(cFolder.Path().wstring()), 0U);
        EXPECT_EQ(cInUse.Calls(), 4);
        EXPECT_EQ(cFolder.Names(), Names({std::filesystem::path(cFile.Path()).filename().wstring()}));
        EXPECT_TRUE(cFile.Write(aContent) == 0 && cFile.Write(std::span(aContent).first(2)) == 0);
        ByteArray stContent;
        EXPECT_EQ(File::Read(cFile.Path(), stContent).enFailed, File::ReadStep::Open); // without the sharing it asks
        EXPECT_EQ(File::Read(cFile.Path(), stContent, File::g_ulShareAll).ulError, 0U);
        EXPECT_EQ(std::string(stContent.Bytes().begin(), stContent.Bytes().end()), "ab");
    }
    EXPECT_EQ(cFolder.Names(), Names());
}
