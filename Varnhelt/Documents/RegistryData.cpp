#include "Documents/RegistryData.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "Frwk_Utility.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

/** A fault in the document's text is logged with its place, any other with its code. */
void TraceRegistryDataXml(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    if (_rError.XmlErrorCode() == 0) {
        FailureTexts::TraceXml(_pszMethod, _rError);
        return;
    }
    MethodLines(_pszMethod)
        .Error(L"Xml Error [0x%08x] line [%d] file [%s]", _rError.XmlErrorCode(), _rError.XmlLine(),
               XmlFileOf(_rError));
}

/** The labels that a request selects. */
class Selection
{
public:
    explicit Selection(const std::vector<std::wstring>& _rvecLabel)
        : m_setLabel(_rvecLabel.begin(), _rvecLabel.end()), m_bAll(m_setLabel.contains(L"*"))
    {}
    bool Has(std::wstring_view _svLabel) const { return m_bAll || m_setLabel.contains(_svLabel); }

private:
    std::unordered_set<std::wstring_view> m_setLabel;
    bool m_bAll;
};

/** Reads one component after another; the document's names are looked up once. */
class RegistryReader
{
public:
    RegistryReader(const Storage::XmlElement& _rRoot, std::vector<RegistryData>& _rvecData)
        : m_cRoot(_rRoot),
          m_reg(_rRoot.FindName(Documents::g_svReg)),
          m_key(_rRoot.FindName(Documents::g_svRegKey)),
          m_access(_rRoot.FindName(Documents::g_svRegAccess)),
          m_element(_rRoot.FindName(Documents::g_stRegistryData.svElement)),
          m_cData(_rRoot, Documents::g_stRegistryData),
          m_rvecData(_rvecData)
    {}

    std::uint32_t GetRegistryComponent(const Storage::XmlElement& _rComponent)
    {
        const MethodTrace cTrace(L"CFunctionXml::GetRegistryComponent()");
        for (auto cReg = _rComponent.FirstChild(m_reg); cReg; cReg = cReg.NextSibling(m_reg)) {
            RegistryData stPlace;
            if (!ReadPlace(cReg, stPlace)) {
                return Result::g_ulFailed;
            }
            GetRegistryElements(cReg, stPlace);
        }
        return cTrace.Leave(Result::g_ulSuccess);
    }

private:
    /** Where the values of a "Reg" lie. @return false for a key that is none, which is logged */
    bool ReadPlace(const Storage::XmlElement& _rReg, RegistryData& _rstPlace) const
    {
        const std::wstring_view svKey = _rReg.Attribute(m_key);
        const Documents::RegistryDataKey stKey(svKey);
        if (!stKey.bSubKey) {
            Trace(TraceError, L"CFunctionXml::GetRegistryComponent() - parsing 'key' error: [%s]", std::wstring(svKey));
            return false;
        }
        const std::wstring tszRoot(stKey.svRoot);
        Trace(TraceNotice, L"CFunctionXml::GetRegistryComponent() - root key: [%s]", tszRoot);
        if (!Documents::IsRegKey(svKey)) {
            Trace(TraceError, L"CFunctionXml::GetRegistryComponent() - unsupported root key: %s", tszRoot);
            return false;
        }
        _rstPlace.hRoot = HKEY_LOCAL_MACHINE;
        _rstPlace.tszSubKey = stKey.svSubKey;
        _rstPlace.bAllAccess = Frwk::Utility::ToValue(Documents::g_stRegAccess, _rReg.Attribute(m_access)) != 0;
        Trace(TraceNotice, L"CFunctionXml::GetRegistryComponent() - sub key: %s, all access: %d", _rstPlace.tszSubKey,
              _rstPlace.bAllAccess ? 1 : 0);
        return true;
    }

    void GetRegistryElements(const Storage::XmlElement& _rReg, const RegistryData& _rstPlace)
    {
        const MethodTrace cTrace(L"CFunctionXml::GetRegistryElements()");
        for (auto cElement = _rReg.FirstChild(m_element); cElement; cElement = cElement.NextSibling(m_element)) {
            cElement.Charge(_rstPlace.tszSubKey.size() * sizeof(wchar_t)); // each value has the key again
            Documents::MakeRoom(m_cRoot, m_rvecData);
            Documents::NewRecord cData(m_rvecData, _rstPlace);
            m_cData.ReadOne(cElement, cData.Get(), Documents::ReadHook());
            cData.Keep();
        }
        cTrace.Leave(Result::g_ulSuccess);
    }

    Storage::XmlElement m_cRoot;
    Storage::XmlName m_reg;
    Storage::XmlName m_key;
    Storage::XmlName m_access;
    Storage::XmlName m_element;
    Documents::Bound<std::remove_const_t<decltype(Documents::g_stRegistryData)>> m_cData;
    std::vector<RegistryData>& m_rvecData;
};

std::uint32_t ReadComponents(const MethodLines& _rLines, const Storage::XmlElement& _rRoot,
                             const Selection& _rSelection, std::vector<RegistryData>& _rvecData)
{
    const Storage::XmlName label = _rRoot.FindName(Documents::g_svComponentLabel);
    RegistryReader cReader(_rRoot, _rvecData);
    const Storage::XmlName name = _rRoot.FindName(Documents::g_svRegistryComponent);
    for (auto cComponent = _rRoot.NextChild(); cComponent; cComponent = _rRoot.NextChild(cComponent)) {
        if (!cComponent.Is(name) || !_rSelection.Has(cComponent.Attribute(label))) {
            continue;
        }
        if (const std::uint32_t ulResult = cReader.GetRegistryComponent(cComponent); Result::IsFailure(ulResult)) {
            _rLines.Error(L"GetRegistryComponent() failed.[0x%08x]", ulResult);
            return ulResult;
        }
    }
    return Result::g_ulSuccess;
}

} // namespace

std::uint32_t Documents::QueryValueAsRegistryData(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<RegistryData>>(
        {L"CFunctionXml::QueryValueAsRegistryData()", &TraceRegistryDataXml}, _rstRequest.pValueData,
        L"pRegistryConfig", [&](const MethodTrace& _rTrace, auto& _rvecData) {
            const auto* pstRequest = static_cast<const RegistryDataRequest*>(_rstRequest.pOptionData);
            if (pstRequest == nullptr) {
                _rTrace.Error(L"_lpvParameter was NULL.");
                return Result::g_ulMissingObject;
            }
            DocumentFile cDocument(_rWorker, DocumentId::RegistryData, Access::Read);
            cDocument.FindAt({String::WithBackslash(Frwk::Utility::GetInstalledFolder()), pstRequest->tszXmlFile});
            return ReadComponents(_rTrace, cDocument.Select(), Selection(pstRequest->vecLabel), _rvecData);
        });
}
