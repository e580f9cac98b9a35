#include "FunctionXml.h"

#include "Boundary.h"
#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/EnforceData.h"
#include "Documents/KeyConfig.h"
#include "Documents/Policy.h"
#include "Documents/PreUpdateList.h"
#include "Documents/PuIds.h"
#include "Documents/RegistryData.h"
#include "Documents/ServiceUnits.h"
#include "Documents/Threats.h"
#include "Documents/VersionInfo.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "Update/LocalUpdateRequest.h"
#include "ValueTypeTable.h"
#include "ZkComn_DebugLog.h"

#include <algorithm>
#include <iterator>

using namespace ZkCommon;
using namespace SrvFrwk;
using Varnhelt::DocumentId;
using Varnhelt::MethodLines;
using Varnhelt::MethodTrace;
using Varnhelt::Request;
using Varnhelt::ValueTypeRow;

namespace {

using namespace Varnhelt::Documents;

constexpr ValueTypeRow g_aValueType[] = {
    {ValueType::g_ulServiceUnit, DocumentId::ServiceUnits, &QueryValueAsServiceUnit, nullptr, true, false},
    {ValueType::g_ulEnforcePolicy, DocumentId::Policy, &QueryValueAsEnforcePolicy, &StoreValueAsEnforcePolicy, true,
     true},
    {ValueType::g_ulEnforceData, DocumentId::EnforceData, &QueryValueAsEnforceData, nullptr, true, false},
    {ValueType::g_ulInstallPuIds, DocumentId::PuIds, &QueryValueAsInstallPuIds, nullptr, true, false},
    {ValueType::g_ulCompetitorAction, DocumentId::CompetitorActions, &QueryValueAsInstallCompetitorActionDB, nullptr,
     true, false},
    {ValueType::g_ulCompetitorDetection, DocumentId::CompetitorDetections, &QueryValueAsInstallCompetitorDetectionDB,
     nullptr, true, false},
    {ValueType::g_ulAddOnComponent, DocumentId::None, nullptr, nullptr, true, false}, // reserved
    {ValueType::g_ulThreatNameOrkap, DocumentId::ThreatsOrkap, &QueryThreateNameORKAP, nullptr, true, false},
    {ValueType::g_ulThreatNameElmap, DocumentId::ThreatsElmap, &QueryThreateNameELMAP, nullptr, true, false},
    {ValueType::g_ulThreatDescription, DocumentId::ThreatsElmap, &QueryThreateDesELMAP, nullptr, true, false},
    {ValueType::g_ulThreatRecommendation, DocumentId::ThreatsElmap, &QueryThreateRecELMAP, nullptr, true, false},
    {ValueType::g_ulScannerTitle, DocumentId::ThreatsElmap, &QueryTitleELMAP, nullptr, true, false},
    {ValueType::g_ulRuleSet, DocumentId::None, nullptr, nullptr, true, false}, // reserved
    {ValueType::g_ulKeyConfig, DocumentId::KeyConfig, &QueryValueAsKeyConfig, nullptr, true, false},
    {ValueType::g_ulRegistryData, DocumentId::RegistryData, &QueryValueAsRegistryData, nullptr, true, false},
    {ValueType::g_ulVersionInfo, DocumentId::VersionInfo, &QueryValueAsVersionInfo, nullptr, false, false},
    {ValueType::g_ulSpecificEnforcePolicy, DocumentId::Policy, &QueryValueAsSpecificEnforcePolicy, nullptr, true,
     false},
    {ValueType::g_ulCompatibilityCheck, DocumentId::Compatibility, &QueryValueAsInstallCompatibilityCheckDB, nullptr,
     true, false},
    {ValueType::g_ulPreUpdateList, DocumentId::PreUpdateList, nullptr, &StorePreUpdateList, false, true},
    {ValueType::g_ulDeployAlias, DocumentId::Alias, &QueryValueAsDeployAliasConfig, &StoreValueAsDeployAliasConfig,
     false, false},
    {ValueType::g_ulDeployComponent, DocumentId::Component, &QueryValueAsDeployComponentConfig, nullptr, false, false},
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

namespace {

/** The row of a request that names a value type and has a record; null after an error line. */
const ValueTypeRow* CheckedRowOf(const Request& _rstRequest)
{
    constexpr MethodLines stLines(L"CFunctionXml::CheckParameters()");
    const ValueTypeRow* pRow = Varnhelt::FindValueType(_rstRequest.ulValueType);
    if (pRow == nullptr) {
        stLines.Error(L"Invalid Value Type was specified. VT[0x%08x],VST[0x%08x]", _rstRequest.ulValueType,
                      _rstRequest.ulValueSubType);
        return nullptr;
    }
    if (_rstRequest.pValueData == nullptr) {
        stLines.Error(L"_pValueData was invalid. VT[0x%08x],VST[0x%08x]", _rstRequest.ulValueType,
                      _rstRequest.ulValueSubType);
        return nullptr;
    }
    return pRow;
}

/** The same for an operation, which logs that the check failed. */
const ValueTypeRow* CheckedRowOf(const MethodLines& _rLines, const Request& _rstRequest)
{
    const ValueTypeRow* pRow = CheckedRowOf(_rstRequest);
    if (pRow == nullptr) {
        _rLines.Error(L"this->CheckParameters() failed. [0x%08x], VT[0x%08x],VST[0x%08x]", Result::g_ulInvalidArgument,
                      _rstRequest.ulValueType, _rstRequest.ulValueSubType);
    }
    return pRow;
}

} // namespace

std::uint32_t CFunctionXml::CheckParameters(const Request& _rstRequest)
{
    return CheckedRowOf(_rstRequest) != nullptr ? Result::g_ulSuccess : Result::g_ulInvalidArgument;
}

std::uint32_t CFunctionXml::QueryValue(const Request& _rstRequest)
{
    const MethodTrace cTrace(L"CFunctionXml::QueryValue()", _rstRequest.ulValueType, _rstRequest.ulValueSubType);
    const ValueTypeRow* pRow = CheckedRowOf(cTrace, _rstRequest);
    if (pRow == nullptr) {
        return Result::g_ulInvalidArgument;
    }
    if (pRow->pfnQuery == nullptr) {
        // The pointer is fine: the line is what support scripts know for a value type that cannot be queried.
        cTrace.Error(L"_pValueData was invalid. VT[0x%08x],VST[0x%08x]", _rstRequest.ulValueType,
                     _rstRequest.ulValueSubType);
        return cTrace.Leave(Result::g_ulInvalidArgument);
    }
    return cTrace.Leave(pRow->pfnQuery(m_stWorker, _rstRequest));
}

std::uint32_t CFunctionXml::StoreValue(const Request& _rstRequest)
{
    const MethodTrace cTrace(L"CFunctionXml::StoreValue()", _rstRequest.ulValueType, _rstRequest.ulValueSubType);
    const ValueTypeRow* pRow = CheckedRowOf(cTrace, _rstRequest);
    if (pRow == nullptr) {
        return Result::g_ulInvalidArgument;
    }
    if (pRow->pfnStore == nullptr) {
        cTrace.Error(L" Not Support _ulValueType or _ulValueSubType was specified. [0x%08x]", _rstRequest.ulValueType);
        return cTrace.Leave(Result::g_ulInvalidArgument);
    }
    return cTrace.Leave(pRow->pfnStore(m_stWorker, _rstRequest));
}

std::uint32_t CFunctionXml::SendMessage(std::uint32_t _ulActionType, std::uint32_t _ulActionSubType,
                                        [[maybe_unused]] std::uint32_t _ulMessageOption, void* _pMessageData,
                                        [[maybe_unused]] std::uintptr_t ulMessageDataReserved,
                                        [[maybe_unused]] std::uint32_t _ulOption,
                                        [[maybe_unused]] void* _pMessageResult)
{
    const MethodTrace cTrace(L"CFunctionXml::SendMessage()");
    Trace(TraceDetail, L"[Enter] CFunctionXml::SendMessage() AT[0x%08x] AST[0x%08x]...", _ulActionType,
          _ulActionSubType);
    if (_ulActionType == MessageType::g_ulLocalUpdate) {
        return cTrace.Leave(DoActionAsLocalUpdate(m_stWorker, static_cast<const std::wstring*>(_pMessageData)));
    }
    cTrace.Error(L" Not Support _ulActionType or _ulActionSubType was specified. [0x%08x]", _ulActionType);
    return cTrace.Leave(Result::g_ulInvalidArgument);
}
