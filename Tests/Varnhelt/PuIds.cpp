// The install component numbers.

#include "PuIds.h"

#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

class PuIds : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        CFunctionProvider cProvider;
        return cProvider.QueryValue(0, ValueType::g_ulInstallPuIds, 0, &m_stPuIds, 0, nullptr);
    }
    std::uint32_t QueryBehindTheDispatch()
    {
        return CFunctionXml().QueryValueAsInstallPuIds({.pValueData = &m_stPuIds});
    }

    TestProduct m_cProduct;
    InstallPuIds m_stPuIds{{1}, {2}, {3}, {4}, 5}; // what was there must go
};

TEST_F(PuIds, EachNumberGoesToTheListOfItsComponent)
{
    m_cProduct.Store(DocumentId::PuIds, R"(<InstallPuIds>
        <InstallPuId><Component>ePattern</Component><PuId>0x10</PuId><Platform>eBoth32And64bit</Platform></InstallPuId>
        <InstallPuId><Component>eEngine</Component><PuId>010</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>eProduct</Component><PuId>12abc</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>eProduct</Component><PuId>7</PuId><Platform>eOnly32bit</Platform></InstallPuId>
        <Other><Component>eProduct</Component><PuId>8</PuId><Platform>eBoth32And64bit</Platform></Other>
        <InstallPuId><Component>ePattern</Component><PuId>16</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>ePattern</Component><Platform>eOnly64bit</Platform></InstallPuId></InstallPuIds>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_THAT(m_stPuIds.vecPattern, ElementsAre(16U, 16U, 0U));
    EXPECT_THAT(m_stPuIds.vecEngine, ElementsAre(8U));
    EXPECT_THAT(m_stPuIds.vecProduct, ElementsAre(12U));
    EXPECT_THAT(m_stPuIds.vecReserved, IsEmpty());
    EXPECT_EQ(m_stPuIds.ulReserved, 0U);
}

TEST_F(PuIds, EveryEntryIsToldValueByValueAndWhyItDoesNotCount)
{
    m_cProduct.Store(DocumentId::PuIds, R"(<InstallPuIds>
        <InstallPuId label="Muster &#xE4;" version="1.2"><Component>eNone</Component><PuId>255</PuId>
            <Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>epattern</Component><Platform>eBoth32And64bit</Platform></InstallPuId>
        <InstallPuId><Component>eEngine</Component><Platform>eOnly32bit</Platform></InstallPuId>
        <InstallPuId><Platform>eonly64bit</Platform></InstallPuId></InstallPuIds>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(QueryBehindTheDispatch(), Result::g_ulSuccess);
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(
            L".w. [Enter] CFunctionXml::QueryValueAsInstallPuIds()...",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [label]    :Muster \u00E4.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [version]  :1.2.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Component]:eNone.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [PuId]     :0x000000ff.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Platform] :eOnly64bit.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - eNone was specified for Component Type.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [label]    :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [version]  :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Component]:epattern.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [PuId]     :0x00000000.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Platform] :eBoth32And64bit.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - Component Type was invalid. [epattern]",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [label]    :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [version]  :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Component]:eEngine.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [PuId]     :0x00000000.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Platform] :eOnly32bit.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - This component is not used for this platform. "
            L"PuId[0x00000000]",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [label]    :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [version]  :.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Component]:.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [PuId]     :0x00000000.",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - [Platform] :eonly64bit.",
            L"!!! *** CFunctionXml::IsNeedToAddPuIds() - Not support Platform String was specified. [eonly64bit]",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() - This component is not used for this platform. "
            L"PuId[0x00000000]",
            L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.",
            L".w. [Leave] CFunctionXml::QueryValueAsInstallPuIds()..."));
}

TEST_F(PuIds, EntriesCountByTheSystemsWidth)
{
    using Varnhelt::Documents::IsNeedToAddPuIds;
    EXPECT_TRUE(IsNeedToAddPuIds(L"eOnly32bit", false));
    EXPECT_FALSE(IsNeedToAddPuIds(L"eOnly64bit", false));
    EXPECT_TRUE(IsNeedToAddPuIds(L"eBoth32And64bit", false));
    EXPECT_FALSE(IsNeedToAddPuIds(L"", false));
}

TEST_F(PuIds, AMissingOrBadDocumentFailsAndTheListsAreEmpty)
{
    TraceRecorder cTrace(0x100);
    EXPECT_EQ(QueryBehindTheDispatch(), Result::g_ulFailed);
    EXPECT_THAT(m_stPuIds.vecPattern, IsEmpty());
    EXPECT_EQ(m_stPuIds.ulReserved, 0U);
    m_cProduct.Store(DocumentId::PuIds, "<InstallPuIds><InstallPuId/></InstallPuIds><tail/>");
    EXPECT_EQ(QueryBehindTheDispatch(), Result::g_ulFailed);
    TestProduct::Unregister();
    EXPECT_EQ(QueryBehindTheDispatch(), Result::g_ulFailed);
    EXPECT_EQ(CFunctionXml().QueryValueAsInstallPuIds({}), Result::g_ulMissingObject);
    const std::wstring tszLine =
        L"*** CFunctionXml::QueryValueAsInstallPuIds() - Got ZkCommon::Storage::XmlException() failed. ";
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(tszLine + L"[0x00000002]", tszLine + L"[0x00000006]",
                            L"*** Frwk::Utility::GetInstalledFolder() -  Got ZkCommon::Storage::Exception(). "
                            L"[0x00000002]",
                            tszLine + L"[0x00000003]",
                            L"*** CFunctionXml::QueryValueAsInstallPuIds() - pPuIds was invalid."));
}

} // namespace
