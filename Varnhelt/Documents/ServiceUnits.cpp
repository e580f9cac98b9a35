#include "ServiceUnits.h"

#include "Boundary.h"
#include "DescriptionReader.h"
#include "DocumentFile.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <vector>

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

        const Document& stDocument = DocumentOf(DocumentId::ServiceUnits);
        XenDocument cDocument(stDocument, PathInInstalledFolder(stDocument), m_cParser, Access::Read);
        if (!cDocument.Decrypt()) {
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty");
            return Result::g_ulFailed;
        }
        m_cElement = cDocument.Select();
        Documents::ReadRecords(m_cElement, Documents::g_stServiceUnit, *pArrayOfUnitService);
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
