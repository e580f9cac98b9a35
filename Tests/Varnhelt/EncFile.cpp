#include "Files/EncFile.h"

#include "ApiFault.h"
#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_FileCrypt.h"

#include <gmock/gmock-more-matchers.h>

using namespace ZkCommon;
using namespace ZkCommon::Storage;

namespace {

constexpr std::string_view g_svKey = "Wq8#Lp2!Zr7$Mv4&";

std::ptrdiff_t Count(const TempFolder& _rcFolder)
{
    return std::distance(std::filesystem::directory_iterator(_rcFolder.Path()), {});
}

/** A folder for copies, and one with the encrypted document "a.xen". */
class EncFile : public testing::Test
{
protected:
    EncFile()
    {
        CEncFile cFile = Open();
        EXPECT_TRUE(cFile.WritePlain("<document>of some length</document>") && cFile.Encrypt());
    }
    CEncFile Open(std::wstring_view _svName = L"a.xen") const
    {
        return {m_cCopies.Path().wstring(), m_cDocuments.File(_svName), g_svKey};
    }
    static std::string Content(const std::wstring& _tszPath)
    {
        ByteArray stContent;
        EXPECT_EQ(File::Read(_tszPath, stContent, File::g_ulShareAll).ulError, 0U);
        return {stContent.Bytes().begin(), stContent.Bytes().end()};
    }
    std::string Stored(std::wstring_view _svName = L"a.xen") const { return Content(Open(_svName).DecryptedPath()); }

    TempFolder m_cCopies;
    TempFolder m_cDocuments;
};

TEST_F(EncFile, KeepsOneCopyUntilItIsDeletedOrDestroyed)
{
    {
        CEncFile cFile = Open();
        EXPECT_TRUE(cFile.DeleteDecrypted());
        const std::wstring tszCopy = cFile.DecryptedPath();
        EXPECT_EQ(Content(tszCopy), "<document>of some length</document>");
        EXPECT_EQ(cFile.DecryptedPath(), tszCopy);
        EXPECT_TRUE(cFile.Decrypt());
        EXPECT_EQ(Count(m_cCopies), 1);
        EXPECT_TRUE(cFile.DeleteDecrypted());
        EXPECT_EQ(Count(m_cCopies), 0);
        EXPECT_NE(cFile.DecryptedPath(), L"");
    }
    EXPECT_EQ(Count(m_cCopies), 0);
}

TEST_F(EncFile, TellsWhyADocumentCouldNotBeDecrypted)
{
    const std::wstring tszFolder = m_cCopies.Path().wstring();
    const std::wstring tszFile = m_cDocuments.File(L"a.xen");
    const std::wstring tszMissing = m_cDocuments.File(L"no.xen");
    const struct
    {
        int iLine;
        std::wstring tszFolder;
        std::wstring tszFile;
        std::string_view svKey;
        std::wstring tszLine;
        std::wstring tszReason = {}; // a line before it, of the conversion
    } aRows[] = {
        {__LINE__, L"", tszFile, g_svKey, L"m_tsFolderPath is empty"},
        {__LINE__, tszFolder, L"", g_svKey, L"m_tsEncFilePath is empty"},
        {__LINE__, tszFolder, tszFile, "fifteen letters", L"m_sKey is invalid: 15"},
        {__LINE__, tszFolder, tszMissing, "seventeen letters", L"m_sKey is invalid: 17"},
        {__LINE__, tszFolder + L"\\no", tszFile, g_svKey, L"::GetTempFileName() failed: 0x00000003"},
        {__LINE__, tszFolder, tszMissing, g_svKey, L"ZkCommon::Storage::File::DecryptFile() failed",
         L"Failed to open file(" + tszMissing + L"), error: 2"},
    };
    for (const auto& stRow : aRows) {
        const testing::ScopedTrace cScope(__FILE__, stRow.iLine, "decrypt");
        const TraceRecorder cTrace(0x110);
        EXPECT_EQ(CEncFile(stRow.tszFolder, stRow.tszFile, stRow.svKey).DecryptedPath(), L"");
        std::vector<std::wstring> vecExpected = {L"!!! *** ZkCommon::Storage::File::DecryptFile() - " + stRow.tszReason,
                                                 L"!!! *** CEncFile::Decrypt() - " + stRow.tszLine,
                                                 L"!!! *** CEncFile::DecryptedPath() - CEncFile::Decrypt() failed"};
        vecExpected.erase(vecExpected.begin(), vecExpected.begin() + (stRow.tszReason.empty() ? 1 : 0));
        EXPECT_EQ(cTrace.Lines(), vecExpected);
        EXPECT_EQ(Count(m_cCopies), 0);
    }
}

TEST_F(EncFile, LeavesNoCopyBehindAFailedWriteAndReportsACopyThatIsGone)
{
    CEncFile cFile = Open();
    {
        const ApiFault<API(WriteFile)> cFault(ERROR_DISK_FULL);
        EXPECT_FALSE(cFile.Decrypt());
    }
    for (const auto pfnFault : {&MakeFault<API(WriteFile)>, &MakeFault<API(SetEndOfFile)>}) {
        EXPECT_TRUE(cFile.Decrypt());
        const std::shared_ptr<void> pFault = pfnFault(ERROR_DISK_FULL, 1);
        EXPECT_FALSE(cFile.WritePlain("shorter"));
    }
    EXPECT_EQ(Count(m_cCopies), 0);

    const TraceRecorder cTrace(0x110);
    ASSERT_TRUE(cFile.Decrypt());
    {
        const ApiFault<API(SetFileInformationByHandle)> cFault(ERROR_SHARING_VIOLATION);
        EXPECT_FALSE(cFile.DeleteDecrypted());
    }
    EXPECT_EQ(Count(m_cCopies), 0) << "the handle removes what the call did not";
    EXPECT_EQ(cTrace.Lines(), Lines({L"@@@ nLenConverted: 35",
                                     L"!!! *** CEncFile::DeleteDecrypted() - ::DeleteFile() failed: 0x00000020"}));
}

TEST_F(EncFile, StoresWhatTheCopyHoldsByWhicheverWayItGotThere)
{
    CEncFile cFile = Open();
    ASSERT_TRUE(cFile.WritePlain("<longer>than what was there before, by far</longer>"));
    ASSERT_TRUE(cFile.WritePlain("<new/>") && cFile.Encrypt());
    EXPECT_EQ(Stored(), "<new/>");

    {
        const FileHandle hSecond(::CreateFileW(cFile.DecryptedPath().c_str(), GENERIC_WRITE, File::g_ulShareAll,
                                               nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        DWORD ulWritten = 0;
        ASSERT_TRUE(::WriteFile(hSecond.Get(), "<other/>", 8, &ulWritten, nullptr));
    }
    ASSERT_TRUE(cFile.Encrypt());
    EXPECT_EQ(Stored(), "<other/>");

    CEncFile cNew = Open(L"new.xen");
    EXPECT_FALSE(cNew.Encrypt());
    ASSERT_TRUE(cNew.WritePlain("<first/>") && cNew.Encrypt());
    EXPECT_EQ(Stored(L"new.xen"), "<first/>");
}

TEST_F(EncFile, LeavesTheDocumentAsItWasWhicheverStepFails)
{
    const wchar_t* pszEncryptFailed = L"ZkCommon::Storage::File::EncryptFile() failed";
    const struct
    {
        int iLine;
        std::shared_ptr<void> (*pfnFault)(DWORD, int);
        int iCall;
        const wchar_t* pszLastLine;
    } aRows[] = {
        {__LINE__, &MakeFault<API(CreateFileW)>, 1, L"::GetTempFileName() failed: 0x00000070"},
        {__LINE__, &MakeFault<API(CreateFileW)>, 2, pszEncryptFailed},
        {__LINE__, &MakeFault<API(ReadFile)>, 1, pszEncryptFailed},
        {__LINE__, &MakeFault<API(WriteFile)>, 1, pszEncryptFailed},
        {__LINE__, &MakeFault<API(MoveFileExW)>, 1, L"::MoveFileEx() failed: 0x00000070"},
    };
    CEncFile cFile = Open();
    ASSERT_TRUE(cFile.WritePlain("new"));
    for (const auto& stRow : aRows) {
        const testing::ScopedTrace cScope(__FILE__, stRow.iLine, "encrypt");
        const TraceRecorder cTrace(0x110);
        {
            const std::shared_ptr<void> pFault = stRow.pfnFault(ERROR_DISK_FULL, stRow.iCall);
            EXPECT_FALSE(cFile.Encrypt());
        }
        EXPECT_EQ(cTrace.Lines().back(), std::wstring(L"!!! *** CEncFile::Encrypt() - ") + stRow.pszLastLine);
        EXPECT_EQ(Count(m_cDocuments), 1);
        EXPECT_EQ(Stored(), "<document>of some length</document>");
    }
    EXPECT_TRUE(cFile.Encrypt());
    EXPECT_EQ(Stored(), "new");
}

} // namespace
