// The version information, which only CFunctionXml gives.

#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TempFolder.h"
#include "TraceRecorder.h"
#include "ZkComn_String.h"

#include <gmock/gmock.h>
#include <vector>

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class VersionInfo : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        return CFunctionXml().QueryValue(
            {.ulValueType = ValueType::g_ulVersionInfo, .pValueData = &m_vecEntry, .pOptionData = &m_stDirectory});
    }
    void Store(std::string_view _svXml) const { m_cFolder.Write(L"CmpVerIf.xml", _svXml); }

    TempFolder m_cFolder;
    XmlDirectoryConfig m_stDirectory{{}, m_cFolder.Path().wstring()};
    std::vector<VersionInformation> m_vecEntry = std::vector<VersionInformation>(1);
};

TEST_F(VersionInfo, EveryFieldIsReadAndFlagsCompareExactly)
{
    Store(R"(<QmrVersionInfo>
        <VersionInfo component="Enforce" puid="0x10" version="17.0.&#xE4;" directDeploy="enable"
            followProductversion="yes"><UpdateHashFile name="u1"/><MigrateFile name="m1"/><MigrateFile name=""/>
            <MigrateFile/><MigrateFile name="m2"/><Other name="x"/></VersionInfo>
        <VersionInfo component="pattern" puid="010" directDeploy="Enable" followProductversion="Yes"/>
    </QmrVersionInfo>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecEntry.size(), 2U);
    const VersionInformation& stFirst = m_vecEntry[0];
    EXPECT_EQ(stFirst.iComponentType, 3);
    EXPECT_EQ(stFirst.ulPuId, 16U);
    EXPECT_EQ(stFirst.tszVersion, L"17.0.\u00E4");
    EXPECT_TRUE(stFirst.bDirectDeploy);
    EXPECT_TRUE(stFirst.bFollowProductVersion);
    EXPECT_THAT(stFirst.lstMigrateFile, ElementsAre(L"m1", L"m2"));
    EXPECT_THAT(stFirst.lstUpdateHashFile, ElementsAre(L"u1"));
    const VersionInformation& stSecond = m_vecEntry[1];
    EXPECT_EQ(stSecond.iComponentType, 0);
    EXPECT_EQ(stSecond.ulPuId, 8U);
    EXPECT_FALSE(stSecond.bDirectDeploy);
    EXPECT_FALSE(stSecond.bFollowProductVersion);
    EXPECT_THAT(stSecond.lstMigrateFile, IsEmpty());
}

TEST_F(VersionInfo, AnEntryWhoseNumberIsNotWholeIsSkippedSilently)
{
    Store(R"(<QmrVersionInfo><VersionInfo puid="12abc"/><VersionInfo puid=""/><VersionInfo/>
        <VersionInfo puid="4294967296"/><VersionInfo puid="0x"/><VersionInfo puid="4294967295"/></QmrVersionInfo>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecEntry.size(), 1U);
    EXPECT_EQ(m_vecEntry[0].ulPuId, 0xFFFFFFFFU);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00020000],VST[0x00000000]",
                                            L".w. [Enter] CFunctionXml::QueryValueAsVersionInfo()...",
                                            L"@@@ Xml parser directory: " + m_stDirectory.tszXmlDir + L"\\",
                                            L".w. [Leave] CFunctionXml::QueryValueAsQmrConfig()...",
                                            L".w. [Leave] CFunctionXml::QueryValue()..."));
}

TEST_F(VersionInfo, ABadDocumentIsToldInTwoLinesWithItsPath)
{
    Store("<QmrVersionInfo>\n<VersionInfo puid=\"1\"/>\n</QmrVersion>");
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(m_vecEntry, IsEmpty());
    using ZkCommon::String::FromAnsi, ZkCommon::String::ToAnsi; // in which exceptions carry paths
    const std::wstring tszFile = FromAnsi(ToAnsi(m_cFolder.File(L"CmpVerIf.xml")));
    const std::wstring tszLine =
        L"*** CFunctionXml::QueryValueAsVersionInfo() - Got ZkCommon::Storage::XmlException() failed. ";
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(tszLine + L"[0x00000006] [3]", tszLine + L"[" + tszFile + L"] [0x00000006] [3]"));
}

TEST_F(VersionInfo, WhatIsMissingIsNamedAfterTheOutputIsEmptied)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.QueryValueAsVersionInfo({}), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.QueryValueAsVersionInfo({.pValueData = &m_vecEntry}), Result::g_ulMissingObject);
    EXPECT_THAT(m_vecEntry, IsEmpty());
    m_stDirectory.tszXmlDir.clear();
    EXPECT_EQ(cFunctionXml.QueryValueAsVersionInfo({.pValueData = &m_vecEntry, .pOptionData = &m_stDirectory}),
              Result::g_ulMissingObject);
    EXPECT_THAT(
        cTrace.Messages(),
        ElementsAre(L"*** CFunctionXml::QueryValueAsVersionInfo() - pVersionInformation was invalid.",
                    L"*** CFunctionXml::QueryValueAsVersionInfo() - pXmlDirectoryConfig was invalid.",
                    L"*** CFunctionXml::QueryValueAsVersionInfo() - pXmlDirectoryConfig->tszXmlDir was empty."));
}

} // namespace
