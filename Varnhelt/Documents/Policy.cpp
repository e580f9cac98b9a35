#include "Documents/Policy.h"

#include "Boundary.h"
#include "Descriptions/DescriptionDump.h"
#include "Descriptions/DescriptionReader.h"
#include "Descriptions/DescriptionWriter.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <algorithm>
#include <type_traits>
#include <unordered_map>
#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

using Documents::DumpTexts;

constexpr DumpTexts Framed(const wchar_t* _pszPrefix, const wchar_t* _pszRule)
{
    return {.pszPrefix = _pszPrefix, .pszOpening = _pszRule, .pszClosing = _pszRule};
}

constexpr DumpTexts g_stQueryDump =
    Framed(L"*** CFunctionXml::QueryValueAsEnforcePolicy() - ",
           L"*** CFunctionXml::QueryValueAsEnforcePolicy() ---------------------------------------------.");
constexpr DumpTexts g_stStoreDump =
    Framed(L"*** CFunctionXml::StoreValueAsEnforcePolicy() - ",
           L"*** CFunctionXml::StoreValueAsEnforcePolicy() ---------------------------------------------.");
constexpr DumpTexts g_stQueryProviderDump =
    Framed(L"*** CFunctionXml::SetPolicyProvider() - ",
           L"*** CFunctionXml::SetPolicyProvider() ---------------------------------------------.");
constexpr DumpTexts g_stStoreProviderDump =
    Framed(L"*** CFunctionXml::SetPolicyProviderXml() - ",
           L"*** CFunctionXml::SetPolicyProviderXml() ---------------------------------------------.");
constexpr DumpTexts g_stSpecificDump{.pszPrefix = L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - "};

/** A policy that cannot be told is no policy that denies: what is no exception of the parser has a code of its own. */
constexpr FailureTexts Failure(const wchar_t* _pszMethod)
{
    return {.pszMethod = _pszMethod, .ulAnyResult = Result::g_ulUndetermined};
}

/** Dumps what is read, and passes over a provider that cannot be read. */
struct PolicyHook : Documents::ReadHook
{
    bool OnRecord(const Storage::XmlElement& _rElement, const PolicyController& _rstController) const
    {
        DumpElement(Documents::g_stPolicyController, _rElement, _rstController, g_stQueryDump);
        return true;
    }
    bool OnRecord(const Storage::XmlElement& _rElement, const PolicyProvider& _rstProvider) const
    {
        DumpElement(Documents::g_stPolicyProvider, _rElement, _rstProvider, g_stQueryProviderDump);
        return true;
    }

    template <class TRecord, class TRead>
    bool Around(const TRead& _fnRead) const
    {
        if constexpr (std::is_same_v<TRecord, PolicyController>) {
            return _fnRead();
        }
        const std::uint32_t ulResult = AtBoundary(Failure(L"CFunctionXml::SetPolicyProvider()"), [&] {
            _fnRead();
            return Result::g_ulSuccess;
        });
        if (Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::QueryValueAsEnforcePolicy() - this->SetPolicyProvider() failed. [0x%08x]",
                  ulResult);
        }
        return !Result::IsFailure(ulResult);
    }
};

/** Puts records into a loaded policy: each into the first element of its type, of which nothing else changes. */
class PolicyWriter
{
public:
    explicit PolicyWriter(const Storage::XmlElement& _rControllers)
        : m_controllers(IndexOf(_rControllers, L"PolicyController", L"Controller", &Frwk::Utility::GetControllerType))
    {}

    /** @return false when the policy has no such controller */
    bool Write(const PolicyController& _rstController)
    {
        const Storage::XmlElement cElement = m_controllers.Find(_rstController.ulControllerType);
        if (!cElement) {
            return false;
        }
        WriteRecord(cElement, Documents::g_stPolicyController, _rstController);
        DumpElement(Documents::g_stPolicyController, cElement, _rstController, g_stStoreDump);
        if (!_rstController.vecProvider.empty()) {
            const Index& rProviders = ProvidersOf(_rstController.ulControllerType, cElement);
            for (const PolicyProvider& stProvider : _rstController.vecProvider) {
                WriteProvider(rProviders.Find(stProvider.ulProviderType), stProvider);
            }
        }
        return true;
    }

private:
    using Index = Documents::ElementIndex<std::uint32_t>;

    static Index IndexOf(const Storage::XmlElement& _rContainer, const wchar_t* _pszElement, const wchar_t* _pszType,
                         std::uint32_t (*_pfnConvert)(std::wstring_view) noexcept)
    {
        const Storage::XmlName type = _rContainer.FindName(_pszType);
        return {_rContainer, _pszElement,
                [&](const Storage::XmlElement& _rElement) { return _pfnConvert(_rElement.Attribute(type)); }};
    }

    /** Made once for each controller, however many records name it. */
    const Index& ProvidersOf(std::uint32_t _ulControllerType, const Storage::XmlElement& _rController)
    {
        auto itIndex = m_mapProviders.find(_ulControllerType);
        if (itIndex == m_mapProviders.end()) {
            itIndex = m_mapProviders
                          .emplace(_ulControllerType,
                                   IndexOf(_rController.Child(Documents::g_svPolicyProviders), L"PolicyProvider",
                                           L"Provider", &Frwk::Utility::GetProviderType))
                          .first;
        }
        return itIndex->second;
    }

    static void WriteProvider(const Storage::XmlElement& _rElement, const PolicyProvider& _rstProvider)
    {
        if (!_rElement) {
            return;
        }
        const std::uint32_t ulResult = AtBoundary(Failure(L"CFunctionXml::SetPolicyProviderXml()"), [&] {
            WriteRecord(_rElement, Documents::g_stPolicyProvider, _rstProvider);
            DumpElement(Documents::g_stPolicyProvider, _rElement, _rstProvider, g_stStoreProviderDump);
            return Result::g_ulSuccess;
        });
        if (Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::StoreValueAsEnforcePolicy() - this->SetPolicyProviderXml() failed. [0x%08x]",
                  ulResult);
        }
    }

    Index m_controllers;
    std::unordered_map<std::uint32_t, Index> m_mapProviders;
};

} // namespace

std::uint32_t Documents::QueryValueAsEnforcePolicy(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<PolicyController>>(
        Failure(L"CFunctionXml::QueryValueAsEnforcePolicy()"), _rstRequest.pValueData, L"pArrayOfEnPolicy",
        [&](auto& _rvecPolicy) {
            const Document& stDocument = DocumentOf(DocumentId::Policy);
            XenDocument cDocument(stDocument, PathInInstalledFolder(stDocument), _rWorker.cParser, Access::Read);
            if (!cDocument.Decrypt()) {
                Trace(TraceError, L"*** CFunctionXml::QueryValueAsEnforcePolicy() - tszXmlFile is empty");
                return Result::g_ulFailed;
            }
            _rWorker.cElement = cDocument.Select();
            Documents::ReadRecords(_rWorker.cElement, Documents::g_stPolicyController, _rvecPolicy, PolicyHook());
            return Result::g_ulSuccess;
        });
}

std::uint32_t Documents::StoreValueAsEnforcePolicy(Worker& _rWorker, const Request& _rstRequest)
{
    return AtBoundary(Failure(L"CFunctionXml::StoreValueAsEnforcePolicy()"), [&] {
        const MethodTrace cTrace(L"CFunctionXml::StoreValueAsEnforcePolicy()");
        const auto* pArrayOfEnPolicy = static_cast<const std::vector<PolicyController>*>(_rstRequest.pValueData);
        if (!cTrace.Has(pArrayOfEnPolicy, L"pArrayOfEnPolicy")) {
            return Result::g_ulMissingObject;
        }

        const Document& stDocument = DocumentOf(DocumentId::Policy);
        XenDocument cDocument(stDocument, PathInInstalledFolder(stDocument), _rWorker.cParser, Access::Write);
        if (!cDocument.Decrypt()) {
            Trace(TraceError, L"*** CFunctionXml::StoreValueAsEnforcePolicy() - tszXmlFile is empty");
            return Result::g_ulFailed;
        }
        _rWorker.cElement = cDocument.Select();
        PolicyWriter cWriter(_rWorker.cElement);
        const auto Write = [&](const PolicyController& _rstController) { return cWriter.Write(_rstController); };
        if (!std::ranges::all_of(*pArrayOfEnPolicy, Write)) {
            Trace(TraceError, L"*** CFunctionXml::StoreValueAsEnforcePolicy() - <PolicyController> was not found.");
            return Result::g_ulFailed;
        }
        if (!cDocument.Store()) {
            Trace(TraceError, L"*** CFunctionXml::StoreValueAsEnforcePolicy() - CEncFile::Encrypt() failed");
            return Result::g_ulFailed;
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

std::uint32_t Documents::QueryValueAsSpecificEnforcePolicy(Worker& _rWorker, const Request& _rstRequest)
{
    return AtBoundary(Failure(L"CFunctionXml::QueryValueAsSpecificEnforcePolicy()"), [&] {
        const MethodTrace cTrace(L"CFunctionXml::QueryValueAsSpecificEnforcePolicy()");
        auto* pPolicyCtl = static_cast<PolicyController*>(_rstRequest.pValueData);
        if (!cTrace.Has(pPolicyCtl, L"pPolicyCtl")) {
            return Result::g_ulMissingObject;
        }
        std::vector<PolicyController> vecPolicy;
        Request stWhole = _rstRequest;
        stWhole.pValueData = &vecPolicy;
        if (const std::uint32_t ulResult = QueryValueAsEnforcePolicy(_rWorker, stWhole); Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - this->QueryValueAsEnforcePolicy() "
                  L"failed(). [0x%08x]",
                  ulResult);
            return ulResult;
        }
        const auto itFound =
            std::ranges::find(vecPolicy, pPolicyCtl->ulControllerType, &PolicyController::ulControllerType);
        if (itFound != vecPolicy.end()) {
            *pPolicyCtl = std::move(*itFound);
            DumpRecord(Documents::g_stPolicyController, *pPolicyCtl, g_stSpecificDump);
        } else {
            Trace(TraceError,
                  L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - The specific ControllerType [0x%08x] "
                  L"does not exist, return eDeny as default value",
                  pPolicyCtl->ulControllerType);
            *pPolicyCtl = {.ulControllerType = pPolicyCtl->ulControllerType,
                           .ulPermission = Frwk::PermissionDeny,
                           .bAllowToLoadInSetupMode = false,
                           .vecProvider = {}};
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
