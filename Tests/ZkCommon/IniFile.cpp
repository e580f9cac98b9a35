#include "ZkComn_IniFile.h"

#include "Failure.h"
#include "TempFolder.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <windows.h>

using namespace ZkCommon;
using Storage::IniFile;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(IniFile, TellsAbsentEntriesFromEmptyOnes)
{
    const TempFolder folder;
    folder.Write(L"a.ini",
                 "[First]\r\ntext=some text\r\nempty=\r\nquoted=\" x \"\r\nnumber=17\r\nnone=abc\r\n[Second]\r\n");
    IniFile file(folder.File(L"a.ini"), L"first");
    EXPECT_EQ(file.Find(L"TEXT"), L"some text");
    EXPECT_EQ(file.Find(L"empty"), L"");
    EXPECT_EQ(file.Find(L"quoted"), L" x ");
    EXPECT_EQ(file.Find(L"absent"), std::nullopt);
    EXPECT_EQ(file.ReadString(L"absent", L"default "), L"default ");
    EXPECT_EQ(file.ReadNumber(L"number", 5), 17U);
    EXPECT_EQ(file.ReadNumber(L"none", 5), 0U);
    EXPECT_EQ(file.ReadNumber(L"absent", 0xFFFFFFFF), 0xFFFFFFFFU);
    file.SetSection(L"Second");
    EXPECT_TRUE(file.SectionExists());
    EXPECT_EQ(file.Find(L"text"), std::nullopt);
    file.SetSection(L"Third");
    EXPECT_FALSE(file.SectionExists());
    EXPECT_THAT(file.Section(), IsEmpty());
}

TEST(IniFile, ReadsAbsentFilesAsEmptyAndWritesNewOnes)
{
    const TempFolder folder;
    IniFile file(folder.File(L"new.ini"), L"Section");
    EXPECT_THAT(file.SectionNames(), IsEmpty());
    EXPECT_EQ(IniFile(folder.File(L"absent\\new.ini"), L"Section").Find(L"key"), std::nullopt);

    file.WriteString(L"key", L"value");
    file.WriteNumber(L"number", 4294967295U);
    file.WriteString(L"key", L"other value");
    file.Flush();
    EXPECT_EQ(folder.Read(L"new.ini"), "[Section]\r\nkey=other value\r\nnumber=4294967295\r\n");
    file.DeleteEntry(L"number");
    file.DeleteEntry(L"absent");
    file.SetSection(L"Other");
    file.WriteString(L"a", L"1");
    file.SetSection(L"Section");
    EXPECT_THAT(file.SectionNames(), ElementsAre(L"Section", L"Other"));
    EXPECT_THAT(file.Section(), ElementsAre(L"key=other value"));
    file.DeleteSection();
    EXPECT_THAT(file.SectionNames(), ElementsAre(L"Other"));
}

TEST(IniFile, CreatesASectionThatIsReallyEmpty)
{
    const TempFolder folder;
    folder.Write(L"a.ini", "[Old]\r\na=1\r\n");
    IniFile file(folder.File(L"a.ini"), L"New");
    file.CreateSection();
    EXPECT_TRUE(file.SectionExists());
    EXPECT_THAT(file.Section(), IsEmpty());
    EXPECT_THAT(folder.Read(L"a.ini"), testing::HasSubstr("[New]\r\n"));
    file.SetSection(L"old"); // what exists keeps its entries
    file.CreateSection();
    EXPECT_THAT(file.Section(), ElementsAre(L"a=1"));
    EXPECT_THAT(file.SectionNames(), ElementsAre(L"Old", L"New"));
}

TEST(IniFile, ReadsTextsAndListsOfAnyLength)
{
    const TempFolder folder;
    std::string sSections;
    std::string sEntries;
    std::vector<std::wstring> vecName;
    std::vector<std::wstring> vecLine;
    for (std::size_t u = 0; u < 300; ++u) {
        vecName.push_back(L"Section" + std::to_wstring(u));
        vecLine.push_back(L"key" + std::to_wstring(u) + L"=" + std::wstring(u, L'x'));
        sSections += "[" + String::ToUtf8(vecName.back()) + "]\r\n";
        sEntries += String::ToUtf8(vecLine.back()) + "\r\n";
    }
    folder.Write(L"long.ini", sSections + sEntries);
    const IniFile file(folder.File(L"long.ini"), L"Section299");
    EXPECT_EQ(file.SectionNames(), vecName);
    EXPECT_EQ(file.Section(), vecLine);
    for (std::size_t u = 250; u < 260; ++u) { // around the size of the first buffer
        EXPECT_EQ(file.Find(L"key" + std::to_wstring(u)), std::wstring(u, L'x'));
    }
}

TEST(IniFile, KeepsTextThatIsNotAsciiInAUtf16File)
{
    const TempFolder folder;
    using namespace std::string_view_literals;
    folder.Write(L"wide.ini", "\xFF\xFE[\0S\0]\0\r\0\n\0"sv);
    IniFile file(folder.File(L"wide.ini"), L"S");
    file.WriteString(L"\u4e2d", L"\u00e4\u4e2d");
    file.Flush();
    EXPECT_EQ(file.Find(L"\u4e2d"), L"\u00e4\u4e2d");
}

TEST(IniFile, RefusesEmptyNamesBeforeItTouchesAnything)
{
    const TempFolder folder;
    IniFile noPath(L"", L"Section");
    IniFile noSection(folder.File(L"a.ini"));
    IniFile file(folder.File(L"a.ini"), L"Section");
    int iCall = 0;
    for (const std::function<void()>& fnCall : std::initializer_list<std::function<void()>>{
             [&] { noPath.Find(L"key"); }, [&] { noPath.Flush(); }, [&] { noSection.Find(L"key"); },
             [&] { noSection.Section(); },
             [&] { noSection.DeleteSection(); }, // with no section the call would flush and succeed
             [&] { file.Find(L""); }, [&] { file.WriteString(L"", L"value"); },
             [&] { file.DeleteEntry(L""); }, // with no key the call would delete the section
         }) {
        EXPECT_EQ(CodeOf(fnCall), DWORD{ERROR_BAD_ARGUMENTS}) << "call " << ++iCall;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.File(L"a.ini")));
}

TEST(IniFile, ReportsFilesThatItCannotReadOrWrite)
{
    const TempFolder folder;
    EXPECT_EQ(CodeOf([&] { IniFile(folder.File(L"absent\\a.ini"), L"S").WriteString(L"key", L"value"); }),
              ERROR_PATH_NOT_FOUND);

    folder.Write(L"a.ini", "[S]\r\nkey=value\r\n");
    const FileHandle hHeld(::CreateFileW(folder.File(L"a.ini").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(hHeld);
    IniFile held(folder.File(L"a.ini"), L"S");
    EXPECT_EQ(CodeOf([&] { held.Find(L"key"); }), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(CodeOf([&] { held.SectionNames(); }), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(CodeOf([&] { held.Section(); }), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(CodeOf([&] { held.WriteString(L"key", L"value"); }), ERROR_SHARING_VIOLATION);
}
