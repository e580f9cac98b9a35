#include "ZkComn_IniFile.h"

#include "Failure.h"
#include "TempFolder.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

#include <gmock/gmock-more-matchers.h>
#include <optional>
#include <vector>

using namespace ZkCommon;
using Storage::IniFile;

using Texts = std::vector<std::wstring>;

TEST(IniFile, TellsAbsentEntriesFromEmptyOnes)
{
    const TempFolder folder;
    folder.Write(L"a.ini",
                 "[First]\r\ntext=some text\r\nempty=\r\nquoted=\" x \"\r\nnumber=17\r\nnone=abc\r\n[Second]\r\n");
    IniFile file(folder.File(L"a.ini"), L"first");
    EXPECT_EQ((std::vector{file.Find(L"TEXT"), file.Find(L"empty"), file.Find(L"quoted"), file.Find(L"absent")}),
              (std::vector<std::optional<std::wstring>>{L"some text", L"", L" x ", std::nullopt}));
    EXPECT_EQ(file.ReadString(L"absent", L"default "), L"default ");
    EXPECT_EQ((std::vector{file.ReadNumber(L"number", 5), file.ReadNumber(L"none", 5),
                           file.ReadNumber(L"absent", 0xFFFFFFFF)}),
              (std::vector<std::uint32_t>{17, 0, 0xFFFFFFFF}));
    file.SetSection(L"Second");
    EXPECT_TRUE(file.SectionExists() && !file.Find(L"text"));
    file.SetSection(L"Third");
    EXPECT_TRUE(!file.SectionExists() && file.Section().empty());
}

TEST(IniFile, ReadsAbsentFilesAsEmptyAndWritesNewOnes)
{
    const TempFolder folder;
    IniFile file(folder.File(L"new.ini"), L"Section");
    EXPECT_EQ(file.SectionNames(), Texts());
    EXPECT_EQ(IniFile(folder.File(L"absent\\new.ini"), L"Section").Find(L"key"), std::nullopt);

    file.WriteString(L"key", L"value");
    file.WriteNumber(L"number", 4294967295U);
    file.WriteString(L"key", L"other value");
    file.Flush();
    EXPECT_EQ(folder.Read(L"new.ini"), "[Section]\r\nkey=other value\r\nnumber=4294967295\r\n");
    file.DeleteEntry(L"number");
    file.DeleteEntry(L"absent");
    EXPECT_EQ(file.Section(), Texts({L"key=other value"}));
    file.SetSection(L"New"); // a section that is really empty
    file.CreateSection();
    EXPECT_TRUE(file.SectionExists() && file.Section().empty());
    EXPECT_THAT(folder.Read(L"new.ini"), testing::HasSubstr("[New]\r\n"));
    file.SetSection(L"section"); // what exists keeps its entries
    file.CreateSection();
    EXPECT_EQ(file.Section(), Texts({L"key=other value"}));
    EXPECT_EQ(file.SectionNames(), Texts({L"Section", L"New"}));
    file.DeleteSection();
    EXPECT_EQ(file.SectionNames(), Texts({L"New"}));
}

TEST(IniFile, ReadsTextsAndListsOfAnyLengthAndKeepsUtf16)
{
    const TempFolder folder;
    std::wstring tszSections;
    std::wstring tszLines;
    std::vector<std::wstring> vecName;
    std::vector<std::wstring> vecLine;
    for (std::size_t u = 0; u < 300; ++u) {
        tszSections += L"[" + vecName.emplace_back(L"Section" + std::to_wstring(u)) + L"]\r\n";
        tszLines += vecLine.emplace_back(L"key" + std::to_wstring(u) + L"=" + std::wstring(u, L'x')) + L"\r\n";
    }
    folder.Write(L"long.ini", String::ToUtf8(tszSections + tszLines));
    const IniFile file(folder.File(L"long.ini"), L"Section299");
    EXPECT_EQ(file.SectionNames(), vecName);
    EXPECT_EQ(file.Section(), vecLine);
    for (std::size_t u = 250; u < 260; ++u) { // around the size of the first buffer
        EXPECT_EQ(file.Find(L"key" + std::to_wstring(u)), std::wstring(u, L'x'));
    }

    folder.Write(L"wide.ini", std::string("\xFF\xFE[\0S\0]\0\r\0\n\0", 12)); // keeps what is not ASCII
    IniFile wide(folder.File(L"wide.ini"), L"S");
    wide.WriteString(L"\u4e2d", L"\u00e4\u4e2d");
    wide.Flush();
    EXPECT_EQ(wide.Find(L"\u4e2d"), L"\u00e4\u4e2d");
}

TEST(IniFile, RefusesEmptyNamesBeforeItTouchesAnything)
{
    const TempFolder folder;
    IniFile noPath(L"", L"Section");
    IniFile noSection(folder.File(L"a.ini"));
    IniFile file(folder.File(L"a.ini"), L"Section");
    EXPECT_THAT((std::vector{CodeOf([&] { noPath.Find(L"key"); }), CodeOf([&] { noPath.Flush(); }),
                             CodeOf([&] { noSection.Find(L"key"); }), CodeOf([&] { noSection.Section(); }),
                             CodeOf([&] { noSection.DeleteSection(); }), // without a check it flushes and succeeds
                             CodeOf([&] { file.Find(L""); }), CodeOf([&] { file.WriteString(L"", L"value"); }),
                             CodeOf([&] { file.DeleteEntry(L""); })}), // without a check it deletes the section
                testing::Each(ERROR_BAD_ARGUMENTS));
    EXPECT_EQ(folder.Names(), Texts());
}

TEST(IniFile, ReportsFilesThatItCannotReadOrWrite)
{
    const TempFolder folder;
    EXPECT_EQ(CodeOf([&] { IniFile(folder.File(L"absent\\a.ini"), L"S").WriteString(L"key", L"value"); }),
              ERROR_PATH_NOT_FOUND);

    folder.Write(L"a.ini", "[S]\r\nkey=value\r\n");
    const FileHandle hHeld(::CreateFileW(folder.File(L"a.ini").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    IniFile held(folder.File(L"a.ini"), L"S");
    EXPECT_THAT((std::vector{CodeOf([&] { held.Find(L"key"); }), CodeOf([&] { held.SectionNames(); }),
                             CodeOf([&] { held.Section(); }), CodeOf([&] { held.WriteString(L"key", L"value"); })}),
                testing::Each(ERROR_SHARING_VIOLATION));
}
