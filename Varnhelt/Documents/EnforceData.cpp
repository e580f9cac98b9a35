#include "Documents/EnforceData.h"

#include "Boundary.h"
#include "Descriptions/DescriptionDump.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <type_traits>
#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

using Documents::DumpTexts;

constexpr MethodLines g_stEnforceDataLines(L"CFunctionXml::QueryValueAsEnforceData()");

constexpr const wchar_t* g_pszRule =
    L"*** CFunctionXml::QueryValueAsEnforceData() ---------------------------------------------.";
constexpr DumpTexts g_stControllerDump{
    .pszPrefix = L"*** CFunctionXml::QueryValueAsEnforceData() - ", .pszOpening = g_pszRule, .pszClosing = g_pszRule};

// The two rule lines of a provider differ, and its labels follow the method's name without a dash: as they always have.
constexpr DumpTexts g_stProviderDump{
    .pszPrefix = L"*** CFunctionXml::QueryValueAsEnforceData() - SetDataProvider()",
    .pszOpening = L"*** CFunctionXml::SetDataProvider() ---------------------------------------------.",
    .pszClosing = L"*** CFunctionXml::QueryValueAsEnforceData() - SetDataProvider() "
                  L"---------------------------------------------."};

/** Dumps what is read, and passes over a provider that cannot be read. */
struct DataHook : Documents::ReadHook
{
    bool OnRecord(const Storage::XmlElement& _rElement, const DataController& _rstController) const
    {
        DumpElement(Documents::g_stDataController, _rElement, _rstController, g_stControllerDump);
        return true;
    }
    bool OnRecord(const Storage::XmlElement& _rElement, const DataProvider& _rstProvider) const
    {
        DumpElement(Documents::g_stDataProvider, _rElement, _rstProvider, g_stProviderDump);
        return true;
    }

    template <class TRecord, class TRead>
    bool Around(const TRead& _fnRead) const
    {
        if constexpr (std::is_same_v<TRecord, DataController>) {
            return _fnRead();
        }
        const std::uint32_t ulResult = AtBoundary({L"CFunctionXml::SetDataProvider()"}, [&] {
            _fnRead();
            return Result::g_ulSuccess;
        });
        if (Result::IsFailure(ulResult)) {
            g_stEnforceDataLines.Error(L"this->SetDataProvider() failed. [0x%08x]", ulResult);
        }
        return !Result::IsFailure(ulResult);
    }
};

} // namespace

std::uint32_t Documents::QueryValueAsEnforceData(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<DataController>>(
        {L"CFunctionXml::QueryValueAsEnforceData()"}, _rstRequest.pValueData, L"pArrayOfEnData",
        [&](const MethodTrace& _rTrace, auto& _rvecData) {
            DocumentFile cDocument(_rWorker, DocumentId::EnforceData, Access::Read);
            const std::uint32_t ulResult = cDocument.Open(_rTrace);
            if (!Result::IsFailure(ulResult)) {
                Documents::ReadRecords(_rWorker.cElement, Documents::g_stDataController, _rvecData, DataHook());
            }
            return ulResult;
        });
}
