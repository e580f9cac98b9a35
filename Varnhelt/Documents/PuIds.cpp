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
        MethodLines(L"CFunctionXml::IsNeedToAddPuIds()")
            .Error(L"Not support Platform String was specified. [%s]", _rtszPlatform);
        return false;
    }
    return pWord->ulValue == PuIdBoth || pWord->ulValue == (_b64Bit ? PuIdOnly64Bit : PuIdOnly32Bit);
}

namespace {

constexpr MethodLines g_stQueryLines(L"CFunctionXml::QueryValueAsInstallPuIds()");

void AddToItsList(const PuIdEntry& _rstEntry, InstallPuIds& _rstPuIds)
{
    const Frwk::Word* pWord = Frwk::Utility::FindWord(g_stPuIdComponent, _rstEntry.tszComponent);
    if (pWord == nullptr) {
        g_stQueryLines.Notice(L"Component Type was invalid. [%s]", _rstEntry.tszComponent);
    } else if (pWord->ulValue == PuIdNone) {
        g_stQueryLines.Notice(L"eNone was specified for Component Type.");
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
        g_stQueryLines.Notice(L"This component is not used for this platform. PuId[0x%08x]", _rstEntry.ulPuId);
    }
    Trace(TraceNotice, L"*** CFunctionXml::QueryValueAsInstallPuIds() ---------------------------------------------.");
}

} // namespace

} // namespace Varnhelt::Documents

std::uint32_t Documents::QueryValueAsInstallPuIds(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<InstallPuIds>(
        {g_stQueryLines.Method()}, _rstRequest.pValueData, L"pPuIds", [&](const MethodTrace& _rTrace, auto& _rstPuIds) {
            DocumentFile cDocument(_rWorker, DocumentId::PuIds, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Open(_rTrace); Result::IsFailure(ulResult)) {
                return ulResult;
            }

            const bool b64Bit = Platform::IsNative64Bit();
            Documents::ForEachRecord(
                _rWorker.cElement, Documents::g_stPuIdEntry,
                [&](const Documents::PuIdEntry& _rstEntry) { Documents::AddEntry(_rstEntry, b64Bit, _rstPuIds); });
            return Result::g_ulSuccess;
        });
}
