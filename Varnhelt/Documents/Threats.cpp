#include "Documents/Threats.h"

#include "Boundary.h"
#include "Files/DocumentFile.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <cstdlib>
#include <string_view>
#include <utility>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace Varnhelt::Documents {

std::uint32_t ToThreatNumber(const char* _szId) noexcept
{
    return static_cast<std::uint32_t>(std::strtoll(_szId, nullptr, 10));
}

namespace {

/** Picks the element with the number. A table has thousands: none of the others is worth a node. */
class ByNumber final : public Storage::XmlChoice
{
public:
    ByNumber(std::string_view _svElement, std::uint32_t _ulNumber) : m_svElement(_svElement), m_ulNumber(_ulNumber) {}

    bool Wants(const char* _szName, const char** _pszAttributes) const noexcept override
    {
        if (_szName != m_svElement) {
            return false;
        }
        while (*_pszAttributes != nullptr && *_pszAttributes != g_svTextNumber) {
            _pszAttributes += 2;
        }
        return ToThreatNumber(*_pszAttributes != nullptr ? _pszAttributes[1] : "") == m_ulNumber;
    }

private:
    std::string_view m_svElement;
    std::uint32_t m_ulNumber;
};

} // namespace

} // namespace Varnhelt::Documents

using Varnhelt::Documents::g_aTextLookup;

std::uint32_t CFunctionXml::LookUpText(const Documents::TextLookup& _rstLookup, const Request& _rstRequest)
{
    return AtBoundary({_rstLookup.pszMethod}, [&] {
        const MethodTrace cTrace(_rstLookup.pszMethod);
        auto* pThreatText = static_cast<ThreatText*>(_rstRequest.pValueData);
        if (!cTrace.Has(pThreatText, L"pThreatText")) {
            return Result::g_ulMissingObject;
        }

        const DocumentPath stPath = PathInInstalledFolder(DocumentOf(_rstLookup.enDocument));
        const Documents::ByNumber cChoice(_rstLookup.szElement, pThreatText->ulIdentifier);
        PlainDocument cDocument(m_cParser, Access::Read);
        m_cElement = cDocument.Select(stPath.tszFile, stPath.tszDirectory, _rstLookup.pszRoot, &cChoice).FirstChild();
        if (!m_cElement) {
            Trace(TraceError, L"No <%S>: %d", _rstLookup.szElement, pThreatText->ulIdentifier);
            return Result::g_ulFailed;
        }
        // Both texts are there before the record changes.
        std::wstring tszText(m_cElement.ChildText(_rstLookup.pszText));
        if (_rstLookup.pszSecondText != nullptr) {
            pThreatText->tszSecondText = m_cElement.ChildText(_rstLookup.pszSecondText);
        }
        pThreatText->tszText = std::move(tszText);
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

std::uint32_t CFunctionXml::QueryThreateNameORKAP(const Request& _rstRequest)
{
    return LookUpText(g_aTextLookup[Documents::LookupNameOrkap], _rstRequest);
}

std::uint32_t CFunctionXml::QueryThreateNameELMAP(const Request& _rstRequest)
{
    return LookUpText(g_aTextLookup[Documents::LookupNameElmap], _rstRequest);
}

std::uint32_t CFunctionXml::QueryThreateDesELMAP(const Request& _rstRequest)
{
    return LookUpText(g_aTextLookup[Documents::LookupDescription], _rstRequest);
}

std::uint32_t CFunctionXml::QueryThreateRecELMAP(const Request& _rstRequest)
{
    return LookUpText(g_aTextLookup[Documents::LookupRecommendation], _rstRequest);
}

std::uint32_t CFunctionXml::QueryTitleELMAP(const Request& _rstRequest)
{
    return LookUpText(g_aTextLookup[Documents::LookupScannerTitle], _rstRequest);
}
