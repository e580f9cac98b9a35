#include "Documents/PuIds.h"

#include "Boundary.h"
#include "Descriptions/DescriptionDump.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Platform.h"

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace Varnhelt::Documents {

bool IsNeedToAddPuIds(const std::wstring& _rtszPlatform, bool _b64Bit) noexcept
{
    const Frwk::Word* pWord = Frwk::Utility::FindWord(g_stPuIdPlatform, _rtszPlatform);
    if (pWord == nullptr) {
        Trace(TraceError, L"*** CFunctionXml::IsNeedToAddPuIds() - Not support Platform String was specified. [%s]",
              _rtszPlatform);
        return false;
    }
    return pWord->ulValue == PuIdBoth || pWord->ulValue == (_b64Bit ? PuIdOnly64Bit : PuIdOnly32Bit);
}

namespace {

void AddToItsList(const PuIdEntry& _rstEntry, InstallPuIds& _rstPuIds)
{
    const Frwk::Word* pWord = Frwk::Utility::FindWord(g_stPuIdComponent, _rstEntry.tszComponent);
    if (pWord == nullptr) {
        Trace(TraceNotice, L"*** CFunctionXml::QueryValueAsInstallPuIds() - Component Type was invalid. [%s]",
              _rstEntry.tszComponent);
    } else if (pWord->ulValue == PuIdNone) {
        Trace(TraceNotice, L"*** CFunctionXml::QueryValueAsInstallPuIds() - eNone was specified for Component Type.");
    } else {
        std::vector<std::uint32_t>& rvecList = pWord->ulValue == PuIdPattern  ? _rstPuIds.vecPattern
                                               : pWord->ulValue == PuIdEngine ? _rstPuIds.vecEngine
                                                                              : _rstPuIds.vecProduct;
        rvecList.push_back(_rstEntry.ulPuId);
    }
}

void AddEntry(const PuIdEntry& _rstEntry, bool _b64Bit, InstallPuIds& _rstPuIds)
{
    DumpRecord(g_stPuIdEntry, _rstEntry, {L"*** CFunctionXml::QueryValueAsInstallPuIds() - "});
    if (IsNeedToAddPuIds(_rstEntry.tszPlatform, _b64Bit)) {
        AddToItsList(_rstEntry, _rstPuIds);
    } else {
        Trace(TraceNotice,
              L"*** CFunctionXml::QueryValueAsInstallPuIds() - This component is not used for this platform. "
              L"PuId[0x%08x]",
              _rstEntry.ulPuId);
    }
    Trace(TraceNotice, L"*** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.");
}

} // namespace

} // namespace Varnhelt::Documents

std::uint32_t Documents::QueryValueAsInstallPuIds(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<InstallPuIds>(
        {L"CFunctionXml::QueryValueAsInstallPuIds()"}, _rstRequest.pValueData, L"pPuIds", [&](auto& _rstPuIds) {
            const Document& stDocument = DocumentOf(DocumentId::PuIds);
            const DocumentPath stPath = PathInInstalledFolder(stDocument);
            PlainDocument cDocument(_rWorker.cParser, Access::Read);
            _rWorker.cElement = cDocument.Select(stPath.tszFile, stPath.tszDirectory, stDocument.pszRoot);

            const bool b64Bit = Platform::IsNative64Bit();
            Documents::ForEachRecord(
                _rWorker.cElement, Documents::g_stPuIdEntry,
                [&](const Documents::PuIdEntry& _rstEntry) { Documents::AddEntry(_rstEntry, b64Bit, _rstPuIds); });
            return Result::g_ulSuccess;
        });
}
