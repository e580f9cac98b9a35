#include "FunctionManager.h"

#include "FunctionProvider.h"
#include "MethodTrace.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <memory>
#include <new>

using namespace ZkCommon;
using namespace SrvFrwk;
using Varnhelt::MethodTrace;

std::uint32_t CFunctionManager::Initialize()
{
    const MethodTrace cTrace(L"CFunctionManager::Initialize()");
    {
        const Synchronize::SingleLock cGuard(m_cReferenceCount.Lock());
        m_cReferenceCount.AddRef();
    }
    return cTrace.Leave(Result::g_ulSuccess);
}

std::uint32_t CFunctionManager::Uninitialize()
{
    const MethodTrace cTrace(L"CFunctionManager::Uninitialize()");
    {
        const Synchronize::SingleLock cGuard(m_cReferenceCount.Lock());
        m_cReferenceCount.Release();
        if (m_cReferenceCount.Count() != 0) {
            cTrace.Notice(L"As possibility, someone has still been using IFunctionProvide. [%ld]",
                          m_cReferenceCount.Count());
        }
    }
    return cTrace.Leave(Result::g_ulSuccess);
}

std::uint32_t CFunctionManager::CreateFunction(Interface::IFunctionProvider** _ppFunctionContext)
{
    const MethodTrace cTrace(L"CFunctionManager::CreateFunction()");
    if (!cTrace.Has(_ppFunctionContext, L"_ppFunctionContext")) {
        return Result::g_ulInvalidArgument;
    }
    std::unique_ptr<CFunctionProvider> pProvider(new (std::nothrow) CFunctionProvider);
    if (pProvider == nullptr) {
        cTrace.Error(L"Fail to allocate CFunctionProvider::IFunctionProvider. ");
        return Result::g_ulNoMemory;
    }
    *_ppFunctionContext = pProvider.release(); // the host's, until it comes back through FreeFunction
    return cTrace.Leave(Result::g_ulSuccess);
}

std::uint32_t CFunctionManager::FreeFunction(Interface::IFunctionProvider* _pFunctionContext)
{
    const MethodTrace cTrace(L"CFunctionManager::FreeFunction()");
    if (_pFunctionContext == nullptr) {
        Trace(TraceError, L"*** CServiceManager::FreeFunction() - _pFunctionContext was invalid.");
        return Result::g_ulInvalidArgument;
    }
    const std::unique_ptr<Interface::IFunctionProvider> pProvider(_pFunctionContext);
    return cTrace.Leave(Result::g_ulSuccess);
}
