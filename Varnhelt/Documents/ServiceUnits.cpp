#include "Documents/ServiceUnits.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

std::uint32_t Documents::QueryValueAsServiceUnit(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<ServiceUnit>>(
        {L"CFunctionXml::QueryValueAsServiceUnit()"}, _rstRequest.pValueData, L"pArrayOfUnitService",
        [&](auto& _rvecUnit) {
            const Document& stDocument = DocumentOf(DocumentId::ServiceUnits);
            XenDocument cDocument(stDocument, PathInInstalledFolder(stDocument), _rWorker.cParser, Access::Read);
            if (!cDocument.Decrypt()) {
                Trace(TraceError, L"*** CFunctionXml::QueryValueAsServiceUnit() - tszXmlFile is empty");
                return Result::g_ulFailed;
            }
            _rWorker.cElement = cDocument.Select();
            Documents::ReadRecords(_rWorker.cElement, Documents::g_stServiceUnit, _rvecUnit);
            return Result::g_ulSuccess;
        });
}
