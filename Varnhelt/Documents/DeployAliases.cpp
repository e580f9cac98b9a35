#include "Documents/DeployAliases.h"

#include "Descriptions/DescriptionReader.h"
#include "Documents/Deployment.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <string_view>
#include <unordered_map>
#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

using Elements = std::vector<Storage::XmlElement>;

/** The elements of each identifier among the aliases, found in one walk over the document. */
std::unordered_map<std::wstring_view, Elements> IndexById(const Storage::XmlElement& _rRoot,
                                                          const DeployAliasConfig& _rlstAlias)
{
    std::unordered_map<std::wstring_view, Elements> mapElement(_rlstAlias.size());
    for (const DeployAlias& stAlias : _rlstAlias) {
        mapElement[stAlias.strId];
    }
    const Storage::XmlName id = _rRoot.FindName(L"Id");
    for (auto cAlias = _rRoot.FirstChild(L"Alias"); cAlias; cAlias = cAlias.NextNamesake()) {
        if (const auto itFound = mapElement.find(cAlias.Attribute(id)); itFound != mapElement.end()) {
            itFound->second.push_back(cAlias);
        }
    }
    return mapElement;
}

/** An empty property leaves the element's own as it is. */
void SetDeployAliasConfig(Storage::XmlElement _cAlias, const DeployAlias& _rstAlias)
{
    _cAlias.SetAttribute(L"Id", _rstAlias.strId);
    if (!_rstAlias.strProperty.empty()) {
        _cAlias.SetAttribute(L"Property", _rstAlias.strProperty);
    }
    _cAlias.SetText(_rstAlias.strValue);
}

/** Updates all elements of each alias, or appends one. @return false when there is nothing to append to */
bool SetAliases(Storage::XmlElement _cRoot, const DeployAliasConfig& _rlstAlias)
{
    auto mapElement = IndexById(_cRoot, _rlstAlias);
    for (const DeployAlias& stAlias : _rlstAlias) {
        Elements& rvecElement = mapElement[stAlias.strId];
        if (rvecElement.empty()) {
            const Storage::XmlElement cNew = _cRoot.AddChild(Documents::g_stDeployAlias.svElement);
            if (!cNew) {
                return false;
            }
            rvecElement.push_back(cNew);
        }
        for (const Storage::XmlElement& cAlias : rvecElement) {
            SetDeployAliasConfig(cAlias, stAlias);
        }
    }
    return true;
}

} // namespace

std::uint32_t Documents::QueryValueAsDeployAliasConfig(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<DeployAliasConfig>(
        Documents::DeploymentFailures(L"CFunctionXml::QueryValueAsDeployAliasConfig()"), _rstRequest.pValueData,
        L"pstDeployAliasConfig", [&](const MethodTrace& _rTrace, auto& _rlstAlias) {
            DocumentFile cDocument(_rWorker, DocumentId::Alias, Access::Read);
            const std::uint32_t ulResult = cDocument.Open(_rTrace, _rstRequest.pOptionData);
            if (!Result::IsFailure(ulResult)) {
                Documents::ReadRecords(_rWorker.cElement, Documents::g_stDeployAlias, _rlstAlias);
            }
            return ulResult;
        });
}

std::uint32_t Documents::StoreValueAsDeployAliasConfig(Worker& _rWorker, const Request& _rstRequest)
{
    constexpr const wchar_t* pszMethod = L"CFunctionXml::StoreValueAsDeployAliasConfig()";
    return AtBoundary(Documents::DeploymentFailures(pszMethod), [&] {
        const MethodTrace cTrace(pszMethod);
        const auto* pstDeployAliasConfig = static_cast<const DeployAliasConfig*>(_rstRequest.pValueData);
        if (!cTrace.Has(pstDeployAliasConfig, L"pstDeployAliasConfig")) {
            return Result::g_ulMissingObject;
        }
        DocumentFile cDocument(_rWorker, DocumentId::Alias, Access::Write);
        if (const std::uint32_t ulResult = cDocument.Open(cTrace, _rstRequest.pOptionData);
            Result::IsFailure(ulResult)) {
            return ulResult;
        }
        if (!SetAliases(_rWorker.cElement, *pstDeployAliasConfig)) {
            cTrace.Error(L"pxmlAlias was invalid.");
            return Result::g_ulFailed;
        }
        if (!cDocument.Store()) {
            cTrace.Error(L"cXenFile.Encrypt() failed.");
            return Result::g_ulFailed;
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
