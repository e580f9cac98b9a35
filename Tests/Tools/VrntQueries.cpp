// The tool's queries but those of Vrnt.cpp and VrntPolicy.cpp, and the stores of what they print.

#include "VrntTest.h"
#include "ZkComn_String.h"

#include <map>
#include <sstream>

namespace {

/** The command line as a request of VrntJson.dll. */
std::wstring ToRequest(const std::vector<std::wstring>& _rvecArgument)
{
    std::string sCommand;
    auto itArgument = _rvecArgument.begin();
    for (; itArgument != _rvecArgument.end() && !itArgument->starts_with(L"--"); ++itArgument) {
        sCommand += " " + ZkCommon::String::ToUtf8(*itArgument);
    }
    std::map<std::string, std::string> mapOption;
    for (; itArgument != _rvecArgument.end(); itArgument += 2) {
        std::string& rsValue = mapOption[ZkCommon::String::ToUtf8(itArgument->substr(2))];
        const std::string sValue = Quoted(ZkCommon::String::ToUtf8(itArgument[1]));
        rsValue = rsValue.empty() ? sValue : "[" + rsValue + "," + sValue + "]"; // once more: a list
    }
    std::string sRequest = R"({"command":)" + Quoted(sCommand);
    for (const auto& [sName, sValue] : mapOption) {
        sRequest += "," + Quoted(sName) + ":" + sValue;
    }
    return ZkCommon::String::FromUtf8(sRequest + "}");
}

/** A query, and what it prints. */
struct AnswerRow
{
    int iLine;
    std::wstring tszQuery; // "@F@" is the folder
    std::string sData;     // in JSON
    const char* szCells;   // in the table, an expression
};

class VrntQueries : public testing::Test
{
protected:
    VrntQueries()
    {
        m_cProduct.Store(DocumentId::PuIds, R"(<InstallPuIds><InstallPuId><Component>eEngine</Component>
            <PuId>0x10</PuId><Platform>eBoth32And64bit</Platform></InstallPuId></InstallPuIds>)");
        m_cProduct.Store(DocumentId::VersionInfo, R"(<QmrVersionInfo><VersionInfo component="Engine" puid="16"
            version="9.2" directDeploy="enable"><MigrateFile name="a.lst"/></VersionInfo></QmrVersionInfo>)");
        m_cProduct.Store(DocumentId::CompetitorActions, R"(<CompetitorAction><Sequence>
            <Product ID="7" vendor="Acme &#xE4;"><Action on="install" name="block" version="8"/></Product>
            <Product ID="8"/></Sequence></CompetitorAction>)");
        m_cProduct.Store(DocumentId::CompetitorDetections, R"(<CompetitorDetection><Product ID="7" vendor="Acme">
            <Identification><Path base="ProgramFiles">a\b.exe</Path></Identification></Product>
            </CompetitorDetection>)");
        m_cProduct.Store(DocumentId::ThreatsOrkap, R"(<Quillmar><Threats><Threat id="16"><Name>first</Name></Threat>
            </Threats></Quillmar>)");
        m_cProduct.Store(DocumentId::ThreatsElmap, R"(<Quillmar><Scanners><Scanner id="1"><Name>n</Name><Desc>d</Desc>
            </Scanner></Scanners><Threats><Threat id="16"><Name>second</Name><Description>what</Description>
            <Recommendation>do</Recommendation></Threat></Threats></Quillmar>)");
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

    std::vector<std::wstring> Words(const std::wstring& _rtszQuery) const
    {
        std::vector<std::wstring> vecWord;
        std::wistringstream cWords(_rtszQuery);
        for (std::wstring tszWord; cWords >> tszWord; vecWord.push_back(tszWord)) {
            tszWord.replace(0, tszWord.starts_with(L"@F@") ? 3 : 0, tszWord.starts_with(L"@F@") ? Folder() : L"");
        }
        return vecWord;
    }

    TestProduct m_cProduct;
};

TEST_F(VrntQueries, EachPrintsItsRecordsAsJsonAndAsATableAndVrntJsonAnswersTheSame)
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
        {__LINE__, L"query pu-ids", R"({"pattern": [], "engine": [16], "product": []})", "engine +16 +0x00000010"},
        {__LINE__, L"direct version-info --dir @F@",
         R"([{"componentType": 5, "puId": 16, "version": "9.2", "directDeploy": true, "followProductVersion": false,
              "migrateFiles": ["a.lst"], "updateHashFiles": []}])",
         "Engine +16 +9.2 +yes +no"},
        {__LINE__, L"query competitor-actions --dir @F@",
         R"([{"id": "7", "category": "", "vendor": "Acme ä", "processor": "", "registered": "",
              "actions": [{"on": "install", "name": "block", "version": "8", "versionCompare": ""}]},
             {"id": "8", "category": "", "vendor": "", "processor": "", "registered": "", "actions": []}])",
         "7 +Acme ä +install +block"},
        {__LINE__, L"query competitor-detections --dir @F@\\",
         R"([{"id": "7", "category": "", "vendor": "Acme", "processor": "", "registered": "", "identifications": [
              {"selfReboot": true, "specialIdentify": false, "pathBase": "ProgramFiles", "pathWowNode": false,
               "path": "a\\b.exe", "keyName": "", "keyType": "", "keyCompare": "", "keyValue": "",
               "uninstallBase": "", "uninstallWowNode": false, "uninstallString": ""}],
              "manufacturer": "", "url": "", "information": ""}])",
         "7 +Acme +yes +no +ProgramFiles a.b.exe"},
        {__LINE__, L"query threat-name --engine orkap --id 0x10", R"({"id": 16, "text": "first"})", "16 +first"},
        {__LINE__, L"query threat-name --engine elmap --id 020", R"({"id": 16, "text": "second"})", "16 +second"},
        {__LINE__, L"query threat-description --id 16", R"({"id": 16, "text": "what"})", "16 +what"},
        {__LINE__, L"query threat-recommendation --id 16", R"({"id": 16, "text": "do"})", "16 +do"},
        {__LINE__, L"query scanner-title --id 1", R"({"id": 1, "text": "n", "secondText": "d"})", "1 +n +d"},
        {__LINE__, L"query compatibility --dir @F@",
         R"([{"platformMajorVersion": "6", "platformMinorVersion": "", "platformReVersion": "", "platformBuild": "",
              "platformLeftHandMost": false, "servicePack": "", "language": "", "products": [{"skuName": "IS",
              "majorVersion": "", "minorVersion": "", "reVersion": "", "build": "", "leftHandMost": false, "action": 2,
              "secondAction": 1, "showMessage": true, "oemFlag": "", "language": "", "components": [{"class": "1",
              "type": "", "plat": "", "lang": "", "oem": "", "region": "", "ver": "0"}],
              "messages": [{"locale": "EN-US", "message": "m"}]}]}])",
         "6 .*IS .*PreInstallUpdate +Block +yes"},
        {__LINE__, L"query key-config --dir @F@", sKeyConfig, "HKCU +K +N +dword +7 +write"},
        {__LINE__, L"query registry-data --file @F@\\data.xml --label x --label a",
         R"([{"root": "HKLM", "subKey": "S", "allAccess": true, "name": "n", "type": 11,
              "text": "0x7FFFFFFFFFFFFFFF", "number": 9223372036854775807}])",
         "HKLM +S +yes +n +REG_QWORD +0x7F"},
        {__LINE__, L"direct alias --dir @F@ --file a.xen", R"([{"id": "A", "property": "", "value": "1"}])", "A +1"},
        {__LINE__, L"direct component --dir @F@ --file c.xen --section install --run-mode 0x0", sComponent,
         "C +D +file +remove +f"},
    };
    for (const AnswerRow& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        std::vector<std::wstring> vecQuery = Words(stRow.tszQuery);
        const ProgramRun stTable = RunVrnt(vecQuery);
        EXPECT_EQ(stTable.iExitStatus, 0);
        EXPECT_THAT(stTable.sOutput, testing::ContainsRegex(stRow.szCells));
        const std::string sHosted = RunProgram(L"JsonHost.exe", {ToRequest(vecQuery)}).sOutput;
        EXPECT_EQ(Json(sHosted), Json(R"({"result": "0x00040200", "data": )" + stRow.sData + "}"));
        vecQuery.emplace_back(L"--json");
        EXPECT_EQ(RunVrnt(vecQuery).sOutput, sHosted);
    }
}

TEST_F(VrntQueries, StoresReadWhatTheQueriesPrint)
{
    m_cProduct.Folder().Write(L"list.json", R"([{"class": "1", "type": "ä", "plat": "", "lang": "", "oem": "",
        "region": "", "ver": "2"}])");
    m_cProduct.Folder().Write(L"alias.json", R"([{"id": "A", "property": "P", "value": "2"}])");
    const std::vector<std::wstring> vecStoreAlias = {L"--json", L"direct", L"store-alias", L"--dir",           Folder(),
                                                     L"--file", L"a.xen",  L"--input",     File(L"alias.json")};
    const ProgramRun stAlias = RunVrnt(vecStoreAlias);
    EXPECT_EQ(Json(stAlias.sOutput), R"({"data":null,"result":"0x00040200"})") << stAlias.sError;
    EXPECT_THAT(m_cProduct.Plain(DocumentId::Alias, L"a.xen"), HasSubstr("<Alias Id=\"A\" Property=\"P\">2</Alias>"));

    const ProgramRun stList =
        RunVrnt({L"store", L"pre-update-list", L"--document", File(L"request.xml"), L"--input", File(L"list.json")});
    EXPECT_EQ(stList.iExitStatus, 0) << stList.sError;
    EXPECT_THAT(m_cProduct.Folder().Read(L"request.xml"), HasSubstr("<component class=\"1\" type=\"ä\""));
}

TEST_F(VrntQueries, WhatIsNotThereIsTheLibrarysFailure)
{
    const ProgramRun stMissing = RunVrnt({L"--json", L"query", L"threat-description", L"--id", L"17"});
    EXPECT_EQ(stMissing.iExitStatus, 1);
    EXPECT_NE(At(stMissing.sOutput, "/why"), "");
    EXPECT_EQ(With(stMissing.sOutput, "/why", nullptr), R"({"data":{"id":17,"text":""},"result":"0x80040201"})");
    EXPECT_EQ(stMissing.sError, "vrnt: 0x80040201: antispy.xml has no threat 17\n");
    EXPECT_EQ(RunVrnt({L"direct", L"version-info", L"--dir", L"Z:\\nowhere"}).iExitStatus, 1);
}

} // namespace
