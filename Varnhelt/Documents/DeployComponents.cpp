#include "Documents/DeployComponents.h"

#include "Documents/Deployment.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"

#include <utility>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

std::wstring_view SectionOf(std::uint32_t _ulValueSubType)
{
    switch (_ulValueSubType) {
    case ComponentSection::g_ulInstall:
        return Documents::g_svInstall;
    case ComponentSection::g_ulUninstall:
        return Documents::g_svUninstall;
    default:
        return {};
    }
}

/** Marks files that name nothing. */
struct DeployHook : Documents::ReadHook
{
    using ReadHook::OnRecord;
    static bool OnRecord(const Storage::XmlElement&, DeployFile& _rstFile)
    {
        const bool bNameless = _rstFile.strName.empty();
        _rstFile.bEmptyEntry = _rstFile.eAction == 1
                                   ? bNameless && _rstFile.strSourceDirectory.empty() && _rstFile.strSourceName.empty()
                                   : _rstFile.eAction == 2 && bNameless;
        return true;
    }
};

/** Reads one component after another; the document's names are looked up once. */
class ComponentReader
{
public:
    ComponentReader(const Storage::XmlElement& _rSection, std::uint32_t _ulRunMode)
        : m_ulRunMode(_ulRunMode),
          m_id(_rSection.FindName(L"Id")),
          m_directory(_rSection.FindName(L"Directory")),
          m_execute(_rSection.FindName(Documents::g_svExecute)),
          m_platform(_rSection.FindName(Documents::g_svPlatform)),
          m_process(_rSection.FindName(Documents::g_svProcess)),
          m_cFile(_rSection, Documents::g_stDeployFile),
          m_cKey(_rSection),
          m_cShortcut(_rSection, Documents::g_stDeployShortcut)
    {}

    /** Whether the component is for the run mode, and for systems and processors such as this. */
    bool IsWanted(const Storage::XmlElement& _rComponent) const
    {
        const Frwk::Word* pExecute = Frwk::Utility::FindWord(Documents::g_stExecute, _rComponent.Attribute(m_execute));
        if (pExecute != nullptr && pExecute->ulValue != m_ulRunMode) {
            return false;
        }
        return Documents::IsPlatform(_rComponent.Attribute(m_platform)) &&
               Documents::IsForThisProcessor(_rComponent.Attribute(m_process));
    }

    /** @return the result of GetKeyConfig, the one part that may fail */
    std::uint32_t Read(const Storage::XmlElement& _rComponent, DeployComponent& _rstComponent)
    {
        _rstComponent.strId = _rComponent.Attribute(m_id);
        _rstComponent.strDirectory = _rComponent.Attribute(m_directory);
        m_cFile.ReadAll(_rComponent, _rstComponent.lstFile, DeployHook());
        if (const std::uint32_t ulResult = m_cKey.GetKeyConfig(_rComponent, _rstComponent.vecKey);
            Result::IsFailure(ulResult)) {
            return ulResult;
        }
        m_cShortcut.ReadAll(_rComponent, _rstComponent.lstShortcut, Documents::ReadHook());
        return Result::g_ulSuccess;
    }

private:
    std::uint32_t m_ulRunMode;
    Storage::XmlName m_id;
    Storage::XmlName m_directory;
    Storage::XmlName m_execute;
    Storage::XmlName m_platform;
    Storage::XmlName m_process;
    Documents::Bound<std::remove_const_t<decltype(Documents::g_stDeployFile)>> m_cFile;
    Documents::KeyReader m_cKey;
    Documents::Bound<std::remove_const_t<decltype(Documents::g_stDeployShortcut)>> m_cShortcut;
};

std::uint32_t ReadComponents(const MethodLines& _rLines, const Storage::XmlElement& _rSection, std::uint32_t _ulRunMode,
                             DeployComponentConfig& _rlstComponent)
{
    ComponentReader cReader(_rSection, _ulRunMode);
    for (auto cComponent = _rSection.FirstChild(Documents::g_stDeployComponent.svElement); cComponent;
         cComponent = cComponent.NextNamesake()) {
        if (!cReader.IsWanted(cComponent)) {
            continue;
        }
        DeployComponent stComponent;
        if (const std::uint32_t ulResult = cReader.Read(cComponent, stComponent); Result::IsFailure(ulResult)) {
            _rLines.Error(L"this->GetKeyConfig() failed. [0x%08x]", ulResult);
            return ulResult;
        }
        _rlstComponent.push_back(std::move(stComponent));
    }
    return Result::g_ulSuccess;
}

} // namespace

std::uint32_t Documents::QueryValueAsDeployComponentConfig(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<DeployComponentConfig>(
        Documents::DeploymentFailures(L"CFunctionXml::QueryValueAsDeployComponentConfig()"), _rstRequest.pValueData,
        L"pstDeployComponentConfig", [&](const MethodTrace& _rTrace, auto& _rlstComponent) {
            DocumentFile cDocument(_rWorker, DocumentId::Component, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Find(_rTrace, _rstRequest.pOptionData);
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
            const std::wstring_view svSection = SectionOf(_rstRequest.ulValueSubType);
            if (svSection.empty()) {
                _rTrace.Error(L"_ulValueSubType was invalid. [0x%08x]", _rstRequest.ulValueSubType);
                return Result::g_ulInvalidArgument;
            }
            const Storage::XmlElement cRoot = cDocument.Select();
            std::uint32_t ulResult = Result::g_ulSuccess;
            bool bRead = false;
            for (auto cSection = cRoot.NextChild(); cSection; cSection = cRoot.NextChild(cSection)) {
                if (!bRead && cSection.Name() == svSection) {
                    bRead = true;
                    ulResult = ReadComponents(_rTrace, cSection, _rstRequest.ulValueOption, _rlstComponent);
                }
            }
            return ulResult;
        });
}
