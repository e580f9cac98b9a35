#include "Documents/ServiceUnits.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

std::uint32_t CFunctionXml::QueryValueAsServiceUnit(const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<ServiceUnit>>(
        {L"CFunctionXml::QueryValueAsServiceUnit()"}, _rstRequest.pValueData, L"pArrayOfUnitService",
        [&](auto& _rvecUnit) {
            const Document& stDocument = DocumentOf(DocumentId::ServiceUnits);
            XenDocument cDocument(stDocument, PathInInstalledFolder(stDocument), m_cParser, Access::Read);
            if (!cDocument.Decrypt()) {
                Trace(TraceError, L"*** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty");
                return Result::g_ulFailed;
            }
            m_cElement = cDocument.Select();
            Documents::ReadRecords(m_cElement, Documents::g_stServiceUnit, _rvecUnit);
            return Result::g_ulSuccess;
        });
}
