// The deployment's aliases and components, which only CFunctionXml gives.

#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using namespace SrvFrwk;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

class Aliases : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        return CFunctionXml().QueryValue(
            {.ulValueType = ValueType::g_ulDeployAlias, .pValueData = &m_lstAlias, .pOptionData = &m_stPath});
    }
    std::uint32_t Store(DeployAliasConfig _lstAlias)
    {
        return CFunctionXml().StoreValue(
            {.ulValueType = ValueType::g_ulDeployAlias, .pValueData = &_lstAlias, .pOptionData = &m_stPath});
    }
    void Write(std::string_view _svXml) const { m_cProduct.Store(DocumentId::Alias, _svXml, L"a.xen"); }
    std::string Plain() const { return m_cProduct.Plain(DocumentId::Alias, L"a.xen"); }
    std::string Stored() const { return m_cProduct.Stored(DocumentId::Alias, L"a.xen"); }

    TestProduct m_cProduct;
    XmlPathConfig m_stPath{{{}, m_cProduct.Folder().Path().wstring()}, L"a.xen"};
    DeployAliasConfig m_lstAlias = DeployAliasConfig(2);
};

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
    ASSERT_EQ(m_lstAlias.size(), 4U);
    EXPECT_EQ(m_lstAlias.back().strId, L"B");
    EXPECT_EQ(m_lstAlias.back().strProperty, L"Q");
    EXPECT_EQ(m_lstAlias.back().strValue, L"again");
    EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_cProduct.Folder().File(L"a.xen")));
}

TEST_F(Aliases, AStoreThatFailsLeavesTheDocument)
{
    struct Row
    {
        int iLine;
        const char* szDocument;
        std::wstring tszValue;
        std::wstring tszLine;
    };
    const Row aRow[] = {
        {__LINE__, "<Aliases/>", L"\x1F", L"ErrorCode:[0x00000006], Line[0x00000003], FileName:[]"},
        {__LINE__, "<Aliases/>", std::wstring(1, wchar_t{0xD800}), L"ErrorCode:[0x0000000d]"},
        {__LINE__, "<Aliases>\n</aliases>", L"v", L"ErrorCode:[0x00000006], Line[0x00000002], FileName:["},
        {__LINE__, "<Other/>", L"v", L"StoreValueAsDeployAliasConfig() - pxmlAlias was invalid."},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        Write(stRow.szDocument);
        const std::string sBefore = Stored();
        const TraceRecorder cTrace(0x100);
        EXPECT_EQ(Store({{L"A", L"P", stRow.tszValue}}), Result::g_ulFailed);
        EXPECT_THAT(cTrace.Messages().back(), HasSubstr(stRow.tszLine));
        EXPECT_EQ(Stored(), sBefore);
        EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_cProduct.Folder().File(L"a.xen")));
    }
}

TEST_F(Aliases, ManyAliasesAreStoredInOneWalk)
{
    std::string sDocument = "<Aliases>";
    DeployAliasConfig lstAlias;
    for (int i = 0; i < 20000; ++i) { // four hundred million comparisons, were each one searched for
        sDocument += "<Alias Id='" + std::to_string(i) + "'/>";
        lstAlias.push_back({std::to_wstring(2 * i), L"", L"v"});
    }
    Write(sDocument + "</Aliases>");
    const ULONGLONG ullStart = ::GetTickCount64();
    ASSERT_EQ(Store(lstAlias), Result::g_ulSuccess);
    EXPECT_LT(::GetTickCount64() - ullStart, 5000U);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_lstAlias.size(), 30000U);
}

TEST_F(Aliases, WhatIsMissingIsToldByItsName)
{
    TraceRecorder cTrace(0x100);
    const std::wstring tszReader = L"*** CFunctionXml::QueryValueAsDeployAliasConfig() - ";
    EXPECT_EQ(Query(), Result::g_ulMissingObject); // no such file
    EXPECT_EQ(cTrace.Messages().back(), tszReader + L"tszXmlPath was empty.");
    EXPECT_THAT(m_lstAlias, IsEmpty());
    EXPECT_EQ(Store({}), Result::g_ulMissingObject);
    EXPECT_EQ(cTrace.Messages().back(), L"*** CFunctionXml::StoreValueAsDeployAliasConfig() - tszXmlPath was empty.");
    m_stPath.tszXmlFileName.clear();
    EXPECT_EQ(Query(), Result::g_ulMissingObject);
    EXPECT_EQ(cTrace.Messages().back(), tszReader + L"tszXmlFileName was empty.");
}

class Components : public testing::Test
{
protected:
    std::uint32_t Query(std::uint32_t _ulSection = 1, std::uint32_t _ulRunMode = 1)
    {
        return CFunctionXml().QueryValue({.ulValueType = ValueType::g_ulDeployComponent,
                                          .ulValueSubType = _ulSection,
                                          .pValueData = &m_lstComponent,
                                          .ulValueOption = _ulRunMode,
                                          .pOptionData = &m_stPath});
    }
    void Write(const std::string& _rsInstall) const
    {
        m_cProduct.Store(DocumentId::Component,
                         "<Components><Uninstall/><Install>" + _rsInstall + "</Install></Components>", L"c.xen");
    }

    TestProduct m_cProduct;
    XmlPathConfig m_stPath{{{}, m_cProduct.Folder().Path().wstring() + L"\\"}, L"c.xen"};
    DeployComponentConfig m_lstComponent = DeployComponentConfig(1);
};

TEST_F(Components, EveryFieldOfEveryPartIsRead)
{
    Write(R"(<Component Id="C" Directory="D" Platform="Vista32" Process="X86">
        <File Id="f" Action="deploy" SourceDirectory="sd" SourceName="sn" Name="n" Overwrite="no"
            ActionAfterRebootIfFailed="yes" CompareVersion="yes"/>
        <Registry Root="HKLM" Key="K"><RegistryValue Name="N" OverWrite="yes" AllAccess="no" AccessMode="default"
            Action="write">data</RegistryValue></Registry>
        <IniFile><IniValue/></IniFile>
        <Shortcut Id="s" Action="remove" Name="sn" Target="t" Arguments="a" Icon="i" Description="d"
            RootProductDirectory="r"/><Shortcut Id="nameless" Action="deploy"/></Component>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_lstComponent.size(), 1U);
    const DeployComponent& stComponent = m_lstComponent.front();
    EXPECT_EQ(stComponent.strId + stComponent.strDirectory, L"CD");
    ASSERT_EQ(stComponent.lstFile.size(), 1U);
    const DeployFile& stFile = stComponent.lstFile.front();
    EXPECT_EQ(stFile.strId + stFile.strSourceDirectory + stFile.strSourceName + stFile.strName, L"fsdsnn");
    EXPECT_EQ(stFile.eAction, 1);
    EXPECT_TRUE(stFile.bActionAfterRebootIfFailed && stFile.bCompareVersion && !stFile.bOverwrite &&
                !stFile.bEmptyEntry);
    ASSERT_EQ(stComponent.vecKey.size(), 1U);
    EXPECT_EQ(stComponent.vecKey[0].strData, L"data");
    ASSERT_EQ(stComponent.lstShortcut.size(), 1U);
    const DeployShortcut& stShortcut = stComponent.lstShortcut.front();
    EXPECT_EQ(stShortcut.eAction, 2);
    EXPECT_EQ(stShortcut.strTarget + stShortcut.strArguments + stShortcut.strIcon + stShortcut.strDescription +
                  stShortcut.strRootProductDirectory,
              L"taidr");
    const std::wstring tszDirectory = L"@@@ Xml parser directory: " + m_stPath.stXmlDirectoryConfig.tszXmlDir;
    const std::vector<std::wstring> vecLine = cTrace.Lines();
    EXPECT_EQ(std::vector(vecLine.end() - 4, vecLine.end()),
              (std::vector<std::wstring>{tszDirectory, L".w. [Leave] CFunctionXml::GetKeyConfig()...",
                                         L".w. [Leave] CFunctionXml::QueryValueAsDeployComponentConfig()...",
                                         L".w. [Leave] CFunctionXml::QueryValue()..."}));
    EXPECT_THAT(m_cProduct.Leftovers(), ElementsAre(m_cProduct.Folder().File(L"c.xen")));
    EXPECT_EQ(Query(2), Result::g_ulSuccess);
    EXPECT_THAT(m_lstComponent, IsEmpty());
}

TEST_F(Components, TheirFiltersCompareWithCase)
{
    struct Row
    {
        int iLine;
        const char* szAttributes;
        const char* szKept; // in the run modes 0, 1 and 2
    };
    const Row aRow[] = {
        {__LINE__, "", "yyy"},
        {__LINE__, "Execute='setup'", "nyn"},
        {__LINE__, "Execute='changelang'", "nny"},
        {__LINE__, "Execute='Setup'", "yyy"},
        {__LINE__, "Platform='all'", "yyy"},
        {__LINE__, "Platform=''", "yyy"},
        {__LINE__, "Platform='Me'", "yyy"}, // known is enough
        {__LINE__, "Platform='All'", "nnn"},
        {__LINE__, "Platform='vista32'", "nnn"},
        {__LINE__, "Process='x86'", "nnn"},
        {__LINE__, "Process='X86'", "yyy"},
        {__LINE__, "Process='x64'", "yyy"},
    };
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, stRow.szAttributes);
        Write("<Component " + std::string(stRow.szAttributes) + "/>");
        std::string sKept;
        for (const std::uint32_t ulRunMode : {0U, 1U, 2U}) {
            EXPECT_EQ(Query(1, ulRunMode), Result::g_ulSuccess);
            sKept += m_lstComponent.empty() ? 'n' : 'y';
        }
        EXPECT_EQ(sKept, stRow.szKept);
    }
}

TEST_F(Components, AFileKnowsWhetherItNamesNothing)
{
    Write(R"(<Component><File/><File Action="deploy"/><File Action="deploy" SourceName="s"/><File Action="remove"
        SourceName="s"/><File Action="remove" Name="n"/><File Action="Deploy" Overwrite="No" CompareVersion="YES"/>
        </Component>)");
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    std::string sFiles;
    for (const DeployFile& stFile : m_lstComponent.front().lstFile) {
        sFiles += std::to_string(stFile.eAction) + (stFile.bEmptyEntry ? "empty " : " ");
        EXPECT_TRUE(stFile.bOverwrite && !stFile.bCompareVersion && !stFile.bActionAfterRebootIfFailed);
    }
    EXPECT_EQ(sFiles, "0 1empty 1 2empty 2 0 ");
}

TEST_F(Components, AFailureKeepsTheComponentsBeforeIt)
{
    TraceRecorder cTrace(0x100);
    Write("<Component Id='1'/><Component Id='2'><Registry Root='HKLM'><RegistryValue OsType='Windows'/></Registry>"
          "</Component><Component Id='3'/>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_EQ(m_lstComponent.size(), 1U);
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(L"*** CFunctionXml::GetKeyConfig() - OsType is invalid. [Windows]",
                            L"*** CFunctionXml::QueryValueAsDeployComponentConfig() - this->GetKeyConfig() failed. "
                            L"[0x80040201]"));
    cTrace.Clear();
    EXPECT_EQ(Query(3), Result::g_ulInvalidArgument);
    EXPECT_THAT(cTrace.Messages(), ElementsAre(L"*** CFunctionXml::QueryValueAsDeployComponentConfig() - "
                                               L"_ulValueSubType was invalid. [0x00000003]"));
}

} // namespace
