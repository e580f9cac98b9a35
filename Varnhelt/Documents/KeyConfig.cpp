#include "Documents/KeyConfig.h"

#include "Boundary.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

constexpr MethodLines g_stKeyConfigLines(L"CFunctionXml::GetKeyConfig()"); // whose entry has no line

/** Only this many leading characters are compared. */
constexpr std::size_t g_uCompared = 256;

/** File name and extension of the running program; std::nullopt after a line that says why not. */
std::optional<std::wstring> ProgramName()
{
    std::array<wchar_t, MAX_PATH> aPath{};
    const DWORD ulLength = ::GetModuleFileNameW(nullptr, aPath.data(), static_cast<DWORD>(aPath.size()));
    if (ulLength == 0 || ulLength == aPath.size()) {
        g_stKeyConfigLines.Error(L"GetModuleFileName() failed. [0x%08x]",
                                 ulLength == 0 ? ::GetLastError() : ERROR_INSUFFICIENT_BUFFER);
        return std::nullopt;
    }
    std::array<wchar_t, _MAX_FNAME> aName{};
    std::array<wchar_t, _MAX_EXT> aExtension{};
    if (const int iError = ::_wsplitpath_s(aPath.data(), nullptr, 0, nullptr, 0, aName.data(), aName.size(),
                                           aExtension.data(), aExtension.size());
        iError != 0) {
        g_stKeyConfigLines.Error(L"_tsplitpath_s() failed. [0x%08x]", iError);
        return std::nullopt;
    }
    return std::wstring(aName.data()) + aExtension.data();
}

/** The system of a name in any case. */
std::optional<std::uint32_t> OsTypeInAnyCase(std::wstring_view _svName)
{
    const auto* pRow = std::ranges::find_if(Platform::g_aOsTypeName, [&](const Platform::OsTypeName& _rstRow) {
        return String::EqualsNoCase(_rstRow.svName, _svName, g_uCompared);
    });
    return pRow == std::end(Platform::g_aOsTypeName) ? std::nullopt : std::optional(pRow->ulOsType);
}

} // namespace

namespace Varnhelt::Documents {

KeyReader::KeyReader(const Storage::XmlElement& _rElement)
    : m_registry(_rElement.FindName(g_svRegistry)),
      m_root(_rElement.FindName(g_svRegistryRoot)),
      m_key(_rElement.FindName(g_svRegistryKey)),
      m_value(_rElement.FindName(g_stDeployKey.svElement)),
      m_osType(_rElement.FindName(g_svOsType)),
      m_assign(_rElement.FindName(g_svAssign)),
      m_cKey(_rElement, g_stDeployKey)
{}

std::uint32_t KeyReader::GetKeyConfig(const Storage::XmlElement& _rElement, std::vector<DeployKey>& _rvecKey)
{
    _rvecKey.clear();
    DeployKey stPlace; // where the next values lie
    auto cRegistry = _rElement.NextChild();
    _rvecKey.reserve(Promised<DeployKey>(CountValues(_rElement), _rElement.Share()));
    for (; cRegistry; cRegistry = _rElement.NextChild(cRegistry)) {
        if (!cRegistry.Is(m_registry)) {
            continue;
        }
        if (const HKEY hRoot = RegistryRoot::Read(cRegistry.Attribute(m_root)); hRoot != nullptr) {
            stPlace.hRoot = hRoot;
        }
        stPlace.strKey = cRegistry.Attribute(m_key);
        for (auto cValue = cRegistry.FirstChild(m_value); cValue; cValue = cValue.NextSibling(m_value)) {
            const std::optional<bool> bForThis = IsForThisProgram(cValue);
            if (!bForThis) {
                return Result::g_ulFailed;
            }
            cValue.Charge(stPlace.strKey.size() * sizeof(wchar_t)); // each value has the key again
            if (*bForThis) {
                MakeRoom(_rElement, _rvecKey);
                NewRecord cKey(_rvecKey, stPlace);
                if (m_cKey.ReadOne(cValue, cKey.Get(), ReadHook())) {
                    cKey.Keep();
                }
            }
        }
    }
    Trace(TraceDetail, L"[Leave] CFunctionXml::GetKeyConfig()...");
    return Result::g_ulSuccess;
}

std::size_t KeyReader::CountValues(const Storage::XmlElement& _rElement) const noexcept
{
    std::size_t uCount = 0;
    for (auto cRegistry = _rElement.FirstChild(m_registry); cRegistry; cRegistry = cRegistry.NextSibling(m_registry)) {
        for (auto cValue = cRegistry.FirstChild(m_value); cValue; cValue = cValue.NextSibling(m_value)) {
            ++uCount;
        }
    }
    return uCount;
}

std::optional<bool> KeyReader::IsForThisProgram(const Storage::XmlElement& _rValue)
{
    if (const std::wstring_view svOsType = _rValue.Attribute(m_osType); !svOsType.empty()) {
        const std::optional<std::uint32_t> ulOsType = OsTypeInAnyCase(svOsType);
        if (!ulOsType) {
            g_stKeyConfigLines.Error(L"OsType is invalid. [%s]", std::wstring(svOsType));
            return std::nullopt;
        }
        if (!Platform::CheckOsType(*ulOsType)) {
            return false;
        }
    }
    const std::wstring_view svAssign = _rValue.Attribute(m_assign);
    if (svAssign.empty()) {
        return true;
    }
    if (!m_tszProgram) {
        m_tszProgram = ProgramName();
    }
    return m_tszProgram ? std::optional(String::EqualsNoCase(svAssign, *m_tszProgram, g_uCompared)) : std::nullopt;
}

} // namespace Varnhelt::Documents

std::uint32_t Documents::QueryValueAsKeyConfig(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<DeployKey>>(
        {L"CFunctionXml::QueryValueAsKeyConfig()"}, _rstRequest.pValueData, L"pKeyConfig",
        [&](const MethodTrace& _rTrace, auto& _rvecKey) {
            DocumentFile cDocument(_rWorker, DocumentId::KeyConfig, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Open(_rTrace, _rstRequest.pOptionData);
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
            const std::uint32_t ulResult = KeyReader(_rWorker.cElement).GetKeyConfig(_rWorker.cElement, _rvecKey);
            if (Result::IsFailure(ulResult)) {
                _rTrace.Error(L"this->GetKeyConfig() failed. [0x%08x]", ulResult);
            }
            return ulResult;
        });
}
