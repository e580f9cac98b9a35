// The tool's queries for component numbers, versions, competitors and threats.

#include "TestProduct.h"
#include "VrntTest.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using Varnhelt::DocumentId;
using Json = nlohmann::json;

namespace {

class VrntLookups : public testing::Test
{
protected:
    VrntLookups()
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
    }

    TestProduct m_cProduct;
};

TEST_F(VrntLookups, EveryCommandPrintsItsRecordsAsJsonAndAsATable)
{
    const std::wstring tszFolder = m_cProduct.Folder().Path().wstring();
    const AnswerRow aRow[] = {
        {__LINE__,
         {L"query", L"pu-ids"},
         R"({"pattern": [], "engine": [16], "product": []})",
         "engine +16 +0x00000010"},
        {__LINE__,
         {L"direct", L"version-info", L"--dir", tszFolder},
         R"([{"componentType": 5, "puId": 16, "version": "9.2", "directDeploy": true, "followProductVersion": false,
              "migrateFiles": ["a.lst"], "updateHashFiles": []}])",
         "Engine +16 +9.2 +yes +no"},
        {__LINE__,
         {L"query", L"competitor-actions", L"--dir", tszFolder},
         R"([{"id": "7", "category": "", "vendor": "Acme ä", "processor": "", "registered": "",
              "actions": [{"on": "install", "name": "block", "version": "8", "versionCompare": ""}]},
             {"id": "8", "category": "", "vendor": "", "processor": "", "registered": "", "actions": []}])",
         "7 +Acme ä +install +block"},
        {__LINE__,
         {L"query", L"competitor-detections", L"--dir", tszFolder + L"\\"},
         R"([{"id": "7", "category": "", "vendor": "Acme", "processor": "", "registered": "", "identifications": [
              {"selfReboot": true, "specialIdentify": false, "pathBase": "ProgramFiles", "pathWowNode": false,
               "path": "a\\b.exe", "keyName": "", "keyType": "", "keyCompare": "", "keyValue": "",
               "uninstallBase": "", "uninstallWowNode": false, "uninstallString": ""}],
              "manufacturer": "", "url": "", "information": ""}])",
         "7 +Acme +yes +no +ProgramFiles a.b.exe"},
        {__LINE__,
         {L"query", L"threat-name", L"--engine", L"orkap", L"--id", L"0x10"},
         R"({"id": 16, "text": "first"})",
         "16 +first"},
        {__LINE__,
         {L"query", L"threat-name", L"--engine", L"elmap", L"--id", L"020"},
         R"({"id": 16, "text": "second"})",
         "16 +second"},
        {__LINE__, {L"query", L"threat-description", L"--id", L"16"}, R"({"id": 16, "text": "what"})", "16 +what"},
        {__LINE__, {L"query", L"threat-recommendation", L"--id", L"16"}, R"({"id": 16, "text": "do"})", "16 +do"},
        {__LINE__,
         {L"query", L"scanner-title", L"--id", L"1"},
         R"({"id": 1, "text": "n", "secondText": "d"})",
         "1 +n +d"},
    };
    ExpectAnswers(aRow);
}

TEST_F(VrntLookups, WhatIsNotThereIsTheLibrarysFailureAndABadArgumentTheUsers)
{
    const ProgramRun stMissing = RunVrnt({L"--json", L"query", L"threat-description", L"--id", L"17"});
    EXPECT_EQ(stMissing.iExitStatus, 1);
    EXPECT_EQ(Json::parse(stMissing.sOutput), Json({{"result", "0x80040201"},
                                                    {"data", {{"id", 17}, {"text", ""}}},
                                                    {"why", Json::parse(stMissing.sOutput)["why"]}}));
    EXPECT_EQ(stMissing.sError, "vrnt: 0x80040201: antispy.xml has no threat 17\n");
    EXPECT_EQ(RunVrnt({L"direct", L"version-info", L"--dir", L"Z:\\nowhere"}).iExitStatus, 1);

    const std::pair<std::vector<std::wstring>, const char*> aUsage[] = {
        {{L"query", L"threat-name", L"--engine", L"elmap", L"--id", L"12x"}, "12x"},
        {{L"query", L"threat-name", L"--engine", L"other", L"--id", L"1"}, "other"},
        {{L"query", L"threat-name", L"--id", L"1"}, "--engine"},
        {{L"query", L"competitor-actions"}, "--dir"},
        {{L"direct", L"version-info", L"--dir", L""}, "path"},
    };
    for (const auto& [vecArgument, szNamed] : aUsage) {
        const ProgramRun stRun = RunVrnt(vecArgument);
        EXPECT_EQ(stRun.iExitStatus, 2);
        EXPECT_THAT(stRun.sError, HasSubstr(szNamed));
    }
}

} // namespace
