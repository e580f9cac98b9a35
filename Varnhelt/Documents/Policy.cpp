#include "Documents/Policy.h"

#include "Boundary.h"
#include "Descriptions/DescriptionDump.h"
#include "Descriptions/DescriptionReader.h"
#include "Descriptions/DescriptionWriter.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <algorithm>
#include <type_traits>
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

/** An unreadable policy must not look like one that denies: exceptions from outside the parser have a separate code. */
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
            MethodLines(L"CFunctionXml::QueryValueAsEnforcePolicy()")
                .Error(L"this->SetPolicyProvider() failed. [0x%08x]", ulResult);
        }
        return !Result::IsFailure(ulResult);
    }
};

/** Puts records into a loaded policy: each into the first element of its type, of which nothing else changes. */
class PolicyWriter
{
public:
    PolicyWriter(const Storage::XmlElement& _rControllers, const MethodLines& _rLines)
        : m_controllers(_rControllers, L"PolicyController", L"Controller", &Frwk::Utility::GetControllerType),
          m_rLines(_rLines)
    {}

    /** @return g_ulFailed, after a line, when the policy has no such controller; or the failure of a provider */
    std::uint32_t Write(const PolicyController& _rstController)
    {
        const Storage::XmlElement cElement = m_controllers.Find(_rstController.ulControllerType);
        if (!cElement) {
            m_rLines.Error(L"<PolicyController> was not found.");
            return Result::g_ulFailed;
        }
        WriteRecord(cElement, Documents::g_stPolicyController, _rstController);
        DumpElement(Documents::g_stPolicyController, cElement, _rstController, g_stStoreDump);
        Documents::ElementIndex cProviders(cElement.Child(Documents::g_svPolicyProviders), L"PolicyProvider",
                                           L"Provider", &Frwk::Utility::GetProviderType);
        for (const PolicyProvider& stProvider : _rstController.vecProvider) {
            const Storage::XmlElement cProvider = cProviders.Find(stProvider.ulProviderType);
            if (const std::uint32_t ulResult = cProvider ? WriteProvider(cProvider, stProvider) : Result::g_ulSuccess;
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
        }
        return Result::g_ulSuccess;
    }

private:
    std::uint32_t WriteProvider(const Storage::XmlElement& _rElement, const PolicyProvider& _rstProvider) const
    {
        const std::uint32_t ulResult = AtBoundary(Failure(L"CFunctionXml::SetPolicyProviderXml()"), [&] {
            WriteRecord(_rElement, Documents::g_stPolicyProvider, _rstProvider);
            DumpElement(Documents::g_stPolicyProvider, _rElement, _rstProvider, g_stStoreProviderDump);
            return Result::g_ulSuccess;
        });
        if (Result::IsFailure(ulResult)) {
            m_rLines.Error(L"this->SetPolicyProviderXml() failed. [0x%08x]", ulResult);
        }
        return ulResult;
    }

    Documents::ElementIndex m_controllers;
    const MethodLines& m_rLines;
};

} // namespace

std::uint32_t Documents::QueryValueAsEnforcePolicy(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<PolicyController>>(
        Failure(L"CFunctionXml::QueryValueAsEnforcePolicy()"), _rstRequest.pValueData, L"pArrayOfEnPolicy",
        [&](const MethodTrace& _rTrace, auto& _rvecPolicy) {
            DocumentFile cDocument(_rWorker, DocumentId::Policy, Access::Read);
            const std::uint32_t ulResult = cDocument.Open(_rTrace);
            if (!Result::IsFailure(ulResult)) {
                Documents::ReadRecords(_rWorker.cElement, Documents::g_stPolicyController, _rvecPolicy, PolicyHook());
            }
            return ulResult;
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

        DocumentFile cDocument(_rWorker, DocumentId::Policy, Access::Write);
        if (const std::uint32_t ulResult = cDocument.Open(cTrace); Result::IsFailure(ulResult)) {
            return ulResult;
        }
        PolicyWriter cWriter(_rWorker.cElement, cTrace);
        for (const PolicyController& stController : *pArrayOfEnPolicy) {
            if (const std::uint32_t ulResult = cWriter.Write(stController); Result::IsFailure(ulResult)) {
                return ulResult;
            }
        }
        if (!cDocument.Store()) {
            cTrace.Error(L"CEncFile::Encrypt() failed");
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
            cTrace.Error(L"this->QueryValueAsEnforcePolicy() failed(). [0x%08x]", ulResult);
            return ulResult;
        }
        const auto itFound =
            std::ranges::find(vecPolicy, pPolicyCtl->ulControllerType, &PolicyController::ulControllerType);
        if (itFound != vecPolicy.end()) {
            *pPolicyCtl = std::move(*itFound);
            DumpRecord(Documents::g_stPolicyController, *pPolicyCtl, g_stSpecificDump);
        } else {
            cTrace.Notice(L"The specific ControllerType [0x%08x] does not exist, return eDeny as default value",
                          pPolicyCtl->ulControllerType);
            *pPolicyCtl = {.ulControllerType = pPolicyCtl->ulControllerType,
                           .ulPermission = Frwk::PermissionDeny,
                           .bAllowToLoadInSetupMode = false,
                           .vecProvider = {}};
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
