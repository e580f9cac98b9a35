#include "UpdateTest.h"

#include "Update/UpdateRecording.h"
#include "Update/UpdateUndo.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

namespace UpdateTest {

void LocalUpdate::Run(const std::wstring& _rtszPath, UpdateStorages& _rStorages, Decisions& _rDecisions)
{
    LocalUpdateConfig stConfig;
    bool bStay = false;
    Worker stWorker;
    ASSERT_EQ(Documents::QueryValueAsLocalUpdate(stWorker, &stConfig, &_rtszPath, &bStay), Result::g_ulSuccess);
    CLocalUpdateManager cManager(_rStorages, &_rDecisions);
    ASSERT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    ASSERT_EQ(cManager.DoActionConfig(stConfig), Result::g_ulSuccess);
}

std::vector<std::wstring> LocalUpdate::RoundTrip(const std::wstring& _rtszPath)
{
    const std::vector<std::wstring> vecBefore = m_cBench.Snapshot();
    RecordingStorage cRecord;
    Decisions cRehearsed;
    Run(_rtszPath, cRecord, cRehearsed);
    EXPECT_EQ(cRecord.Failure(), 0U);
    const std::vector<std::wstring> vecRehearsed = m_cBench.Snapshot(&cRecord);
    EXPECT_EQ(m_cBench.Snapshot(), vecBefore) << "the rehearsal changed something";
    const UpdateUndo stUndo = UndoOf(cRecord);
    SystemStorage cSystem;
    Decisions cDone;
    Run(_rtszPath, cSystem, cDone);
    EXPECT_EQ(cDone, cRehearsed);
    EXPECT_EQ(cDone.vecError, cRehearsed.vecError);
    m_vecAfter = m_cBench.Snapshot();
    EXPECT_EQ(m_vecAfter, vecRehearsed) << "the update did something else than its rehearsal";
    EXPECT_EQ(UpdateBench::Send(m_cBench.Describe(L"undo.xml", stUndo.sDescription)), Result::g_ulSuccess);
    m_vecLeft = stUndo.vecLeft;
    std::vector<std::wstring> vecNotBack;
    std::ranges::set_symmetric_difference(vecBefore, m_cBench.Snapshot(), std::back_inserter(vecNotBack));
    EXPECT_TRUE(vecNotBack.empty() || !m_vecLeft.empty()) << stUndo.sDescription;
    for (const std::wstring& tszLine : vecNotBack) {
        EXPECT_TRUE(IsNamed(tszLine)) << testing::PrintToString(tszLine) << stUndo.sDescription;
    }
    std::vector<std::wstring> vecOutcome = {cRehearsed.tszEffects};
    std::ranges::set_symmetric_difference(vecBefore, vecRehearsed, std::back_inserter(vecOutcome));
    return vecOutcome;
}

bool LocalUpdate::IsNamed(const std::wstring& _rtszLine) const
{
    const auto Lower = [](std::wstring _tszText) {
        ::CharLowerBuffW(_tszText.data(), static_cast<DWORD>(_tszText.size()));
        return _tszText;
    };
    const std::wstring tszPlace = _rtszLine.substr(0, _rtszLine.find(L' '));
    const std::wstring tszBelow = tszPlace.substr(std::min(tszPlace.find(L'\\'), tszPlace.size()));
    const std::wstring tszKey = m_cBench.Key().substr(m_cBench.Key().rfind(L'\\') + 1); // in any view
    const std::wstring tszWanted = Lower(tszPlace[0] == L'[' ? tszPlace : tszKey + tszBelow);
    return std::ranges::any_of(m_vecLeft, [&](const std::wstring& _rtszLeft) {
        return Lower(_rtszLeft).find(tszWanted) != std::wstring::npos;
    });
}

std::uint32_t LocalUpdate::Read(const std::wstring& _rtszPath)
{
    return Documents::QueryValueAsLocalUpdate(m_stWorker, &m_stConfig, &_rtszPath);
}

std::string Entries(const Texts& _rvecText, const std::string& _rsOpening, const std::string& _rsClosing)
{
    std::string sEntries;
    for (const std::string& sText : _rvecText) {
        const std::size_t uFlags = std::min(sText.find('+'), sText.size());
        std::istringstream cText(sText.substr(0, uFlags));
        sEntries += _rsOpening;
        for (const std::string sField : {"Action", "Name", "Type", "Value"}) {
            std::string sWord;
            std::getline(cText, sWord, sField == "Value" ? '\0' : ' ');
            sEntries += "<" + sField + ">" + sWord + "</" + sField + ">";
        }
        for (const auto& [szFlag, szField] :
             {std::pair("+over", "<OverWrite>yes</OverWrite>"), std::pair("+Over", "<OverWrite>Yes</OverWrite>"),
              std::pair("+no", "<AllAccess>no</AllAccess>"), std::pair("+yes", "<AllAccess>yes</AllAccess>"),
              std::pair("+Yes", "<AllAccess>Yes</AllAccess>")}) {
            sEntries += sText.find(szFlag, uFlags) != std::string::npos ? szField : "";
        }
        sEntries += _rsClosing;
    }
    return sEntries;
}

std::string Reg(const Texts& _rvecEntry, const std::string& _rsPath, const std::string& _rsRoot,
                const std::string& _rsMode)
{
    return "<registry><Root>" + _rsRoot + "</Root><Path>" + _rsPath + "</Path><AccessMode>" + _rsMode +
           "</AccessMode>" + Entries(_rvecEntry, "<Key target='registry'>", "</Key>") + "</registry>";
}

std::string Ini(const Texts& _rvecEntry, const std::string& _rsSection, const std::string& _rsPath)
{
    return "<inifile><Path>" + _rsPath + "</Path><Section>" + _rsSection + "</Section>" +
           Entries(_rvecEntry, "<Entry target='inifile'>", "</Entry>") + "</inifile>";
}

} // namespace UpdateTest
