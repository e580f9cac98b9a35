// The service-unit catalogue from its document to the host's records, through a function object.

#include "ServiceUnits.h"

#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szTwoUnits = R"(<?xml version="1.0" encoding="UTF-8"?>
<BaseFramework>
  <!-- the first -->
  <FrameworkService Layer="eServiceLayer" Service="eEventManager" version="17.0.1">
    <Module>eDynamicLinkLibrary</Module>
    <Startup>eAutomatic</Startup>
    <Load>ePreLoad</Load>
    <OrderOfLoading>0x10</OrderOfLoading>
    <OrderOfUnloading>010</OrderOfUnloading>
    <ConcurrentUnLoading>TRUE</ConcurrentUnLoading>
    <Shared>eSharedProvider</Shared>
    <Controller>eFirewall</Controller>
    <Provider>eMalwareScan</Provider>
    <ModuleName>Ereignis &amp; Zust&#xE4;nde&#x1F512;.dll</ModuleName>
    <AllowToLoadSetupMode>1</AllowToLoadSetupMode>
  </FrameworkService>
  <SomethingElse/>
  <FrameworkService/>
</BaseFramework>)";

class ServiceUnits : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        CFunctionProvider cProvider;
        return cProvider.QueryValue(0, ValueType::g_ulServiceUnit, 0, &m_vecUnit, 0, nullptr);
    }

    TestProduct m_cProduct;
    std::vector<ServiceUnit> m_vecUnit = std::vector<ServiceUnit>(2);
};

TEST_F(ServiceUnits, EveryFieldIsReadAndConverted)
{
    m_cProduct.Store(DocumentId::ServiceUnits, g_szTwoUnits);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecUnit.size(), 2U);
    const ServiceUnit& stUnit = m_vecUnit[0];
    EXPECT_EQ(stUnit.ulLayer, 4U);
    EXPECT_EQ(stUnit.ulServiceType, 8U);
    EXPECT_EQ(stUnit.ulModuleType, 2U);
    EXPECT_EQ(stUnit.ulStartupType, 1U);
    EXPECT_EQ(stUnit.ulLoadOption, 0U);
    EXPECT_EQ(stUnit.ulOrderOfLoading, 16U);
    EXPECT_EQ(stUnit.ulOrderOfUnloading, 8U);
    EXPECT_EQ(stUnit.bConcurrentUnloading, TRUE);
    EXPECT_EQ(stUnit.ulSharedType, 2U);
    EXPECT_EQ(stUnit.ulControllerType, 4U);
    EXPECT_EQ(stUnit.ulProviderType, 0x2000000U);
    EXPECT_EQ(stUnit.tszModuleName, L"Ereignis & Zust\u00E4nde\U0001F512.dll");
    EXPECT_EQ(stUnit.tszVersion, L"17.0.1");
    EXPECT_TRUE(stUnit.bAllowToLoadInSetupMode);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
}

TEST_F(ServiceUnits, AnEmptyElementIsARecordOfDefaultsEachLoggedInTheOrderOfTheFields)
{
    m_cProduct.Store(DocumentId::ServiceUnits, "<BaseFramework><FrameworkService/></BaseFramework>");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecUnit.size(), 1U);
    EXPECT_EQ(m_vecUnit[0].ulLoadOption, 1U);
    EXPECT_EQ(m_vecUnit[0].ulStartupType, 0U);
    EXPECT_EQ(m_vecUnit[0].bConcurrentUnloading, FALSE);

    std::vector<std::wstring> vecErrors;
    for (const std::wstring& tszLine : cTrace.Lines()) {
        if (tszLine.starts_with(L"!!! ")) {
            vecErrors.push_back(tszLine.substr(4));
        }
    }
    EXPECT_THAT(vecErrors,
                ElementsAre(L"*** Frwk::Utility::GetLayerType() - Not support Layer Type was specified. []",
                            L"*** Frwk::Utility::GetServiceType() - Not support Service Type was specified. []",
                            L"*** Frwk::Utility::GetServiceType() - Not support Module Type was specified. []",
                            L"*** Frwk::Utility::GetStartupType() - Not support Startup Type was specified. []",
                            L"*** Frwk::Utility::GetLoadOption() - Not support Load Option was specified. []",
                            L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. []",
                            L"*** Frwk::Utility::GetSharedType() - Not support Shared Type was specified. []",
                            L"*** Frwk::Utility::GetControllerType() - Not support Controller Type was specified. []",
                            L"*** Frwk::Utility::GetProviderType() - Not support Provider Type was specified. []",
                            L"* Frwk::Utility::GetBooleanType() - Invalid boolean Type. []"));
}

TEST_F(ServiceUnits, ASuccessfulQueryLeavesTheseLines)
{
    m_cProduct.Store(DocumentId::ServiceUnits, "<BaseFramework></BaseFramework>");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_THAT(m_vecUnit, IsEmpty());
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00000001],VST[0x00000000]",
                            L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00000001],VST[0x00000000]",
                            L".w. [Enter] CFunctionXml::QueryValueAsServiceUnit()...",
                            L".w. [Enter] CEncFile::DecryptedPath()...", L".w. [Enter] CEncFile::Decrypt()...",
                            L".w. [Enter] ZkCommon::Storage::File::DecryptFile()...", L"@@@ nLenConverted: 31",
                            L".w. [Leave] ZkCommon::Storage::File::DecryptFile()...",
                            L".w. [Leave] CEncFile::Decrypt()...", L".w. [Leave] CEncFile::DecryptedPath()...",
                            L".w. [Leave] CFunctionXml::QueryValueAsServiceUnit()...",
                            L".w. [Leave] CFunctionXml::QueryValue()...",
                            L".w. [Leave] CFunctionProvider::QueryValue()..."));
}

struct BadRow
{
    int iLine;
    const char* szDocument;
    std::uint32_t ulResult;
    std::size_t uRecords;
};

const BadRow g_aBad[] = {
    {__LINE__, "<BaseFramework><FrameworkService></BaseFramework>", Result::g_ulFailed, 0},
    {__LINE__, "<BaseFramework><FrameworkService/></BaseFramework><tail/>", Result::g_ulFailed, 0},
    {__LINE__, "<BaseFramework><FrameworkService/>", Result::g_ulFailed, 0},
    {__LINE__, "no document at all", Result::g_ulFailed, 0},
    {__LINE__, "<?xml version=\"1.0\" encoding=\"x-unknown\"?><BaseFramework/>", Result::g_ulFailed, 0},
    {__LINE__, "<BaseFramework>\xFF\xFE</BaseFramework>", Result::g_ulFailed, 0},
    {__LINE__, "<Other><BaseFramework><FrameworkService/></BaseFramework></Other>", Result::g_ulSuccess, 0},
    {__LINE__, "<BaseFramework><frameworkservice/></BaseFramework>", Result::g_ulSuccess, 0},
};

TEST_F(ServiceUnits, ABadDocumentIsRefusedWholeAndLeavesNothingBehind)
{
    for (const BadRow& stRow : g_aBad) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        m_cProduct.Store(DocumentId::ServiceUnits, stRow.szDocument);
        EXPECT_EQ(Query(), stRow.ulResult);
        EXPECT_EQ(m_vecUnit.size(), stRow.uRecords);
        EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
    }
}

TEST_F(ServiceUnits, AMissingDocumentOrFolderIsToldAsAnEmptyPath)
{
    const wchar_t* szLine = L"!!! *** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty";
    TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(m_vecUnit, IsEmpty());
    EXPECT_THAT(cTrace.Lines(), testing::Contains(szLine));

    cTrace.Clear();
    TestProduct::Unregister();
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Lines(), testing::Contains(szLine));
    EXPECT_THAT(cTrace.Lines(), testing::Contains(L"!!! *** Frwk::Utility::GetInstalledFolder() -  Got "
                                                  L"ZkCommon::Storage::Exception(). [0x00000002]"));
}

TEST_F(ServiceUnits, TheFolderIsTakenWithAndWithoutABackslash)
{
    m_cProduct.Store(DocumentId::ServiceUnits, g_szTwoUnits);
    const std::wstring tszFolder = m_cProduct.Folder().Path().wstring();
    for (const std::wstring& tszPath : {tszFolder, tszFolder + L"\\"}) {
        TestProduct::Register(tszPath);
        EXPECT_EQ(Query(), Result::g_ulSuccess);
        EXPECT_EQ(m_vecUnit.size(), 2U);
    }
}

TEST_F(ServiceUnits, ANullArrayBehindTheDispatchIsAMissingObject)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.QueryValueAsServiceUnit({}), Result::g_ulMissingObject);
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(L"*** CFunctionXml::QueryValueAsServiceUnit() - pArrayOfUnitService was invalid."));
}

} // namespace
