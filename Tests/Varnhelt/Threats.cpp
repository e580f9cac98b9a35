// Threat names, descriptions and recommendations, and scanner titles.

#include "Documents/Threats.h"
#include "DocumentTest.h"

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
    std::uint32_t Query(Varnhelt::Handler _pfnHandler, std::uint32_t _ulIdentifier)
    {
        m_stText = {_ulIdentifier, L"before", L"before"};
        return CarryOut(_pfnHandler, {.pValueData = &m_stText});
    }

    TestProduct m_cProduct;
    ThreatText m_stText;
};

TEST_F(Threats, TheFirstElementWithTheNumberGivesItsTextsAndOtherwiseTheRecordStays)
{
    const struct
    {
        int iLine;
        Varnhelt::Handler pfnHandler;
        std::wstring tszMethod;
        std::uint32_t ulIdentifier;
        const wchar_t* pszText;          // null: not found
        std::wstring tszSecondLine = {}; // empty: the leave line
        const wchar_t* pszSecondText = L"before";
    } aRow[] = {
        {__LINE__, METHOD(QueryThreateNameELMAP), 7, L"seven"},
        {__LINE__, METHOD(QueryThreateNameELMAP), 5, L"f\u00FCnf\U0001F512"},
        {__LINE__, METHOD(QueryThreateNameELMAP), 0xFFFFFFFF, L"minus"},
        {__LINE__, METHOD(QueryThreateNameELMAP), 0xFFFFFFFE, L"large"},
        {__LINE__, METHOD(QueryThreateNameELMAP), 0, L"none"}, // what is no number stands for 0
        {__LINE__, METHOD(QueryThreateNameELMAP), 9, L""},
        {__LINE__, METHOD(QueryThreateNameELMAP), 10, nullptr, L"!!! No <Threat>: 10"}, // names compare with case
        {__LINE__, METHOD(QueryThreateNameELMAP), 11, nullptr, L"!!! No <Threat>: 11"}, // the first table counts
        {__LINE__, METHOD(QueryThreateNameELMAP), 1, nullptr, L"!!! No <Threat>: 1"},   // that is a scanner
        {__LINE__, METHOD(QueryThreateNameORKAP), 7, nullptr, L"!!! No <Threat>: 7"},   // that is in the other document
        {__LINE__, METHOD(QueryThreateNameORKAP), 0xFFFFFFFD, L"its own"},
        {__LINE__, METHOD(QueryThreateDesELMAP), 5, L" a\nb "},
        {__LINE__, METHOD(QueryThreateRecELMAP), 5, L"delete"},
        {__LINE__, METHOD(QueryTitleELMAP), 1, L"Sucher", L"", L"sucht & findet"},
        {__LINE__, METHOD(QueryTitleELMAP), 2, L"", L"", L""},
        {__LINE__, METHOD(QueryTitleELMAP), 0xFFFFFFFE, nullptr, L"!!! No <Scanner>: -2"},
    };
    m_cProduct.Store(DocumentId::ThreatsElmap, g_szTable);
    m_cProduct.Store(DocumentId::ThreatsOrkap,
                     "<Quillmar><Threats><Threat id='-3'><Name>its own</Name></Threat></Threats></Quillmar>");
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const TraceRecorder cTrace;
        EXPECT_EQ(Query(stRow.pfnHandler, stRow.ulIdentifier),
                  stRow.pszText != nullptr ? Result::g_ulSuccess : Result::g_ulFailed);
        EXPECT_EQ(m_stText, ThreatText({stRow.ulIdentifier, stRow.pszText != nullptr ? stRow.pszText : L"before",
                                        stRow.pszSecondText}));
        EXPECT_EQ(cTrace.Lines(), Lines({L".w. [Enter] " + stRow.tszMethod + L"...",
                                         stRow.tszSecondLine.empty() ? L".w. [Leave] " + stRow.tszMethod + L"..."
                                                                     : stRow.tszSecondLine}));
    }
}

TEST_F(Threats, ADocumentMustBeWholeBehindTheThreatThatWasFound)
{
    const std::string sHead = "<Quillmar><Threats><Threat id='1'><Name>one</Name></Threat>";
    const std::string sTail = "</Threats></Quillmar>";
    for (const std::string& sBad : {sHead, sHead + "<Threat>" + sTail, sHead + sTail + "<tail/>", sHead + "&x;" + sTail,
                                    sHead + "\xFF" + sTail, std::string()}) {
        m_cProduct.Store(DocumentId::ThreatsOrkap, sBad);
        EXPECT_EQ(Query(&Varnhelt::Documents::QueryThreateNameORKAP, 1), Result::g_ulFailed) << sBad;
        EXPECT_EQ(m_stText.tszText, L"before") << sBad;
    }
    m_cProduct.Store(DocumentId::ThreatsOrkap, sHead + sTail);
    EXPECT_EQ(Query(&Varnhelt::Documents::QueryThreateNameORKAP, 1), Result::g_ulSuccess);
}

} // namespace
