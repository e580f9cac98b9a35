#include "EncFile.h"

#include "ApiFault.h"
#include "Child.h"
#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_FileCrypt.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;
using testing::ElementsAre;

namespace {

constexpr std::string_view g_svKey = "Wq8#Lp2!Zr7$Mv4&";

/** A folder for copies and one with the encrypted document "a.xen". */
struct Fixture
{
    explicit Fixture(std::string_view _svPlain = "<document>of some length</document>") { Store(_svPlain); }

    void Store(std::string_view _svPlain) const
    {
        cDocuments.Write(L"plain", _svPlain);
        std::array<std::uint8_t, 16> aKey;
        std::ranges::copy(g_svKey, aKey.begin());
        EXPECT_TRUE(File::EncryptFile(cDocuments.File(L"plain"), cDocuments.File(L"a.xen"), aKey));
        std::filesystem::remove(cDocuments.Path() / L"plain");
    }
    CEncFile Open(std::wstring_view _svName = L"a.xen") const
    {
        return CEncFile(cCopies.Path().wstring(), cDocuments.File(_svName), g_svKey);
    }
    static std::ptrdiff_t Count(const TempFolder& _rcFolder)
    {
        return std::distance(std::filesystem::directory_iterator(_rcFolder.Path()), {});
    }

    TempFolder cCopies;
    TempFolder cDocuments;
};

std::string Content(const std::wstring& _tszPath)
{
    ByteArray stContent;
    EXPECT_EQ(File::Read(_tszPath, stContent, File::g_ulShareAll).ulError, 0U);
    return {stContent.Bytes().begin(), stContent.Bytes().end()};
}

} // namespace

TEST(EncFile, KeepsOneCopyUntilItIsDeletedOrDestroyed)
{
    const Fixture stFixture;
    {
        CEncFile cFile = stFixture.Open();
        EXPECT_TRUE(cFile.DeleteDecrypted());
        const std::wstring tszCopy = cFile.DecryptedPath();
        EXPECT_EQ(Content(tszCopy), "<document>of some length</document>");
        EXPECT_EQ(cFile.DecryptedPath(), tszCopy);
        EXPECT_TRUE(cFile.Decrypt());
        EXPECT_EQ(Fixture::Count(stFixture.cCopies), 1);
        EXPECT_TRUE(cFile.DeleteDecrypted());
        EXPECT_EQ(Fixture::Count(stFixture.cCopies), 0);
        EXPECT_NE(cFile.DecryptedPath(), L"");
    }
    EXPECT_EQ(Fixture::Count(stFixture.cCopies), 0);
}

TEST(EncFile, TellsWhyADocumentCouldNotBeDecrypted)
{
    const Fixture stFixture;
    stFixture.cDocuments.Write(L"odd.xen", std::string(17, 'x'));
    const std::wstring tszFolder = stFixture.cCopies.Path().wstring();
    const std::wstring tszFile = stFixture.cDocuments.File(L"a.xen");
    const std::wstring tszMissing = stFixture.cDocuments.File(L"no.xen");
    const std::wstring tszDecryptFailed =
        L"!!! *** CEncFile::Decrypt() - ZkCommon::Storage::File::DecryptFile() failed";
    const std::wstring tszFileLine = L"!!! *** ZkCommon::Storage::File::DecryptFile() - ";
    const struct
    {
        int iLine;
        std::wstring tszFolder;
        std::wstring tszFile;
        std::string sKey;
        std::vector<std::wstring> vecLines;
    } aRows[] = {
        {__LINE__, L"", tszFile, std::string(g_svKey), {L"!!! *** CEncFile::Decrypt() - m_tsFolderPath is empty"}},
        {__LINE__, tszFolder, L"", std::string(g_svKey), {L"!!! *** CEncFile::Decrypt() - m_tsEncFilePath is empty"}},
        {__LINE__, tszFolder, tszFile, "fifteen letters", {L"!!! *** CEncFile::Decrypt() - m_sKey is invalid: 15"}},
        {__LINE__,
         tszFolder,
         tszMissing,
         std::string(17, 'k'),
         {L"!!! *** CEncFile::Decrypt() - m_sKey is invalid: 17"}},
        {__LINE__,
         tszFolder + L"\\no",
         tszFile,
         std::string(g_svKey),
         {L"!!! *** CEncFile::Decrypt() - ::GetTempFileName() failed: 0x00000003"}},
        {__LINE__,
         tszFolder,
         tszMissing,
         std::string(g_svKey),
         {tszFileLine + L"Failed to open file(" + tszMissing + L"), error: 2", tszDecryptFailed}},
        {__LINE__,
         tszFolder,
         stFixture.cDocuments.File(L"odd.xen"),
         std::string(g_svKey),
         {tszFileLine + L"Failed to Rijndael::Convert(), error: 13", tszDecryptFailed}},
    };
    for (auto stRow : aRows) {
        const testing::ScopedTrace cScope(__FILE__, stRow.iLine, "decrypt");
        const TraceRecorder cTrace(0x110);
        CEncFile cFile(stRow.tszFolder, stRow.tszFile, stRow.sKey);
        EXPECT_EQ(cFile.DecryptedPath(), L"");
        stRow.vecLines.push_back(L"!!! *** CEncFile::DecryptedPath() - CEncFile::Decrypt() failed");
        EXPECT_EQ(cTrace.Lines(), stRow.vecLines);
        EXPECT_EQ(Fixture::Count(stFixture.cCopies), 0);
    }
}

TEST(EncFile, LeavesNoCopyBehindAFailedWriteAndReportsACopyThatIsGone)
{
    const Fixture stFixture;
    CEncFile cFile = stFixture.Open();
    {
        const ApiFault<API(WriteFile)> cFault(ERROR_DISK_FULL);
        EXPECT_FALSE(cFile.Decrypt());
    }
    EXPECT_TRUE(cFile.Decrypt());
    {
        const ApiFault<API(WriteFile)> cFault(ERROR_DISK_FULL);
        EXPECT_FALSE(cFile.WritePlain("half"));
    }
    EXPECT_EQ(Fixture::Count(stFixture.cCopies), 0);

    const TraceRecorder cTrace(0x110);
    ASSERT_TRUE(cFile.Decrypt());
    {
        const ApiFault<API(DeleteFileW)> cFault(ERROR_SHARING_VIOLATION);
        EXPECT_FALSE(cFile.DeleteDecrypted());
    }
    EXPECT_EQ(Fixture::Count(stFixture.cCopies), 0) << "the handle removes what the call did not";
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L"@@@ nLenConverted: 35",
                            L"!!! *** CEncFile::DeleteDecrypted() - ::DeleteFile() failed: 0x00000020"));
}

TEST(EncFile, StoresWhatTheCopyHoldsByWhicheverWayItGotThere)
{
    const Fixture stFixture;
    CEncFile cFile = stFixture.Open();
    ASSERT_TRUE(cFile.WritePlain("<longer>than what was there before, by far</longer>"));
    ASSERT_TRUE(cFile.WritePlain("<new/>"));
    ASSERT_TRUE(cFile.Encrypt());
    EXPECT_EQ(Content(stFixture.Open().DecryptedPath()), "<new/>");

    {
        const FileHandle hSecond(::CreateFileW(cFile.DecryptedPath().c_str(), GENERIC_WRITE, File::g_ulShareAll,
                                               nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        DWORD ulWritten = 0;
        ASSERT_TRUE(::WriteFile(hSecond.Get(), "<other/>", 8, &ulWritten, nullptr));
    }
    ASSERT_TRUE(cFile.Encrypt());
    EXPECT_EQ(Content(stFixture.Open().DecryptedPath()), "<other/>");

    CEncFile cNew = stFixture.Open(L"new.xen");
    EXPECT_FALSE(cNew.Encrypt());
    ASSERT_TRUE(cNew.WritePlain("<first/>") && cNew.Encrypt());
    EXPECT_EQ(Content(stFixture.Open(L"new.xen").DecryptedPath()), "<first/>");
}

TEST(EncFile, LeavesTheDocumentAsItWasWhicheverStepFails)
{
    const Fixture stFixture("old");
    const std::wstring tszEncryptFailed =
        L"!!! *** CEncFile::Encrypt() - ZkCommon::Storage::File::EncryptFile() failed";
    CEncFile cFile = stFixture.Open();
    ASSERT_TRUE(cFile.WritePlain("new"));
    const struct
    {
        int iLine;
        std::shared_ptr<void> (*pfnFault)(DWORD, int);
        int iCall;
        std::wstring tszLastLine;
    } aRows[] = {
        {__LINE__, &MakeFault<API(CreateFileW)>, 1,
         L"!!! *** CEncFile::Encrypt() - ::GetTempFileName() failed: 0x00000070"},
        {__LINE__, &MakeFault<API(CreateFileW)>, 2, tszEncryptFailed},
        {__LINE__, &MakeFault<API(ReadFile)>, 1, tszEncryptFailed},
        {__LINE__, &MakeFault<API(WriteFile)>, 1, tszEncryptFailed},
        {__LINE__, &MakeFault<API(FlushFileBuffers)>, 1, tszEncryptFailed},
        {__LINE__, &MakeFault<API(MoveFileExW)>, 1, L"!!! *** CEncFile::Encrypt() - ::MoveFileEx() failed: 0x00000070"},
    };
    for (const auto& stRow : aRows) {
        const testing::ScopedTrace cScope(__FILE__, stRow.iLine, "encrypt");
        const TraceRecorder cTrace(0x110);
        {
            const std::shared_ptr<void> pFault = stRow.pfnFault(ERROR_DISK_FULL, stRow.iCall);
            EXPECT_FALSE(cFile.Encrypt());
        }
        EXPECT_EQ(cTrace.Lines().back(), stRow.tszLastLine);
        EXPECT_EQ(Fixture::Count(stFixture.cDocuments), 1);
        EXPECT_EQ(Content(stFixture.Open().DecryptedPath()), "old");
    }
    EXPECT_TRUE(cFile.Encrypt());
    EXPECT_EQ(Content(stFixture.Open().DecryptedPath()), "new");
}

TEST(EncFile, DISABLED_IsBeingRead)
{
    CEncFile cFile(Child::Folder(), Child::Folder() + L"\\a.xen", g_svKey);
    const std::wstring tszCopy = cFile.DecryptedPath();
    const FileHandle hParser(
        ::CreateFileW(tszCopy.c_str(), GENERIC_READ, File::g_ulShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (hParser) {
        Child::WaitToBeKilled();
    }
}

TEST(EncFile, LeavesNoCopyWhenTheProcessIsKilledWhileReading)
{
    const Fixture stFixture;
    Child cChild("EncFile.DISABLED_IsBeingRead", stFixture.cDocuments.Path().wstring());
    ASSERT_TRUE(cChild.IsReady());
    EXPECT_EQ(Fixture::Count(stFixture.cDocuments), 2);
    cChild.Kill();
    EXPECT_EQ(Fixture::Count(stFixture.cDocuments), 1);
}
