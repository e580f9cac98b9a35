// Threat names, descriptions and recommendations, and scanner titles.

#include "DocumentTest.h"

using namespace SrvFrwk;
using testing::Contains;
using testing::ElementsAre;
using testing::FieldsAre;
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
    std::uint32_t Query(std::uint32_t _ulValueType, std::uint32_t _ulIdentifier)
    {
        m_stText = {_ulIdentifier, L"before", L"before"};
        return (CFunctionXml().*Varnhelt::FindValueType(_ulValueType)->pfnQuery)({.pValueData = &m_stText});
    }
    void StoreBoth(std::string_view _svXml) const
    {
        m_cProduct.Store(DocumentId::ThreatsOrkap, _svXml);
        m_cProduct.Store(DocumentId::ThreatsElmap, _svXml);
    }

    TestProduct m_cProduct;
    ThreatText m_stText;
};

TEST_F(Threats, TheFirstElementWithTheNumberGivesItsTextsAndOtherwiseTheRecordStays)
{
    const struct
    {
        int iLine;
        std::uint32_t ulValueType;
        std::uint32_t ulIdentifier;
        const wchar_t* pszText; // null: not found
        const wchar_t* pszSecondText = L"before";
    } aRow[] = {
        {__LINE__, ValueType::g_ulThreatNameElmap, 7, L"seven"},
        {__LINE__, ValueType::g_ulThreatNameElmap, 5, L"f\u00FCnf\U0001F512"},
        {__LINE__, ValueType::g_ulThreatNameElmap, 0xFFFFFFFF, L"minus"},
        {__LINE__, ValueType::g_ulThreatNameElmap, 0xFFFFFFFE, L"large"},
        {__LINE__, ValueType::g_ulThreatNameElmap, 0, L"none"}, // what is no number stands for 0
        {__LINE__, ValueType::g_ulThreatNameElmap, 9, L""},
        {__LINE__, ValueType::g_ulThreatNameElmap, 10, nullptr}, // names compare with case
        {__LINE__, ValueType::g_ulThreatNameElmap, 11, nullptr}, // the first table counts
        {__LINE__, ValueType::g_ulThreatNameElmap, 1, nullptr},  // that is a scanner
        {__LINE__, ValueType::g_ulThreatNameOrkap, 7, nullptr},  // that is in the other document
        {__LINE__, ValueType::g_ulThreatDescription, 5, L" a\nb "},
        {__LINE__, ValueType::g_ulThreatRecommendation, 5, L"delete"},
        {__LINE__, ValueType::g_ulScannerTitle, 1, L"Sucher", L"sucht & findet"},
        {__LINE__, ValueType::g_ulScannerTitle, 2, L"", L""},
        {__LINE__, ValueType::g_ulScannerTitle, 5, nullptr},
    };
    m_cProduct.Store(DocumentId::ThreatsElmap, g_szTable);
    m_cProduct.Store(DocumentId::ThreatsOrkap, "<Quillmar><Threats/></Quillmar>");
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        EXPECT_EQ(Query(stRow.ulValueType, stRow.ulIdentifier),
                  stRow.pszText != nullptr ? Result::g_ulSuccess : Result::g_ulFailed);
        EXPECT_THAT(m_stText, FieldsAre(stRow.ulIdentifier, stRow.pszText != nullptr ? stRow.pszText : L"before",
                                        stRow.pszSecondText));
    }
}

TEST_F(Threats, EachLookUpTellsUnderItsOwnName)
{
    const std::pair<std::uint32_t, std::wstring> aRow[] = {
        {ValueType::g_ulThreatNameOrkap, L"CFunctionXml::QueryThreateNameORKAP()"},
        {ValueType::g_ulThreatNameElmap, L"CFunctionXml::QueryThreateNameELMAP()"},
        {ValueType::g_ulThreatDescription, L"CFunctionXml::QueryThreateDesELMAP()"},
        {ValueType::g_ulThreatRecommendation, L"CFunctionXml::QueryThreateRecELMAP()"},
        {ValueType::g_ulScannerTitle, L"CFunctionXml::QueryTitleELMAP()"},
    };
    for (const auto& [ulValueType, tszMethod] : aRow) {
        const TraceRecorder cTrace;
        StoreBoth("<Quillmar><Scanners><Scanner id='3'/></Scanners><Threats><Threat id='3'/></Threats></Quillmar>");
        EXPECT_EQ(Query(ulValueType, 3), Result::g_ulSuccess);
        EXPECT_EQ(Query(ulValueType, 0xFFFFFFFE), Result::g_ulFailed);
        StoreBoth("<Quillmar>");
        EXPECT_EQ(Query(ulValueType, 3), Result::g_ulFailed);
        const std::wstring tszEnter = L".w. [Enter] " + tszMethod + L"...";
        EXPECT_THAT(
            cTrace.Lines(),
            ElementsAre(tszEnter, L".w. [Leave] " + tszMethod + L"...", tszEnter,
                        ulValueType == ValueType::g_ulScannerTitle ? L"!!! No <Scanner>: -2" : L"!!! No <Threat>: -2",
                        tszEnter,
                        L"!!! *** " + tszMethod + L" - Got ZkCommon::Storage::XmlException() failed. [0x00000006]"));
    }
}

TEST_F(Threats, ADocumentMustBeWholeBehindTheThreatThatWasFound)
{
    const std::string sHead = "<Quillmar><Threats><Threat id='1'><Name>one</Name></Threat>";
    const std::string sTail = "</Threats></Quillmar>";
    for (const std::string& sBad : {sHead, sHead + "<Threat>" + sTail, sHead + sTail + "<tail/>", sHead + "&x;" + sTail,
                                    sHead + "\xFF" + sTail, std::string(), "<Other>" + sHead + sTail + "</Other>"}) {
        StoreBoth(sBad);
        EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), Result::g_ulFailed) << sBad;
        EXPECT_EQ(m_stText.tszText, L"before") << sBad;
    }
    StoreBoth(sHead + sTail);
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), Result::g_ulSuccess);
    TestProduct::Unregister();
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query(ValueType::g_ulThreatNameOrkap, 1), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Messages(), Contains(L"*** Frwk::Utility::GetInstalledFolder() -  Got "
                                            L"ZkCommon::Storage::Exception(). [0x00000002]"));
}

} // namespace
