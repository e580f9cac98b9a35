// Threat names, descriptions and recommendations, and scanner titles.

#include "Threats.h"

#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <string>

using namespace SrvFrwk;
using testing::ElementsAre;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szTable = R"(<Quillmar>
  <Scanners><Scanner id="1"><Name>Sucher</Name><Desc>sucht &amp; findet</Desc></Scanner><Scanner id="2"/></Scanners>
  <Threats>
    <!-- the table --><Other id="5"><Name>other</Name></Other>
    <Threat id="7"><Threat id="5"><Name>inner</Name></Threat><Name>seven</Name></Threat>
    <Threat id=" +5x" more="1"><Name>f&#xFC;nf&#x1F512;</Name><Description> a
b </Description><Recommendation>delete</Recommendation></Threat>
    <Threat id="5"><Name>second</Name></Threat>
    <Threat id="-1"><Name>minus</Name></Threat><Threat id="4294967294"><Name>large</Name></Threat>
    <Threat><Name>none</Name></Threat><Threat id="0"><Name>zero</Name></Threat>
    <Threat id="9"/><threat id="10"/>
  </Threats><Threats><Threat id="11"/></Threats></Quillmar>)";

class Threats : public testing::Test
{
protected:
    /** The text that was found, or what was there before. */
    std::wstring Query(std::uint32_t _ulValueType, std::uint32_t _ulIdentifier)
    {
        m_stText = {_ulIdentifier, L"before", L"before"};
        CFunctionProvider cProvider;
        m_ulResult = cProvider.QueryValue(0, _ulValueType, 0, &m_stText, 0, nullptr);
        return m_stText.tszText;
    }

    TestProduct m_cProduct;
    ThreatText m_stText;
    std::uint32_t m_ulResult = 0;
};

struct FoundRow
{
    int iLine;
    std::uint32_t ulIdentifier;
    const wchar_t* pszName; // null: not found
};

constexpr FoundRow g_aFound[] = {
    {__LINE__, 7, L"seven"},
    {__LINE__, 5, L"f\u00FCnf\U0001F512"},
    {__LINE__, 0xFFFFFFFF, L"minus"},
    {__LINE__, 0xFFFFFFFE, L"large"},
    {__LINE__, 0, L"none"}, // what is no number stands for 0
    {__LINE__, 9, L""},
    {__LINE__, 10, nullptr}, // names compare with case
    {__LINE__, 11, nullptr}, // the first table counts
    {__LINE__, 1, nullptr},  // that is a scanner
};

TEST_F(Threats, TheFirstElementWithTheNumberGivesItsName)
{
    m_cProduct.Store(DocumentId::ThreatsOrkap, g_szTable);
    for (const FoundRow& stRow : g_aFound) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, stRow.ulIdentifier),
                  stRow.pszName != nullptr ? stRow.pszName : L"before");
        EXPECT_EQ(m_ulResult, stRow.pszName != nullptr ? Result::g_ulSuccess : Result::g_ulFailed);
        EXPECT_EQ(m_stText.ulIdentifier, stRow.ulIdentifier);
        EXPECT_EQ(m_stText.tszSecondText, L"before");
    }
}

TEST_F(Threats, EachLookUpHasItsOwnTableAndText)
{
    m_cProduct.Store(DocumentId::ThreatsElmap, g_szTable);
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 7), L"before");
    EXPECT_EQ(Query(ValueType::g_ulThreatNameElmap, 7), L"seven");
    EXPECT_EQ(Query(ValueType::g_ulThreatDescription, 5), L" a\nb ");
    EXPECT_EQ(Query(ValueType::g_ulThreatRecommendation, 5), L"delete");
    EXPECT_EQ(m_stText.tszSecondText, L"before");
    EXPECT_EQ(Query(ValueType::g_ulScannerTitle, 1), L"Sucher");
    EXPECT_EQ(m_stText.tszSecondText, L"sucht & findet");
    EXPECT_EQ(Query(ValueType::g_ulScannerTitle, 2), L"");
    EXPECT_EQ(m_stText.tszSecondText, L"");
    EXPECT_EQ(Query(ValueType::g_ulScannerTitle, 5), L"before");
    EXPECT_EQ(m_stText.tszSecondText, L"before");
}

TEST_F(Threats, EachLookUpTellsUnderItsOwnName)
{
    TraceRecorder cTrace;
    for (const auto& stLookup : Varnhelt::Documents::g_aTextLookup) {
        const bool bScanner = stLookup.pszSecondText != nullptr;
        m_cProduct.Store(stLookup.enDocument, bScanner ? "<Quillmar><Scanners><Scanner id='3'/></Scanners></Quillmar>"
                                                       : "<Quillmar><Threats><Threat id='3'/></Threats></Quillmar>");
        const std::uint32_t ulValueType = ValueType::g_ulThreatNameOrkap
                                          << (&stLookup - Varnhelt::Documents::g_aTextLookup);
        ThreatText stText{3, {}, {}};
        const Varnhelt::Request stRequest{.ulValueType = ulValueType, .pValueData = &stText};
        CFunctionXml cFunctionXml;
        cTrace.Clear();
        EXPECT_EQ(cFunctionXml.QueryValue(stRequest), Result::g_ulSuccess);
        stText.ulIdentifier = 0xFFFFFFFE;
        EXPECT_EQ(cFunctionXml.QueryValue(stRequest), Result::g_ulFailed);
        m_cProduct.Store(stLookup.enDocument, "<Quillmar>");
        EXPECT_EQ(cFunctionXml.QueryValue(stRequest), Result::g_ulFailed);

        const std::wstring tszMethod = stLookup.pszMethod;
        std::vector<std::wstring> vecLine;
        for (const std::wstring& tszLine : cTrace.Lines()) {
            if (tszLine.find(L"CFunctionXml::QueryValue()") == std::wstring::npos) {
                vecLine.push_back(tszLine);
            }
        }
        EXPECT_THAT(vecLine, ElementsAre(L".w. [Enter] " + tszMethod + L"...", L".w. [Leave] " + tszMethod + L"...",
                                         L".w. [Enter] " + tszMethod + L"...",
                                         bScanner ? L"!!! No <Scanner>: -2" : L"!!! No <Threat>: -2",
                                         L".w. [Enter] " + tszMethod + L"...",
                                         L"!!! *** " + tszMethod +
                                             L" - Got ZkCommon::Storage::XmlException() failed. [0x00000006]"));
    }
}

TEST_F(Threats, ADocumentMustBeWholeBehindTheThreatThatWasFound)
{
    const std::string sHead = "<Quillmar><Threats><Threat id='1'><Name>one</Name></Threat>";
    const std::string sTail = "</Threats></Quillmar>";
    m_cProduct.Store(DocumentId::ThreatsOrkap, sHead + sTail);
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), L"one");
    for (const std::string& sBad : {sHead, sHead + "<Threat>" + sTail, sHead + sTail + "<tail/>", sHead + "&x;" + sTail,
                                    sHead + "\xFF" + sTail, std::string()}) {
        m_cProduct.Store(DocumentId::ThreatsOrkap, sBad);
        EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), L"before") << sBad;
        EXPECT_EQ(m_ulResult, Result::g_ulFailed);
    }
    m_cProduct.Store(DocumentId::ThreatsOrkap, "<Other><Threats><Threat id='1'/></Threats></Other>");
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), L"before");
    TestProduct::Unregister();
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), L"before");
}

} // namespace
