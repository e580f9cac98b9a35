#include "FunctionXml.h"

#include "Boundary.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <algorithm>
#include <iterator>

using namespace ZkCommon;
using namespace SrvFrwk;
using Varnhelt::DocumentId;
using Varnhelt::Request;
using Varnhelt::ValueTypeRow;

namespace {

constexpr ValueTypeRow g_aValueType[] = {
    {ValueType::g_ulServiceUnit, DocumentId::ServiceUnits, &CFunctionXml::QueryValueAsServiceUnit, nullptr, true,
     false},
    {ValueType::g_ulEnforcePolicy, DocumentId::Policy, &CFunctionXml::QueryValueAsEnforcePolicy,
     &CFunctionXml::StoreValueAsEnforcePolicy, true, true},
    {ValueType::g_ulEnforceData, DocumentId::EnforceData, &CFunctionXml::QueryValueAsEnforceData, nullptr, true, false},
    {ValueType::g_ulInstallPuIds, DocumentId::PuIds, &CFunctionXml::QueryValueAsInstallPuIds, nullptr, true, false},
    {ValueType::g_ulCompetitorAction, DocumentId::CompetitorActions,
     &CFunctionXml::QueryValueAsInstallCompetitorActionDB, nullptr, true, false},
    {ValueType::g_ulCompetitorDetection, DocumentId::CompetitorDetections,
     &CFunctionXml::QueryValueAsInstallCompetitorDetectionDB, nullptr, true, false},
    {ValueType::g_ulAddOnComponent, DocumentId::None, nullptr, nullptr, true, false}, // reserved
    {ValueType::g_ulThreatNameOrkap, DocumentId::ThreatsOrkap, &CFunctionXml::QueryThreateNameORKAP, nullptr, true,
     false},
    {ValueType::g_ulThreatNameElmap, DocumentId::ThreatsElmap, &CFunctionXml::QueryThreateNameELMAP, nullptr, true,
     false},
    {ValueType::g_ulThreatDescription, DocumentId::ThreatsElmap, &CFunctionXml::QueryThreateDesELMAP, nullptr, true,
     false},
    {ValueType::g_ulThreatRecommendation, DocumentId::ThreatsElmap, &CFunctionXml::QueryThreateRecELMAP, nullptr, true,
     false},
    {ValueType::g_ulScannerTitle, DocumentId::ThreatsElmap, &CFunctionXml::QueryTitleELMAP, nullptr, true, false},
    {ValueType::g_ulRuleSet, DocumentId::None, nullptr, nullptr, true, false}, // reserved
    {ValueType::g_ulKeyConfig, DocumentId::KeyConfig, &CFunctionXml::QueryValueAsKeyConfig, nullptr, true, false},
    {ValueType::g_ulRegistryData, DocumentId::RegistryData, &CFunctionXml::QueryValueAsRegistryData, nullptr, true,
     false},
    {ValueType::g_ulVersionInfo, DocumentId::VersionInfo, &CFunctionXml::QueryValueAsVersionInfo, nullptr, false,
     false},
    {ValueType::g_ulSpecificEnforcePolicy, DocumentId::Policy, &CFunctionXml::QueryValueAsSpecificEnforcePolicy,
     nullptr, true, false},
    {ValueType::g_ulCompatibilityCheck, DocumentId::Compatibility,
     &CFunctionXml::QueryValueAsInstallCompatibilityCheckDB, nullptr, true, false},
    {ValueType::g_ulPreUpdateList, DocumentId::PreUpdateList, nullptr, &CFunctionXml::StorePreUpdateList, false, true},
    {ValueType::g_ulDeployAlias, DocumentId::Alias, &CFunctionXml::QueryValueAsDeployAliasConfig,
     &CFunctionXml::StoreValueAsDeployAliasConfig, false, false},
    {ValueType::g_ulDeployComponent, DocumentId::Component, &CFunctionXml::QueryValueAsDeployComponentConfig, nullptr,
     false, false},
};

} // namespace

namespace Varnhelt {

std::span<const ValueTypeRow> ValueTypes() noexcept
{
    return g_aValueType;
}

const ValueTypeRow* FindValueType(std::uint32_t _ulValueType) noexcept
{
    const auto* pRow = std::find_if(std::begin(g_aValueType), std::end(g_aValueType),
                                    [=](const ValueTypeRow& _rstRow) { return _rstRow.ulValueType == _ulValueType; });
    return pRow == std::end(g_aValueType) ? nullptr : pRow;
}

} // namespace Varnhelt

std::uint32_t CFunctionXml::CheckParameters(const Request& _rstRequest)
{
    if (Varnhelt::FindValueType(_rstRequest.ulValueType) == nullptr) {
        Trace(TraceError,
              L"*** CFunctionXml::CheckParameters() - Invalid Value Type was specified. VT[0x%08x],VST[0x%08x]",
              _rstRequest.ulValueType, _rstRequest.ulValueSubType);
        return Result::g_ulInvalidArgument;
    }
    if (_rstRequest.pValueData == nullptr) {
        Trace(TraceError, L"*** CFunctionXml::CheckParameters() - _pValueData was invalid. VT[0x%08x],VST[0x%08x]",
              _rstRequest.ulValueType, _rstRequest.ulValueSubType);
        return Result::g_ulInvalidArgument;
    }
    return Result::g_ulSuccess;
}

std::uint32_t CFunctionXml::QueryValue(const Request& _rstRequest)
{
    const Varnhelt::MethodTrace cTrace(L"CFunctionXml::QueryValue()", _rstRequest.ulValueType,
                                       _rstRequest.ulValueSubType);
    if (const std::uint32_t ulChecked = CheckParameters(_rstRequest); Result::IsFailure(ulChecked)) {
        Trace(TraceError,
              L"*** CFunctionXml::QueryValue() - this->CheckParameters() failed. [0x%08x], VT[0x%08x],VST[0x%08x]",
              ulChecked, _rstRequest.ulValueType, _rstRequest.ulValueSubType);
        return ulChecked;
    }
    const Varnhelt::Handler pfnQuery = Varnhelt::FindValueType(_rstRequest.ulValueType)->pfnQuery;
    if (pfnQuery == nullptr) {
        // The pointer is fine: the line is what support scripts know for a value type that cannot be queried.
        Trace(TraceError, L"*** CFunctionXml::QueryValue() - _pValueData was invalid. VT[0x%08x],VST[0x%08x]",
              _rstRequest.ulValueType, _rstRequest.ulValueSubType);
        return cTrace.Leave(Result::g_ulInvalidArgument);
    }
    return cTrace.Leave((this->*pfnQuery)(_rstRequest));
}

std::uint32_t CFunctionXml::StoreValue(const Request& _rstRequest)
{
    const Varnhelt::MethodTrace cTrace(L"CFunctionXml::StoreValue()", _rstRequest.ulValueType,
                                       _rstRequest.ulValueSubType);
    if (const std::uint32_t ulChecked = CheckParameters(_rstRequest); Result::IsFailure(ulChecked)) {
        Trace(TraceError,
              L"*** CFunctionXml::StoreValue() - this->CheckParameters() failed. [0x%08x], VT[0x%08x],VST[0x%08x]",
              ulChecked, _rstRequest.ulValueType, _rstRequest.ulValueSubType);
        return ulChecked;
    }
    const Varnhelt::Handler pfnStore = Varnhelt::FindValueType(_rstRequest.ulValueType)->pfnStore;
    if (pfnStore == nullptr) {
        Trace(TraceError,
              L"*** CFunctionXml::StoreValue() -  Not Support _ulValueType or _ulValueSubType was specified. [0x%08x]",
              _rstRequest.ulValueType);
        return cTrace.Leave(Result::g_ulInvalidArgument);
    }
    return cTrace.Leave((this->*pfnStore)(_rstRequest));
}

std::uint32_t CFunctionXml::SendMessage(std::uint32_t _ulActionType, std::uint32_t _ulActionSubType,
                                        [[maybe_unused]] std::uint32_t _ulMessageOption, void* _pMessageData,
                                        [[maybe_unused]] std::uintptr_t ulMessageDataReserved,
                                        [[maybe_unused]] std::uint32_t _ulOption,
                                        [[maybe_unused]] void* _pMessageResult)
{
    const Varnhelt::MethodTrace cTrace(L"CFunctionXml::SendMessage()");
    Trace(TraceDetail, L"[Enter] CFunctionXml::SendMessage() AT[0x%08x] AST[0x%08x]...", _ulActionType,
          _ulActionSubType);
    if (_ulActionType == MessageType::g_ulLocalUpdate) {
        return cTrace.Leave(DoActionAsLocalUpdate(static_cast<const std::wstring*>(_pMessageData)));
    }
    Trace(TraceError,
          L"*** CFunctionXml::SendMessage() -  Not Support _ulActionType or _ulActionSubType was specified. [0x%08x]",
          _ulActionType);
    return cTrace.Leave(Result::g_ulInvalidArgument);
}
