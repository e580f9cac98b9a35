#include "ReadDocument.h"

#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/EnforceData.h"
#include "Documents/KeyConfig.h"
#include "Documents/LocalUpdate.h"
#include "Documents/Policy.h"
#include "Documents/RegistryData.h"
#include "Documents/ServiceUnits.h"
#include "Documents/VersionInfo.h"
#include "FunctionXml.h"
#include "SrvFrwk_ValueType.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateObserver.h"
#include "Update/UpdateRecording.h"
#include "UpdateBench.h"
#include "ZkComn_Library.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <list>

using namespace SrvFrwk;
using namespace Varnhelt;
using ZkCommon::String::ToUtf8;

namespace {

/** The file of documents that have no name of their own. */
constexpr const wchar_t* g_pszFile = L"document.xml";

template <class TContainer, class TDescription>
void AddRecords(const TContainer& _rRecords, const TDescription& _rstDescription, Reading& _rstReading)
{
    _rstReading.mapRecord[_rstDescription.svElement] += _rRecords.size();
    for (const auto& stRecord : _rRecords) {
        Documents::ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
            const auto& rValue = stRecord.*_rstField.pMember;
            if constexpr (!TField::g_bList) {
                _rstReading.vecValue.push_back(std::string(_rstField.szKey) + "=" +
                                               ToUtf8(_rstField.stConversion.Write(rValue)));
            } else if constexpr (TField::g_bTexts) {
                _rstReading.mapRecord[_rstField.svElement] += rValue.size();
            } else {
                AddRecords(rValue, *_rstField.pDescription, _rstReading);
            }
        });
    }
}

Reading Ask(Request _stRequest)
{
    return {Result::IsFailure(CFunctionXml().QueryValue(_stRequest))};
}

template <class TContainer, class TDescription>
Reading AskFor(std::uint32_t _ulValueType, const TDescription& _rstDescription, void* _pOption)
{
    TContainer records;
    Reading stReading = Ask({0, _ulValueType, 0, &records, 0, _pOption});
    AddRecords(records, _rstDescription, stReading);
    return stReading;
}

Reading AskForPuIds()
{
    InstallPuIds stPuIds;
    Reading stReading = Ask({0, ValueType::g_ulInstallPuIds, 0, &stPuIds, 0, nullptr});
    for (const auto* pList : {&stPuIds.vecPattern, &stPuIds.vecEngine, &stPuIds.vecProduct}) {
        stReading.mapRecord[L""] += pList->size();
        for (const std::uint32_t ulNumber : *pList) {
            stReading.vecValue.push_back("number=" + std::to_string(ulNumber));
        }
    }
    return stReading;
}

Reading AskForComponents(XmlPathConfig& _rstPath)
{
    constexpr std::uint32_t ulSetup = 1;
    Reading stReading;
    for (const std::uint32_t ulSection : {ComponentSection::g_ulInstall, ComponentSection::g_ulUninstall}) {
        DeployComponentConfig lstComponent;
        stReading.bRefused =
            Ask({0, ValueType::g_ulDeployComponent, ulSection, &lstComponent, ulSetup, &_rstPath}).bRefused ||
            stReading.bRefused;
        AddRecords(lstComponent, Documents::g_stDeployComponent, stReading);
    }
    return stReading;
}

/** A table answers for numbers: these are asked. */
Reading AskForThreats(std::initializer_list<std::uint32_t> _lstValueType)
{
    Reading stReading{false, {{L"", 1}}};
    for (const std::uint32_t ulValueType : _lstValueType) {
        for (const std::uint32_t ulNumber : {0U, 5U, 8U, 17U, 0xFFFFFFFBU, 0xFFFFFFFFU}) {
            ThreatText stText{ulNumber, {}, {}};
            if (!Ask({0, ulValueType, 0, &stText, 0, nullptr}).bRefused) {
                stReading.vecValue.push_back(std::to_string(ulNumber) + "=" + ToUtf8(stText.tszText));
            }
        }
    }
    return stReading;
}

/** Rehearses an update, and counts the entries that are done, or need not be. */
class Rehearsal : private UpdateObserver
{
public:
    Reading Run(const std::wstring& _rtszPath)
    {
        LocalUpdateConfig stConfig;
        bool bStay = false;
        Worker stWorker;
        m_stReading.bRefused =
            Result::IsFailure(Documents::QueryValueAsLocalUpdate(stWorker, &stConfig, &_rtszPath, &bStay));
        if (!m_stReading.bRefused) {
            RecordingStorage cStorage;
            CLocalUpdateManager cManager(cStorage, this);
            cManager.Initialize();
            cManager.DoActionConfig(stConfig);
            cManager.UnInitialize();
        }
        return m_stReading;
    }

private:
    void OnItem(const LocalUpdateKey&, UpdateReason) override {}
    void OnEntry(const UpdatePlace&, const LocalUpdateEntry& _rstEntry, const UpdateDecision& _rstDecision) override
    {
        const bool bGone = Documents::IsAction(_rstEntry, UpdateWords::ActionRemove) &&
                           _rstDecision.ulError == ERROR_FILE_NOT_FOUND; // the value
        const bool bIdle = bGone || (_rstDecision.enEffect == UpdateEffect::Skip && IsIdle(_rstDecision.enReason));
        m_stReading.mapRecord[L""] += bIdle || _rstDecision.enReason == UpdateReason::None ? 1 : 0;
    }
    static bool IsIdle(UpdateReason _enReason)
    {
        return _enReason == UpdateReason::PlacePresent || _enReason == UpdateReason::ValuePresent ||
               _enReason == UpdateReason::PlaceAbsent;
    }

    Reading m_stReading;
};

} // namespace

std::size_t Reading::Records(std::wstring_view _svElement) const
{
    if (const auto itFound = mapRecord.find(_svElement); itFound != mapRecord.end()) {
        return itFound->second;
    }
    std::size_t uAll = 0;
    for (const auto& [svElement, uRecords] : mapRecord) {
        uAll += uRecords;
    }
    return uAll;
}

DocumentReader::DocumentReader()
{
    UpdateBench::SetEnvironment(L"17.1.1040", L"QE17-0001", 32);
    ZkCommon::Storage::Registry cKey;
    cKey.Create(HKEY_CURRENT_USER, Key());
    cKey.WriteString(L"text", L"text"); // for entries that remove it
}

DocumentReader::~DocumentReader()
{
    UpdateBench::RemoveEnvironment();
}

std::wstring DocumentReader::Store(DocumentId _enDocument, const std::string& _rsXml) const
{
    const Document& stDocument = DocumentOf(_enDocument);
    const wchar_t* pszFile = stDocument.pszFile == nullptr ? g_pszFile : nullptr;
    m_cProduct.Store(_enDocument, _rsXml, pszFile);
    m_cProduct.Folder().Write(L"plain.xml", _rsXml);
    m_cProduct.Folder().Write(L"law.ini", "[text]\r\ntext=text\r\n");
    return m_cProduct.Folder().File(L"plain.xml");
}

Reading DocumentReader::Read(DocumentId _enDocument) const
{
    XmlDirectoryConfig stDirectory{{}, m_cProduct.Folder().Path().wstring()};
    XmlPathConfig stPath{stDirectory, g_pszFile};
    RegistryDataRequest stLabels{{L"*"}, m_cProduct.Folder().File(g_pszFile)};
    switch (_enDocument) {
    case DocumentId::ServiceUnits:
        return AskFor<std::vector<ServiceUnit>>(ValueType::g_ulServiceUnit, Documents::g_stServiceUnit, nullptr);
    case DocumentId::Policy:
        return AskFor<std::vector<PolicyController>>(ValueType::g_ulEnforcePolicy, Documents::g_stPolicyController,
                                                     nullptr);
    case DocumentId::EnforceData:
        return AskFor<std::vector<DataController>>(ValueType::g_ulEnforceData, Documents::g_stDataController, nullptr);
    case DocumentId::PuIds:
        return AskForPuIds();
    case DocumentId::VersionInfo:
        return AskFor<std::vector<VersionInformation>>(ValueType::g_ulVersionInfo, Documents::g_stVersionInformation,
                                                       &stDirectory);
    case DocumentId::CompetitorActions:
        return AskFor<std::vector<CompetitorAction>>(ValueType::g_ulCompetitorAction, Documents::g_stCompetitorAction,
                                                     &stDirectory);
    case DocumentId::CompetitorDetections:
        return AskFor<std::vector<CompetitorDetection>>(ValueType::g_ulCompetitorDetection,
                                                        Documents::g_stCompetitorDetection, &stDirectory);
    case DocumentId::Compatibility:
        return AskFor<std::vector<CompatibilityPlatform>>(ValueType::g_ulCompatibilityCheck,
                                                          Documents::g_stCompatibilityPlatform, &stDirectory);
    case DocumentId::Alias:
        return AskFor<DeployAliasConfig>(ValueType::g_ulDeployAlias, Documents::g_stDeployAlias, &stPath);
    case DocumentId::Component:
        return AskForComponents(stPath);
    case DocumentId::KeyConfig:
        return AskFor<std::vector<DeployKey>>(ValueType::g_ulKeyConfig, Documents::g_stDeployKey, &stDirectory);
    case DocumentId::RegistryData:
        return AskFor<std::vector<RegistryData>>(ValueType::g_ulRegistryData, Documents::g_stRegistryData, &stLabels);
    case DocumentId::ThreatsOrkap:
        return AskForThreats({ValueType::g_ulThreatNameOrkap});
    case DocumentId::ThreatsElmap:
        return AskForThreats({ValueType::g_ulThreatDescription, ValueType::g_ulScannerTitle});
    case DocumentId::LocalUpdate:
        return Rehearsal().Run(m_cProduct.Folder().File(g_pszFile));
    default:
        return {};
    }
}
