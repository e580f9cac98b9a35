#include "Documents/VersionInfo.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

void TraceVersionInfoXml(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    const MethodLines stLines(_pszMethod);
    stLines.Error(L"Got ZkCommon::Storage::XmlException() failed. [0x%08x] [%d]", _rError.ErrorCode(),
                  _rError.XmlLine());
    stLines.Error(L"Got ZkCommon::Storage::XmlException() failed. [%s] [0x%08x] [%d]", XmlFileOf(_rError),
                  _rError.ErrorCode(), _rError.XmlLine());
}

} // namespace

std::uint32_t Documents::QueryValueAsVersionInfo(Worker& _rWorker, const Request& _rstRequest)
{
    constexpr const wchar_t* pszMethod = L"CFunctionXml::QueryValueAsVersionInfo()";
    return AtBoundary({pszMethod, &TraceVersionInfoXml}, [&] {
        const MethodTrace cTrace(pszMethod);
        auto* pVersionInformation = static_cast<std::vector<VersionInformation>*>(_rstRequest.pValueData);
        if (!cTrace.Has(pVersionInformation, L"pVersionInformation")) {
            return Result::g_ulMissingObject;
        }
        return OnEmptied(*pVersionInformation, [&] {
            DocumentFile cDocument(_rWorker, DocumentId::VersionInfo, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Open(cTrace, _rstRequest.pOptionData);
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
            Documents::ReadRecords(_rWorker.cElement, Documents::g_stVersionInformation, *pVersionInformation);
            return cTrace.LeaveAs(L"CFunctionXml::QueryValueAsQmrConfig()", Result::g_ulSuccess);
        });
    });
}
