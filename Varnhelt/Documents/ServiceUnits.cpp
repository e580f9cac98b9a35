#include "ServiceUnits.h"

#include "Boundary.h"
#include "DescriptionReader.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

std::uint32_t CFunctionXml::QueryValueAsServiceUnit(const Request& _rstRequest)
{
    return AtBoundary({L"CFunctionXml::QueryValueAsServiceUnit()"}, [&] {
        const MethodTrace cTrace(L"CFunctionXml::QueryValueAsServiceUnit()");
        auto* pArrayOfUnitService = static_cast<std::vector<ServiceUnit>*>(_rstRequest.pValueData);
        if (pArrayOfUnitService == nullptr) {
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsServiceUnit() - pArrayOfUnitService was invalid.");
            return Result::g_ulMissingObject;
        }
        pArrayOfUnitService->clear();
        CEncFile cXenFile = OpenInstalled(L"service-units");
        if (cXenFile.DecryptedPath().empty()) {
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty");
            return Result::g_ulFailed;
        }
        LoadInstalled Documents::ReadRecords(m_cElement, Documents::g_stServiceUnit, *pArrayOfUnitService);
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
