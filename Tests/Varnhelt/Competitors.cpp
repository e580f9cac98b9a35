// The databases of other vendors' products.

#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TempFolder.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <vector>

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Competitors : public testing::Test
{
protected:
    std::uint32_t QueryActions(const std::string& _rsSequence)
    {
        m_cFolder.Write(L"rivalact.xml",
                        "<CompetitorAction><Sequence>" + _rsSequence + "</Sequence></CompetitorAction>");
        return CFunctionProvider().QueryValue(0, ValueType::g_ulCompetitorAction, 0, &m_vecAction, 0, &m_stDirectory);
    }
    std::uint32_t QueryDetections(const std::string& _rsProducts)
    {
        m_cFolder.Write(L"rivaldet.xml", "<CompetitorDetection>" + _rsProducts + "</CompetitorDetection>");
        return CFunctionProvider().QueryValue(0, ValueType::g_ulCompetitorDetection, 0, &m_vecDetection, 0,
                                              &m_stDirectory);
    }

    TempFolder m_cFolder;
    XmlDirectoryConfig m_stDirectory{{}, m_cFolder.Path().wstring()};
    std::vector<CompetitorAction> m_vecAction = std::vector<CompetitorAction>(1);
    std::vector<CompetitorDetection> m_vecDetection = std::vector<CompetitorDetection>(1);
};

TEST_F(Competitors, ActionsAreReadInTheirOrderAndAProductWithoutThemIsOneToo)
{
    ASSERT_EQ(QueryActions(R"(<Product ID="1" category="c" vendor="V&#xE4;" cpu="x86" registered="yes">
        <Action on="install" name="n1" version="8.0" versionCompare="less"/><!-- no action --><Action/>
        </Product><Product ID="2"><Other/></Product>)"),
              Result::g_ulSuccess);
    ASSERT_EQ(m_vecAction.size(), 2U);
    const CompetitorAction& stFirst = m_vecAction[0];
    EXPECT_EQ(stFirst.tszId, L"1");
    EXPECT_EQ(stFirst.tszCategory, L"c");
    EXPECT_EQ(stFirst.tszVendor, L"V\u00E4");
    EXPECT_EQ(stFirst.tszProcessor, L"x86");
    EXPECT_EQ(stFirst.tszRegistered, L"yes");
    ASSERT_EQ(stFirst.lstAction.size(), 2U);
    EXPECT_EQ(stFirst.lstAction.front().tszOn, L"install");
    EXPECT_EQ(stFirst.lstAction.front().tszName, L"n1");
    EXPECT_EQ(stFirst.lstAction.front().tszVersion, L"8.0");
    EXPECT_EQ(stFirst.lstAction.front().tszVersionCompare, L"less");
    EXPECT_EQ(m_vecAction[1].tszId, L"2");
    EXPECT_THAT(m_vecAction[1].lstAction, IsEmpty());
}

TEST_F(Competitors, EveryFieldOfADetectionIsReadFromItsChild)
{
    ASSERT_EQ(QueryDetections(R"(<Product ID="7" vendor="V">
        <Information manufacturer="M" url="U">remove it</Information>
        <Identification selfreboot="no" specialidentify="yes">
          <Path base="pb" wownode="Enable">p\q</Path>
          <Key name="kn" type="kt" compare="kc">kv</Key>
          <UninstallString base="ub" wownode="Enable">u</UninstallString>
        </Identification></Product>)"),
              Result::g_ulSuccess);
    ASSERT_EQ(m_vecDetection.size(), 1U);
    const CompetitorDetection& stProduct = m_vecDetection[0];
    EXPECT_EQ(stProduct.tszId + stProduct.tszVendor, L"7V");
    EXPECT_EQ(stProduct.tszManufacturer, L"M");
    EXPECT_EQ(stProduct.tszUrl, L"U");
    EXPECT_EQ(stProduct.tszInformation, L"remove it");
    ASSERT_EQ(stProduct.lstIdentification.size(), 1U);
    const CompetitorIdentification& stWay = stProduct.lstIdentification.front();
    EXPECT_FALSE(stWay.bSelfReboot);
    EXPECT_TRUE(stWay.bSpecialIdentify);
    EXPECT_EQ(stWay.tszPathBase, L"pb");
    EXPECT_TRUE(stWay.bPathWowNode);
    EXPECT_EQ(stWay.tszPath, L"p\\q");
    EXPECT_EQ(stWay.tszKeyName, L"kn");
    EXPECT_EQ(stWay.tszKeyType, L"kt");
    EXPECT_EQ(stWay.tszKeyCompare, L"kc");
    EXPECT_EQ(stWay.tszKeyValue, L"kv");
    EXPECT_EQ(stWay.tszUninstallBase, L"ub");
    EXPECT_TRUE(stWay.bUninstallWowNode);
    EXPECT_EQ(stWay.tszUninstallString, L"u");
}

TEST_F(Competitors, WhatIsMissingOrWrittenOtherwiseTakesTheDefault)
{
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(QueryDetections(R"(<Product><Identification/><Identification selfreboot="No" specialidentify="Yes">
        <Path wownode="enable"/><UninstallString wownode="yes"/></Identification></Product>)"),
              Result::g_ulSuccess);
    ASSERT_EQ(m_vecDetection.at(0).lstIdentification.size(), 2U);
    for (const CompetitorIdentification& stWay : m_vecDetection[0].lstIdentification) {
        EXPECT_TRUE(stWay.bSelfReboot);
        EXPECT_FALSE(stWay.bSpecialIdentify || stWay.bPathWowNode || stWay.bUninstallWowNode);
        EXPECT_EQ(stWay.tszPath + stWay.tszKeyName + stWay.tszKeyValue + stWay.tszUninstallString, L"");
    }
    EXPECT_EQ(m_vecDetection[0].tszInformation, L"");
    EXPECT_THAT(cTrace.Messages(), ElementsAre(L"Xml parser directory: " + m_stDirectory.tszXmlDir + L"\\"));
}

TEST_F(Competitors, BothTellOfABadDocumentUnderTheActionReadersName)
{
    const TraceRecorder cTrace(0x101);
    EXPECT_EQ(QueryActions("<Product>"), Result::g_ulFailed);
    EXPECT_EQ(QueryDetections("<Product>"), Result::g_ulFailed);
    EXPECT_THAT(m_vecAction, IsEmpty());
    EXPECT_THAT(m_vecDetection, IsEmpty());
    std::vector<std::wstring> vecLine;
    for (const std::wstring& tszLine : cTrace.Lines()) {
        if (tszLine.find(L"InstallCompetitor") != std::wstring::npos) {
            vecLine.push_back(tszLine);
        }
    }
    const wchar_t* pszFailure = L"!!! *** CFunctionXml::QueryValueAsInstallCompetitorActionDB() - Got "
                                L"ZkCommon::Storage::XmlException() failed. [0x00000006]";
    EXPECT_THAT(vecLine,
                ElementsAre(L".w. [Enter] CFunctionXml::QueryValueAsInstallCompetitorActionDB()...", pszFailure,
                            L".w. [Enter] CFunctionXml::QueryValueAsInstallCompetitorDetectionDB()...", pszFailure));
}

TEST_F(Competitors, WhatIsMissingInTheRequestIsNamed)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.QueryValueAsInstallCompetitorActionDB({}), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.QueryValueAsInstallCompetitorDetectionDB({}), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.QueryValueAsInstallCompetitorActionDB({.pValueData = &m_vecAction}),
              Result::g_ulMissingObject);
    m_stDirectory.tszXmlDir.clear();
    EXPECT_EQ(cFunctionXml.QueryValueAsInstallCompetitorDetectionDB(
                  {.pValueData = &m_vecDetection, .pOptionData = &m_stDirectory}),
              Result::g_ulMissingObject);
    EXPECT_THAT(m_vecAction, IsEmpty());
    EXPECT_THAT(m_vecDetection, IsEmpty());
    const std::wstring tszActions = L"*** CFunctionXml::QueryValueAsInstallCompetitorActionDB() - ";
    const std::wstring tszDetections = L"*** CFunctionXml::QueryValueAsInstallCompetitorDetectionDB() - ";
    EXPECT_THAT(cTrace.Messages(), ElementsAre(tszActions + L"pArrayCompetitorAction was invalid.",
                                               tszDetections + L"pArrayCompetitorDetection was invalid.",
                                               tszActions + L"pXmlDirectoryConfig was invalid.",
                                               tszDetections + L"pXmlDirectoryConfig->tszXmlDir was empty."));
}

} // namespace
