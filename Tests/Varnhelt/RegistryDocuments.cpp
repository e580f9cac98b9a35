// The key configuration and the registry data.

#include "ApiFault.h"
#include "DocumentTest.h"
#include "Documents/RegistryData.h"

#include <map>

namespace {

class KeyConfig : public DocumentTest<ValueType::g_ulKeyConfig, std::vector<DeployKey>>
{
protected:
    std::uint32_t Query(const std::string& _rsXml)
    {
        Write("<Config>" + _rsXml + "</Config>");
        return DocumentTest::Query();
    }
};

TEST_F(KeyConfig, ValuesAreReadWithoutCaseAndARootCarriesOver)
{
    const std::string sRest = " AllAccess='NO' AccessMode='64BITKEY' Action='CreateKey'";
    const TraceRecorder cTrace(0x11);
    ASSERT_EQ(Query("<Registry Root='HKXX' Key='k0'><RegistryValue OverWrite='yes'" + sRest + "/></Registry>" +
                    "<Registry Root='hklm' Key='k1'><RegistryValue Name='n' Type='DWord' OverWrite='Yes' "
                    "On='UNINSTALL'" +
                    sRest + ">&#xE4;</RegistryValue></Registry>" +
                    "<Registry Key='k2'><RegistryValue Type='other' OverWrite='no'" + sRest + "/></Registry>" +
                    "<Registry Root='HKU'><RegistryValue OverWrite='no'" + sRest + "/></Registry><IniFile/>"),
              Result::g_ulSuccess);
    EXPECT_EQ(m_Records, Records({{nullptr, L"k0", L"", 0, L"", 2, 3, true, false, 2},
                                  {HKEY_LOCAL_MACHINE, L"k1", L"n", 4, L"\u00E4", 2, 2, true, false, 2},
                                  {HKEY_LOCAL_MACHINE, L"k2", L"", 0, L"", 2, 3, false, false, 2},
                                  {HKEY_USERS, L"", L"", 0, L"", 2, 3, false, false, 2}}));
    EXPECT_EQ(ReaderLines(cTrace),
              Lines({L".w. [Enter] CFunctionXml::QueryValueAsKeyConfig()...",
                     L"@@@ Xml parser directory: " + m_tszFolder, L".w. [Leave] CFunctionXml::GetKeyConfig()...",
                     L".w. [Leave] CFunctionXml::QueryValueAsKeyConfig()..."}));
}

TEST_F(KeyConfig, AValueThatIsIncompleteOrForOthersIsLeftOutSilently)
{
    const struct
    {
        int iLine;
        const char* szName; // of the attribute that is changed
        const char* szText;
        bool bKept;
    } aRow[] = {
        {__LINE__, "OverWrite", "true", false},
        {__LINE__, "AllAccess", "", false},
        {__LINE__, "AccessMode", "32bit", false},
        {__LINE__, "Action", "delete", false},
        {__LINE__, "On", "never", false},
        {__LINE__, "On", "", true},
        {__LINE__, "OsType", "", true},
        {__LINE__, "OsType", "NTORLATER", true},
        {__LINE__, "OsType", "me", false},
        {__LINE__, "Assign", "VARNHELTTESTS.EXE", true},
        {__LINE__, "Assign", "VarnheltTests", false},
    };
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, stRow.szName);
        std::map<std::string, std::string> mapAttribute = {
            {"OverWrite", "no"}, {"AllAccess", "no"}, {"AccessMode", "32bitKey"}, {"Action", "append"}};
        mapAttribute[stRow.szName] = stRow.szText;
        std::string sValue;
        for (const auto& [sName, sText] : mapAttribute) {
            sValue += " " + sName + "='" + sText + "'";
        }
        const TraceRecorder cTrace(0x100);
        EXPECT_EQ(Query("<Registry Root='HKCU'><RegistryValue" + sValue + "/></Registry>"), Result::g_ulSuccess);
        EXPECT_EQ(m_Records.size(), stRow.bKept ? 1U : 0U);
        EXPECT_THAT(cTrace.Lines(), IsEmpty());
    }
}

TEST_F(KeyConfig, WhatCannotBeDecidedFailsWithItsLine)
{
    const std::string sGood = "<RegistryValue OverWrite='no' AllAccess='no' AccessMode='default' Action='write'/>";
    const std::wstring tszReader = L"*** CFunctionXml::GetKeyConfig() - ";
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Query("<Registry>" + sGood + "<RegistryValue OsType='Vista 32'/>" + sGood + "</Registry>"),
              Result::g_ulFailed);
    EXPECT_EQ(m_Records.size(), 1U);
    {
        // The first call is the parser's, which looks for its library beside the module.
        const ApiFault<API(GetModuleFileNameW)> cFault(ERROR_NOT_ENOUGH_MEMORY, 2, 100);
        EXPECT_EQ(Query("<Registry><RegistryValue Assign='a.exe'/></Registry>"), Result::g_ulFailed);
    }
    const wchar_t* pszFailed = L"*** CFunctionXml::QueryValueAsKeyConfig() - this->GetKeyConfig() failed. [0x80040201]";
    EXPECT_EQ(cTrace.Messages(), Lines({tszReader + L"OsType is invalid. [Vista 32]", pszFailed,
                                        tszReader + L"GetModuleFileName() failed. [0x00000008]", pszFailed}));
}

class RegistryDocument : public DocumentTest<ValueType::g_ulRegistryData, std::vector<RegistryData>>
{
protected:
    std::uint32_t Query(std::vector<std::wstring> _vecLabel)
    {
        RegistryDataRequest stRequest{std::move(_vecLabel), m_tszFolder + m_pszFile};
        return CFunctionXml().QueryValue(
            {.ulValueType = ValueType::g_ulRegistryData, .pValueData = &m_Records, .pOptionData = &stRequest});
    }
};

TEST_F(RegistryDocument, ValuesOfTheSelectedComponentsAreReadWithTheirPlace)
{
    Write(R"(<Quillmar><Component label="a"><Reg key="HKEY_LOCAL_MACHINE\S\X" access="all">
        <Element><Name>1</Name><Type>reg_qword</Type><Value>0xFFFFFFFFFFFFFFFF</Value></Element>
        <Element><Name>2</Name><Type>REG_SZ</Type><Value>16x</Value></Element></Reg>
        <Reg key="HKEY_LOCAL_MACHINE\" access="All"><Element><Name>3</Name><Type>REG_MULTI_SZ</Type><Value>010</Value>
        </Element></Reg></Component><Component label="A"/>
        <Component><Reg key="HKEY_LOCAL_MACHINE\Y"><Element/></Reg></Component></Quillmar>)");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query({L"b", L"a"}), Result::g_ulSuccess);
    EXPECT_EQ(m_Records,
              Records({{HKEY_LOCAL_MACHINE, L"S\\X", true, L"1", 11, L"0xFFFFFFFFFFFFFFFF", 0xFFFFFFFFFFFFFFFFU},
                       {HKEY_LOCAL_MACHINE, L"S\\X", true, L"2", 1, L"16x", 0},
                       {HKEY_LOCAL_MACHINE, L"", false, L"3", 0, L"010", 8}}));
    const std::wstring tszComponent = L"@@@ CFunctionXml::GetRegistryComponent() - ";
    EXPECT_EQ(
        ReaderLines(cTrace),
        Lines({L".w. [Enter] CFunctionXml::QueryValueAsRegistryData()...",
               L".w. [Enter] CFunctionXml::GetRegistryComponent()...", tszComponent + L"root key: [HKEY_LOCAL_MACHINE]",
               tszComponent + L"sub key: S\\X, all access: 1", L".w. [Enter] CFunctionXml::GetRegistryElements()...",
               L".w. [Leave] CFunctionXml::GetRegistryElements()...", tszComponent + L"root key: [HKEY_LOCAL_MACHINE]",
               tszComponent + L"sub key: , all access: 0", L".w. [Enter] CFunctionXml::GetRegistryElements()...",
               L".w. [Leave] CFunctionXml::GetRegistryElements()...",
               L".w. [Leave] CFunctionXml::GetRegistryComponent()...",
               L".w. [Leave] CFunctionXml::QueryValueAsRegistryData()..."}));
    ASSERT_EQ(Query({L"*"}), Result::g_ulSuccess);
    EXPECT_EQ(m_Records.size(), 4U);
    ASSERT_EQ(Query({}), Result::g_ulSuccess);
    EXPECT_THAT(m_Records, IsEmpty());
}

TEST_F(RegistryDocument, AKeyThatIsNoneAndABadDocumentFailWithTheirLines)
{
    const std::wstring tszReader = L"*** CFunctionXml::QueryValueAsRegistryData() - ";
    const std::wstring tszComponent = L"CFunctionXml::GetRegistryComponent() - ";
    const TraceRecorder cTrace(0x100);
    for (const std::string sKey : {"HKLM\\S", "hkey_local_machine\\S", "Software"}) {
        Write("<Quillmar><Component><Reg key='HKEY_LOCAL_MACHINE\\A'><Element/></Reg><Reg key='" + sKey +
              "'><Element/></Reg></Component></Quillmar>");
        EXPECT_EQ(Query({L""}), Result::g_ulFailed);
        EXPECT_EQ(m_Records.size(), 1U);
    }
    Write("<Quillmar>\n<Component></Quillmar>");
    EXPECT_EQ(Query({L"*"}), Result::g_ulFailed);
    m_pszFile = L"none";
    EXPECT_EQ(Query({L"*"}), Result::g_ulFailed);
    EXPECT_EQ(CarryOut(&Varnhelt::Documents::QueryValueAsRegistryData, {.pValueData = &m_Records}),
              Result::g_ulMissingObject);
    const std::wstring tszFailed = tszReader + L"GetRegistryComponent() failed.[0x80040201]";
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(tszComponent + L"unsupported root key: HKLM", tszFailed,
                            tszComponent + L"unsupported root key: hkey_local_machine", tszFailed,
                            tszComponent + L"parsing 'key' error: [Software]", tszFailed,
                            HasSubstr(tszReader + L"Xml Error [0x00000007] line [2] file ["),
                            tszReader + L"Got ZkCommon::Storage::XmlException() failed. [0x00000002]",
                            tszReader + L"_lpvParameter was NULL."));
}

} // namespace
