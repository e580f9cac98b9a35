#include "Documents/ServiceUnits.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

std::uint32_t Documents::QueryValueAsServiceUnit(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<ServiceUnit>>(
        {L"CFunctionXml::QueryValueAsServiceUnit()"}, _rstRequest.pValueData, L"pArrayOfUnitService",
        [&](const MethodTrace& _rTrace, auto& _rvecUnit) {
            DocumentFile cDocument(_rWorker, DocumentId::ServiceUnits, Access::Read);
            const std::uint32_t ulResult = cDocument.Open(_rTrace);
            if (!Result::IsFailure(ulResult)) {
                Documents::ReadRecords(_rWorker.cElement, Documents::g_stServiceUnit, _rvecUnit);
            }
            return ulResult;
        });
}
