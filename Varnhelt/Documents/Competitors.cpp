#include "Documents/Competitors.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

/** What the two readers differ in, beside their records. */
struct Reader
{
    DocumentId enDocument;
    const wchar_t* pszMethod;
    const wchar_t* pszOutput; // how their lines name the output
};

template <class TDescription>
std::uint32_t ReadProducts(const Reader& _rstReader, const TDescription& _rstDescription, const Request& _rstRequest,
                           Storage::XmlParser& _rParser)
{
    // Both readers tell of a bad document under the action reader's name: support scripts look for that line.
    return AtBoundary({L"CFunctionXml::QueryValueAsInstallCompetitorActionDB()"}, [&] {
        const MethodTrace cTrace(_rstReader.pszMethod);
        auto* pArray = static_cast<std::vector<typename TDescription::Record>*>(_rstRequest.pValueData);
        if (!cTrace.Has(pArray, _rstReader.pszOutput)) {
            return Result::g_ulMissingObject;
        }
        pArray->clear();

        PlainDocument cDocument(_rParser, Access::Read);
        const auto cRoot = cDocument.SelectInDirectory(_rstReader.pszMethod, _rstRequest.pOptionData,
                                                       DocumentOf(_rstReader.enDocument));
        if (!cRoot) {
            return Result::g_ulMissingObject;
        }
        Documents::ReadRecords(*cRoot, _rstDescription, *pArray);
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

} // namespace

std::uint32_t Documents::QueryValueAsInstallCompetitorActionDB(Worker& _rWorker, const Request& _rstRequest)
{
    return ReadProducts({DocumentId::CompetitorActions, L"CFunctionXml::QueryValueAsInstallCompetitorActionDB()",
                         L"pArrayCompetitorAction"},
                        Documents::g_stCompetitorAction, _rstRequest, _rWorker.cParser);
}

std::uint32_t Documents::QueryValueAsInstallCompetitorDetectionDB(Worker& _rWorker, const Request& _rstRequest)
{
    return ReadProducts({DocumentId::CompetitorDetections, L"CFunctionXml::QueryValueAsInstallCompetitorDetectionDB()",
                         L"pArrayCompetitorDetection"},
                        Documents::g_stCompetitorDetection, _rstRequest, _rWorker.cParser);
}
