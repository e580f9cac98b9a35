// The module's entry points: the four exports and DllMain.

#include "Varnhelt.h"

#include "Boundary.h"
#include "Frwk_Settings.h"
#include "FunctionManager.h"
#include "ModuleRunTime.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Registry.h"

#include <memory>
#include <new>
#include <windows.h>

using namespace ZkCommon;
using namespace SrvFrwk;

/** Made at process attach, gone at process detach; null in between only when it could not be made. */
std::unique_ptr<CFunctionManager> g_pFunctionManager; // NOLINT(misc-use-anonymous-namespace)

namespace {

/** The body of every export: the manager carries it out, or there is none. */
template <class TBody>
std::uint32_t Export(const wchar_t* _pszExport, const TBody& _fnBody) noexcept
{
    return Varnhelt::AtBoundary({_pszExport}, [&] {
        if (g_pFunctionManager == nullptr) {
            Trace(TraceError, L"***%s - ::g_pFunctionManager was invalid.", _pszExport);
            return Result::g_ulMissingObject;
        }
        return _fnBody(*g_pFunctionManager);
    });
}

void Attach(HINSTANCE _hModule) noexcept
{
    ::DisableThreadLibraryCalls(_hModule);
    g_cDebugLog.Initialize(L"Varnhelt", {Storage::Key::Registry, HKEY_LOCAL_MACHINE, Frwk::g_szTraceSettingsKey}, L"");
    Trace(TraceNotice, L"***Varnhelt.dll was loaded as process attach.");
    g_pFunctionManager.reset(new (std::nothrow) CFunctionManager);
    if (g_pFunctionManager == nullptr) {
        Trace(TraceError, L"***Varnhelt.dll::DllMain() -  g_pFunctionManager was invalid.");
    }
}

void Detach() noexcept
{
    g_pFunctionManager.reset();
    Trace(TraceNotice, L"***Varnhelt.dll was unloaded as process detach.");
    g_cDebugLog.Uninitialize();
}

} // namespace

extern "C" {

std::uint32_t Vrnt_Initialize(std::uint32_t /*_ulReserved*/, void* /*_pReserved*/)
{
    return Export(L"Vrnt_Initialize()", [](CFunctionManager& _rManager) { return _rManager.Initialize(); });
}

std::uint32_t Vrnt_Uninitialize(std::uint32_t /*_ulReserved*/, void* /*_pReserved*/)
{
    return Export(L"Vrnt_Uninitialize()", [](CFunctionManager& _rManager) { return _rManager.Uninitialize(); });
}

std::uint32_t Vrnt_CreateFunction(Interface::IFunctionProvider** _ppFunctionContext, std::uint32_t /*_ulReserved*/,
                                  void* /*_pReserved*/)
{
    return Export(L"Vrnt_CreateFunction()",
                  [=](CFunctionManager& _rManager) { return _rManager.CreateFunction(_ppFunctionContext); });
}

std::uint32_t Vrnt_FreeFunction(Interface::IFunctionProvider* _pFunctionContext)
{
    return Export(L"Vrnt_FreeFunction()",
                  [=](CFunctionManager& _rManager) { return _rManager.FreeFunction(_pFunctionContext); });
}

BOOL WINAPI DllMain(HINSTANCE _hModule, DWORD _ulReason, LPVOID /*_pReserved*/)
{
    switch (_ulReason) {
    case DLL_PROCESS_ATTACH:
        if (!ModuleRunTime::Attach()) {
            return FALSE;
        }
        Attach(_hModule);
        break;
    case DLL_PROCESS_DETACH:
        Detach();
        break;
    default: // threads come and go unnoticed
        break;
    }
    return TRUE;
}
}
