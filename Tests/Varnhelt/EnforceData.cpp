// The enforcement data, through a function object.

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
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szData = R"(<DataEnforceLayer><DataControllers>
  <DataController Controller="eContentsProtection" version="17.0.1" label="Inhalte">
    <Module>eExecutable</Module><Startup>eDemand</Startup>
    <OrderOfLoading>010</OrderOfLoading><ConcurrentLoading>true</ConcurrentLoading>
    <OrderOfUnloading>7</OrderOfUnloading><ConcurrentUnLoading>0</ConcurrentUnLoading>
    <PuId>0x1A</PuId><ModuleName>Inhalt.exe</ModuleName><InitializeOption>eDelayInit</InitializeOption>
    <DataProviders>
      <!-- of any name -->
      <Anything Controller="eCommon" Provider="eUrlFilter" version="1.2" label="Filter">
        <Module>eInlineCode</Module><Startup>eAutomatic</Startup>
        <OrderOfLoading>0x11</OrderOfLoading><OrderOfUnloading/>
        <Shared>eSharedProvider</Shared><Layer>eEnforceLayer</Layer><Service>eEnforceHandler</Service>
        <DependencyController>eFirewall</DependencyController><DependencyProvider>eHomeNetwork</DependencyProvider>
        <AdditionalCallAfterInstall>1</AdditionalCallAfterInstall>
        <AdditionalCallAfterUninstall>FALSE</AdditionalCallAfterUninstall>
        <ModuleName>Filter.dll</ModuleName><InitializeOption>ePartialInit</InitializeOption>
      </Anything>
    </DataProviders>
  </DataController></DataControllers></DataEnforceLayer>)";

class EnforceData : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        CFunctionProvider cProvider;
        return cProvider.QueryValue(0, ValueType::g_ulEnforceData, 0, &m_vecData, 0, nullptr);
    }

    TestProduct m_cProduct;
    std::vector<DataController> m_vecData = std::vector<DataController>(2);
};

TEST_F(EnforceData, AQueryReadsEveryFieldAndDumpsItInItsOrder)
{
    m_cProduct.Store(DocumentId::EnforceData, g_szData);
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
    ASSERT_EQ(m_vecData.size(), 1U);
    const DataController& stData = m_vecData[0];
    EXPECT_EQ(stData.bConcurrentLoading, TRUE);
    EXPECT_EQ(stData.bConcurrentUnloading, FALSE);
    EXPECT_EQ(stData.tszModuleName, L"Inhalt.exe");
    EXPECT_EQ(stData.tszVersion, L"17.0.1");
    ASSERT_EQ(stData.vecProvider.size(), 1U);
    EXPECT_TRUE(stData.vecProvider[0].bAdditionalCallAfterInstall);
    EXPECT_FALSE(stData.vecProvider[0].bAdditionalCallAfterUninstall);
    EXPECT_EQ(stData.vecProvider[0].ulInitializeOption, 1U);

    // The numbers of both records are in the lines.
    const std::wstring tszData = L"@@@ *** CFunctionXml::QueryValueAsEnforceData() ";
    const std::wstring tszProvider = tszData + L"- SetDataProvider()";
    const std::wstring tszRule = L"---------------------------------------------.";
    std::vector<std::wstring> vecLine = cTrace.Lines();
    ASSERT_FALSE(vecLine.empty());
    vecLine.erase(vecLine.begin()); // of the decryption
    EXPECT_EQ(vecLine, (std::vector<std::wstring>{
                           tszData + tszRule,
                           tszData + L"- [label]           :Inhalte.",
                           tszData + L"- [ControllerType]  :0x00000008.",
                           tszData + L"- [eModuleType]     :0x00000001.",
                           tszData + L"- [Startup]         :0x00000002.",
                           tszData + L"- [OrderOfLoading]  :8.",
                           tszData + L"- [ConcurrentLoad]  :1.",
                           tszData + L"- [OrderOfUnloading]:7.",
                           tszData + L"- [ConcurrentUnload]:0.",
                           tszData + L"- [PuId]            :0x0000001a.",
                           tszData + L"- [Module Name]     :Inhalt.exe.",
                           tszData + L"- [Version]         :17.0.1.",
                           tszData + L"- [InitOption]      :0x00000002.",
                           tszData + tszRule,
                           L"@@@ *** CFunctionXml::SetDataProvider() " + tszRule,
                           tszProvider + L"[label]           :Filter.",
                           tszProvider + L"[ControllerType]  :0x00010000.",
                           tszProvider + L"[ProviderType]    :0x00000800.",
                           tszProvider + L"[eModuleType]     :0x00000003.",
                           tszProvider + L"[eStartUpType]    :0x00000001.",
                           tszProvider + L"[OrderOfLoading]  :17.",
                           tszProvider + L"[OrderOfUnloading]:0.",
                           tszProvider + L"[eSharedType]     :0x00000002.",
                           tszProvider + L"[LayerType]       :0x00000008.",
                           tszProvider + L"[ServiceType]     :0x00000040.",
                           tszProvider + L"[Dep-Controller]  :0x00000004.",
                           tszProvider + L"[Dep-Provider]    :0x00020000.",
                           tszProvider + L"[Add-Ins-Call]    :true.",
                           tszProvider + L"[Add-Unins-Call]  :false.",
                           tszProvider + L"[Module Name]     :Filter.dll.",
                           tszProvider + L"[Version]         :1.2.",
                           tszProvider + L"[Delay Initialize]  :ePartialInit.",
                           tszProvider + L" " + tszRule,
                       }));
}

TEST_F(EnforceData, WhatIsAbsentIsEmptyAndWhatIsUnreadableFails)
{
    m_cProduct.Store(DocumentId::EnforceData,
                     "<DataEnforceLayer><DataControllers><DataController/></DataControllers></DataEnforceLayer>");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecData.size(), 1U);
    EXPECT_EQ(m_vecData[0].ulOrderOfLoading, 0U);
    EXPECT_THAT(m_vecData[0].vecProvider, IsEmpty());

    TraceRecorder cTrace(0x100);
    m_cProduct.Store(DocumentId::EnforceData, "<DataEnforceLayer>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(m_vecData, IsEmpty());
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
    EXPECT_THAT(cTrace.Messages(), Contains(L"*** CFunctionXml::QueryValueAsEnforceData() - Got "
                                            L"ZkCommon::Storage::XmlException() failed. [0x00000006]"));

    TestProduct::Unregister();
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Messages(), Contains(L"*** CFunctionXml::QueryValueAsEnforceData() - tszXmlFile is empty"));
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.QueryValueAsEnforceData({}), Result::g_ulMissingObject);
    EXPECT_EQ(cTrace.Messages().back(), L"*** CFunctionXml::QueryValueAsEnforceData() - pArrayOfEnData was invalid.");
}

} // namespace
