#include "Update/LocalUpdateRequest.h"

#include "Boundary.h"
#include "Documents/LocalUpdate.h"
#include "MethodTrace.h"
#include "SrvFrwk_ResultCode.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateStorage.h"

using namespace SrvFrwk;

namespace Varnhelt {

namespace {

/** Carries a description out on this machine. */
std::uint32_t Apply(const MethodLines& _rLines, LocalUpdateConfig& _rstConfig)
{
    struct Step
    {
        const wchar_t* pszName;
        std::uint32_t (*pfnStep)(CLocalUpdateManager&, LocalUpdateConfig&);
        bool bEnd; // the manager's end follows a failure
    };
    static constexpr Step aStep[] = {
        {L"Initialize()", [](CLocalUpdateManager& _rManager, LocalUpdateConfig&) { return _rManager.Initialize(); },
         false},
        {L"DoActionConfig()",
         [](CLocalUpdateManager& _rManager, LocalUpdateConfig& _rstSet) { return _rManager.DoActionConfig(_rstSet); },
         true},
        {L"UnInitialize()", [](CLocalUpdateManager& _rManager, LocalUpdateConfig&) { return _rManager.UnInitialize(); },
         false},
    };
    SystemStorage cStorage;
    CLocalUpdateManager cLocalUpdateManager(cStorage);
    for (const Step& stStep : aStep) {
        if (const std::uint32_t ulResult = stStep.pfnStep(cLocalUpdateManager, _rstConfig);
            Result::IsFailure(ulResult)) {
            _rLines.Error(L"cLocalUpdateManager.%s failed(). [0x%08x]", stStep.pszName, ulResult);
            if (stStep.bEnd) {
                cLocalUpdateManager.UnInitialize();
            }
            return ulResult;
        }
    }
    return Result::g_ulSuccess;
}

} // namespace

std::uint32_t DoActionAsLocalUpdate(Worker& _rWorker, const std::wstring* _ptszXmlPath)
{
    return AtBoundary({L"CFunctionXml::DoActionAsLocalUpdate()"}, [&] {
        const MethodTrace cTrace(L"CFunctionXml::DoActionAsLocalUpdate()");
        if (_ptszXmlPath == nullptr) {
            MethodLines(L"CFunctionXml::QueryValueAsLocalUpdate()").Error(L"ptszXmlPath was invalid.");
            return Result::g_ulMissingObject;
        }
        LocalUpdateConfig stConfig;
        std::uint32_t ulResult = Documents::QueryValueAsLocalUpdate(_rWorker, &stConfig, _ptszXmlPath);
        if (Result::IsFailure(ulResult)) {
            cTrace.Error(L"QueryValueAsLocalUpdate() failed. [0x%08x]", ulResult);
            return ulResult;
        }
        if (ulResult != Result::g_ulSuccess) {
            cTrace.Notice(L"QueryValueAsLocalUpdate() partially failed. [%s] [0x%08x]", *_ptszXmlPath, ulResult);
            return ulResult;
        }
        ulResult = Apply(cTrace, stConfig);
        return Result::IsFailure(ulResult) ? ulResult : cTrace.Leave(ulResult);
    });
}

} // namespace Varnhelt
