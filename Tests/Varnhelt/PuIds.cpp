// The install component numbers.

#include "Documents/PuIds.h"

#include "DocumentTest.h"

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
    EXPECT_EQ(m_Records, Records({{16, 16, 0}, {8}, {12}, {}, 0}));
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
    const auto Told = [](const Lines& _rvecValue, const Lines& _rvecWhy) {
        const wchar_t* const aName[] = {L"label]    :", L"version]  :", L"Component]:", L"PuId]     :", L"Platform] :"};
        Lines vecLine;
        for (const std::wstring& tszValue : _rvecValue) {
            vecLine.push_back(L" [" + (aName[vecLine.size()] + tszValue) + L".");
        }
        return Behind(L"@@@ *** CFunctionXml::QueryValueAsInstallPuIds() -", Joined({vecLine, _rvecWhy}));
    };
    const wchar_t* pszRule = L"--------------------------------------------.";
    const wchar_t* pszOtherPlatform = L" This component is not used for this platform. PuId[0x00000000]";
    EXPECT_EQ(
        cTrace.Lines(),
        Joined({Told({L"Muster \u00E4", L"1.2", L"eNone", L"0x000000ff", L"eOnly64bit"},
                     {L" eNone was specified for Component Type.", pszRule}),
                Told({L"", L"", L"epattern", L"0x00000000", L"eBoth32And64bit"},
                     {L" Component Type was invalid. [epattern]", pszRule}),
                Told({L"", L"", L"eEngine", L"0x00000000", L"eOnly32bit"}, {pszOtherPlatform, pszRule}),
                Told({L"", L"", L"", L"0x00000000", L"eonly64bit"}, {}),
                {L"!!! *** CFunctionXml::IsNeedToAddPuIds() - Not support Platform String was specified. [eonly64bit]"},
                Told({}, {pszOtherPlatform, pszRule})}));
}

TEST(PuIdEntries, CountByTheSystemsWidth)
{
    using Varnhelt::Documents::IsNeedToAddPuIds;
    EXPECT_TRUE(IsNeedToAddPuIds(L"eOnly32bit", false));
    EXPECT_FALSE(IsNeedToAddPuIds(L"eOnly64bit", false));
    EXPECT_TRUE(IsNeedToAddPuIds(L"eBoth32And64bit", false));
}

} // namespace
