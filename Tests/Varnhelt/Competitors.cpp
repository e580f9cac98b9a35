// The databases of other vendors' products.

#include "DocumentTest.h"

namespace {

using CompetitorActions = DocumentTest<ValueType::g_ulCompetitorAction, std::vector<CompetitorAction>>;
using CompetitorDetections = DocumentTest<ValueType::g_ulCompetitorDetection, std::vector<CompetitorDetection>>;

TEST_F(CompetitorActions, AreReadInTheirOrderAndAProductWithoutThemIsOneToo)
{
    Write(R"(<CompetitorAction><Sequence><Product ID="1" category="c" vendor="V&#xE4;" cpu="x86" registered="yes">
        <Action on="install" name="n1" version="8.0" versionCompare="less"/><!-- no action --><Action/>
        </Product><Product ID="2"><Other/></Product></Sequence></CompetitorAction>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records,
              Records({{{L"1", L"c", L"V\u00E4", L"x86", L"yes"}, {{L"install", L"n1", L"8.0", L"less"}, {}}},
                       {{L"2", L"", L"", L"", L""}, {}}}));
}

TEST_F(CompetitorDetections, TakeEveryFieldFromItsChildAndTheDefaultWhereItIsMissingOrWrittenOtherwise)
{
    Write(R"(<CompetitorDetection><Product ID="7" vendor="V">
        <Information manufacturer="M" url="U">remove it</Information>
        <Identification selfreboot="no" specialidentify="yes">
          <Path base="pb" wownode="Enable">p\q</Path><Key name="kn" type="kt" compare="kc">kv</Key>
          <UninstallString base="ub" wownode="Enable">u</UninstallString>
        </Identification><Identification/><Identification selfreboot="No" specialidentify="Yes">
          <Path wownode="enable"/><UninstallString wownode="yes"/></Identification></Product></CompetitorDetection>)");
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    const CompetitorIdentification stAll = {false, true,  L"pb", true,  L"p\\q", L"kn",
                                            L"kt", L"kc", L"kv", L"ub", true,    L"u"};
    const CompetitorIdentification stNone = {true, false, L"", false, L"", L"", L"", L"", L"", L"", false, L""};
    EXPECT_EQ(m_Records, Records({{{L"7", L"", L"V", L"", L""}, {stAll, stNone, stNone}, L"M", L"U", L"remove it"}}));
    EXPECT_EQ(cTrace.Messages(), Lines({L"Xml parser directory: " + m_tszFolder}));
}

TEST_F(CompetitorDetections, TellOfABadDocumentUnderTheActionReadersName)
{
    Write("<CompetitorDetection>");
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_EQ(cTrace.Messages(), Lines({L"*** CFunctionXml::QueryValueAsInstallCompetitorActionDB() - Got "
                                        L"ZkCommon::Storage::XmlException() failed. [0x00000006]"}));
}

} // namespace
