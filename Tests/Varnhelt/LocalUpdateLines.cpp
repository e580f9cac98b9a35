// Local updates: the lines of a whole update, and of what fails of it.

#include "ReplaceAll.h"
#include "TraceRecorder.h"
#include "Update/LocalUpdateRequest.h"
#include "UpdateTest.h"

using namespace ZkCommon;

namespace {

TEST_F(LocalUpdate, AFailedEntryIsLoggedByItsCode)
{
    const TraceRecorder cTrace(0x100);
    ASSERT_EQ(m_cBench.Apply(Reg({"create+no", "remove absent"}) + Ini({"erase n string v"})), Result::g_ulSuccess);
    const std::wstring tszAgent = L"!!! *** CLocalUpdateAgentKey::";
    const std::wstring tszItem =
        L"!!! *** CLocalUpdateManager::DoActionKeyConfig() - pAgent->DoAction failed(). tszTargetType ";
    EXPECT_EQ(cTrace.Lines(),
              Lines({tszAgent + L"Remove() - Got ZkCommon::Exception::Base(). [0x00000002]",
                     tszAgent + L"OnAction() - OnAction() failed().  _stKey.tszAction[remove] [0x80040201]",
                     tszAgent + L"DoAction() - Name[absent] Type[] Value[] failed. [0x80040201]",
                     tszItem + L"[registry] [0x80040201]",
                     tszAgent + L"OnAction() - specified _stKey.tszAction[erase] was invalid.",
                     tszAgent + L"DoAction() - Name[n] Type[string] Value[v] failed. [0x80040203]",
                     tszItem + L"[inifile] [0x80040203]"}));
}

TEST_F(LocalUpdate, ASuccessfulUpdateTellsEachStep)
{
    const std::wstring tszPath =
        m_cBench.Describe(Reg({"create Sub+no", "remove+no"}, "@K@", "HKCU") + Ini({"write n string v"}) + "<dir/>");
    const TraceRecorder cTrace;
    ASSERT_EQ(DoActionAsLocalUpdate(m_stWorker, &tszPath), Result::g_ulSuccess);

    // ">" and "<" stand for entry and leave lines, "=" for both without one between them.
    const std::wstring tszEnter = L".w. [Enter] ";
    const std::wstring tszLeave = L".w. [Leave] ";
    Lines vecLine;
    for (const std::wstring& tszLine : cTrace.Lines()) {
        if (!vecLine.empty() && tszLine.starts_with(tszLeave) &&
            vecLine.back() == tszEnter + tszLine.substr(tszLeave.size())) {
            vecLine.back() = L"= " + tszLine.substr(tszLeave.size());
        } else {
            vecLine.push_back(tszLine);
        }
    }
    std::wstring tszLines;
    for (const std::wstring& tszLine : vecLine) {
        tszLines += tszLine + L"\n";
    }
    const std::pair<std::wstring, std::wstring> aShort[] = {{m_cBench.Key(), L"@K@"},
                                                            {m_cBench.Folder().Path().wstring(), L"@F@"},
                                                            {tszEnter, L"> "},
                                                            {tszLeave, L"< "},
                                                            {L"()...", L""}};
    for (const auto& [tszFrom, tszTo] : aShort) {
        ReplaceAll(tszLines, tszFrom, tszTo);
    }
    EXPECT_EQ(tszLines, LR"(> CFunctionXml::DoActionAsLocalUpdate
> CFunctionXml::QueryValueAsLocalUpdate
.w. *** CFunctionXml::SetLocalUpdateRegistry() - clear pConfig->Items.
.w. *** CFunctionXml::QueryValueAsLocalUpdate() - Read XmlFile [@F@\update.xml]
> CFunctionXml::SetLocalUpdateRegistry
.w. *** CFunctionXml::SetLocalUpdateRegistry() - clear _pstKey->Entries.
< CFunctionXml::SetLocalUpdateKey
> CFunctionXml::SetLocalUpdateIniFile
.w. *** CFunctionXml::SetLocalUpdateIniFile() - clear _pstIniFile->Entries.
< CFunctionXml::SetLocalUpdateKey
= CFunctionXml::SetLocalUpdateDirectory
< CFunctionXml::QueryValueAsLocalUpdate
> CLocalUpdateManager::Initialize
= CLocalUpdateManager::CheckMinimumPlatform
= CLocalUpdateManager::SetVersionType
= CLocalUpdateManager::SetProductType
= CLocalUpdateManager::SetLanguageType
< CLocalUpdateManager::Initialize
> CLocalUpdateManager::DoActionConfig
= CLocalUpdateAgent::Initialize
> CLocalUpdateAgentKey::DoAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
@@@ *** CLocalUpdateAgentKey::CreateKey() - Root[0x80000001]
@@@ *** CLocalUpdateAgentKey::DoAction() - Root[HKCU] Base[@K@]
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [create]
= CLocalUpdateAgentKey::Create
< CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [remove]
> CLocalUpdateAgentKey::Remove
@@@ *** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[@K@]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - Got Sections [1]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - section[Sub]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - _stKey.tszTarget[@K@\Sub]
@@@ *** CLocalUpdateAgentKey::RemoveSection() - Got Sections [0]
< CLocalUpdateAgentKey::Remove
< CLocalUpdateAgentKey::OnAction
< CLocalUpdateAgentKey::DoAction
= CLocalUpdateAgent::UnInitialize
= CLocalUpdateAgent::Initialize
> CLocalUpdateAgentKey::DoAction
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
@@@ *** CLocalUpdateAgentKey::ReplacePath() - _tszPath [@F@\test.ini]
@@@ *** CLocalUpdateAgentKey::CreateKey() - _stKey.tszRoot[@F@\test.ini]
@@@ *** CLocalUpdateAgentKey::DoAction() - Root[@F@\test.ini] Base[A]
@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].
> CLocalUpdateAgentKey::OnAction
@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [write]
= CLocalUpdateAgentKey::Write
< CLocalUpdateAgentKey::OnAction
< CLocalUpdateAgentKey::DoAction
= CLocalUpdateAgent::UnInitialize
< CLocalUpdateManager::DoActionConfig
= CLocalUpdateManager::UnInitialize
< CFunctionXml::DoActionAsLocalUpdate
)");
}

} // namespace
