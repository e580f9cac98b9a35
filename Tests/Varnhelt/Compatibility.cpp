// The compatibility database, and the update request that its components go into.

#include "DocumentTest.h"

namespace {

class Compatibility : public DocumentTest<ValueType::g_ulCompatibilityCheck, std::vector<CompatibilityPlatform>>
{
protected:
    /** Stores and queries a document with one platform. */
    std::uint32_t Query(const std::string& _rsPlatform)
    {
        Write("<CompatibilityCheck><Platforms>" + _rsPlatform + "</Platforms></CompatibilityCheck>");
        return DocumentTest::Query();
    }
};

TEST_F(Compatibility, EveryFieldIsReadAndToldLineByLine)
{
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(R"(<Platform major_version="6" minor_version="1" reversion="0" build_number="7601"
      LeftHandMost="TRUE" service_pack="1" language="all"><!-- here -->
    <Product sku="IS" major_version="17" minor_version="2" reversion="3" build_number="4" LeftHandMost="yes" OEM="o"
        language="de"><Action>PreInstallUpdate</Action><ShowMessage>true</ShowMessage>
      <Components><Component class="10" type="FW" plat="p" lang="l" oem="q" region="r" ver="">1</Component>
        <Component class="11">false</Component><Component class="12">maybe</Component></Components>
      <Messages><Message>Hi &#xE4;</Message><Message locale="">none</Message></Messages></Product></Platform>)"),
              Result::g_ulSuccess);
    const std::vector<CompatibilityComponent> vecComponent = {{L"10", L"FW", L"p", L"l", L"q", L"r", L"0"}};
    const std::vector<stCCLocalizedMsg> vecMessage = {{L"EN-US", L"Hi \u00E4"}, {L"", L"none"}};
    const std::vector<CompatibilityProduct> vecProduct = {
        {L"IS", L"17", L"2", L"3", L"4", false, 2, 1, true, L"o", L"de", vecComponent, vecMessage}};
    EXPECT_EQ(m_Records, Records({{L"6", L"1", L"0", L"7601", true, L"1", L"all", vecProduct}}));

    const std::wstring tszReader = L"[CFunctionXml::QueryValueAsInstallCompatibilityCheckDB";
    EXPECT_EQ(
        ReaderLines(cTrace),
        Joined({{L".w. [Enter] CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()...",
                 L".w. *** CFunctionXml::QueryValueAsInstallCompatibilityCheckDB() - tszXmlFile = [" + m_tszFolder +
                     L"compatck.xml]",
                 L"@@@ Xml parser directory: " + m_tszFolder},
                Behind(L".w. " + tszReader + L"]",
                       {L" OS tszPlatformMajorVersion=[6]", L" OS tszPlatformMinorVersion=[1]",
                        L" OS tszPlatformReVersion=[0]", L" OS tszPlatformBuild=[7601]",
                        L" OS bPlatformLeftHandMost=[true]", L" OS tszServicePack=[1]", L" OS language=[all]",
                        L"\tProduct tszSkuName=[IS]", L"\tProduct tszQMRMajorVersion=[17]",
                        L"\tProduct tszQMRMinorVersion=[2]", L"\tProduct tszQMRReVersion=[3]",
                        L"\tProduct tszQMRBuild=[4]"}),
                {L"!!! * Frwk::Utility::GetBooleanType() - Invalid boolean Type. [yes]"},
                Behind(L".w. " + tszReader + L"]",
                       {L"\tProduct LeftHandMost=[false]", L"\tProduct emCompatibilityCheckAction=[PreInstallUpdate]",
                        L"\tProduct emCompatibility2rdCheckAction=[Block]", L"\tProduct bShowMessage=[true]",
                        L"\tProduct tszOEMFlag=[o]", L"\tProduct tszLanguage=[de]"}),
                {L".w. " + tszReader + L"()] Need to do PrePU"},
                Behind(L".w. " + tszReader + L"]",
                       {L"\tis enable this component\t[1]", L"\t\tComponent Class=[10]", L"\t\tComponent Type=[FW]",
                        L"\t\tComponent Plat=[p]", L"\t\tComponent Lang=[l]", L"\t\tComponent OEM=[q]",
                        L"\t\tComponent Region=[r]", L"\t\tComponent Ver=[0]", L"\tis enable this component\t[false]",
                        L"\tis enable this component\t[maybe]"}),
                {L"!!! *** Frwk::Utility::GetBooleanType() - Invalid boolean Type. [maybe]",
                 L".w. " + tszReader + L"()] query messages",
                 L".w. [Leave] CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()..."}}));
}

TEST_F(Compatibility, WhatTheActionDoesNotCallForIsNotRead)
{
    for (const std::string sAction : {"Block", "Pass", "preinstallupdate"}) {
        const TraceRecorder cTrace(0x1);
        ASSERT_EQ(Query("<Platform LeftHandMost='1'><Product><Action>" + sAction +
                        "</Action><ShowMessage>0</ShowMessage><Components><Component>1</Component></Components>"
                        "<Messages><Message>m</Message></Messages></Product></Platform>"),
                  Result::g_ulSuccess);
        const std::uint32_t ulAction = sAction == "Block" ? 1 : 0;
        EXPECT_EQ(m_Records.at(0).vecProduct,
                  std::vector<CompatibilityProduct>(
                      {{L"", L"", L"", L"", L"", false, ulAction, 0, false, L"", L"", {}, {}}}));
        EXPECT_THAT(cTrace.Lines(), testing::Not(testing::Contains(HasSubstr(L"2rdCheckAction"))));
    }
    // The second action cannot be given: no name of XML begins with a digit.
    EXPECT_EQ(Query("<Platform><Product><Action>PreInstallUpdate</Action><2rdAction>Pass</2rdAction></Product>"
                    "</Platform>"),
              Result::g_ulFailed);
    EXPECT_THAT(m_Records, IsEmpty());
}

class PreUpdate : public DocumentTest<ValueType::g_ulPreUpdateList, PreUpdateList>
{
protected:
    PreUpdate()
    {
        m_Records = {m_tszFolder + m_pszFile,
                     {{L"a", L"t", L"p", L"l", L"o", L"r", L"1"}, {L"b<\"&", L"", L"", L"", L"", L"", L"\u00E4"}}};
    }
};

TEST_F(PreUpdate, ComponentsLandOnTheFirstElementsAndAsManyEmptyOnesAreAppended)
{
    Write("<body x='1'><!-- kept --><product plat='0'><components><other/><component class='old' extra='e'/>"
          "</components></product><product/></body>");
    ASSERT_EQ(Store(m_Records), Result::g_ulSuccess);
    EXPECT_EQ(Stored(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<body x=\"1\">\r\n\t<!-- kept -->\r\n"
                        "\t<product plat=\"5889\">\r\n\t\t<components>\r\n\t\t\t<other/>\r\n"
                        "\t\t\t<component class=\"a\" extra=\"e\" type=\"t\" plat=\"p\" lang=\"l\" oem=\"o\" "
                        "region=\"r\" ver=\"1\"/>\r\n"
                        "\t\t\t<component class=\"b&lt;&quot;&amp;\" type=\"\" plat=\"\" lang=\"\" oem=\"\" "
                        "region=\"\" ver=\"\xC3\xA4\"/>\r\n"
                        "\t\t\t<component/>\r\n\t\t</components>\r\n\t</product>\r\n\t<product/>\r\n</body>\r\n");
}

TEST_F(PreUpdate, TheStepsAreToldLineByLine)
{
    Write("<body><product><components/></product></body>");
    m_Records.vecComponent.resize(1);
    const TraceRecorder cTrace(0x111);
    ASSERT_EQ(Store(m_Records), Result::g_ulSuccess);
    const std::wstring tszList = L"CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList()";
    const Lines vecBegun = {L"[Enter] " + tszList + L"...", L"[1] " + tszList + L"..."};
    const Lines vecStored = Joined(
        {{L"*** " + tszList + L" found! need to modify this new node"},
         Behind(L" -- DEBUG ", {L"class[a]", L"type[t]", L"plat[p]", L"lang[l]", L"oem[o]", L"region[r]", L"ver[1]"}),
         {L"[Leave] " + tszList + L"..."}});
    EXPECT_EQ(ReaderLines(cTrace), Behind(L".w. ", Joined({{L"[Enter] CFunctionXml::ImpChangePlatform()...",
                                                            L"FunctionXml::ImpChangePlatform()...",
                                                            L"[Leave] CFunctionXml::ImpChangePlatform()..."},
                                                           vecBegun,
                                                           {L"*** " + tszList + L" create a new component node"},
                                                           vecStored,
                                                           vecBegun,
                                                           vecStored})));
}

TEST_F(PreUpdate, AFailedStepLeavesWhatTheStepsBeforeItStored)
{
    const std::wstring tszList = L"*** CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList() - ";
    const std::wstring tszPlatform = L"*** CFunctionXml::ImpChangePlatform() - ";
    const TraceRecorder cTrace(0x100);
    Write("<body><product/></body>"); // no list
    EXPECT_EQ(Store(m_Records), Result::g_ulFailed);
    EXPECT_THAT(Stored(), HasSubstr("<product plat=\"5889\"/>"));

    Write("<body/>"); // the list is asked for although the platform had no place
    EXPECT_EQ(Store(m_Records), Result::g_ulFailed);
    EXPECT_EQ(Stored(), "<body/>");

    Write("<body><product><components/></product></body>");
    m_Records.vecComponent[1].tszOem = L"\x01"; // no document can hold it
    EXPECT_EQ(Store(m_Records), Result::g_ulFailed);
    EXPECT_THAT(Stored(), testing::Not(HasSubstr("<component ")));
    EXPECT_THAT(cTrace.Messages(), ElementsAre(tszList + L"components section was not found.",
                                               tszPlatform + L"components section was not found.",
                                               tszList + L"components section was not found.",
                                               HasSubstr(tszList + L"Got ZkCommon::Storage::XmlException() failed.")));
}

} // namespace
