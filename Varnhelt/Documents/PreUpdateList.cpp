#include "Documents/PreUpdateList.h"

#include "Boundary.h"
#include "Descriptions/DescriptionWriter.h"
#include "Files/DocumentFile.h"
#include "Frwk_Utility.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

/** As the update service knows the platform of all requests. */
constexpr const wchar_t* g_pszPlatformCode = L"5889";
constexpr const wchar_t* g_pszListRoot = L"/body/product";

void TraceComponent(const CompatibilityComponent& _rstComponent)
{
    if (TracePasses(TraceDetail)) {
        Documents::ForEachField(Documents::g_stCompatibilityComponent, [&](const auto& _rstField) {
            Trace(TraceDetail, L" -- DEBUG %s[%s]", _rstField.svName.data(), _rstComponent.*_rstField.pMember);
        });
    }
}

/** Puts each component into the element at its place in the list, past the last into a new one at the list's end. */
void StoreComponents(Storage::XmlElement _cList, const std::vector<CompatibilityComponent>& _rvecComponent,
                     bool _bCreate)
{
    Storage::XmlElement cElement;
    for (const CompatibilityComponent& stComponent : _rvecComponent) {
        if (_bCreate) {
            Trace(TraceDetail,
                  L"*** CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList() create a new component node");
            _cList.AddChild(Documents::g_svRequestComponent);
        }
        cElement = &stComponent == _rvecComponent.data() ? _cList.FirstChild(Documents::g_svRequestComponent)
                                                         : cElement.NextNamesake();
        if (!cElement) {
            continue;
        }
        Trace(TraceDetail, L"*** CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList() found! need to modify this "
                           L"new node");
        TraceComponent(stComponent);
        Documents::WriteRecord(cElement, Documents::g_stCompatibilityComponent, stComponent);
    }
}

} // namespace

std::uint32_t Documents::StorePreUpdateList(Worker& _rWorker, const Request& _rstRequest)
{
    const auto* pCompatibilityCheckPrePUInfo = static_cast<const PreUpdateList*>(_rstRequest.pValueData);
    ImpChangePlatform(_rWorker, pCompatibilityCheckPrePUInfo); // a request without it has its list stored all the same
    // The first run appends one empty element for each component, the second finds them there: so requests have always
    // been filled, and the service expects the empty ones.
    if (Result::IsFailure(ImpStoreValueAsCompatibilityCheckPUList(_rWorker, pCompatibilityCheckPrePUInfo, true))) {
        return Result::g_ulFailed;
    }
    return ImpStoreValueAsCompatibilityCheckPUList(_rWorker, pCompatibilityCheckPrePUInfo, false);
}

std::uint32_t Documents::ImpChangePlatform(Worker& _rWorker, const PreUpdateList* _pCompatibilityCheckPrePUInfo)
{
    constexpr const wchar_t* pszMethod = L"CFunctionXml::ImpChangePlatform()";
    return AtBoundary({pszMethod}, [&] {
        const MethodTrace cTrace(pszMethod);
        Trace(TraceDetail, L"FunctionXml::ImpChangePlatform()...");
        if (!cTrace.Has(_pCompatibilityCheckPrePUInfo, L"pCompatibilityCheckPrePUInfo")) {
            return Result::g_ulMissingObject;
        }
        DocumentFile cDocument(_rWorker, DocumentId::PreUpdateList, Access::Write);
        cDocument.FindAt({Frwk::Utility::GetInstalledFolder(), _pCompatibilityCheckPrePUInfo->tszDocument});
        cDocument.Select();
        Storage::XmlElement cProduct = _rWorker.cElement.FirstChild(Documents::g_svRequestProduct);
        if (!cProduct) {
            // The line names the components, which support scripts look for.
            cTrace.Error(L"components section was not found.");
            return Result::g_ulFailed;
        }
        cProduct.SetAttribute(Documents::g_svRequestPlatform, g_pszPlatformCode);
        cDocument.Store();
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

std::uint32_t Documents::ImpStoreValueAsCompatibilityCheckPUList(Worker& _rWorker,
                                                                 const PreUpdateList* _pCompatibilityCheckPrePUInfo,
                                                                 bool _bCreate)
{
    constexpr const wchar_t* pszMethod = L"CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList()";
    return AtBoundary({pszMethod}, [&] {
        const MethodTrace cTrace(pszMethod);
        if (!cTrace.Has(_pCompatibilityCheckPrePUInfo, L"pCompatibilityCheckPrePUInfo")) {
            return Result::g_ulMissingObject;
        }
        Trace(TraceDetail, L"[1] CFunctionXml::ImpStoreValueAsCompatibilityCheckPUList()...");
        DocumentFile cDocument(_rWorker, DocumentId::PreUpdateList, Access::Write);
        cDocument.FindAt({Frwk::Utility::GetInstalledFolder(), _pCompatibilityCheckPrePUInfo->tszDocument});
        cDocument.Select(g_pszListRoot);
        const Storage::XmlElement cList = _rWorker.cElement.FirstChild(Documents::g_svRequestComponents);
        if (!cList) {
            cTrace.Error(L"components section was not found.");
            return Result::g_ulFailed;
        }
        StoreComponents(cList, _pCompatibilityCheckPrePUInfo->vecComponent, _bCreate);
        cDocument.Store();
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
