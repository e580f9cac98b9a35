// The deployment's aliases and components, which only CFunctionXml gives.

#include "DocumentTest.h"

namespace {

using Aliases = DocumentTest<ValueType::g_ulDeployAlias, DeployAliasConfig>;

TEST_F(Aliases, AStoreUpdatesEveryAliasOfItsIdAndAppendsWhatIsNew)
{
    Write("<Aliases v='1'><!-- c --><Alias Id='A' Property='P'>1</Alias><Other Id='A'/><Alias Id='a'>2</Alias>"
          "<Alias Id='A' x='y'/></Aliases>");
    const DeployAliasConfig lstAlias = {
        {L"A", L"", L"new \u00E4"}, {L"B", L"Q", L""}, {L"A", L"R", L"last"}, {L"B", L"", L"again"}};
    ASSERT_EQ(Store(lstAlias), Result::g_ulSuccess);
    EXPECT_EQ(Plain(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Aliases v=\"1\">\r\n\t<!-- c -->\r\n"
                       "\t<Alias Id=\"A\" Property=\"R\">last</Alias>\r\n\t<Other Id=\"A\"/>\r\n"
                       "\t<Alias Id=\"a\">2</Alias>\r\n\t<Alias Id=\"A\" x=\"y\" Property=\"R\">last</Alias>\r\n"
                       "\t<Alias Id=\"B\" Property=\"Q\">again</Alias>\r\n</Aliases>\r\n");
    const std::string sOnce = Stored();
    ASSERT_EQ(Store(lstAlias), Result::g_ulSuccess);
    EXPECT_EQ(Stored(), sOnce);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records,
              Records({{L"A", L"R", L"last"}, {L"a", L"", L"2"}, {L"A", L"R", L"last"}, {L"B", L"Q", L"again"}}));
}

TEST_F(Aliases, AStoreThatFailsLeavesTheDocument)
{
    const struct
    {
        int iLine;
        const char* szDocument;
        std::wstring tszValue;
        const wchar_t* pszLine;
    } aRow[] = {
        {__LINE__, "<Aliases/>", L"\x1F", L"ErrorCode:[0x00000006], Line[0x00000003], FileName:[]"},
        {__LINE__, "<Aliases/>", std::wstring(1, wchar_t{0xD800}), L"ErrorCode:[0x0000000d]"},
        {__LINE__, "<Aliases>\n</aliases>", L"v", L"ErrorCode:[0x00000006], Line[0x00000002], FileName:["},
        {__LINE__, "<Other/>", L"v", L"StoreValueAsDeployAliasConfig() - pxmlAlias was invalid."},
    };
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        Write(stRow.szDocument);
        const std::string sBefore = Stored();
        const TraceRecorder cTrace(0x100);
        EXPECT_EQ(Store({{L"A", L"P", stRow.tszValue}}), Result::g_ulFailed);
        EXPECT_THAT(cTrace.Messages().back(), HasSubstr(stRow.pszLine));
        EXPECT_EQ(Stored(), sBefore);
    }
}

class Components : public DocumentTest<ValueType::g_ulDeployComponent, DeployComponentConfig>
{
protected:
    void WriteInstall(const std::string& _rsXml) const
    {
        Write("<Components><Uninstall/><Install>" + _rsXml + "</Install></Components>");
    }
};

TEST_F(Components, EveryFieldOfEveryPartIsRead)
{
    WriteInstall(R"(<Component Id="C" Directory="D" Platform="Vista32" Process="X86">
        <File Id="f" Action="deploy" SourceDirectory="sd" SourceName="sn" Name="n" Overwrite="no"
            ActionAfterRebootIfFailed="yes" CompareVersion="yes"/>
        <Registry Root="HKLM" Key="K"><RegistryValue Name="N" OverWrite="yes" AllAccess="no" AccessMode="default"
            Action="write">data</RegistryValue></Registry>
        <IniFile><IniValue/></IniFile><Shortcut Id="s" Action="remove" Name="sn" Target="t" Arguments="a" Icon="i"
            Description="d" RootProductDirectory="r"/><Shortcut Id="nameless" Action="deploy"/></Component>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records, Records({{L"C",
                                   L"D",
                                   {{L"f", 1, L"sd", L"sn", L"n", true, false, false, true}},
                                   {{HKEY_LOCAL_MACHINE, L"K", L"N", 0, L"data", 5, 3, true, false, 0}},
                                   {{L"s", 2, L"sn", L"t", L"a", L"i", L"d", L"r"}}}}));
    const Lines vecLine = cTrace.Lines();
    EXPECT_EQ(Lines(vecLine.end() - 4, vecLine.end()),
              Lines({L"@@@ Xml parser directory: " + m_tszFolder, L".w. [Leave] CFunctionXml::GetKeyConfig()...",
                     L".w. [Leave] CFunctionXml::QueryValueAsDeployComponentConfig()...",
                     L".w. [Leave] CFunctionXml::QueryValue()..."}));
    EXPECT_EQ(Query(2), Result::g_ulSuccess);
    EXPECT_THAT(m_Records, IsEmpty());
}

TEST_F(Components, TheirFiltersCompareWithCase)
{
    const std::pair<const char*, const char*> aRow[] = {
        // The second is whether it is kept in the run modes 0, 1 and 2.
        {"", "yyy"},
        {"Execute='setup'", "nyn"},
        {"Execute='changelang'", "nny"},
        {"Execute='Setup'", "yyy"},
        {"Platform='all'", "yyy"},
        {"Platform='Me'", "yyy"}, // known is enough
        {"Platform='All'", "nnn"},
        {"Platform='vista32'", "nnn"},
        {"Process='x86'", "nnn"},
        {"Process='X86'", "yyy"},
    };
    for (const auto& [szAttributes, szKept] : aRow) {
        WriteInstall("<Component " + std::string(szAttributes) + "/>");
        std::string sKept;
        for (const std::uint32_t ulRunMode : {0U, 1U, 2U}) {
            EXPECT_EQ(Query(1, ulRunMode), Result::g_ulSuccess);
            sKept += m_Records.empty() ? 'n' : 'y';
        }
        EXPECT_EQ(sKept, szKept) << szAttributes;
    }
}

TEST_F(Components, AFileKnowsWhetherItNamesNothing)
{
    WriteInstall(R"(<Component><File/><File Action="deploy"/><File Action="deploy" SourceName="s"/><File Action="remove"
        SourceName="s"/><File Action="remove" Name="n"/><File Action="Deploy" Overwrite="No" CompareVersion="YES"/>
        </Component>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records.front().lstFile, std::list<DeployFile>({{L"", 0, L"", L"", L"", false, false, true, false},
                                                                {L"", 1, L"", L"", L"", false, true, true, false},
                                                                {L"", 1, L"", L"s", L"", false, false, true, false},
                                                                {L"", 2, L"", L"s", L"", false, true, true, false},
                                                                {L"", 2, L"", L"", L"n", false, false, true, false},
                                                                {L"", 0, L"", L"", L"", false, false, true, false}}));
}

TEST_F(Components, AFailureKeepsTheComponentsBeforeIt)
{
    const TraceRecorder cTrace(0x100);
    WriteInstall(
        "<Component Id='1'/><Component Id='2'><Registry Root='HKLM'><RegistryValue OsType='Windows'/></Registry>"
        "</Component><Component Id='3'/>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_EQ(m_Records.size(), 1U);
    EXPECT_EQ(Query(3), Result::g_ulInvalidArgument);
    const std::wstring tszReader = L"*** CFunctionXml::QueryValueAsDeployComponentConfig() - ";
    EXPECT_EQ(cTrace.Messages(), Lines({L"*** CFunctionXml::GetKeyConfig() - OsType is invalid. [Windows]",
                                        tszReader + L"this->GetKeyConfig() failed. [0x80040201]",
                                        tszReader + L"_ulValueSubType was invalid. [0x00000003]"}));
}

} // namespace
