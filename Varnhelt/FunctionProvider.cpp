#include "FunctionProvider.h"

#include "Boundary.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "ValueTypeTable.h"
#include "ZkComn_DebugLog.h"

#include <memory>
#include <new>

using namespace ZkCommon;
using namespace SrvFrwk;
using Varnhelt::AtBoundary;
using Varnhelt::MethodTrace;
using Varnhelt::Request;
using Varnhelt::ValueTypeRow;

namespace {

/** What a query and a store differ in. */
struct Operation
{
    const wchar_t* pszMethod;
    const wchar_t* pszCallee;
    const wchar_t* pszLeave; // the method that the leave line names
    bool ValueTypeRow::*pLetThrough;
    std::uint32_t (CFunctionXml::*pfnCarryOut)(const Request&);
};

constexpr Operation g_stQuery{L"CFunctionProvider::QueryValue()", L"pFunctionXml->QueryValue()",
                              L"CFunctionProvider::QueryValue()", &ValueTypeRow::bQueryThroughFunction,
                              &CFunctionXml::QueryValue};
// The store's leave line is the query's: trace readers pair them so.
constexpr Operation g_stStore{L"CFunctionProvider::StoreValue()", L"pFunctionXml->StoreValue()",
                              L"CFunctionProvider::QueryValue()", &ValueTypeRow::bStoreThroughFunction,
                              &CFunctionXml::StoreValue};

std::uint32_t Screen(const Operation& _rstOperation, const Request& _rstRequest)
{
    const MethodTrace cTrace(_rstOperation.pszMethod, _rstRequest.ulValueType, _rstRequest.ulValueSubType);
    const ValueTypeRow* pRow = Varnhelt::FindValueType(_rstRequest.ulValueType);
    if (pRow == nullptr || !(pRow->*_rstOperation.pLetThrough)) {
        cTrace.Error(L"Invalid Value Type was specified. VT[0x%08x],VST[0x%08x]", _rstRequest.ulValueType,
                     _rstRequest.ulValueSubType);
        return Result::g_ulRefused;
    }
    const std::unique_ptr<CFunctionXml> pFunctionXml(new (std::nothrow) CFunctionXml);
    if (pFunctionXml == nullptr) {
        cTrace.Error(L"pFunctionXml was invalid. VT[0x%08x],VST[0x%08x]", _rstRequest.ulValueType,
                     _rstRequest.ulValueSubType);
        return Result::g_ulMissingObject;
    }
    const std::uint32_t ulResult = (pFunctionXml.get()->*_rstOperation.pfnCarryOut)(_rstRequest);
    if (Result::IsFailure(ulResult)) {
        cTrace.Error(L"%s failed. [0x%08x], VT[0x%08x],VST[0x%08x]", _rstOperation.pszCallee, ulResult,
                     _rstRequest.ulValueType, _rstRequest.ulValueSubType);
    }
    return cTrace.LeaveAs(_rstOperation.pszLeave, ulResult);
}

} // namespace

std::uint32_t CFunctionProvider::Initialize()
{
    return MethodTrace(L"CFunctionProvider::Initialize()").Leave(Result::g_ulSuccess);
}

std::uint32_t CFunctionProvider::Uninitialize()
{
    return MethodTrace(L"CFunctionProvider::Uninitialize()").Leave(Result::g_ulSuccess);
}

std::uint32_t CFunctionProvider::QueryValue(std::uint32_t ulReserved, std::uint32_t _ulValueType,
                                            std::uint32_t _ulValueSubType, void* _pValueData,
                                            std::uint32_t _ulValueOption, void* _pOptionData)
{
    return AtBoundary({g_stQuery.pszMethod}, [&] {
        return Screen(g_stQuery,
                      {ulReserved, _ulValueType, _ulValueSubType, _pValueData, _ulValueOption, _pOptionData});
    });
}

std::uint32_t CFunctionProvider::StoreValue(std::uint32_t ulReserved, std::uint32_t _ulValueType,
                                            std::uint32_t _ulValueSubType, void* _pValueData,
                                            std::uint32_t _ulValueOption, void* _pOptionData)
{
    return AtBoundary({g_stStore.pszMethod}, [&] {
        return Screen(g_stStore,
                      {ulReserved, _ulValueType, _ulValueSubType, _pValueData, _ulValueOption, _pOptionData});
    });
}

std::uint32_t CFunctionProvider::SendMessage(std::uint32_t _ulMessageType, std::uint32_t _ulMessageSubType,
                                             std::uint32_t _ulMessageOption, void* _pMessageData,
                                             std::uintptr_t ulMessageDataReserved, std::uint32_t _ulOption,
                                             void* _pMessageResult)
{
    return AtBoundary({L"CFunctionProvider::SendMessage()"}, [&] {
        const MethodTrace cTrace(L"CFunctionProvider::SendMessage()");
        Trace(TraceNotice,
              L"_ulMessageType: 0x%08X, _ulMessageSubType: 0x%08X, _ulMessageOption: 0x%08X, _ulOption: 0x%08X",
              _ulMessageType, _ulMessageSubType, _ulMessageOption, _ulOption);
        if (_ulMessageType != MessageType::g_ulLocalUpdate) {
            cTrace.Error(L"Invalid Value Type was specified. VT[0x%08x],VST[0x%08x]", _ulMessageType,
                         _ulMessageSubType);
            return Result::g_ulFailed;
        }
        const std::unique_ptr<CFunctionXml> pFunctionXml(new (std::nothrow) CFunctionXml);
        if (pFunctionXml == nullptr) {
            cTrace.Error(L"pFunctionXml was invalid. MT[0x%08x],MST[0x%08x]", _ulMessageType, _ulMessageSubType);
            return Result::g_ulMissingObject;
        }
        const std::uint32_t ulResult =
            pFunctionXml->SendMessage(MessageType::g_ulLocalUpdate, _ulMessageSubType, _ulMessageOption, _pMessageData,
                                      ulMessageDataReserved, _ulOption, _pMessageResult);
        if (Result::IsFailure(ulResult)) {
            cTrace.Error(L"pFunctionXml->DoAction() failed. "
                         L"[0x%08x], MT[0x%08x],MST[0x%08x]",
                         ulResult, _ulMessageType, _ulMessageSubType);
        }
        return cTrace.Leave(ulResult);
    });
}
