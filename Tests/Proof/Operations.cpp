#include "Operations.h"

#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/VersionInfo.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_FileCrypt.h"

#include <algorithm>
#include <stdexcept>

namespace Proof {

namespace {

namespace ValueType = SrvFrwk::ValueType;
namespace File = ZkCommon::Storage::File;
using Varnhelt::DocumentId;

constexpr std::uint32_t g_ulMixed = 1;
constexpr std::size_t g_uAliases = 400;

template <class TData, std::uint32_t t_ulValueType>
std::uint32_t Query(const Desk& _rstDesk, const std::wstring&)
{
    TData data;
    return _rstDesk.rFunction.QueryValue(0, t_ulValueType, 0, &data, 0, nullptr);
}

template <class TData, std::uint32_t t_ulValueType>
std::uint32_t QueryInDirectory(const Desk& _rstDesk, const std::wstring&)
{
    TData data;
    SrvFrwk::XmlDirectoryConfig stRequest{{}, _rstDesk.tszFolder};
    return _rstDesk.rFunction.QueryValue(0, t_ulValueType, 0, &data, 0, &stRequest);
}

template <std::uint32_t t_ulValueType, std::uint32_t t_ulIdentifier>
std::uint32_t LookUp(const Desk& _rstDesk, const std::wstring&)
{
    SrvFrwk::ThreatText stThreat{t_ulIdentifier, {}, {}};
    return _rstDesk.rFunction.QueryValue(0, t_ulValueType, 0, &stThreat, 0, nullptr);
}

std::uint32_t QuerySpecificPolicy(const Desk& _rstDesk, const std::wstring&)
{
    SrvFrwk::PolicyController stController{Frwk::ControllerFirewall, 0, false, {}};
    return _rstDesk.rFunction.QueryValue(0, ValueType::g_ulSpecificEnforcePolicy, 0, &stController, 0, nullptr);
}

std::uint32_t QueryRegistryData(const Desk& _rstDesk, const std::wstring& _tszFile)
{
    std::vector<SrvFrwk::RegistryData> vecData;
    SrvFrwk::RegistryDataRequest stRequest{{L"*"}, _tszFile};
    return _rstDesk.rFunction.QueryValue(0, ValueType::g_ulRegistryData, 0, &vecData, 0, &stRequest);
}

/** What function objects do not serve is asked of its reader. */
template <class TData>
std::uint32_t Direct(Varnhelt::Handler _pHandler, const std::wstring& _tszFile, TData& _rData, std::uint32_t _ulSubType)
{
    const std::size_t uName = _tszFile.rfind(L'\\') + 1;
    SrvFrwk::XmlPathConfig stPath{{{}, _tszFile.substr(0, uName)}, _tszFile.substr(uName)};
    Varnhelt::Worker stWorker;
    return _pHandler(stWorker, {0, 0, _ulSubType, &_rData, 0, &stPath});
}

std::uint32_t QueryVersionInfo(const Desk&, const std::wstring& _tszFile)
{
    std::vector<SrvFrwk::VersionInformation> vecVersion;
    return Direct(&Varnhelt::Documents::QueryValueAsVersionInfo, _tszFile, vecVersion, 0);
}

std::uint32_t QueryComponents(const Desk&, const std::wstring& _tszFile)
{
    std::list<SrvFrwk::DeployComponent> listComponent;
    return Direct(&Varnhelt::Documents::QueryValueAsDeployComponentConfig, _tszFile, listComponent, 1);
}

std::uint32_t StorePreUpdate(const Desk& _rstDesk, const std::wstring& _tszFile)
{
    SrvFrwk::PreUpdateList stList{_tszFile, {{L"10", L"FW", L"5889", L"1", L"0", L"0", L"17.0"}}};
    return _rstDesk.rFunction.StoreValue(0, ValueType::g_ulPreUpdateList, 0, &stList, 0, nullptr);
}

std::uint32_t Update(const Desk& _rstDesk, const std::wstring& _tszFile)
{
    std::wstring tszFile = _tszFile;
    return _rstDesk.rFunction.SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &tszFile, 0, 0, nullptr);
}

constexpr Operation g_aOperation[] = {
    {"service-units", DocumentId::ServiceUnits, L"FwSvUnit.xen", false,
     &Query<std::vector<SrvFrwk::ServiceUnit>, ValueType::g_ulServiceUnit>},
    {"policy", DocumentId::Policy, L"FwPolicy.xen", false,
     &Query<std::vector<SrvFrwk::PolicyController>, ValueType::g_ulEnforcePolicy>},
    {"specific-policy", DocumentId::Policy, L"FwPolicy.xen", false, &QuerySpecificPolicy},
    {"store-policy", DocumentId::Policy, L"FwPolicy.xen", true,
     [](const Desk& _rstDesk, const std::wstring&) { return StorePolicy(_rstDesk, Frwk::PermissionAllow); }},
    {"enforce-data", DocumentId::EnforceData, L"FwEnfDat.xen", false,
     &Query<std::vector<SrvFrwk::DataController>, ValueType::g_ulEnforceData>},
    {"pu-ids", DocumentId::PuIds, L"FwCompId.xml", false, &Query<SrvFrwk::InstallPuIds, ValueType::g_ulInstallPuIds>},
    {"competitor-actions", DocumentId::CompetitorActions, L"rivalact.xml", false,
     &QueryInDirectory<std::vector<SrvFrwk::CompetitorAction>, ValueType::g_ulCompetitorAction>},
    {"competitor-detections", DocumentId::CompetitorDetections, L"rivaldet.xml", false,
     &QueryInDirectory<std::vector<SrvFrwk::CompetitorDetection>, ValueType::g_ulCompetitorDetection>},
    {"compatibility", DocumentId::Compatibility, L"compatck.xml", false,
     &QueryInDirectory<std::vector<SrvFrwk::CompatibilityPlatform>, ValueType::g_ulCompatibilityCheck>},
    {"key-config", DocumentId::KeyConfig, L"regkycfg.xml", false,
     &QueryInDirectory<std::vector<SrvFrwk::DeployKey>, ValueType::g_ulKeyConfig>},
    {"registry-data", DocumentId::RegistryData, L"RegData.xml", false, &QueryRegistryData},
    {"threat-name", DocumentId::ThreatsOrkap, L"StrVirus.xml", false, &LookUp<ValueType::g_ulThreatNameOrkap, 1000>},
    {"scanner-title", DocumentId::ThreatsElmap, L"antispy.xml", false, &LookUp<ValueType::g_ulScannerTitle, 1>},
    {"store-pre-update-list", DocumentId::PreUpdateList, L"PrePuReq.xml", true, &StorePreUpdate},
    {"version-info", DocumentId::VersionInfo, L"CmpVerIf.xml", false, &QueryVersionInfo},
    {"component", DocumentId::Component, L"DepComp.xen", false, &QueryComponents},
    {"alias", DocumentId::Alias, L"DepAlias.xen", false,
     [](const Desk&, const std::wstring& _tszFile) { return LookAtAliases(_tszFile); }},
    {"store-alias", DocumentId::Alias, L"DepAlias.xen", true,
     [](const Desk&, const std::wstring& _tszFile) { return StoreAliases(_tszFile, L'a'); }},
    {"update", DocumentId::LocalUpdate, L"settings-17.2.xml", true, &Update},
};

using Policy = std::vector<SrvFrwk::PolicyController>;

std::uint32_t ReadPolicy(const Desk& _rstDesk, Policy& _rvecPolicy)
{
    return _rstDesk.rFunction.QueryValue(0, ValueType::g_ulEnforcePolicy, 0, &_rvecPolicy, 0, nullptr);
}

std::uint32_t WritePolicy(const Desk& _rstDesk, Policy& _rvecPolicy)
{
    return _rstDesk.rFunction.StoreValue(0, ValueType::g_ulEnforcePolicy, 0, &_rvecPolicy, 0, nullptr);
}

void SetPermission(SrvFrwk::PolicyController& _rstController, std::uint32_t _ulPermission)
{
    _rstController.ulPermission = _ulPermission;
    for (SrvFrwk::PolicyProvider& stProvider : _rstController.vecProvider) {
        stProvider.ulPermission = _ulPermission;
    }
}

/** A document's bytes as they are in its file, or back; the same where it is kept plain. */
std::string Converted(std::string _sBytes, DocumentId _enDocument, File::Conversion::Direction _enDirection)
{
    const char* szKey = Varnhelt::DocumentOf(_enDocument).szKey;
    ZkCommon::ByteArray stBytes;
    File::Conversion cConversion(_enDirection);
    if (szKey == nullptr || !stBytes.Assign(std::as_bytes(std::span(_sBytes))) ||
        !cConversion.Run(std::move(stBytes),
                         File::KeySpan(reinterpret_cast<const std::uint8_t*>(szKey), File::g_uKeySize))) {
        return _sBytes;
    }
    return {cConversion.Output().begin(), cConversion.Output().end()};
}

} // namespace

std::span<const Operation> Operations() noexcept
{
    return g_aOperation;
}

const Operation& OperationOf(std::string_view _svName)
{
    const auto* pFound = std::ranges::find(g_aOperation, _svName, &Operation::svName);
    if (pFound == std::end(g_aOperation)) {
        throw std::runtime_error("no such operation: " + std::string(_svName));
    }
    return *pFound;
}

std::string Contents(const std::wstring& _tszPath)
{
    ZkCommon::ByteArray stBytes;
    File::Read(_tszPath, stBytes, File::g_ulShareAll);
    return {stBytes.Bytes().begin(), stBytes.Bytes().end()};
}

bool Put(const std::wstring& _tszPath, std::string_view _svBytes)
{
    const HANDLE hFile = ::CreateFileW(_tszPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (hFile == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD ulWritten = 0;
    ::WriteFile(hFile, _svBytes.data(), static_cast<DWORD>(_svBytes.size()), &ulWritten, nullptr);
    ::CloseHandle(hFile);
    return ulWritten == _svBytes.size();
}

std::string PlainText(const std::wstring& _tszFile, DocumentId _enDocument)
{
    return Converted(Contents(_tszFile), _enDocument, File::Conversion::Direction::Decrypt);
}

bool PutDocument(const std::wstring& _tszFile, DocumentId _enDocument, std::string _sText)
{
    return Put(_tszFile, Converted(std::move(_sText), _enDocument, File::Conversion::Direction::Encrypt));
}

std::uint32_t StorePolicy(const Desk& _rstDesk, std::uint32_t _ulPermission)
{
    Policy vecPolicy;
    const std::uint32_t ulResult = ReadPolicy(_rstDesk, vecPolicy);
    std::ranges::for_each(vecPolicy, [&](auto& _rstController) { SetPermission(_rstController, _ulPermission); });
    return SrvFrwk::Result::IsFailure(ulResult) ? ulResult : WritePolicy(_rstDesk, vecPolicy);
}

std::uint32_t StoreController(const Desk& _rstDesk, std::size_t _uController, std::uint32_t _ulPermission)
{
    Policy vecPolicy;
    const std::uint32_t ulResult = ReadPolicy(_rstDesk, vecPolicy);
    if (SrvFrwk::Result::IsFailure(ulResult)) {
        return ulResult;
    }
    Policy vecOne{vecPolicy.at(_uController)};
    SetPermission(vecOne.front(), _ulPermission);
    return WritePolicy(_rstDesk, vecOne);
}

std::uint32_t PermissionOf(const Desk& _rstDesk, std::size_t _uController)
{
    Policy vecPolicy;
    return SrvFrwk::Result::IsFailure(ReadPolicy(_rstDesk, vecPolicy)) ? 0 : vecPolicy.at(_uController).ulPermission;
}

std::uint32_t LookAtPolicy(const Desk& _rstDesk)
{
    Policy vecPolicy;
    const std::uint32_t ulResult = ReadPolicy(_rstDesk, vecPolicy);
    if (SrvFrwk::Result::IsFailure(ulResult)) {
        return ulResult;
    }
    const bool bOne = !vecPolicy.empty() && std::ranges::all_of(vecPolicy, [&](const auto& _rstController) {
        return _rstController.ulPermission == vecPolicy.front().ulPermission &&
               std::ranges::all_of(_rstController.vecProvider, [&](const auto& _rstProvider) {
                   return _rstProvider.ulPermission == vecPolicy.front().ulPermission;
               });
    });
    return bOne ? ulResult : g_ulMixed;
}

std::uint32_t StoreAliases(const std::wstring& _tszFile, wchar_t _cLetter)
{
    SrvFrwk::DeployAliasConfig listAlias;
    for (std::size_t uAlias = 0; uAlias < g_uAliases; ++uAlias) {
        listAlias.push_back({L"Proof" + std::to_wstring(uAlias), {}, std::wstring(200, _cLetter)});
    }
    return Direct(&Varnhelt::Documents::StoreValueAsDeployAliasConfig, _tszFile, listAlias, 0);
}

std::uint32_t LookAtAliases(const std::wstring& _tszFile)
{
    SrvFrwk::DeployAliasConfig listAlias;
    const std::uint32_t ulResult = Direct(&Varnhelt::Documents::QueryValueAsDeployAliasConfig, _tszFile, listAlias, 0);
    std::erase_if(listAlias, [](const auto& _rstAlias) { return !_rstAlias.strId.starts_with(L"Proof"); });
    const bool bOne = std::ranges::all_of(
        listAlias, [&](const auto& _rstAlias) { return _rstAlias.strValue == listAlias.front().strValue; });
    return bOne ? ulResult : g_ulMixed;
}

} // namespace Proof
