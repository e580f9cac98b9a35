// The key configuration and the registry data.

#include "ApiFault.h"
#include "FunctionProvider.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

using Lines = std::vector<std::wstring>;

class KeyConfig : public testing::Test
{
protected:
    std::uint32_t Query()
    {
        return CFunctionProvider().QueryValue(0, ValueType::g_ulKeyConfig, 0, &m_vecKey, 0, &m_stDirectory);
    }
    void Write(const std::string& _rsXml) const
    {
        m_cProduct.Store(DocumentId::KeyConfig, "<Config>" + _rsXml + "</Config>");
    }

    TestProduct m_cProduct;
    XmlDirectoryConfig m_stDirectory{{}, m_cProduct.Folder().Path().wstring()};
    std::vector<DeployKey> m_vecKey = std::vector<DeployKey>(2);
};

TEST_F(KeyConfig, ValuesAreReadWithoutCaseAndARootCarriesOver)
{
    const std::string sRest = " AllAccess='NO' AccessMode='64BITKEY' Action='CreateKey'";
    Write("<Registry Root='HKXX' Key='k0'><RegistryValue OverWrite='yes'" + sRest + "/></Registry>" +
          "<Registry Root='hklm' Key='k1'><RegistryValue Name='n' Type='DWord' OverWrite='Yes' On='UNINSTALL'" + sRest +
          ">&#xE4;</RegistryValue></Registry><Registry Key='k2'><RegistryValue Type='other' OverWrite='no'" + sRest +
          "/></Registry><Registry Root='HKU'><RegistryValue OverWrite='no'" + sRest + "/></Registry><IniFile/>");
    const TraceRecorder cTrace(0x11);
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    ASSERT_EQ(m_vecKey.size(), 4U);
    EXPECT_EQ(m_vecKey[0].hRoot, nullptr);
    EXPECT_EQ(m_vecKey[1].hRoot, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(m_vecKey[2].hRoot, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(m_vecKey[3].hRoot, HKEY_USERS);
    EXPECT_EQ(m_vecKey[3].strKey, L"");
    const DeployKey& stKey = m_vecKey[1];
    EXPECT_EQ(stKey.strKey + stKey.strName + stKey.strData, L"k1n\u00E4");
    EXPECT_EQ(stKey.ulType, 4U);
    EXPECT_EQ(stKey.eAction, 2);
    EXPECT_EQ(stKey.eOn, 2);
    EXPECT_EQ(stKey.eAccessMode, 2);
    EXPECT_TRUE(stKey.bOverWrite && !stKey.bAllAccess);
    EXPECT_EQ(m_vecKey[2].ulType, 0U);
    EXPECT_EQ(m_vecKey[2].eOn, 3);
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00008000],VST[0x00000000]",
                            L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00008000],VST[0x00000000]",
                            L".w. [Enter] CFunctionXml::QueryValueAsKeyConfig()...",
                            L"@@@ Xml parser directory: " + m_stDirectory.tszXmlDir + L"\\",
                            L".w. [Leave] CFunctionXml::GetKeyConfig()...",
                            L".w. [Leave] CFunctionXml::QueryValueAsKeyConfig()...",
                            L".w. [Leave] CFunctionXml::QueryValue()...",
                            L".w. [Leave] CFunctionProvider::QueryValue()..."));
}

TEST_F(KeyConfig, AValueThatIsIncompleteOrForOthersIsLeftOutSilently)
{
    struct Row
    {
        int iLine;
        const char* szName; // of the attribute that is changed
        const char* szText; // null: left out
        bool bKept;
    };
    const Row aRow[] = {
        {__LINE__, "", "", true},
        {__LINE__, "OverWrite", nullptr, false},
        {__LINE__, "OverWrite", "true", false},
        {__LINE__, "AllAccess", "", false},
        {__LINE__, "AccessMode", nullptr, false},
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
    for (const Row& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, stRow.szName);
        std::string sValue = "<RegistryValue";
        const auto Add = [&](const std::string& _rsName, const char* _szText) {
            if (_szText != nullptr) {
                sValue += " " + _rsName + "='" + _szText + "'";
            }
        };
        for (const auto& [szName, szText] : {std::pair("OverWrite", "no"), std::pair("AllAccess", "no"),
                                             std::pair("AccessMode", "32bitKey"), std::pair("Action", "append")}) {
            if (std::string(szName) != stRow.szName) {
                Add(szName, szText);
            }
        }
        if (*stRow.szName != '\0') {
            Add(stRow.szName, stRow.szText);
        }
        Write("<Registry Root='HKCU'>" + sValue + "/></Registry>");
        const TraceRecorder cTrace(0x100);
        EXPECT_EQ(Query(), Result::g_ulSuccess);
        EXPECT_EQ(m_vecKey.size(), stRow.bKept ? 1U : 0U);
        EXPECT_THAT(cTrace.Lines(), IsEmpty());
    }
}

TEST_F(KeyConfig, WhatCannotBeDecidedFailsWithItsLine)
{
    const std::string sGood = "<RegistryValue OverWrite='no' AllAccess='no' AccessMode='default' Action='write'/>";
    TraceRecorder cTrace(0x100);
    Write("<Registry>" + sGood + "<RegistryValue OsType='Vista 32'/>" + sGood + "</Registry>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_EQ(m_vecKey.size(), 1U);
    EXPECT_EQ(cTrace.Messages()[0], L"*** CFunctionXml::GetKeyConfig() - OsType is invalid. [Vista 32]");
    EXPECT_EQ(cTrace.Messages()[1],
              L"*** CFunctionXml::QueryValueAsKeyConfig() - this->GetKeyConfig() failed. [0x80040201]");

    cTrace.Clear();
    Write("<Registry><RegistryValue Assign='a.exe'/></Registry>");
    {
        // The first call is the parser's, which looks for its library beside the module.
        const ApiFault<API(GetModuleFileNameW)> cFault(ERROR_NOT_ENOUGH_MEMORY, 2, 100);
        EXPECT_EQ(Query(), Result::g_ulFailed);
    }
    EXPECT_EQ(cTrace.Messages()[0], L"*** CFunctionXml::GetKeyConfig() - GetModuleFileName() failed. [0x00000008]");

    cTrace.Clear();
    m_cProduct.Store(DocumentId::KeyConfig, "<Config>");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    EXPECT_EQ(cTrace.Messages()[0], L"*** CFunctionXml::QueryValueAsKeyConfig() - Got "
                                    L"ZkCommon::Storage::XmlException() failed. [0x00000006]");
}

class RegistryDocument : public testing::Test
{
protected:
    std::uint32_t Query(std::vector<std::wstring> _vecLabel)
    {
        m_stRequest.vecLabel = std::move(_vecLabel);
        return CFunctionProvider().QueryValue(0, ValueType::g_ulRegistryData, 0, &m_vecData, 0, &m_stRequest);
    }
    void Write(const std::string& _rsXml) const
    {
        m_cProduct.Folder().Write(L"data.xml", "<Quillmar>" + _rsXml + "</Quillmar>");
    }
    /** The names that were read, in their order. */
    std::wstring Names() const
    {
        std::wstring tszNames;
        for (const RegistryData& stData : m_vecData) {
            tszNames += stData.tszName;
        }
        return tszNames;
    }

    TestProduct m_cProduct;
    RegistryDataRequest m_stRequest{{}, m_cProduct.Folder().File(L"data.xml")};
    std::vector<RegistryData> m_vecData = std::vector<RegistryData>(2);
};

std::string Element(const std::string& _rsName, const std::string& _rsType, const std::string& _rsValue)
{
    return "<Element><Name>" + _rsName + "</Name><Type>" + _rsType + "</Type><Value>" + _rsValue + "</Value></Element>";
}

TEST_F(RegistryDocument, ValuesOfTheSelectedComponentsAreReadWithTheirPlace)
{
    Write("<Component label='a'><Reg key='HKEY_LOCAL_MACHINE\\S\\X' access='all'>" +
          Element("1", "reg_qword", "0xFFFFFFFFFFFFFFFF") + Element("2", "REG_SZ", "16x") +
          "</Reg><Reg key='HKEY_LOCAL_MACHINE\\' access='All'>" + Element("3", "REG_MULTI_SZ", "010") +
          "</Reg></Component><Component label='A'/><Component><Reg key='HKEY_LOCAL_MACHINE\\Y'><Element/></Reg>"
          "</Component>");
    const TraceRecorder cTrace;
    ASSERT_EQ(Query({L"b", L"a"}), Result::g_ulSuccess);
    ASSERT_EQ(Names(), L"123");
    EXPECT_EQ(m_vecData[0].hRoot, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(m_vecData[0].tszSubKey, L"S\\X");
    EXPECT_EQ(m_vecData[0].ulType, 11U);
    EXPECT_EQ(m_vecData[0].ullValue, 0xFFFFFFFFFFFFFFFFU);
    EXPECT_TRUE(m_vecData[0].bAllAccess);
    EXPECT_EQ(m_vecData[1].ullValue, 0U);
    EXPECT_EQ(m_vecData[1].tszValue, L"16x");
    EXPECT_EQ(m_vecData[2].tszSubKey, L"");
    EXPECT_EQ(m_vecData[2].ulType, 0U);
    EXPECT_EQ(m_vecData[2].ullValue, 8U);
    EXPECT_FALSE(m_vecData[2].bAllAccess);
    const Lines vecLine = cTrace.Lines();
    EXPECT_EQ(Lines(vecLine.begin() + 2, vecLine.end() - 2),
              (Lines{L".w. [Enter] CFunctionXml::QueryValueAsRegistryData()...",
                     L".w. [Enter] CFunctionXml::GetRegistryComponent()...",
                     L"@@@ CFunctionXml::GetRegistryComponent() - root key: [HKEY_LOCAL_MACHINE]",
                     L"@@@ CFunctionXml::GetRegistryComponent() - sub key: S\\X, all access: 1",
                     L".w. [Enter] CFunctionXml::GetRegistryElements()...",
                     L".w. [Leave] CFunctionXml::GetRegistryElements()...",
                     L"@@@ CFunctionXml::GetRegistryComponent() - root key: [HKEY_LOCAL_MACHINE]",
                     L"@@@ CFunctionXml::GetRegistryComponent() - sub key: , all access: 0",
                     L".w. [Enter] CFunctionXml::GetRegistryElements()...",
                     L".w. [Leave] CFunctionXml::GetRegistryElements()...",
                     L".w. [Leave] CFunctionXml::GetRegistryComponent()...",
                     L".w. [Leave] CFunctionXml::QueryValueAsRegistryData()..."}));
    ASSERT_EQ(Query({L"*"}), Result::g_ulSuccess);
    EXPECT_EQ(m_vecData.size(), 4U);
    ASSERT_EQ(Query({}), Result::g_ulSuccess);
    EXPECT_THAT(m_vecData, IsEmpty());
}

TEST_F(RegistryDocument, AKeyThatIsNoneAndABadDocumentFailWithTheirLines)
{
    const std::pair<const char*, const wchar_t*> aRow[] = {
        {"HKLM\\S", L"CFunctionXml::GetRegistryComponent() - unsupported root key: HKLM"},
        {"hkey_local_machine\\S", L"CFunctionXml::GetRegistryComponent() - unsupported root key: hkey_local_machine"},
        {"Software", L"CFunctionXml::GetRegistryComponent() - parsing 'key' error: [Software]"},
    };
    for (const auto& [szKey, szLine] : aRow) {
        Write("<Component><Reg key='HKEY_LOCAL_MACHINE\\A'>" + Element("1", "", "") + "</Reg><Reg key='" + szKey +
              "'>" + Element("2", "", "") + "</Reg></Component>");
        const TraceRecorder cTrace(0x100);
        EXPECT_EQ(Query({L""}), Result::g_ulFailed);
        EXPECT_EQ(Names(), L"1");
        EXPECT_EQ(cTrace.Messages()[0], szLine);
        EXPECT_EQ(cTrace.Messages()[1],
                  L"*** CFunctionXml::QueryValueAsRegistryData() - GetRegistryComponent() failed.[0x80040201]");
    }
    TraceRecorder cTrace(0x100);
    Write("\n<Component>");
    EXPECT_EQ(Query({L"*"}), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Messages()[0],
                HasSubstr(L"QueryValueAsRegistryData() - Xml Error [0x00000007] line [2] file ["));
    cTrace.Clear();
    m_stRequest.tszXmlFile += L".none";
    EXPECT_EQ(Query({L"*"}), Result::g_ulFailed);
    EXPECT_EQ(cTrace.Messages()[0], L"*** CFunctionXml::QueryValueAsRegistryData() - Got "
                                    L"ZkCommon::Storage::XmlException() failed. [0x00000002]");
    EXPECT_EQ(CFunctionProvider().QueryValue(0, ValueType::g_ulRegistryData, 0, &m_vecData, 0, nullptr),
              Result::g_ulMissingObject);
}

} // namespace
