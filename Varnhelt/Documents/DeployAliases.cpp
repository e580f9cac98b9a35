#include "Documents/DeployAliases.h"

#include "Descriptions/DescriptionReader.h"
#include "Documents/Deployment.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <cstddef>
#include <iterator>
#include <string_view>
#include <unordered_map>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

using Elements = std::unordered_multimap<std::wstring_view, Storage::XmlElement>;

/** The aliases of the document by their identifiers. */
Elements IndexById(const Storage::XmlElement& _rRoot, std::size_t _uExpected)
{
    Elements mapElement(_uExpected);
    const Storage::XmlName id = _rRoot.FindName(L"Id");
    for (auto cAlias = _rRoot.FirstChild(L"Alias"); cAlias; cAlias = cAlias.NextNamesake()) {
        mapElement.emplace(cAlias.Attribute(id), cAlias);
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
    Elements mapElement = IndexById(_cRoot, _rlstAlias.size());
    for (const DeployAlias& stAlias : _rlstAlias) {
        auto [itFirst, itEnd] = mapElement.equal_range(stAlias.strId);
        if (itFirst == itEnd) {
            const Storage::XmlElement cNew = _cRoot.AddChild(Documents::g_stDeployAlias.svElement);
            if (!cNew) {
                return false;
            }
            itFirst = mapElement.emplace(stAlias.strId, cNew);
            itEnd = std::next(itFirst);
        }
        for (; itFirst != itEnd; ++itFirst) {
            SetDeployAliasConfig(itFirst->second, stAlias);
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
