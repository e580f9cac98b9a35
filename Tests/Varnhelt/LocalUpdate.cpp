// Local update descriptions: what of them is read, what becomes of their files, and the lines of a whole update.

#include "LocalUpdate.h"

#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "TraceRecorder.h"
#include "UpdateBench.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <string>

using namespace SrvFrwk;
using namespace Varnhelt;
using namespace ZkCommon;
using testing::Contains;
using testing::ElementsAre;

namespace {

class LocalUpdate : public testing::Test
{
protected:
    std::uint32_t Read(const std::wstring& _rtszPath)
    {
        return CFunctionXml().QueryValueAsLocalUpdate(&m_stConfig, &_rtszPath);
    }

    UpdateBench m_cBench;
    LocalUpdateConfig m_stConfig;
};

TEST_F(LocalUpdate, EveryFieldIsReadAndItemsAreKnownByTheLettersTheyHave)
{
    const std::wstring tszPath = m_cBench.Describe(LR"(all.xml)", R"(<Quillmar version="17.2" check="yes" stay="yes">
<!-- nothing --><Reg maxversion="2" minversion="1" product="p" language="l" platform="f"><Root>HKLM</Root><Path>P</Path>
<AccessMode>eMode32bit</AccessMode>
<Key target="registry" maxversion="4" minversion="3" product="q" language="m" platform="g"><Name>N</Name><Type>string</Type>
<Value> v </Value><Action>write</Action><OverWrite>yes</OverWrite><AllAccess>no</AllAccess></Key>
<Key target="inifile"/><Key target="Registry"/><Key/><key target="registry"/></Reg>
<INI product="all"><Path>i.ini</Path><Section>S</Section><Entry target="inifile"><Name>E</Name><AllAccess>yes</AllAccess></Entry>
<Entry target="registry"/></INI><dir/><r/></Quillmar>)");
    ASSERT_EQ(Read(tszPath), Result::g_ulSuccess);
    EXPECT_TRUE(std::filesystem::exists(tszPath));
    EXPECT_EQ(m_stConfig.tszVersion + L"/" + m_stConfig.tszCheck, L"17.2/yes");
    ASSERT_EQ(m_stConfig.lstRegistry.size(), 2U);
    ASSERT_EQ(m_stConfig.lstIniFile.size(), 1U);
    ASSERT_EQ(m_stConfig.lstDirectory.size(), 1U);

    const LocalUpdateKey& rstKey = m_stConfig.lstRegistry.front();
    EXPECT_EQ(rstKey.tszKind + L"/" + rstKey.tszRoot + L"/" + rstKey.tszPath + L"/" + rstKey.tszAccessMode,
              L"registry/HKLM/P/eMode32bit");
    EXPECT_EQ(rstKey.tszMaxVersion + rstKey.tszMinVersion + rstKey.tszProduct + rstKey.tszLanguage + rstKey.tszPlatform,
              L"21plf");
    ASSERT_EQ(rstKey.lstEntry.size(), 1U);
    const LocalUpdateEntry& rstEntry = rstKey.lstEntry.front();
    EXPECT_EQ(rstEntry.tszName + L"/" + rstEntry.tszType + L"/" + rstEntry.tszValue + L"/" + rstEntry.tszAction + L"/" +
                  rstEntry.tszOverWrite + L"/" + rstEntry.tszAllAccess + L"/" + rstEntry.tszTarget,
              L"N/string/ v /write/yes/no/registry");
    EXPECT_EQ(rstEntry.tszMaxVersion + rstEntry.tszMinVersion + rstEntry.tszProduct + rstEntry.tszLanguage +
                  rstEntry.tszPlatform,
              L"43qmg");

    const LocalUpdateKey& rstSection = m_stConfig.lstIniFile.front();
    EXPECT_EQ(rstSection.tszKind + L"/" + rstSection.tszRoot + L"/" + rstSection.tszPath, L"inifile/i.ini/S");
    ASSERT_EQ(rstSection.lstEntry.size(), 1U);
    EXPECT_EQ(rstSection.lstEntry.front().tszName, L"E");
    EXPECT_EQ(rstSection.lstEntry.front().tszAllAccess, L"");
}

struct FileRow
{
    int iLine;
    const char* szDocument;
    std::uint32_t ulResult;
    bool bStays;
    std::size_t uRegistries;
};

const FileRow g_aFile[] = {
    {__LINE__, "<Quillmar/>", Result::g_ulSuccess, false, 0},
    {__LINE__, "<Quillmar stay='yes'/>", Result::g_ulSuccess, true, 0},
    {__LINE__, "<Quillmar stay='Yes'/>", Result::g_ulSuccess, false, 0},
    {__LINE__, "<Quillmar stay='no'/>", Result::g_ulSuccess, false, 0},
    {__LINE__, "<Other stay='yes'><registry/></Other>", Result::g_ulSuccess, false, 0},
    {__LINE__, "<Quillmar><registry/><registryx/><registry/></Quillmar>", Result::g_ulRefused, false, 1},
    {__LINE__, "<Quillmar stay='yes'><folder/></Quillmar>", Result::g_ulRefused, true, 0},
    {__LINE__, "<Quillmar stay='yes'><registry/>", Result::g_ulFailed, false, 0},
    {__LINE__, "", Result::g_ulFailed, false, 0},
};

TEST_F(LocalUpdate, TheFileIsConsumedUnlessItAsksToStayEvenWhenItIsFaulty)
{
    for (const FileRow& stRow : g_aFile) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, stRow.szDocument);
        const std::wstring tszPath = m_cBench.Describe(L"file.xml", stRow.szDocument);
        EXPECT_EQ(Read(tszPath), stRow.ulResult);
        EXPECT_EQ(std::filesystem::exists(tszPath), stRow.bStays);
        EXPECT_EQ(m_stConfig.lstRegistry.size(), stRow.uRegistries);
    }
}

TEST_F(LocalUpdate, AFileThatIsMissingOrCannotBeLookedForIsToldApart)
{
    const std::wstring tszMissing = m_cBench.Folder().File(L"missing.xml");
    const TraceRecorder cTrace(0x110);
    EXPECT_EQ(UpdateBench::Send(tszMissing), Result::g_ulPartialSuccess);
    EXPECT_EQ(UpdateBench::Send(m_cBench.Folder().File(L"no folder\\x.xml")), Result::g_ulUndetermined);
    EXPECT_EQ(UpdateBench::Send(L""), Result::g_ulUndetermined);
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.SendMessage(1, 7, 0, nullptr, 0, 0, nullptr), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.SendMessage(2, 0, 0, nullptr, 0, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_EQ(cFunctionXml.QueryValueAsLocalUpdate(nullptr, &tszMissing), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.QueryValueAsLocalUpdate(&m_stConfig, nullptr), Result::g_ulMissingObject);
    const std::wstring tszQuery = L"*** CFunctionXml::QueryValueAsLocalUpdate() - ";
    const std::wstring tszAction = L"*** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() ";
    const auto Sent = [](const wchar_t* _pszCode) {
        return L"!!! *** CFunctionProvider::SendMessage() - pFunctionXml->DoAction() failed. [" +
               std::wstring(_pszCode) + L"], MT[0x00000001],MST[0x00000000]";
    };
    const wchar_t* pszMessage = L"@@@ _ulMessageType: 0x00000001, _ulMessageSubType: 0x00000000, _ulMessageOption: "
                                L"0x00000000, _ulOption: 0x00000000";
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(pszMessage, L"!!! " + tszQuery + L"File [" + tszMissing + L"] was not found.",
                            L"@@@ " + tszAction + L"partially failed. [" + tszMissing + L"] [0x00040202]", pszMessage,
                            L"!!! " + tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x00000003]",
                            L"!!! " + tszAction + L"failed. [0x80040202]", Sent(L"0x80040202"), pszMessage,
                            L"!!! " + tszQuery + L"ZkCommon::Storage::File::IsExisted() failed. [0x000000a0]",
                            L"!!! " + tszAction + L"failed. [0x80040202]", Sent(L"0x80040202"),
                            L"!!! " + tszQuery + L"ptszXmlPath was invalid.",
                            L"!!! *** CFunctionXml::SendMessage() -  Not Support _ulActionType or _ulActionSubType was "
                            L"specified. [0x00000002]",
                            L"!!! " + tszQuery + L"pRegistryConfig was invalid.",
                            L"!!! " + tszQuery + L"ptszXmlPath was NULL."));
}

TEST_F(LocalUpdate, AnUnreadableDescriptionIsToldWithItsPlace)
{
    const std::wstring tszPath = m_cBench.Describe(L"bad.xml", "<Quillmar>\n<registry></Quillmar>");
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Read(tszPath), Result::g_ulFailed);
    const std::wstring tszFile = String::FromAnsi(String::ToAnsi(tszPath));
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - Got "
                    L"ZkCommon::Storage::XmlException(). [0x00000006]",
                    L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - Xml Error [0x00000007] line [2] file [" +
                        tszFile + L"]"));
}

struct HolderRow
{
    int iLine;
    DWORD ulAccess;
    DWORD ulShare;
};

const HolderRow g_aHolder[] = {
    {__LINE__, GENERIC_WRITE, 0},
    {__LINE__, GENERIC_WRITE, FILE_SHARE_READ},
    {__LINE__, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE},
    {__LINE__, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE},
};

TEST_F(LocalUpdate, ADescriptionThatSomebodyElseHasOpenStaysAndNothingIsApplied)
{
    constexpr const char* szItems = R"(<registry><Root>HKCU</Root><Path>@K@</Path><Key target="registry">
<Action>create</Action><AllAccess>no</AllAccess></Key></registry>)";
    for (const HolderRow& stRow : g_aHolder) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const std::wstring tszPath = m_cBench.Describe(szItems);
        {
            const FileHandle hFile(::CreateFileW(tszPath.c_str(), stRow.ulAccess, stRow.ulShare, nullptr, OPEN_EXISTING,
                                                 FILE_ATTRIBUTE_NORMAL, nullptr));
            EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess);
        }
        EXPECT_TRUE(std::filesystem::exists(tszPath));
        EXPECT_TRUE(m_cBench.Snapshot().empty());
    }
    const std::wstring tszPath = m_cBench.Describe(szItems);
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_READONLY);
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulPartialSuccess);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L"!!! *** CFunctionXml::QueryValueAsLocalUpdate() - "
                                            L"ZkCommon::Storage::File::Delete() failed. [0x00000005]"));
    ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(UpdateBench::Send(tszPath), Result::g_ulSuccess);
    EXPECT_THAT(m_cBench.Snapshot(), ElementsAre(L"HKCU"));
}

TEST_F(LocalUpdate, AnUpdateLeavesTheseLines)
{
    m_cBench.SetEnvironment(L"17.1", L"", 3);
    const std::wstring tszPath = m_cBench.Describe(R"(<registry><Root>HKCU</Root><Path>@K@</Path>
<Key target="registry"><Name>N</Name><Type>uint32</Type><Value>7</Value><Action>write</Action><AllAccess>no</AllAccess></Key>
</registry><inifile><Path>$INSTALL$x.ini</Path><Section>A</Section>
<Entry target="inifile"><Action>erase</Action></Entry></inifile><dir/>)");
    const TraceRecorder cTrace;
    CFunctionXml cFunctionXml;
    ASSERT_EQ(cFunctionXml.DoActionAsLocalUpdate(&tszPath), Result::g_ulSuccess);
    const std::wstring tszFolder = m_cBench.Folder().Path().wstring();
    const std::wstring tszIni = tszFolder + L"\\x.ini";
    const std::vector<std::wstring> vecExpected = {
        L".w. [Enter] CFunctionXml::DoActionAsLocalUpdate()...",
        L".w. [Enter] CFunctionXml::QueryValueAsLocalUpdate()...",
        L".w. *** CFunctionXml::SetLocalUpdateRegistry() - clear pConfig->Items.",
        L".w. *** CFunctionXml::QueryValueAsLocalUpdate() - Read XmlFile [" + tszPath + L"]",
        L".w. [Enter] CFunctionXml::SetLocalUpdateRegistry()...",
        L".w. *** CFunctionXml::SetLocalUpdateRegistry() - clear _pstKey->Entries.",
        L".w. [Leave] CFunctionXml::SetLocalUpdateKey()...",
        L".w. [Enter] CFunctionXml::SetLocalUpdateIniFile()...",
        L".w. *** CFunctionXml::SetLocalUpdateIniFile() - clear _pstIniFile->Entries.",
        L".w. [Leave] CFunctionXml::SetLocalUpdateKey()...",
        L".w. [Enter] CFunctionXml::SetLocalUpdateDirectory()...",
        L".w. [Leave] CFunctionXml::SetLocalUpdateDirectory()...",
        L".w. [Leave] CFunctionXml::QueryValueAsLocalUpdate()...",
        L".w. [Enter] CLocalUpdateManager::Initialize()...",
        L".w. [Enter] CLocalUpdateManager::CheckMinimumPlatform()...",
        L".w. [Leave] CLocalUpdateManager::CheckMinimumPlatform()...",
        L".w. [Enter] CLocalUpdateManager::SetVersionType()...",
        L".w. [Leave] CLocalUpdateManager::SetVersionType()...",
        L".w. [Enter] CLocalUpdateManager::SetProductType()...",
        L"@@@ *** CLocalUpdateManager::SetProductType() - tszTemp.length() was smaller than 1.",
        L".w. [Leave] CLocalUpdateManager::SetProductType()...",
        L".w. [Enter] CLocalUpdateManager::SetLanguageType()...",
        L".w. [Leave] CLocalUpdateManager::SetLanguageType()...",
        L".w. [Leave] CLocalUpdateManager::Initialize()...",
        L".w. [Enter] CLocalUpdateManager::DoActionConfig()...",
        L".w. [Enter] CLocalUpdateAgent::Initialize()...",
        L".w. [Leave] CLocalUpdateAgent::Initialize()...",
        L".w. [Enter] CLocalUpdateAgentKey::DoAction()...",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].",
        L"@@@ *** CLocalUpdateAgentKey::CreateKey() - Root[0x80000001]",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - Root[HKCU] Base[" + m_cBench.Key() + L"]",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].",
        L".w. [Enter] CLocalUpdateAgentKey::OnAction()...",
        L"@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [write]",
        L".w. [Enter] CLocalUpdateAgentKey::Write()...",
        L".w. [Leave] CLocalUpdateAgentKey::Write()...",
        L".w. [Leave] CLocalUpdateAgentKey::OnAction()...",
        L".w. [Leave] CLocalUpdateAgentKey::DoAction()...",
        L".w. [Enter] CLocalUpdateAgent::UnInitialize()...",
        L".w. [Leave] CLocalUpdateAgent::UnInitialize()...",
        L".w. [Enter] CLocalUpdateAgent::Initialize()...",
        L".w. [Leave] CLocalUpdateAgent::Initialize()...",
        L".w. [Enter] CLocalUpdateAgentKey::DoAction()...",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].",
        L"@@@ *** CLocalUpdateAgentKey::ReplacePath() - _tszPath [$INSTALL$x.ini]",
        L"@@@ *** CLocalUpdateAgentKey::ReplacePath() - InstalledFolder [" + tszFolder + L"]",
        L"@@@ *** CLocalUpdateAgentKey::CreateKey() - _stKey.tszRoot[" + tszIni + L"]",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - Root[" + tszIni + L"] Base[A]",
        L"@@@ *** CLocalUpdateAgentKey::DoAction() - bUpdate [1].",
        L".w. [Enter] CLocalUpdateAgentKey::OnAction()...",
        L"@@@ *** CLocalUpdateAgentKey::OnAction() - _stKey.tszAction [erase]",
        L"!!! *** CLocalUpdateAgentKey::OnAction() - specified _stKey.tszAction[erase] was invalid.",
        L".w. [Leave] CLocalUpdateAgentKey::OnAction()...",
        L"!!! *** CLocalUpdateAgentKey::DoAction() - Name[] Type[] Value[] failed. [0x80040203]",
        L".w. [Leave] CLocalUpdateAgentKey::DoAction()...",
        L"!!! *** CLocalUpdateManager::DoActionKeyConfig() - pAgent->DoAction failed(). tszTargetType [inifile] "
        L"[0x80040203]",
        L".w. [Enter] CLocalUpdateAgent::UnInitialize()...",
        L".w. [Leave] CLocalUpdateAgent::UnInitialize()...",
        L".w. [Leave] CLocalUpdateManager::DoActionConfig()...",
        L".w. [Enter] CLocalUpdateManager::UnInitialize()...",
        L".w. [Leave] CLocalUpdateManager::UnInitialize()...",
        L".w. [Leave] CFunctionXml::DoActionAsLocalUpdate()...",
    };
    EXPECT_THAT(cTrace.Lines(), testing::ElementsAreArray(vecExpected));
}

} // namespace
