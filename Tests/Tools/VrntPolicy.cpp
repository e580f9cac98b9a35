// vrnt.exe asks for the policy and stores it.

#include "VrntTest.h"

namespace {

constexpr const char* g_szRecords = R"([{"controllerType": 4, "permission": 1, "allowToLoadInSetupMode": true,
    "providers": [{"controllerType": 4, "providerType": 32, "permission": 2, "deployState": 3}]}])";

class VrntPolicy : public testing::Test
{
protected:
    VrntPolicy()
    {
        m_cProduct.Store(DocumentId::Policy, R"(<PolicyEnforceLayer><PolicyControllers>
            <PolicyController Controller="eFirewall"><PolicyProviders>
              <PolicyProvider Controller="eFirewall" Provider="eNeighborList"/></PolicyProviders></PolicyController>
            </PolicyControllers></PolicyEnforceLayer>)");
    }
    ProgramRun StoreJson(const std::string& _rsJson)
    {
        m_cInput.Write(L"in.json", _rsJson);
        return RunVrnt({L"--json", L"store", L"policy", L"--input", m_cInput.File(L"in.json")});
    }

    TestProduct m_cProduct;
    TempFolder m_cInput;
};

TEST_F(VrntPolicy, WhatIsStoredIsAnsweredWholeAndByController)
{
    const ProgramRun stStore = StoreJson(g_szRecords);
    EXPECT_EQ(stStore.iExitStatus, 0) << stStore.sError;
    EXPECT_EQ(Json(stStore.sOutput), R"({"data":null,"result":"0x00040200"})");
    EXPECT_EQ(DataOf({L"query", L"policy"}), Json(g_szRecords));
    for (const wchar_t* pszController : {L"eFirewall", L"0x4", L"04"}) {
        EXPECT_EQ(DataOf({L"query", L"policy", L"--controller", pszController}), At(g_szRecords, "/0"));
    }
    EXPECT_THAT(RunVrnt({L"query", L"policy"}).sOutput, HasSubstr("eNeighborList  ePartial"));
    EXPECT_THAT(RunVrnt({L"query", L"policy", L"--controller", L"0x999"}).sOutput, HasSubstr("0x00000999"));
}

TEST_F(VrntPolicy, WhatAQueryPrintedIsInputInWordsAndUtf16AndAnUnknownProviderIsNamed)
{
    const std::string sQuery = RunVrnt({L"query", L"policy", L"--json"}).sOutput;
    EXPECT_EQ(StoreJson(sQuery).iExitStatus, 0);
    const std::string sWords = R"([{"controllerType": "eFirewall", "permission": "eAllow",
        "allowToLoadInSetupMode": false, "providers": [{"controllerType": "eFirewall", "providerType": "eNone",
        "permission": "eDeny", "deployState": "eInstalled"}]}])";
    std::string sUtf16 = "\xFF\xFE";
    for (const char c : sWords) {
        sUtf16 += {c, '\0'};
    }
    const ProgramRun stRun = StoreJson(sUtf16);
    EXPECT_EQ(stRun.iExitStatus, 0);
    EXPECT_THAT(stRun.sError, HasSubstr("the policy has no provider eFirewall eNone"));
    EXPECT_EQ(At(stRun.sOutput, "/data"), R"({"passedOver":["eFirewall eNone"]})");
    EXPECT_EQ(At(DataOf({L"query", L"policy"}), "/0/permission"), "1");
    EXPECT_EQ(StoreJson(R"({"result": "0x80040201", "data": []})").iExitStatus, 2);
}

TEST_F(VrntPolicy, AHostInCIsServedFromManyThreadsAndItsSlipsAreExplained)
{
    m_cProduct.Store(DocumentId::ThreatsElmap, "<Quillmar><Threats/></Quillmar>");
    const ProgramRun stRun = RunProgram(L"JsonHost.exe", {});
    EXPECT_EQ(stRun.iExitStatus, 0);
    EXPECT_EQ(stRun.sOutput + stRun.sError, "");
}

TEST_F(VrntPolicy, RecordsThatDoNotFitAreRefusedByTheirPlaceAndNothingIsStored)
{
    const std::string sStored = m_cProduct.Stored(DocumentId::Policy);
    const struct
    {
        int iLine;
        const char* szKey; // where the value of a good file is changed, and to what; null: removed
        const char* szValue;
        const char* szNamed;
    } aRow[] = {
        {__LINE__, "", "{}", "must be an array"},
        {__LINE__, "/0", "[]", "[0] must be an object"},
        {__LINE__, "/0/permission", nullptr, "[0].permission is missing"},
        {__LINE__, "/0/permission", "3", "[0].permission must be one of 0 (eDeny)"},
        {__LINE__, "/0/permission", "\"eAlow\"", "[0].permission must be one of 0 (eDeny)"},
        {__LINE__, "/0/allowToLoadInSetupMode", "1", "[0].allowToLoadInSetupMode must be true or false"},
        {__LINE__, "/0/providers", "null", "[0].providers must be an array"},
        {__LINE__, "/0/providers/0/deployState", "-1", "[0].providers[0].deployState must be a whole number"},
        {__LINE__, "/0/providers/0/deployState", "1.5", "[0].providers[0].deployState must be a whole number"},
        {__LINE__, "/0/providers/0/deployState", "4294967296", "[0].providers[0].deployState must be a whole number"},
        {__LINE__, "/0/providers/0/deploystate", "1", "[0].providers[0].deploystate is not a key"},
    };
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const ProgramRun stRun = StoreJson(With(g_szRecords, stRow.szKey, stRow.szValue));
        EXPECT_EQ(stRun.iExitStatus, 2);
        EXPECT_THAT(stRun.sError, HasSubstr(stRow.szNamed));
        EXPECT_THAT(stRun.sOutput, IsEmpty());
    }
    EXPECT_EQ(StoreJson("[{").iExitStatus, 2);
    EXPECT_EQ(RunVrnt({L"store", L"policy", L"--input", m_cInput.File(L"none.json")}).iExitStatus, 2);
    EXPECT_EQ(m_cProduct.Stored(DocumentId::Policy), sStored);
}

} // namespace
