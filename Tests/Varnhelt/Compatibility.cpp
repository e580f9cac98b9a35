// The compatibility database, and the update request that its components go into.

#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <vector>

using namespace SrvFrwk;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Varnhelt::DocumentId;

namespace {

using Lines = std::vector<std::wstring>;

class Compatibility : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        return CFunctionProvider().QueryValue(0, ValueType::g_ulCompatibilityCheck, 0, &m_vecPlatform, 0,
                                              &m_stDirectory);
    }
    /** Stores and queries a document with one product. */
    const CompatibilityProduct& Product(const std::string& _rsXml)
    {
        m_cProduct.Store(DocumentId::Compatibility, "<CompatibilityCheck><Platforms><Platform LeftHandMost='1'>" +
                                                        _rsXml + "</Platform></Platforms></CompatibilityCheck>");
        EXPECT_EQ(Query(), Result::g_ulSuccess);
        EXPECT_EQ(m_vecPlatform.size(), 1U);
        EXPECT_EQ(m_vecPlatform.front().vecProduct.size(), 1U);
        return m_vecPlatform.front().vecProduct.front();
    }

    TestProduct m_cProduct;
    XmlDirectoryConfig m_stDirectory{{}, m_cProduct.Folder().Path().wstring()};
    std::vector<CompatibilityPlatform> m_vecPlatform = std::vector<CompatibilityPlatform>(2);
};

constexpr const char* g_szWholeDocument = R"(<CompatibilityCheck><Platforms>
  <Platform major_version="6" minor_version="1" reversion="0" build_number="7601" LeftHandMost="TRUE" service_pack="1"
      language="all"><!-- here -->
    <Product sku="IS" major_version="17" minor_version="2" reversion="3" build_number="4" LeftHandMost="yes" OEM="o"
        language="de">
      <Action>PreInstallUpdate</Action><ShowMessage>true</ShowMessage>
      <Components><Component class="10" type="FW" plat="p" lang="l" oem="q" region="r" ver="">1</Component>
        <Component class="11">false</Component><Component class="12">maybe</Component></Components>
      <Messages><Message>Hi &#xE4;</Message><Message locale="">none</Message></Messages>
    </Product></Platform></Platforms></CompatibilityCheck>)";

TEST_F(Compatibility, EveryFieldIsReadAndToldLineByLine)
{
    m_cProduct.Store(DocumentId::Compatibility, g_szWholeDocument);
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    const std::wstring tszFolder = m_stDirectory.tszXmlDir + L"\\";
    const std::wstring tszReader = L".w. [CFunctionXml::QueryValueAsInstallCompatibilityCheckDB";
    const std::wstring tszAt = tszReader + L"]";
    const Lines vecExpected = {
        L".w. [Enter] CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()...",
        L".w. *** CFunctionXml::QueryValueAsInstallCompatibilityCheckDB() - tszXmlFile = [" + tszFolder +
            L"compatck.xml]",
        L"@@@ Xml parser directory: " + tszFolder,
        tszAt + L" OS tszPlatformMajorVersion=[6]",
        tszAt + L" OS tszPlatformMinorVersion=[1]",
        tszAt + L" OS tszPlatformReVersion=[0]",
        tszAt + L" OS tszPlatformBuild=[7601]",
        tszAt + L" OS bPlatformLeftHandMost=[true]",
        tszAt + L" OS tszServicePack=[1]",
        tszAt + L" OS language=[all]",
        tszAt + L"\tProduct tszSkuName=[IS]",
        tszAt + L"\tProduct tszQMRMajorVersion=[17]",
        tszAt + L"\tProduct tszQMRMinorVersion=[2]",
        tszAt + L"\tProduct tszQMRReVersion=[3]",
        tszAt + L"\tProduct tszQMRBuild=[4]",
        L"!!! * Frwk::Utility::GetBooleanType() - Invalid boolean Type. [yes]",
        tszAt + L"\tProduct LeftHandMost=[false]",
        tszAt + L"\tProduct emCompatibilityCheckAction=[PreInstallUpdate]",
        tszAt + L"\tProduct emCompatibility2rdCheckAction=[Block]",
        tszAt + L"\tProduct bShowMessage=[true]",
        tszAt + L"\tProduct tszOEMFlag=[o]",
        tszAt + L"\tProduct tszLanguage=[de]",
        tszReader + L"()] Need to do PrePU",
        tszAt + L"\tis enable this component\t[1]",
        tszAt + L"\t\tComponent Class=[10]",
        tszAt + L"\t\tComponent Type=[FW]",
        tszAt + L"\t\tComponent Plat=[p]",
        tszAt + L"\t\tComponent Lang=[l]",
        tszAt + L"\t\tComponent OEM=[q]",
        tszAt + L"\t\tComponent Region=[r]",
        tszAt + L"\t\tComponent Ver=[0]",
        tszAt + L"\tis enable this component\t[false]",
        tszAt + L"\tis enable this component\t[maybe]",
        L"!!! *** Frwk::Utility::GetBooleanType() - Invalid boolean Type. [maybe]",
        tszReader + L"()] query messages",
        L".w. [Leave] CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()...",
    };
    const Lines vecLine = cTrace.Lines();
    ASSERT_EQ(vecLine.size(), vecExpected.size() + 4); // function object and dispatch, around it
    EXPECT_EQ(Lines(vecLine.begin() + 2, vecLine.end() - 2), vecExpected);

    ASSERT_EQ(m_vecPlatform.size(), 1U);
    EXPECT_EQ(m_vecPlatform[0].tszServicePack, L"1");
    EXPECT_TRUE(m_vecPlatform[0].bPlatformLeftHandMost);
    ASSERT_EQ(m_vecPlatform[0].vecProduct.size(), 1U);
    const CompatibilityProduct& stProduct = m_vecPlatform[0].vecProduct[0];
    EXPECT_EQ(stProduct.emCompatibility2rdCheckAction, 1U);
    EXPECT_EQ(stProduct.tszQMRBuild, L"4");
    ASSERT_EQ(stProduct.vecComponent.size(), 1U);
    EXPECT_EQ(stProduct.vecComponent[0].tszRegion, L"r");
    EXPECT_EQ(stProduct.vecComponent[0].tszVer, L"0");
    ASSERT_EQ(stProduct.vecMessage.size(), 2U);
    EXPECT_EQ(stProduct.vecMessage[0].tszLocale, L"EN-US");
    EXPECT_EQ(stProduct.vecMessage[0].tszMessage, L"Hi \u00E4");
    EXPECT_EQ(stProduct.vecMessage[1].tszLocale, L"");
}

TEST_F(Compatibility, WhatTheActionDoesNotCallForIsNotRead)
{
    for (const char* szAction : {"Block", "Pass", "preinstallupdate"}) {
        const TraceRecorder cTrace(0x1);
        const CompatibilityProduct& stProduct =
            Product(std::string("<Product><Action>") + szAction +
                    "</Action><ShowMessage>0</ShowMessage><Components><Component>1</Component></Components>"
                    "<Messages><Message>m</Message></Messages></Product>");
        EXPECT_EQ(stProduct.emCompatibilityCheckAction, szAction == std::string("Block") ? 1U : 0U);
        EXPECT_EQ(stProduct.emCompatibility2rdCheckAction, 0U);
        EXPECT_THAT(stProduct.vecComponent, IsEmpty());
        EXPECT_THAT(stProduct.vecMessage, IsEmpty());
        EXPECT_THAT(cTrace.Lines(), Not(Contains(HasSubstr(L"2rdCheckAction"))));
    }
}

TEST_F(Compatibility, ABadDocumentOrRequestFailsWithAnEmptyList)
{
    TraceRecorder cTrace(0x100);
    // No name of XML begins with a digit.
    m_cProduct.Store(DocumentId::Compatibility, "<CompatibilityCheck><Platforms><Platform><Product><Action>"
                                                "PreInstallUpdate</Action><2rdAction>Pass</2rdAction></Product>"
                                                "</Platform></Platforms></CompatibilityCheck>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(m_vecPlatform, IsEmpty());
    EXPECT_EQ(cTrace.Messages().front(), L"*** CFunctionXml::QueryValueAsInstallCompatibilityCheckDB() - Got "
                                         L"ZkCommon::Storage::XmlException() failed. [0x00000006]");
    m_stDirectory.tszXmlDir.clear();
    EXPECT_EQ(Query(), Result::g_ulMissingObject);
}

class PreUpdate : public testing::Test
{
protected:
    std::uint32_t Store()
    {
        return CFunctionProvider().StoreValue(0, ValueType::g_ulPreUpdateList, 0, &m_stList, 0, nullptr);
    }
    void Write(std::string_view _svXml) const { m_cProduct.Folder().Write(L"request.xml", _svXml); }
    std::string Read() const { return m_cProduct.Folder().Read(L"request.xml"); }

    TestProduct m_cProduct;
    PreUpdateList m_stList{
        m_cProduct.Folder().File(L"request.xml"),
        {{L"a", L"t", L"p", L"l", L"o", L"r", L"1"}, {L"b<\"&", L"", L"", L"", L"", L"", L"\u00E4"}}};
};

TEST_F(PreUpdate, ComponentsLandOnTheFirstElementsAndAsManyEmptyOnesAreAppended)
{
    Write("<body x='1'><!-- kept --><product plat='0'><components><other/><component class='old' extra='e'/>"
          "</components></product><product/></body>");
    ASSERT_EQ(Store(), Result::g_ulSuccess);
    const std::string sFirst = "<component class=\"a\" extra=\"e\" type=\"t\" plat=\"p\" lang=\"l\" oem=\"o\" "
                               "region=\"r\" ver=\"1\"/>\r\n";
    const std::string sSecond = "<component class=\"b&lt;&quot;&amp;\" type=\"\" plat=\"\" lang=\"\" oem=\"\" "
                                "region=\"\" ver=\"\xC3\xA4\"/>\r\n";
    EXPECT_EQ(Read(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<body x=\"1\">\r\n\t<!-- kept -->\r\n"
                      "\t<product plat=\"5889\">\r\n\t\t<components>\r\n\t\t\t<other/>\r\n\t\t\t" +
                          sFirst + "\t\t\t" + sSecond +
                          "\t\t\t<component/>\r\n\t\t</components>\r\n\t</product>\r\n\t<product/>\r\n</body>\r\n");
    EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_stList.tszDocument));
}

TEST_F(PreUpdate, TheStepsAreToldLineByLine)
{
    Write("<body><product><components/></product></body>");
    m_stList.vecComponent.resize(1);
    const TraceRecorder cTrace;
    ASSERT_EQ(Store(), Result::g_ulSuccess);
    const std::wstring tszList = L"CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList()";
    Lines vecExpected = {L".w. [Enter] CFunctionXml::ImpChangePlatform()...",
                         L".w. FunctionXml::ImpChangePlatform()...",
                         L".w. [Leave] CFunctionXml::ImpChangePlatform()..."};
    for (const bool bCreate : {true, false}) {
        vecExpected.push_back(L".w. [Enter] " + tszList + L"...");
        vecExpected.push_back(L".w. [1] " + tszList + L"...");
        if (bCreate) {
            vecExpected.push_back(L".w. *** " + tszList + L" create a new component node");
        }
        vecExpected.push_back(L".w. *** " + tszList + L" found! need to modify this new node");
        for (const wchar_t* pszValue :
             {L"class[a]", L"type[t]", L"plat[p]", L"lang[l]", L"oem[o]", L"region[r]", L"ver[1]"}) {
            vecExpected.push_back(std::wstring(L".w.  -- DEBUG ") + pszValue);
        }
        vecExpected.push_back(L".w. [Leave] " + tszList + L"...");
    }
    const Lines vecLine = cTrace.Lines();
    ASSERT_EQ(vecLine.size(), vecExpected.size() + 4);
    EXPECT_EQ(Lines(vecLine.begin() + 2, vecLine.end() - 2), vecExpected);
}

TEST_F(PreUpdate, AFailedStepLeavesWhatTheStepsBeforeItStored)
{
    TraceRecorder cTrace(0x100);
    Write("<body><product/></body>"); // no list
    EXPECT_EQ(Store(), Result::g_ulFailed);
    EXPECT_THAT(Read(), HasSubstr("<product plat=\"5889\"/>"));
    EXPECT_EQ(cTrace.Messages().front(),
              L"*** CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList() - components section was not found.");

    cTrace.Clear();
    Write("<body><product><components/></product></body>");
    m_stList.vecComponent[1].tszOem = L"\x01"; // no document can hold it
    EXPECT_EQ(Store(), Result::g_ulFailed);
    EXPECT_THAT(Read(), Not(HasSubstr("<component ")));
    EXPECT_THAT(cTrace.Messages().front(), HasSubstr(L"PUList() - Got ZkCommon::Storage::XmlException() failed."));

    cTrace.Clear();
    Write("<body/>"); // the list is asked for although the platform had no place
    EXPECT_EQ(Store(), Result::g_ulFailed);
    EXPECT_EQ(Read(), "<body/>");
    EXPECT_EQ(cTrace.Messages()[0], L"*** CFunctionXml::ImpChangePlatform() - components section was not found.");
    EXPECT_EQ(cTrace.Messages().size(), 3U);
    EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_stList.tszDocument));
}

TEST_F(PreUpdate, ADeniedReplacementFailsAndLeavesTheDocument)
{
    Write("<body><product><components/></product></body>");
    const std::string sBefore = Read();
    ::SetFileAttributesW(m_stList.tszDocument.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Store(), Result::g_ulFailed);
    ::SetFileAttributesW(m_stList.tszDocument.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Read(), sBefore);
    EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_stList.tszDocument));
}

} // namespace
