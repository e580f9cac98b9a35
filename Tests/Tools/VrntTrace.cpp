// vrnt trace: the settings, and what a trace file holds.

#include "Frwk_Settings.h"
#include "Machine/Reasons.h"
#include "Machine/TraceFile.h"
#include "VrntTest.h"
#include "ZkComn_Registry.h"

using testing::MatchesRegex;
using Texts = std::vector<std::string>;

namespace {

class VrntTrace : public testing::Test
{
protected:
    /** A setting of interactive sessions, as "trace status" gives it. */
    static std::string Interactive(const char* _szSetting)
    {
        return At(DataOf({L"trace", L"status"}), std::string("/interactive") + _szSetting);
    }

    TestProduct m_cProduct;
    TempFolder m_cLogs;
};

TEST_F(VrntTrace, ATracedQueryLeavesAFileThatTraceShowReads)
{
    ASSERT_EQ(RunVrnt({L"trace", L"on", L"--folder", m_cLogs.Path().wstring()}).iExitStatus, 0);
    EXPECT_EQ(Interactive("/enabled"), "true");
    EXPECT_EQ(Interactive("/level"), std::to_string(0x111));
    StartVrnt({L"query", L"service-units"});
    ASSERT_EQ(RunVrnt({L"trace", L"off"}).iExitStatus, 0);
    StartVrnt({L"query", L"service-units"});

    const std::string sLog = m_cLogs.Read(L"vqxVarnhelt.log");
    const std::string sFirst = sLog.substr(0, sLog.find("\r\n"));
    EXPECT_THAT(sFirst, MatchesRegex("\\d\\d/\\d\\d/\\d\\d\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d \\w+:\\w+ @@@ "
                                     "<Varnhelt> \\*\\*\\*Varnhelt\\.dll was loaded as process attach\\. - "
                                     "Varnhelt\\(\\d+\\)"));
    const std::wstring tszFile = m_cLogs.File(L"vqxVarnhelt.log");
    const std::string sAll = DataOf({L"trace", L"show", tszFile});
    const std::string sLast = "/" + std::to_string(SizeOf(sAll) - 1);
    EXPECT_EQ(At(sAll, sLast + "/text"), R"("***Varnhelt.dll was unloaded as process detach.")");
    EXPECT_EQ(At(sAll, sLast + "/source"), R"("Varnhelt")");
    EXPECT_EQ(std::count(sLog.begin(), sLog.end(), '\n'), static_cast<std::ptrdiff_t>(SizeOf(sAll)));
    const std::string sErrors = DataOf({L"trace", L"show", tszFile, L"--errors", L"--grep", L"tszXmlFile"});
    EXPECT_EQ(SizeOf(sErrors), 1U);
    EXPECT_EQ(At(sErrors, "/0/text"), R"("*** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty")");
    EXPECT_EQ(At(sErrors, "/0/level"), R"("error")");
}

TEST_F(VrntTrace, SettingsOfAWrongTypeAreNamedAndTraceOnMendsThem)
{
    const std::wstring tszKey = std::wstring(Frwk::g_szTraceSettingsKey) + L"\\InteractiveSession";
    RunVrnt({L"trace", L"on"});
    ZkCommon::Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, tszKey);
    for (const wchar_t* pszText : {L"Level", L"LogUnitType", L"Debugger"}) {
        cKey.WriteString(pszText, L"1");
        EXPECT_EQ(Interactive("/enabled"), "false");
        EXPECT_THAT(Interactive("/fault"), HasSubstr(std::string(pszText, pszText + std::wcslen(pszText))));
        EXPECT_EQ(At(DataOf({L"trace", L"on"}), "/interactive/enabled"), "true");
    }
    cKey.WriteNumber(L"LogPrefix", 5);
    const ProgramRun stOn = RunVrnt({L"trace", L"on", L"--folder", m_cLogs.Path().wstring()});
    EXPECT_EQ(stOn.iExitStatus, 0);
    EXPECT_THAT(stOn.sOutput, HasSubstr("\\vqxVarnhelt.log"));
    StartVrnt({L"query", L"pu-ids"});
    EXPECT_NE(m_cLogs.Read(L"vqxVarnhelt.log"), "");
    EXPECT_EQ(RunVrnt({L"trace", L"on", L"--folder", L"Q:\\nowhere"}).iExitStatus, 2);
    RunVrnt({L"trace", L"off"});
}

/** The lines of a file, "level|text|source", read in pieces of that size. */
std::vector<std::string> LinesOf(std::string_view _svFile, std::size_t _uPiece)
{
    std::vector<std::string> vecLine;
    Vrnt::TraceFileReader cReader([&](const Vrnt::TraceFileLine& _rstLine) {
        vecLine.push_back(_rstLine.sLevel + "|" + _rstLine.sText + "|" + _rstLine.sSource);
    });
    for (; !_svFile.empty(); _svFile.remove_prefix(std::min(_uPiece, _svFile.size()))) {
        cReader.Read(_svFile.substr(0, _uPiece));
    }
    cReader.End();
    return vecLine;
}

TEST(TraceFile, EndsAMessageAtTheNextHeadAndNotBefore)
{
    const std::string sHead = "24/11/2026 23:25:31.734 0394:0398 ";
    const std::string sFile = "no line\r\n" + sHead + "!!! <M> first - see(3)\r\n\t" + sHead +
                              "!!! <M> forged - F(1)\r\nold\r\n - Src(10)\r\n" + sHead +
                              "@@@ <M> \xFF\xC3\xA4 - S(1)\r\n" + sHead + "??? <M> cut off";
    for (const std::size_t uPiece : {1U, 7U, 4096U}) {
        EXPECT_EQ(LinesOf(sFile, uPiece), Texts({"error|first - see(3)\n" + sHead + "!!! <M> forged - F(1)\nold\n|Src",
                                                 "notice|\xEF\xBF\xBD\xC3\xA4|S", "???|cut off|"}));
    }
}

TEST_F(VrntTrace, ShowFiltersByTimeAndCaseAndRefusesWhatIsNoTrace)
{
    m_cLogs.Write(L"a.log", "24/11/2026 23:25:31.734 0394:0398 !!! <M> Aa [0x80040201] - S(1)\r\n"
                            "25/11/2026 00:00:00.000 0394:0398 @@@ <M> bB, VT[0x00000400] - S(1)\r\n");
    m_cLogs.Write(L"other.log", "no trace");
    m_cLogs.Write(L"empty.log", "");
    const std::wstring tszFile = m_cLogs.File(L"a.log");
    const std::tuple<int, std::vector<std::wstring>, std::size_t> aRows[] = {
        {__LINE__, {}, 2},
        {__LINE__, {L"--grep", L"aA"}, 0},
        {__LINE__, {L"--grep", L"aA", L"-i"}, 1},
        {__LINE__, {L"--since", L"2026-11-25"}, 1},
        {__LINE__, {L"--since", L"24/11/2026 23:25"}, 2},
        {__LINE__, {L"--since", L"2026-11-24T23:25:32"}, 1},
        {__LINE__, {L"--since", L"40000d"}, 2},
        {__LINE__, {L"--since", L"2096-11-25"}, 0},
    };
    for (const auto& [iLine, vecOption, uExpected] : aRows) {
        std::vector<std::wstring> vecArgument{L"trace", L"show", tszFile};
        vecArgument.insert(vecArgument.end(), vecOption.begin(), vecOption.end());
        EXPECT_EQ(SizeOf(DataOf(vecArgument)), uExpected) << iLine;
    }
    for (const wchar_t* pszWhen : {L"soon", L"2026-02-30", L"2026-02-28T24:00", L""}) {
        EXPECT_EQ(RunVrnt({L"trace", L"show", tszFile, L"--since", pszWhen}).iExitStatus, 2);
    }
    EXPECT_EQ(RunVrnt({L"trace", L"show", m_cLogs.File(L"other.log")}).iExitStatus, 2);
    EXPECT_EQ(DataOf({L"trace", L"show", m_cLogs.File(L"empty.log")}), "[]");
}

TEST_F(VrntTrace, RecordKeepsTheLinesOfACommandApartFromTheSettingsAndTheirFile)
{
    ASSERT_EQ(RunVrnt({L"trace", L"on", L"--folder", m_cLogs.Path().wstring()}).iExitStatus, 0);
    const std::wstring tszOut = m_cLogs.File(L"out.log");
    const ProgramRun stPlain = StartVrnt({L"query", L"pu-ids", L"--json"});
    const std::string sLog = m_cLogs.Read(L"vqxVarnhelt.log");
    const ProgramRun stRun = StartVrnt({L"trace", L"record", tszOut, L"--", L"query", L"pu-ids", L"--json"});
    EXPECT_EQ(stRun.iExitStatus, stPlain.iExitStatus);
    EXPECT_EQ(stRun.sOutput, stPlain.sOutput);
    EXPECT_EQ(stRun.sError, stPlain.sError);
    EXPECT_EQ(m_cLogs.Read(L"vqxVarnhelt.log"), sLog);
    EXPECT_EQ(Interactive("/enabled"), "true");
    const std::string sRecorded = m_cLogs.Read(tszOut);
    EXPECT_EQ(std::ranges::count(sRecorded, '\n'), std::ranges::count(sLog, '\n')); // line for line
    EXPECT_EQ(StartVrnt({L"trace", L"record", tszOut, L"--", L"documents"}).iExitStatus, 2);
    EXPECT_EQ(
        StartVrnt({L"trace", L"record", tszOut, L"--force", L"--level", L"16", L"--", L"vrnt", L"query", L"pu-ids"})
            .iExitStatus,
        1);
    EXPECT_THAT(m_cLogs.Read(tszOut), testing::AllOf(HasSubstr(" @@@ "), Not(HasSubstr(" !!! "))));
    RunVrnt({L"trace", L"off"});
}

TEST_F(VrntTrace, AFailureSaysWhyWhateverTheTraceSettingsSay)
{
    m_cProduct.Store(DocumentId::ThreatsElmap, "<Quillmar><Threats/></Quillmar>");
    const ProgramRun stThreat = StartVrnt({L"query", L"threat-name", L"--engine", L"elmap", L"--id", L"7", L"--json"});
    EXPECT_EQ(stThreat.sError, "vrnt: 0x80040201: antispy.xml has no threat 7\n");
    EXPECT_EQ(At(stThreat.sOutput, "/why/0"), R"("antispy.xml has no threat 7")");
    EXPECT_EQ(At(JsonOf({L"documents"}), "/why"), "");

    m_cProduct.Folder().Write(L"FwPolicy.xen", std::string(4991, 'x'));
    EXPECT_THAT(StartVrnt({L"query", L"policy"}).sError, HasSubstr("cut off: its size is not a multiple of 16"));
    EXPECT_THAT(StartVrnt({L"query", L"enforce-data"}).sError, HasSubstr("FwEnfDat.xen: "));
    EXPECT_THAT(RunVrnt({L"direct", L"version-info", L"--dir", m_cLogs.Path().wstring()}).sError,
                HasSubstr("(error 2)"));
}

TEST(Reasons, AreTheCausesInWordsAndNothingElse)
{
    const std::wstring tszUp = L"*** CFunctionProvider::QueryValue() - pFunctionXml->QueryValue() failed. "
                               L"[0x80040201], VT[0x00000400],VST[0x00000000]";
    EXPECT_EQ(Vrnt::ReasonsOf({L"No <Threat>: 1", tszUp}).front(), "antispy.xml has no threat 1");
    EXPECT_EQ(Vrnt::ReasonsOf({L"*** F() - Xml Error [0x00000007] line [3] file [C:\\a [b].xml]"}).front(),
              "C:\\a [b].xml is not well-formed: line 3");
    EXPECT_THAT(
        Vrnt::ReasonsOf({L"*** ZkCommon::Storage::File::DecryptFile() - Failed to open file(C:\\x), error: 2"}).front(),
        MatchesRegex("cannot open C:\\\\x: .*\\(error 2\\)"));
    const std::wstring tszXml = L"*** F() - Got ZkCommon::Storage::XmlException() failed. ";
    EXPECT_THAT(Vrnt::ReasonsOf({tszXml + L"[0x00000006] [3]", tszXml + L"[C:\\a.xml] [0x00000006] [3]"}),
                ElementsAre("the document is not well-formed: line 3"));
    EXPECT_EQ(Vrnt::ReasonsOf({tszXml + L"ErrorCode:[0x00000022], Line[0x00000000]",
                               tszXml + L"ErrorCode:[0x00000022], Line[0x00000000], FileName:[]"}),
              Texts({"the folder's path is longer than 259 characters"}));
    EXPECT_THAT(Vrnt::ReasonsOf({tszXml + L"[0x00000002]"}), ElementsAre(HasSubstr("(error 2)")));
    // Words that fall to a default are no cause.
    EXPECT_EQ(Vrnt::ReasonsOf({L"*** Frwk::Utility::GetPermission() - Not support Permission was specified. [eAlow]",
                               L"*** X - y"}),
              Texts({"X - y"}));
    EXPECT_EQ(Vrnt::WithMeanings("VT[0x00000400],VST[0x00000001] [0x1] [0x12345678]"),
              "VT[0x00000400 (threats)],VST[0x00000001] [0x1] [0x12345678]");
}

} // namespace
