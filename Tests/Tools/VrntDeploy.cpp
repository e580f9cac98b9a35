// The tool's commands for compatibility, deployment and registry documents.

#include "TestProduct.h"
#include "VrntTest.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using Varnhelt::DocumentId;
using Json = nlohmann::json;

namespace {

class VrntDeploy : public testing::Test
{
protected:
    VrntDeploy()
    {
        m_cProduct.Store(DocumentId::Compatibility, R"(<CompatibilityCheck><Platforms><Platform major_version="6">
            <Product sku="IS"><Action>PreInstallUpdate</Action><ShowMessage>true</ShowMessage><Components>
            <Component class="1">1</Component></Components><Messages><Message>m</Message></Messages></Product>
            </Platform></Platforms></CompatibilityCheck>)");
        m_cProduct.Store(DocumentId::KeyConfig, "<Config>" + Key("HKCU") + "</Config>");
        m_cProduct.Folder().Write(L"data.xml", R"(<Quillmar><Component label="a"><Reg key="HKEY_LOCAL_MACHINE\S"
            access="all"><Element><Name>n</Name><Type>REG_QWORD</Type><Value>0x7FFFFFFFFFFFFFFF</Value></Element></Reg>
            </Component><Component label="b"/></Quillmar>)");
        m_cProduct.Store(DocumentId::Alias, "<Aliases><Alias Id='A'>1</Alias></Aliases>", L"a.xen");
        m_cProduct.Store(DocumentId::Component,
                         "<Components><Install><Component Id='C' Directory='D'><File Name='f' Action='remove'/>" +
                             Key("") + "<Shortcut Name='s'/></Component></Install></Components>",
                         L"c.xen");
        m_cProduct.Folder().Write(L"request.xml", "<body><product><components/></product></body>");
    }
    static std::string Key(const std::string& _rsRoot)
    {
        return "<Registry Root='" + _rsRoot + R"(' Key="K"><RegistryValue Name="N" Type="dword" OverWrite="yes"
            AllAccess="no" AccessMode="64bitKey" Action="write" On="install">7</RegistryValue></Registry>)";
    }
    std::wstring Folder() const { return m_cProduct.Folder().Path().wstring(); }
    std::wstring File(const wchar_t* _pszName) const { return m_cProduct.Folder().File(_pszName); }

    TestProduct m_cProduct;
};

TEST_F(VrntDeploy, EveryQueryPrintsItsRecordsAsJsonAndAsATable)
{
    const std::string sKey = R"("key": "K", "name": "N", "type": 4, "data": "7", "action": 5, "on": 1,
        "overWrite": true, "allAccess": false, "accessMode": 2})";
    const std::string sKeyConfig = R"([{"root": "HKCU", )" + sKey + "]";
    const std::string sComponent =
        R"([{"id": "C", "directory": "D", "files": [{"id": "", "action": 2, "sourceDirectory": "", "sourceName": "",
        "name": "f", "actionAfterRebootIfFailed": false, "emptyEntry": false, "overwrite": true,
        "compareVersion": false}], "keys": [{"root": null, )" +
        sKey + R"(], "shortcuts": [{"id": "", "action": 0, "name": "s", "target": "", "arguments": "", "icon": "",
        "description": "", "rootProductDirectory": ""}]}])";
    const AnswerRow aRow[] = {
        {__LINE__,
         {L"query", L"compatibility", L"--dir", Folder()},
         R"([{"platformMajorVersion": "6", "platformMinorVersion": "", "platformReVersion": "", "platformBuild": "",
              "platformLeftHandMost": false, "servicePack": "", "language": "", "products": [{"skuName": "IS",
              "majorVersion": "", "minorVersion": "", "reVersion": "", "build": "", "leftHandMost": false, "action": 2,
              "secondAction": 1, "showMessage": true, "oemFlag": "", "language": "", "components": [{"class": "1",
              "type": "", "plat": "", "lang": "", "oem": "", "region": "", "ver": "0"}],
              "messages": [{"locale": "EN-US", "message": "m"}]}]}])",
         "6 .*IS .*PreInstallUpdate +Block +yes"},
        {__LINE__, {L"query", L"key-config", L"--dir", Folder()}, sKeyConfig, "HKCU +K +N +dword +7 +write"},
        {__LINE__,
         {L"query", L"registry-data", L"--file", File(L"data.xml"), L"--label", L"x", L"--label", L"a"},
         R"([{"root": "HKLM", "subKey": "S", "allAccess": true, "name": "n", "type": 11,
              "text": "0x7FFFFFFFFFFFFFFF", "number": 9223372036854775807}])",
         "HKLM +S +yes +n +REG_QWORD +0x7F"},
        {__LINE__,
         {L"direct", L"alias", L"--dir", Folder(), L"--file", L"a.xen"},
         R"([{"id": "A", "property": "", "value": "1"}])",
         "A +1"},
        {__LINE__,
         {L"direct", L"component", L"--dir", Folder(), L"--file", L"c.xen", L"--section", L"install", L"--run-mode",
          L"0x0"},
         sComponent,
         "C +D +file +remove +f"},
    };
    ExpectAnswers(aRow);
}

TEST_F(VrntDeploy, StoresReadWhatTheQueriesPrint)
{
    m_cProduct.Folder().Write(L"list.json", R"([{"class": "1", "type": "ä", "plat": "", "lang": "", "oem": "",
        "region": "", "ver": "2"}])");
    m_cProduct.Folder().Write(L"alias.json", R"([{"id": "A", "property": "P", "value": "2"}])");
    const std::vector<std::wstring> vecStoreAlias = {L"--json", L"direct", L"store-alias", L"--dir",           Folder(),
                                                     L"--file", L"a.xen",  L"--input",     File(L"alias.json")};
    const ProgramRun stAlias = RunVrnt(vecStoreAlias);
    EXPECT_EQ(Json::parse(stAlias.sOutput), Json({{"result", "0x00040200"}, {"data", nullptr}})) << stAlias.sError;
    EXPECT_THAT(m_cProduct.Plain(DocumentId::Alias, L"a.xen"), HasSubstr("<Alias Id=\"A\" Property=\"P\">2</Alias>"));

    const ProgramRun stList =
        RunVrnt({L"store", L"pre-update-list", L"--document", File(L"request.xml"), L"--input", File(L"list.json")});
    EXPECT_EQ(stList.iExitStatus, 0) << stList.sError;
    EXPECT_THAT(m_cProduct.Folder().Read(L"request.xml"), HasSubstr("<component class=\"1\" type=\"ä\""));
}

} // namespace
