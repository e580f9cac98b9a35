// Local updates: the environment, and the conditions that are judged by it.

#include "Frwk_Settings.h"
#include "TraceRecorder.h"
#include "Update/UpdateRecording.h"
#include "UpdateTest.h"

#include <optional>
#include <tuple>

using namespace ZkCommon;

namespace {

TEST_F(LocalUpdate, VersionsAreComparedAsFarAsBothHaveThem)
{
    const std::tuple<const wchar_t*, const wchar_t*, std::optional<std::int32_t>> aRow[] = {
        {L"6.0.1101", L"6.0.1100", 1}, {L"6.0", L"6.0.1234", 0},       {L"6..0", L"6.1", -1},
        {L"0x10", L"16", 0},           {L"010.1", L"8.0", 1},          {L"0", L"4294967295", 1},
        {L"1", L"", std::nullopt},     {L"1.a", L"1.2", std::nullopt}, {L"1.a", L"2.2", -1},
        {L".1", L"1", std::nullopt},   {L"1.", L"1", std::nullopt},    {L"1", L"2.", std::nullopt}};
    for (const auto& [pszLeft, pszRight, lResult] : aRow) {
        EXPECT_EQ(CompareVersion(pszLeft, pszRight), lResult) << pszLeft << " and " << pszRight;
    }
}

TEST_F(LocalUpdate, ConditionsDecideForItemsAndEntriesAlikeAndOnlyWhenTheyAreToCount)
{
    using enum UpdateReason;
    // minimum, maximum, product, language, platform
    constexpr std::pair<const char*, UpdateReason> aRow[] = {{"17.1.1040 17.1.1040 qmrpro de vistaorlater", None},
                                                             {"1 18 qmrorpro de xporlater", None},
                                                             {"17.1.1041 18 all all all", VersionTooLow},
                                                             {"1 17.1.1039 all all all", VersionTooHigh},
                                                             {"1  all all all", BadVersion},
                                                             {"1 18 lumorqmr all all", OtherProduct},
                                                             {"1 18 QMRPRO all all", OtherProduct},
                                                             {"1 18 all de,fr all", OtherLanguage},
                                                             {"1 18 all all xp32or64", OtherPlatform},
                                                             {"1 18 all all XP32", UnknownPlatform}};
    const auto Item = [](const char* _szRoot, const std::string& _rsConditions, const std::string& _rsOfEntry) {
        return "<registry" + _rsConditions + "><Root>" + _szRoot + "</Root><Path>@K@</Path><Key target='registry'" +
               _rsOfEntry + "><Action>create</Action><AllAccess>no</AllAccess></Key></registry>";
    };
    for (const auto& [szWords, enReason] : aRow) {
        SCOPED_TRACE(szWords);
        std::string sConditions;
        std::istringstream cWords(szWords);
        for (const char* szName : {" minversion='", " maxversion='", " product='", " language='", " platform='"}) {
            std::string sWord;
            std::getline(cWords, sWord, ' ');
            sConditions += sWord.empty() ? "" : szName + sWord + "'";
        }
        for (const char* szCheck : {"check='yes'", "check='YES'"}) {
            const UpdateReason enExpected = szCheck[7] == 'y' ? enReason : None;
            RecordingStorage cRecord;
            Decisions cDecisions;
            Run(m_cBench.Describe(Item("HKCU", sConditions, " @ALL@") + Item("HKLM", " @ALL@", sConditions), szCheck),
                cRecord, cDecisions);
            EXPECT_THAT(cDecisions.vecReason, ElementsAre(enExpected, enExpected));
            EXPECT_EQ(cRecord.Changes().empty(), enExpected != None);
        }
    }
}

TEST_F(LocalUpdate, TheEnvironmentComesFromTheProductsKey)
{
    constexpr std::tuple<const wchar_t*, std::uint32_t, const wchar_t*> aRow[] = {
        {L"QI", 1, L"17/qmr/en_us"}, {L"QE", 3, L"17/qmrpro/en_us"}, {L"QB", 1048576, L"17/lum/fr_ca"},
        {L"Qe", 16, L"17//en_us"},   {L"", 8, L"17/unknown/cn"},     {L"Q", 65536, L"17//en_gb"}};
    RecordingStorage cRecord;
    CLocalUpdateManager cManager(cRecord);
    for (const auto& [pszPid, ulLanguage, pszExpected] : aRow) {
        UpdateBench::SetEnvironment(L"17", pszPid, ulLanguage);
        ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
        const UpdateEnvironment& rstHere = cManager.Environments();
        EXPECT_EQ(rstHere.tszVersion + L"/" + rstHere.tszProduct + L"/" + rstHere.tszLanguage, pszExpected);
    }

    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, L"Language", REG_SZ, L"de", sizeof(L"de"));
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulUndetermined);
    EXPECT_EQ(cTrace.Lines(),
              Lines({L"!!! *** CLocalUpdateManager::SetLanguageType() - Got ZkCommon::Exception::Base(). [0x0000070c]",
                     L"!!! *** CLocalUpdateManager::Initialize() - SetLanguageType() failed. [0x80040202]"}));
}

} // namespace
