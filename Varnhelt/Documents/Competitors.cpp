#include "Documents/Competitors.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <vector>

using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

/** How the two readers differ, apart from their records. */
struct Reader
{
    DocumentId enDocument;
    const wchar_t* pszMethod;
    const wchar_t* pszOutput; // how their lines name the output
};

template <class TDescription>
std::uint32_t ReadProducts(const Reader& _rstReader, const TDescription& _rstDescription, Worker& _rWorker,
                           const Request& _rstRequest)
{
    // Both readers report a bad document under the action reader's name: support scripts look for that line.
    return AtBoundary({L"CFunctionXml::QueryValueAsInstallCompetitorActionDB()"}, [&] {
        const MethodTrace cTrace(_rstReader.pszMethod);
        auto* pArray = static_cast<std::vector<typename TDescription::Record>*>(_rstRequest.pValueData);
        if (!cTrace.Has(pArray, _rstReader.pszOutput)) {
            return Result::g_ulMissingObject;
        }
        return OnEmptied(*pArray, [&] {
            DocumentFile cDocument(_rWorker, _rstReader.enDocument, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Open(cTrace, _rstRequest.pOptionData);
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
            Documents::ReadRecords(_rWorker.cElement, _rstDescription, *pArray);
            return cTrace.Leave(Result::g_ulSuccess);
        });
    });
}

} // namespace

std::uint32_t Documents::QueryValueAsInstallCompetitorActionDB(Worker& _rWorker, const Request& _rstRequest)
{
    return ReadProducts({DocumentId::CompetitorActions, L"CFunctionXml::QueryValueAsInstallCompetitorActionDB()",
                         L"pArrayCompetitorAction"},
                        Documents::g_stCompetitorAction, _rWorker, _rstRequest);
}

std::uint32_t Documents::QueryValueAsInstallCompetitorDetectionDB(Worker& _rWorker, const Request& _rstRequest)
{
    return ReadProducts({DocumentId::CompetitorDetections, L"CFunctionXml::QueryValueAsInstallCompetitorDetectionDB()",
                         L"pArrayCompetitorDetection"},
                        Documents::g_stCompetitorDetection, _rWorker, _rstRequest);
}
