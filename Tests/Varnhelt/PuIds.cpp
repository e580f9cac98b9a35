// The install component numbers.

#include "Documents/PuIds.h"

#include "DocumentTest.h"

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;

namespace {

using PuIds = DocumentTest<ValueType::g_ulInstallPuIds, InstallPuIds>;

TEST_F(PuIds, EachNumberGoesToTheListOfItsComponent)
{
    Write(R"(<InstallPuIds>
        <InstallPuId><Component>ePattern</Component><PuId>0x10</PuId><Platform>eBoth32And64bit</Platform></InstallPuId>
        <InstallPuId><Component>eEngine</Component><PuId>010</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>eProduct</Component><PuId>12abc</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>eProduct</Component><PuId>7</PuId><Platform>eOnly32bit</Platform></InstallPuId>
        <Other><Component>eProduct</Component><PuId>8</PuId><Platform>eBoth32And64bit</Platform></Other>
        <InstallPuId><Component>ePattern</Component><PuId>16</PuId><Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>ePattern</Component><Platform>eOnly64bit</Platform></InstallPuId></InstallPuIds>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_THAT(m_Records, FieldsAre(ElementsAre(16, 16, 0), ElementsAre(8), ElementsAre(12), IsEmpty(), 0));
}

TEST_F(PuIds, EveryEntryIsToldValueByValueAndWhyItDoesNotCount)
{
    Write(R"(<InstallPuIds>
        <InstallPuId label="Muster &#xE4;" version="1.2"><Component>eNone</Component><PuId>255</PuId>
            <Platform>eOnly64bit</Platform></InstallPuId>
        <InstallPuId><Component>epattern</Component><Platform>eBoth32And64bit</Platform></InstallPuId>
        <InstallPuId><Component>eEngine</Component><Platform>eOnly32bit</Platform></InstallPuId>
        <InstallPuId><Platform>eonly64bit</Platform></InstallPuId></InstallPuIds>)");
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    const std::wstring tszMethod = L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() -";
    const wchar_t* pszRule = L"--------------------------------------------.";
    const wchar_t* pszOtherPlatform = L" This component is not used for this platform. PuId[0x00000000]";
    EXPECT_EQ(
        cTrace.Lines(),
        Joined({Behind(tszMethod, {L" [label]    :Muster \u00E4.",
                                   L" [version]  :1.2.",
                                   L" [Component]:eNone.",
                                   L" [PuId]     :0x000000ff.",
                                   L" [Platform] :eOnly64bit.",
                                   L" eNone was specified for Component Type.",
                                   pszRule,
                                   L" [label]    :.",
                                   L" [version]  :.",
                                   L" [Component]:epattern.",
                                   L" [PuId]     :0x00000000.",
                                   L" [Platform] :eBoth32And64bit.",
                                   L" Component Type was invalid. [epattern]",
                                   pszRule,
                                   L" [label]    :.",
                                   L" [version]  :.",
                                   L" [Component]:eEngine.",
                                   L" [PuId]     :0x00000000.",
                                   L" [Platform] :eOnly32bit.",
                                   pszOtherPlatform,
                                   pszRule,
                                   L" [label]    :.",
                                   L" [version]  :.",
                                   L" [Component]:.",
                                   L" [PuId]     :0x00000000.",
                                   L" [Platform] :eonly64bit."}),
                {L"!!! *** CFunctionXml::IsNeedToAddPuIds() - Not support Platform String was specified. [eonly64bit]"},
                Behind(tszMethod, {pszOtherPlatform, pszRule})}));
}

TEST(PuIdEntries, CountByTheSystemsWidth)
{
    using Varnhelt::Documents::IsNeedToAddPuIds;
    EXPECT_TRUE(IsNeedToAddPuIds(L"eOnly32bit", false));
    EXPECT_FALSE(IsNeedToAddPuIds(L"eOnly64bit", false));
    EXPECT_TRUE(IsNeedToAddPuIds(L"eBoth32And64bit", false));
}

} // namespace
