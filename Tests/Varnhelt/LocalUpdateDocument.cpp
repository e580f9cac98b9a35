// Local updates: what of a description is read, and what becomes of its file.

#include "FunctionXml.h"
#include "TraceRecorder.h"
#include "Update/LocalUpdateRequest.h"
#include "UpdateTest.h"
#include "ZkComn_String.h"

#include <filesystem>

using namespace ZkCommon;

namespace {

TEST_F(LocalUpdate, ItemsAreKnownByTheLettersTheyHaveAndEntriesByTheirTarget)
{
    const std::wstring tszPath = m_cBench.Describe(L"all.xml", R"(<Quillmar version="17.2" stay="yes"><!-- nothing -->
<Reg><Key target="registry"><Value> v </Value></Key><Key target="inifile"/><Key target="Registry"/><Key/>
<key target="registry"/></Reg><I><Entry target="inifile"/><Entry target="registry"/></I><dir/></Quillmar>)");
    ASSERT_EQ(Read(tszPath), Result::g_ulSuccess);
    EXPECT_EQ(m_stConfig.tszVersion, L"17.2");
    EXPECT_EQ(m_stConfig.lstDirectory.size(), 1U);
    ASSERT_TRUE(m_stConfig.lstRegistry.size() == 1 && m_stConfig.lstIniFile.size() == 1);
    EXPECT_EQ(m_stConfig.lstIniFile.front().lstEntry.size(), 1U);
    ASSERT_EQ(m_stConfig.lstRegistry.front().lstEntry.size(), 1U);
    EXPECT_EQ(m_stConfig.lstRegistry.front().lstEntry.front().tszValue, L" v ");
}

TEST_F(LocalUpdate, TheFileIsConsumedUnlessItAsksToStayEvenWhenItIsFaulty)
{
    constexpr std::tuple<const char*, std::uint32_t, bool, std::size_t> aRow[] = {
        {"<Quillmar/>", Result::g_ulSuccess, false, 0},
        {"<Quillmar stay='yes'/>", Result::g_ulSuccess, true, 0},
        {"<Quillmar stay='Yes'/>", Result::g_ulSuccess, false, 0},
        {"<Other stay='yes'><registry/></Other>", Result::g_ulSuccess, false, 0},
        {"<Quillmar><registry/><registryx/><registry/></Quillmar>", Result::g_ulRefused, false, 1},
        {"<Quillmar stay='yes'><folder/></Quillmar>", Result::g_ulRefused, true, 0},
        {"<Quillmar stay='yes'><registry/>", Result::g_ulFailed, false, 0},
        {"", Result::g_ulFailed, false, 0},
    };
    for (const auto& [szDocument, ulResult, bStays, uRegistries] : aRow) {
        SCOPED_TRACE(szDocument);
        const std::wstring tszPath = m_cBench.Describe(L"file.xml", szDocument);
        EXPECT_EQ(Read(tszPath), ulResult);
        EXPECT_EQ(std::filesystem::exists(tszPath), bStays);
        EXPECT_EQ(m_stConfig.lstRegistry.size(), uRegistries);
    }
}

TEST_F(LocalUpdate, WhatIsMissingOrCannotBeLookedForOrReadIsToldApart)
{
    const std::wstring tszMissing = m_cBench.Folder().File(L"missing.xml");
    const std::wstring tszBad = m_cBench.Describe(L"bad.xml", "<Quillmar>\n<registry></Quillmar>");
    const TraceRecorder cTrace(0x110);
    EXPECT_EQ(DoActionAsLocalUpdate(m_stWorker, &tszMissing), Result::g_ulPartialSuccess);
    EXPECT_EQ(UpdateBench::Send(m_cBench.Folder().File(L"no folder\\x.xml")), Result::g_ulUndetermined);
    EXPECT_EQ(Read(L""), Result::g_ulUndetermined);
    EXPECT_EQ(Read(tszBad), Result::g_ulFailed);
    EXPECT_EQ(CFunctionXml().SendMessage(1, 7, 0, nullptr, 0, 0, nullptr), Result::g_ulMissingObject);
    const std::wstring tszQuery = L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - ";
    EXPECT_EQ(cTrace.Lines(),
              Lines({tszQuery + L"File [" + tszMissing + L"] was not found.",
                     L"@@@ *** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() partially failed. [" +
                         tszMissing + L"] [0x00040202]",
                     L"@@@ _ulMessageType: 0x00000001, _ulMessageSubType: 0x00000000, _ulMessageOption: 0x00000000, "
                     L"_ulOption: 0x00000000",
                     tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x00000003]",
                     L"!!! *** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() failed. [0x80040202]",
                     L"!!! *** CFunctionProvider::SendMessage() - pFunctionXml->DoAction() failed. [0x80040202], "
                     L"MT[0x00000001],MST[0x00000000]",
                     tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x000000a0]",
                     tszQuery + L"Got ZkCommon::Storage::XmlException(). [0x00000006]",
                     tszQuery + L"Xml Error [0x00000007] line [2] file [" + tszBad + L"]",
                     tszQuery + L"ptszXmlPath was invalid."}));
}

TEST_F(LocalUpdate, ADescriptionThatSomebodyElseHasOpenStaysAndNothingIsApplied)
{
    const std::string sItems = Reg({"create+no"}, "@K@", "HKCU");
    constexpr DWORD aHolder[][2] = {{GENERIC_WRITE, 0},
                                    {GENERIC_WRITE, FILE_SHARE_READ},
                                    {GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE},
                                    {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}};
    for (const auto& [ulAccess, ulShare] : aHolder) {
        const std::wstring tszPath = m_cBench.Describe(sItems);
        const FileHandle hFile(::CreateFileW(tszPath.c_str(), ulAccess, ulShare, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess) << ulAccess << " with " << ulShare;
        EXPECT_TRUE(std::filesystem::exists(tszPath));
        EXPECT_TRUE(m_cBench.Snapshot().empty());
    }
    const std::wstring tszPath = m_cBench.Describe(sItems);
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_READONLY);
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess);
    EXPECT_EQ(cTrace.Lines(), Lines({L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - "
                                     L"ZkCommon::Storage::File::Delete() failed. [0x00000005]"}));
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulSuccess);
    EXPECT_THAT(m_cBench.Snapshot(), ElementsAre(L"user"));
}

} // namespace
