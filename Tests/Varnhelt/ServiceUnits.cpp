// The service-unit catalogue from its document to the host's records.

#include "DocumentTest.h"
#include "FunctionProvider.h"

namespace {

using ServiceUnits = DocumentTest<ValueType::g_ulServiceUnit, std::vector<ServiceUnit>>;

TEST_F(ServiceUnits, EveryFieldIsReadAndConvertedAndWhatIsMissingIsADefaultLoggedInTheOrderOfTheFields)
{
    Write(R"(<?xml version="1.0" encoding="UTF-8"?><BaseFramework><!-- the first -->
  <FrameworkService Layer="eServiceLayer" Service="eEventManager" version="17.0.1"><Module>eDynamicLinkLibrary</Module>
    <Startup>eAutomatic</Startup><Load>ePreLoad</Load><OrderOfLoading>0x10</OrderOfLoading>
    <OrderOfUnloading>010</OrderOfUnloading><ConcurrentUnLoading>TRUE</ConcurrentUnLoading>
    <Shared>eSharedProvider</Shared><Controller>eFirewall</Controller><Provider>eMalwareScan</Provider>
    <ModuleName>Ereignis &amp; Zust&#xE4;nde&#x1F512;.dll</ModuleName>
    <AllowToLoadSetupMode>1</AllowToLoadSetupMode></FrameworkService>
  <SomethingElse/><frameworkservice/><FrameworkService/></BaseFramework>)");
    const TraceRecorder cTrace(0x100);
    // With a backslash at its end here, without one elsewhere.
    TestProduct::Register(m_tszFolder);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records, Records({{4, 8, 2, 1, 0, 16, 8, TRUE, 2, 4, 0x2000000,
                                   L"Ereignis & Zust\u00E4nde\U0001F512.dll", L"17.0.1", true},
                                  {0, 0, 0, 0, 1, 0, 0, FALSE, 0, 0, 0, L"", L"", false}}));
    EXPECT_EQ(cTrace.Messages(),
              Lines({L"*** Frwk::Utility::GetLayerType() - Not support Layer Type was specified. []",
                     L"*** Frwk::Utility::GetServiceType() - Not support Service Type was specified. []",
                     L"*** Frwk::Utility::GetServiceType() - Not support Module Type was specified. []",
                     L"*** Frwk::Utility::GetStartupType() - Not support Startup Type was specified. []",
                     L"*** Frwk::Utility::GetLoadOption() - Not support Load Option was specified. []",
                     L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. []",
                     L"*** Frwk::Utility::GetSharedType() - Not support Shared Type was specified. []",
                     L"*** Frwk::Utility::GetControllerType() - Not support Controller Type was specified. []",
                     L"*** Frwk::Utility::GetProviderType() - Not support Provider Type was specified. []",
                     L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. []"}));
}

TEST_F(ServiceUnits, ASuccessfulQueryLeavesTheseLines)
{
    Write("<BaseFramework></BaseFramework>");
    const TraceRecorder cTrace;
    ASSERT_EQ(CFunctionProvider().QueryValue(0, ValueType::g_ulServiceUnit, 0, &m_Records, 0, nullptr),
              Result::g_ulSuccess);
    EXPECT_EQ(
        cTrace.Lines(),
        Lines({L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00000001],VST[0x00000000]",
               L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00000001],VST[0x00000000]",
               L".w. [Enter] CFunctionXml::QueryValueAsServiceUnit()...", L".w. [Enter] CEncFile::DecryptedPath()...",
               L".w. [Enter] CEncFile::Decrypt()...", L".w. [Enter] ZkCommon::Storage::File::DecryptFile()...",
               L"@@@ nLenConverted: 31", L".w. [Leave] ZkCommon::Storage::File::DecryptFile()...",
               L".w. [Leave] CEncFile::Decrypt()...", L".w. [Leave] CEncFile::DecryptedPath()...",
               L".w. [Leave] CFunctionXml::QueryValueAsServiceUnit()...", L".w. [Leave] CFunctionXml::QueryValue()...",
               L".w. [Leave] CFunctionProvider::QueryValue()..."}));
}

} // namespace
