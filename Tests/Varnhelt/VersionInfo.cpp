// The version information, which only CFunctionXml gives.

#include "DocumentTest.h"
#include "ZkComn_String.h"

namespace {

using VersionInfo = DocumentTest<ValueType::g_ulVersionInfo, std::vector<VersionInformation>>;

TEST_F(VersionInfo, FlagsCompareExactlyAndAnEntryWhoseNumberIsNotWholeIsSkippedSilently)
{
    Write(R"(<QmrVersionInfo>
        <VersionInfo component="Enforce" puid="0x10" version="17.0.&#xE4;" directDeploy="enable"
            followProductversion="yes"><UpdateHashFile name="u1"/><MigrateFile name="m1"/><MigrateFile name=""/>
            <MigrateFile/><MigrateFile name="m2"/><Other name="x"/></VersionInfo>
        <VersionInfo component="pattern" puid="010" directDeploy="Enable" followProductversion="Yes"/>
        <VersionInfo puid="12abc"/><VersionInfo puid=""/><VersionInfo/><VersionInfo puid="4294967296"/>
        <VersionInfo puid="0x"/><VersionInfo puid="4294967295"/></QmrVersionInfo>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records, Records({{3, 16, L"17.0.\u00E4", true, true, {L"m1", L"m2"}, {L"u1"}},
                                  {0, 8, L"", false, false, {}, {}},
                                  {0, 0xFFFFFFFF, L"", false, false, {}, {}}}));
    EXPECT_EQ(ReaderLines(cTrace), Lines({L".w. [Enter] CFunctionXml::QueryValueAsVersionInfo()...",
                                          L"@@@ Xml parser directory: " + m_tszFolder,
                                          L".w. [Leave] CFunctionXml::QueryValueAsQmrConfig()..."}));
}

TEST_F(VersionInfo, ABadDocumentIsToldInTwoLinesWithItsPath)
{
    Write("<QmrVersionInfo>\n<VersionInfo puid=\"1\"/>\n</QmrVersion>");
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(m_Records, IsEmpty());
    using ZkCommon::String::FromAnsi, ZkCommon::String::ToAnsi; // in which exceptions carry paths
    const std::wstring tszFile = FromAnsi(ToAnsi(m_cProduct.Folder().File(L"CmpVerIf.xml")));
    const std::wstring tszLine =
        L"*** CFunctionXml::QueryValueAsVersionInfo() - Got ZkCommon::Storage::XmlException() failed. ";
    EXPECT_EQ(cTrace.Messages(),
              Lines({tszLine + L"[0x00000006] [3]", tszLine + L"[" + tszFile + L"] [0x00000006] [3]"}));
}

} // namespace
