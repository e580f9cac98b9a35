// vrnt.exe as a person or a script runs it.

#include "Output/Table.h"
#include "VrntTest.h"
#include "ZkComn_String.h"

namespace {

constexpr const char* g_szCatalogue = R"(<BaseFramework>
  <FrameworkService Layer="eControlLayer" Service="eEventLog" version="17.0.1">
    <Module>eDynamicLinkLibrary</Module><Startup>eAutomatic</Startup><Load>ePreLoad</Load>
    <OrderOfLoading>0x10</OrderOfLoading><OrderOfUnloading>3</OrderOfUnloading>
    <ConcurrentUnLoading>true</ConcurrentUnLoading><Shared>eIndependent</Shared>
    <Controller>eCommon</Controller><Provider>eNone</Provider>
    <ModuleName>Protokoll&#xE4;.dll</ModuleName><AllowToLoadSetupMode>false</AllowToLoadSetupMode>
  </FrameworkService></BaseFramework>)";

class Vrnt : public testing::Test
{
protected:
    TestProduct m_cProduct;
};

TEST_F(Vrnt, QueriesTheCatalogueAsJsonAndAsATable)
{
    m_cProduct.Store(DocumentId::ServiceUnits, g_szCatalogue);
    const ProgramRun stJson = StartVrnt({L"--json", L"query", L"service-units"});
    EXPECT_EQ(stJson.iExitStatus, 0);
    EXPECT_EQ(Json(stJson.sOutput), Json(R"({"result": "0x00040200", "data": [{
        "layer": 1, "serviceType": 2048, "moduleType": 2, "startupType": 1, "loadOption": 0, "orderOfLoading": 16,
        "orderOfUnloading": 3, "concurrentUnloading": true, "sharedType": 0, "controllerType": 65536,
        "providerType": 0, "moduleName": "Protokoll\u00E4.dll", "version": "17.0.1",
        "allowToLoadInSetupMode": false}]})"));
    const ProgramRun stTable = StartVrnt({L"query", L"service-units"});
    EXPECT_EQ(stTable.iExitStatus, 0);
    EXPECT_THAT(stTable.sOutput, HasSubstr("eControlLayer"));
    EXPECT_THAT(stTable.sOutput, HasSubstr("Protokoll\xC3\xA4.dll"));
    EXPECT_THAT(stTable.sError, IsEmpty());
}

TEST_F(Vrnt, AUsageErrorIsOneLineAndStatusTwo)
{
    const UsageRow aRow[] = {
        {__LINE__, {}, "command"},
        {__LINE__, {L"qery"}, "qery"},
        {__LINE__, {L"chekc"}, "did you mean check?\n"},
        {__LINE__, {L"help", L"query", L"polcy"}, "did you mean policy?\n"},
        {__LINE__, {L"schema", L"--documnt", L"policy"}, "unknown option --documnt; did you mean --document?\n"},
        {__LINE__, {L"schema", L"--document", L"polcy"}, "policy"},
        {__LINE__, {L"query", L"policy", L"--controller", L"eFirewal"}, "eFirewall"},
        {__LINE__, {L"query", L"threat-name", L"--engine", L"elmap", L"--id", L"12x"}, "12x"},
        {__LINE__, {L"query", L"threat-name", L"--engine", L"other", L"--id", L"1"}, "other"},
        {__LINE__, {L"query", L"threat-name", L"--id", L"1"}, "--engine"},
        {__LINE__, {L"query", L"competitor-actions"}, "--dir"},
        {__LINE__, {L"direct", L"version-info", L"--dir", L""}, "path"},
        {__LINE__, {L"query", L"service-unit"}, "service-unit"},
        {__LINE__, {L"query", L"service-units", L"--nonsense"}, "--nonsense"},
        {__LINE__, {L"query", L"policy", L"--jsn"}, "did you mean --json?"},
        {__LINE__, {L"query", L"policy", L"of", L"all"}, "\"of\" (a path or text with blanks needs quotation marks"},
        {__LINE__, {L"query", L"key-config", L"--dir", L"C:\\a b\" --json"}, "backslash before the closing quotation"},
        {__LINE__, {L"check", L"--document", L"policy", L"/nowhere/x.xml"}, "nowhere\\x.xml"},
        {__LINE__, {L"--module", L"Z:\\nowhere\\Varnhelt.dll", L"query", L"service-units"}, "nowhere"},
        {__LINE__, {L"trace", L"on", L"--level", L"12x"}, "12x"},
        {__LINE__, {L"query", L"registry-data", L"--file", L"f"}, "--label"},
        {__LINE__, {L"store", L"pre-update-list", L"--document", L"d", L"--input", L"Z:\\nowhere.json"}, "nowhere"},
        {__LINE__, {L"trace", L"show", L"Z:\\nowhere.log"}, "nowhere.log"},
        {__LINE__, {L"xen", L"encrypt", L"--document", L"policies", L"in", L"out"}, "policies"},
        {__LINE__, {L"xen", L"encrypt", L"--key", L"fifteen letters", L"in", L"out"}, "16"},
        {__LINE__, {L"xen", L"encrypt", L"in", L"out"}, "--document"},
        {__LINE__, {L"xen", L"decrypt", L"--document", L"policy", L"Z:\\nowhere.xen", L"out"}, "nowhere.xen"},
    };
    ExpectUsageErrors(aRow);
}

TEST_F(Vrnt, HelpGoesToTheOutputWithAnExample)
{
    const std::vector<std::vector<std::wstring>> vecCommand = {
        {L"query", L"service-units"}, {L"query"},        {L"documents"},     {L"xen", L"encrypt"},
        {L"xen", L"decrypt"},         {L"trace", L"on"}, {L"trace", L"off"}, {L"trace", L"status"},
        {L"trace", L"show"},          {L"help"},
    };
    for (std::vector<std::wstring> vecArgument : vecCommand) {
        vecArgument.emplace_back(L"--help");
        const ProgramRun stRun = RunVrnt(vecArgument);
        EXPECT_EQ(stRun.iExitStatus, 0);
        EXPECT_THAT(stRun.sOutput, HasSubstr("Usage: vrnt " + ZkCommon::String::ToUtf8(vecArgument.front())));
        EXPECT_THAT(stRun.sOutput, HasSubstr("Example: vrnt "));
        vecArgument.back() = L"/?";
        EXPECT_EQ(RunVrnt(vecArgument).sOutput, stRun.sOutput);
        vecArgument.pop_back();
        vecArgument.insert(vecArgument.begin(), L"help");
        EXPECT_EQ(RunVrnt(vecArgument).sOutput, stRun.sOutput);
        EXPECT_THAT(stRun.sError, IsEmpty());
    }
}

TEST_F(Vrnt, XenEncryptsAndDecryptsAndAFailureLeavesNoOutput)
{
    const TempFolder& cFolder = m_cProduct.Folder();
    const std::string sPlain = "<Aliases>\n<Alias Id=\"1\"/></Aliases>"; // 34 bytes: padded to 48
    cFolder.Write(L"plain \u00FC.xml", sPlain);
    EXPECT_EQ(Encrypt(L"alias", cFolder.File(L"plain \u00FC.xml"), cFolder.File(L"alias.xen")), 0);
    EXPECT_EQ(cFolder.Read(L"alias.xen").size(), 48U);
    const ProgramRun stDecrypt = RunVrnt({L"--json", L"xen", L"decrypt", L"--key", L"Fe5~Qa1;Nu7:Rb3.",
                                          cFolder.File(L"alias.xen"), cFolder.File(L"out")});
    EXPECT_EQ(Json(stDecrypt.sOutput), R"({"ok":true})");
    EXPECT_EQ(cFolder.Read(L"out"), sPlain);

    cFolder.Write(L"short.xen", "fifteen letters");
    const ProgramRun stFailure = RunVrnt(
        {L"--json", L"xen", L"decrypt", L"--document", L"alias", cFolder.File(L"short.xen"), cFolder.File(L"none")});
    EXPECT_EQ(stFailure.iExitStatus, 1);
    EXPECT_EQ(At(stFailure.sOutput, "/ok"), "false");
    EXPECT_THAT(At(stFailure.sOutput, "/why"), HasSubstr("15 bytes, which is not a multiple of 16"));
    EXPECT_THAT(stFailure.sError, IsOneLine());
    EXPECT_FALSE(std::filesystem::exists(cFolder.File(L"none")));
}

TEST_F(Vrnt, XenRefusesWhatIsNotTheDocumentAndWritesToTheOutput)
{
    m_cProduct.Store(DocumentId::ServiceUnits, g_szCatalogue);
    const std::wstring tszStored = m_cProduct.Folder().File(L"FwSvUnit.xen");
    const std::wstring tszOut = m_cProduct.Folder().File(L"out.xml");
    const std::wstring tszPlain = m_cProduct.Folder().File(L"plain.xml");
    m_cProduct.Folder().Write(L"plain.xml", g_szCatalogue);
    EXPECT_EQ(RunVrnt({L"xen", L"decrypt", L"--document", L"service-units", tszStored, L"-"}).sOutput, g_szCatalogue);
    const std::pair<std::vector<std::wstring>, const char*> aRefused[] = {
        {{L"decrypt", L"--document", L"policy", tszStored, tszOut}, "the key of policy does not open"},
        {{L"encrypt", L"--document", L"policy", tszPlain, tszOut}, "is not a policy document"},
        {{L"encrypt", L"--document", L"service-units", tszStored, tszOut}, "is not a service-units document"},
        {{L"encrypt", L"--document", L"service-units", tszPlain, tszPlain}, "the same file"},
        {{L"decrypt", L"--document", L"service-units", tszStored, L"-", L"--json"}, "both write"},
    };
    for (auto [vecArgument, szNamed] : aRefused) {
        vecArgument.insert(vecArgument.begin(), L"xen");
        const ProgramRun stRun = RunVrnt(vecArgument);
        EXPECT_NE(stRun.iExitStatus, 0);
        EXPECT_THAT(stRun.sError, HasSubstr(szNamed));
        EXPECT_FALSE(std::filesystem::exists(tszOut));
    }
    EXPECT_EQ(m_cProduct.Folder().Read(L"plain.xml"), g_szCatalogue);
}

TEST(Tables, FitTheirWidthAndShowAllThatIsInACell)
{
    ::Vrnt::Table cTable({"id", "same", "name", "long text"});
    cTable.Add({"1", "x", "\u65E5\u672C", std::string(60, 'a')});
    cTable.Add({"22", "x", "a\tb\u202E", "b"});
    EXPECT_EQ(cTable.ToText({40, false}), "id  name        long text\n"
                                          "--  ----------  ------------------------\n"
                                          " 1  \u65E5\u672C        aaaaaaaaaaaaaaaaaaaaa...\n"
                                          "22  a\\tb\\u202e  b\n"
                                          "\nNot shown here, but with --wide: same\n");
    EXPECT_THAT(cTable.ToText({40, true}), HasSubstr(std::string(60, 'a')));
    EXPECT_EQ(cTable.ToPlainText().substr(0, 12), "1\tx\t\u65E5\u672C\ta");
}

TEST_F(Vrnt, DocumentsTellsWhatIsInstalled)
{
    m_cProduct.Store(DocumentId::ServiceUnits, g_szCatalogue);
    const std::string sDocuments = DataOf({L"documents"});
    EXPECT_EQ(SizeOf(sDocuments), 16U);
    const std::string sSize = std::to_string(m_cProduct.Stored(DocumentId::ServiceUnits).size());
    EXPECT_EQ(At(sDocuments, "/0"), Json(R"({"document": "service-units", "file": "FwSvUnit.xen",
        "location": "installed", "encrypted": true, "valueTypes": ["0x1"], "present": true, "size": )" +
                                         sSize + "}"));
    EXPECT_EQ(At(sDocuments, "/1/present"), "false");
    EXPECT_EQ(At(sDocuments, "/1/size"), "null");
    EXPECT_EQ(At(sDocuments, "/1/valueTypes"), R"(["0x2","0x40000"])");
    EXPECT_EQ(At(sDocuments, "/9/file"), "null");
}

} // namespace
