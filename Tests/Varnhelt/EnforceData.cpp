// The enforcement data.

#include "AllocationFault.h"
#include "DocumentTest.h"

namespace {

using EnforceData = DocumentTest<ValueType::g_ulEnforceData, std::vector<DataController>>;

#define QUERY L"@@@ *** CFunctionXml::QueryValueAsEnforceData() "
#define RULE L"---------------------------------------------."

TEST_F(EnforceData, AQueryReadsEveryFieldAndDumpsItInItsOrder)
{
    Write(R"(<DataEnforceLayer><DataControllers>
  <DataController Controller="eContentsProtection" version="17.0.1" label="Inhalte"><Module>eExecutable</Module>
    <Startup>eDemand</Startup><OrderOfLoading>010</OrderOfLoading><ConcurrentLoading>true</ConcurrentLoading>
    <OrderOfUnloading>7</OrderOfUnloading><ConcurrentUnLoading>0</ConcurrentUnLoading><PuId>0x1A</PuId>
    <ModuleName>Inhalt.exe</ModuleName><InitializeOption>eDelayInit</InitializeOption>
    <DataProviders><!-- of any name --><Anything Controller="eCommon" Provider="eUrlFilter" version="1.2" label="Filter">
      <Module>eInlineCode</Module><Startup>eAutomatic</Startup><OrderOfLoading>0x11</OrderOfLoading><OrderOfUnloading/>
      <Shared>eSharedProvider</Shared><Layer>eEnforceLayer</Layer><Service>eEnforceHandler</Service>
      <DependencyController>eFirewall</DependencyController><DependencyProvider>eHomeNetwork</DependencyProvider>
      <AdditionalCallAfterInstall>1</AdditionalCallAfterInstall><ModuleName>Filter.dll</ModuleName>
      <AdditionalCallAfterUninstall>FALSE</AdditionalCallAfterUninstall>
      <InitializeOption>ePartialinit</InitializeOption></Anything></DataProviders>
  </DataController></DataControllers></DataEnforceLayer>)");
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    const DataProvider stProvider = {0x10000, 0x800,         3,      1, 17, 0, 2, 8, 0x40, 4, 0x20000, true,
                                     false,   L"Filter.dll", L"1.2", 0};
    EXPECT_EQ(m_Records, Records({{8, 1, 2, 8, TRUE, 7, FALSE, 0x1A, L"Inhalt.exe", L"17.0.1", 2, {stProvider}}}));
    const Lines vecDump = Joined(
        {Behind(QUERY,
                {RULE, L"- [label]           :Inhalte.", L"- [ControllerType]  :0x00000008.",
                 L"- [eModuleType]     :0x00000001.", L"- [Startup]         :0x00000002.", L"- [OrderOfLoading]  :8.",
                 L"- [ConcurrentLoad]  :1.", L"- [OrderOfUnloading]:7.", L"- [ConcurrentUnload]:0.",
                 L"- [PuId]            :0x0000001a.", L"- [Module Name]     :Inhalt.exe.",
                 L"- [Version]         :17.0.1.", L"- [InitOption]      :0x00000002.", RULE}),
         {L"!!! *** Frwk::Utility::GetDelayInitialize() - Invalid delay initialize Type. [ePartialinit]",
          L"@@@ *** CFunctionXml::SetDataProvider() " RULE},
         Behind(QUERY L"- SetDataProvider()",
                {L"[label]           :Filter.", L"[ControllerType]  :0x00010000.", L"[ProviderType]    :0x00000800.",
                 L"[eModuleType]     :0x00000003.", L"[eStartUpType]    :0x00000001.", L"[OrderOfLoading]  :17.",
                 L"[OrderOfUnloading]:0.", L"[eSharedType]     :0x00000002.", L"[LayerType]       :0x00000008.",
                 L"[ServiceType]     :0x00000040.", L"[Dep-Controller]  :0x00000004.",
                 L"[Dep-Provider]    :0x00020000.", L"[Add-Ins-Call]    :true.", L"[Add-Unins-Call]  :false.",
                 L"[Module Name]     :Filter.dll.", L"[Version]         :1.2.", L"[Delay Initialize]  :ePartialinit.",
                 L" " RULE})});
    const Lines vecLine = cTrace.Lines();
    ASSERT_FALSE(vecLine.empty());
    EXPECT_EQ(Lines(vecLine.begin() + 1, vecLine.end()), vecDump); // behind the decryption's line
}

TEST_F(EnforceData, PassesOverAProviderForWhichThereIsNoMemory)
{
    constexpr std::size_t uLong = 300'000;
    const auto Provider = [](const std::string& _rsModule) {
        return "<P Provider='eUrlFilter'><ModuleName>" + _rsModule + "</ModuleName></P>";
    };
    Write("<DataEnforceLayer><DataControllers><DataController><DataProviders>" + Provider("a.dll") +
          Provider(std::string(uLong, 'b')) + Provider("c.dll") + Provider(std::string(uLong, 'd')) +
          "</DataProviders></DataController></DataControllers></DataEnforceLayer>");
    const AllocationFault cFault(1, uLong, true);
    const TraceRecorder cTrace(0x100);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    std::vector<wchar_t> vecFirst;
    for (const DataProvider& stProvider : m_Records.at(0).vecProvider) {
        vecFirst.push_back(stProvider.tszModuleName[0]);
    }
    EXPECT_THAT(vecFirst, ElementsAre(L'a', L'c', L'd'));
    Lines vecLine = cTrace.Lines();
    std::erase_if(vecLine, [](const std::wstring& _rtsz) { return _rtsz.find(L"DataProvider") == std::wstring::npos; });
    EXPECT_EQ(vecLine, Lines({L"!!! *** CFunctionXml::SetDataProvider() - Got Exception().",
                              L"!!! *** CFunctionXml::QueryValueAsEnforceData() - this->SetDataProvider() failed. "
                              L"[0x80040201]"}));
}

} // namespace
