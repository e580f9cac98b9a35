// What all documents share: requests from which something is missing, and documents that are missing, damaged or empty.

#include "DocumentTest.h"
#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/EnforceData.h"
#include "Documents/KeyConfig.h"
#include "Documents/Policy.h"
#include "Documents/PuIds.h"
#include "Documents/RegistryData.h"
#include "Documents/ServiceUnits.h"
#include "Documents/Threats.h"
#include "Documents/VersionInfo.h"

#include <utility>

using namespace Varnhelt;

namespace {

using Outcome = std::pair<std::uint32_t, std::size_t>; // the result, and how much there is then in the list

/** Carries a request out on a list with so many entries. */
template <class TList, std::size_t t_uEntries = 2>
Outcome Try(Handler _pfnHandler, void* _pOption)
{
    TList list(t_uEntries);
    const std::uint32_t ulResult =
        CarryOut(_pfnHandler, {.ulValueSubType = 1, .pValueData = &list, .pOptionData = _pOption});
    return {ulResult, list.size()};
}

template <>
Outcome Try<InstallPuIds>(Handler _pfnHandler, void*)
{
    InstallPuIds stPuIds{{1}, {2}, {3}, {4}, 5};
    const std::uint32_t ulResult = CarryOut(_pfnHandler, {.pValueData = &stPuIds});
    return {ulResult, stPuIds.vecPattern.size() + stPuIds.vecEngine.size() + stPuIds.vecProduct.size() +
                          stPuIds.vecReserved.size() + stPuIds.ulReserved};
}

template <>
Outcome Try<ThreatText>(Handler _pfnHandler, void*)
{
    ThreatText stText{0, L"before", L"before"};
    const std::uint32_t ulResult = CarryOut(_pfnHandler, {.pValueData = &stText});
    return {ulResult, stText.tszText == L"before" && stText.tszSecondText == L"before" ? 0 : 1};
}

/** One way to read or write a document. */
struct Way
{
    DocumentId enDocument;
    Handler pfnHandler;
    std::wstring tszMethod;
    std::wstring tszRecord;                      // as its lines call it
    Outcome (*pfnTry)(Handler, void*) = nullptr; // null: only what lacks a record goes as everywhere
    bool bOwnTexts = false;                      // has lines of its own for documents at fault
};

const Way g_aWay[] = {
    {DocumentId::ServiceUnits, METHOD(QueryValueAsServiceUnit), L"pArrayOfUnitService", &Try<std::vector<ServiceUnit>>},
    {DocumentId::Policy, METHOD(QueryValueAsEnforcePolicy), L"pArrayOfEnPolicy", &Try<std::vector<PolicyController>>},
    {DocumentId::Policy, METHOD(StoreValueAsEnforcePolicy), L"pArrayOfEnPolicy",
     &Try<std::vector<PolicyController>, 0>},
    {DocumentId::Policy, METHOD(QueryValueAsSpecificEnforcePolicy), L"pPolicyCtl"},
    {DocumentId::EnforceData, METHOD(QueryValueAsEnforceData), L"pArrayOfEnData", &Try<std::vector<DataController>>},
    {DocumentId::PuIds, METHOD(QueryValueAsInstallPuIds), L"pPuIds", &Try<InstallPuIds>},
    {DocumentId::VersionInfo, METHOD(QueryValueAsVersionInfo), L"pVersionInformation",
     &Try<std::vector<VersionInformation>>, true},
    {DocumentId::CompetitorActions, METHOD(QueryValueAsInstallCompetitorActionDB), L"pArrayCompetitorAction",
     &Try<std::vector<CompetitorAction>>},
    {DocumentId::CompetitorDetections, METHOD(QueryValueAsInstallCompetitorDetectionDB), L"pArrayCompetitorDetection",
     &Try<std::vector<CompetitorDetection>>, true},
    {DocumentId::Compatibility, METHOD(QueryValueAsInstallCompatibilityCheckDB), L"pArrayCompatibilityOSCheckEntry",
     &Try<std::vector<CompatibilityPlatform>>},
    {DocumentId::Alias, METHOD(QueryValueAsDeployAliasConfig), L"pstDeployAliasConfig", &Try<DeployAliasConfig>, true},
    {DocumentId::Alias, METHOD(StoreValueAsDeployAliasConfig), L"pstDeployAliasConfig", &Try<DeployAliasConfig, 0>,
     true},
    {DocumentId::Component, METHOD(QueryValueAsDeployComponentConfig), L"pstDeployComponentConfig",
     &Try<DeployComponentConfig>, true},
    {DocumentId::KeyConfig, METHOD(QueryValueAsKeyConfig), L"pKeyConfig", &Try<std::vector<DeployKey>>},
    {DocumentId::RegistryData, METHOD(QueryValueAsRegistryData), L"pRegistryConfig", &Try<std::vector<RegistryData>>,
     true},
    {DocumentId::ThreatsOrkap, METHOD(QueryThreateNameORKAP), L"pThreatText", &Try<ThreatText>},
    {DocumentId::ThreatsElmap, METHOD(QueryThreateNameELMAP), L"pThreatText", &Try<ThreatText>},
    {DocumentId::ThreatsElmap, METHOD(QueryThreateDesELMAP), L"pThreatText", &Try<ThreatText>},
    {DocumentId::ThreatsElmap, METHOD(QueryThreateRecELMAP), L"pThreatText", &Try<ThreatText>},
    {DocumentId::ThreatsElmap, METHOD(QueryTitleELMAP), L"pThreatText", &Try<ThreatText>},
};

void PrintTo(const Way& _rstWay, std::ostream* _pStream)
{
    *_pStream << testing::PrintToString(_rstWay.tszMethod);
}

class AnyDocument : public testing::TestWithParam<Way>
{
protected:
    /** @param _rtszLast  the last line; empty: not compared */
    Lines Expect(std::uint32_t _ulResult, const std::wstring& _rtszLast)
    {
        const Lines vecBefore = m_cProduct.Leftovers();
        const TraceRecorder cTrace(0x101);
        EXPECT_EQ(m_stWay.pfnTry(m_stWay.pfnHandler, m_pOption), Outcome(_ulResult, 0));
        Lines vecLine = cTrace.Messages();
        EXPECT_EQ(vecLine.front(), L"[Enter] " + m_stWay.tszMethod + L"...");
        EXPECT_EQ(vecLine.back(), _rtszLast.empty() ? vecLine.back() : _rtszLast);
        EXPECT_EQ(m_cProduct.Leftovers(), vecBefore);
        return vecLine;
    }

    const Way m_stWay = GetParam();
    const Document& m_rstDocument = DocumentOf(m_stWay.enDocument);
    const wchar_t* m_pszFile = m_rstDocument.pszFile != nullptr ? m_rstDocument.pszFile : L"d";
    const std::wstring m_tszError = L"*** " + m_stWay.tszMethod + L" - ";
    TestProduct m_cProduct;
    XmlPathConfig m_stPath{{{}, m_cProduct.Folder().Path().wstring()}, m_pszFile}; // begins with the directory's record
    RegistryDataRequest m_stData{{}, m_cProduct.Folder().File(m_pszFile)};
    void* m_pOption = m_stWay.enDocument == DocumentId::RegistryData ? static_cast<void*>(&m_stData) : &m_stPath;
};

INSTANTIATE_TEST_SUITE_P(Ways, AnyDocument, testing::ValuesIn(g_aWay));

TEST_P(AnyDocument, WhatARequestLacksIsNamedAndItsListIsEmpty)
{
    XmlPathConfig stNoFolder{{}, L"d"};
    XmlPathConfig stNoFile{{{}, L"C:\\"}, L""};
    const struct
    {
        Location enLocation;
        void* pOption;
        const wchar_t* pszLine;
    } aLacking[] = {
        {Location::Directory, nullptr, L"pXmlDirectoryConfig was invalid."},
        {Location::Directory, &stNoFolder, L"pXmlDirectoryConfig->tszXmlDir was empty."},
        {Location::Path, nullptr, L"pstXmlPathConfig was invalid."},
        {Location::Path, &stNoFolder, L"pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir was empty."},
        {Location::Path, &stNoFile, L"tszXmlFileName was empty."},
    };
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(CarryOut(m_stWay.pfnHandler, {}), Result::g_ulMissingObject);
    Lines vecExpected{m_stWay.tszRecord + L" was invalid."};
    for (const auto& stLacking : aLacking) {
        if (stLacking.enLocation == m_rstDocument.enLocation && m_pOption == &m_stPath) {
            EXPECT_EQ(m_stWay.pfnTry(m_stWay.pfnHandler, stLacking.pOption), Outcome(Result::g_ulMissingObject, 0));
            vecExpected.emplace_back(stLacking.pszLine);
        }
    }
    EXPECT_EQ(cTrace.Messages(), Behind(m_tszError, vecExpected));
}

TEST_P(AnyDocument, FailsWhileItIsMissingOrDamagedAndIsReadWhileItIsEmpty)
{
    if (m_stWay.pfnTry == nullptr) {
        return;
    }
    const auto XmlLine = [&](const wchar_t* _pszCode) {
        return m_stWay.bOwnTexts ? L"" : m_tszError + L"Got ZkCommon::Storage::XmlException() failed. " + _pszCode;
    };
    const bool bInstalled = m_rstDocument.enLocation == Location::Installed;
    const auto ExpectNoFile = [&](const wchar_t* _pszCode) {
        return m_rstDocument.szKey == nullptr ? Expect(Result::g_ulFailed, XmlLine(_pszCode))
               : bInstalled                   ? Expect(Result::g_ulFailed, m_tszError + L"tszXmlFile is empty")
                            : Expect(Result::g_ulMissingObject, m_tszError + L"tszXmlPath was empty.");
    };
    ExpectNoFile(L"[0x00000002]");

    std::string sHead;
    std::string sTail;
    for (const auto& element : std::filesystem::path(m_rstDocument.pszRoot).relative_path()) {
        sHead += "<" + element.string() + ">";
        sTail.insert(0, "</" + element.string() + ">");
    }
    for (const std::string& sDamaged :
         {sHead, sHead + sTail + "<tail/>", sHead + "\xFF\xFE" + sTail,
          "<?xml version='1.0' encoding='x-unknown'?>" + sHead + sTail, std::string("no document at all")}) {
        m_cProduct.Store(m_stWay.enDocument, sDamaged, m_pszFile);
        Expect(Result::g_ulFailed, XmlLine(L"[0x00000006]"));
        EXPECT_EQ(m_cProduct.Plain(m_stWay.enDocument, m_pszFile), sDamaged);
    }
    const bool bLookUp = m_stWay.tszRecord == L"pThreatText"; // which then finds nothing
    for (const std::string& sEmpty : {"<Other>" + sHead + sTail + "</Other>", sHead + sTail}) {
        m_cProduct.Store(m_stWay.enDocument, sEmpty, m_pszFile);
        Expect(bLookUp ? Result::g_ulFailed : Result::g_ulSuccess,
               bLookUp || m_stWay.bOwnTexts ? L"" : L"[Leave] " + m_stWay.tszMethod + L"...");
    }
    TestProduct::Unregister();
    if (bInstalled) {
        EXPECT_THAT(ExpectNoFile(L"[0x00000003]"), testing::Contains(L"*** Frwk::Utility::GetInstalledFolder() -  Got "
                                                                     L"ZkCommon::Storage::Exception(). [0x00000002]"));
    }
}

} // namespace
