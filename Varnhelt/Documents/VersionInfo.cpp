#include "Documents/VersionInfo.h"

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

void TraceXml(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    Trace(TraceError, L"*** %s - Got ZkCommon::Storage::XmlException() failed. [0x%08x] [%d]", _pszMethod,
          _rError.ErrorCode(), _rError.XmlLine());
    Trace(TraceError, L"*** %s - Got ZkCommon::Storage::XmlException() failed. [%s] [0x%08x] [%d]", _pszMethod,
          XmlFileOf(_rError), _rError.ErrorCode(), _rError.XmlLine());
}

} // namespace

std::uint32_t Documents::QueryValueAsVersionInfo(Worker& _rWorker, const Request& _rstRequest)
{
    constexpr const wchar_t* pszMethod = L"CFunctionXml::QueryValueAsVersionInfo()";
    return AtBoundary({pszMethod, &TraceXml}, [&] {
        const MethodTrace cTrace(pszMethod);
        auto* pVersionInformation = static_cast<std::vector<VersionInformation>*>(_rstRequest.pValueData);
        if (!cTrace.Has(pVersionInformation, L"pVersionInformation")) {
            return Result::g_ulMissingObject;
        }
        pVersionInformation->clear();

        PlainDocument cDocument(_rWorker.cParser, Access::Read);
        const auto cRoot =
            cDocument.SelectInDirectory(pszMethod, _rstRequest.pOptionData, DocumentOf(DocumentId::VersionInfo));
        if (!cRoot) {
            return Result::g_ulMissingObject;
        }
        _rWorker.cElement = *cRoot;
        Documents::ReadRecords(_rWorker.cElement, Documents::g_stVersionInformation, *pVersionInformation);
        return cTrace.LeaveAs(L"CFunctionXml::QueryValueAsQmrConfig()", Result::g_ulSuccess);
    });
}
