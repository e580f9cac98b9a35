#include "Documents/Threats.h"

#include "Boundary.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace Varnhelt::Documents {

std::uint32_t ToThreatNumber(const char* _szId) noexcept
{
    return static_cast<std::uint32_t>(std::strtoll(_szId, nullptr, 10));
}

bool IsThreatNumber(std::string_view _svId) noexcept
{
    const char* pszEnd = _svId.data() + _svId.size();
    std::int64_t llNumber = 0;
    const std::from_chars_result stRead = std::from_chars(_svId.data(), pszEnd, llNumber);
    return stRead.ec == std::errc() && stRead.ptr == pszEnd && llNumber >= std::numeric_limits<std::int32_t>::min() &&
           llNumber <= std::numeric_limits<std::uint32_t>::max();
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

/** Fills the texts of the element with the record's number. */
std::uint32_t LookUpText(TextLookupId _enLookup, Worker& _rWorker, const Request& _rstRequest)
{
    const TextLookup& rstLookup = g_aTextLookup[_enLookup];
    return AtBoundary({rstLookup.pszMethod}, [&] {
        const MethodTrace cTrace(rstLookup.pszMethod);
        auto* pThreatText = static_cast<ThreatText*>(_rstRequest.pValueData);
        if (!cTrace.Has(pThreatText, L"pThreatText")) {
            return Result::g_ulMissingObject;
        }

        const ByNumber cChoice(rstLookup.szElement, pThreatText->ulIdentifier);
        DocumentFile cDocument(_rWorker, rstLookup.enDocument, Access::Read);
        if (const std::uint32_t ulResult = cDocument.Find(cTrace); Result::IsFailure(ulResult)) {
            return ulResult;
        }
        const Storage::XmlElement cFound = cDocument.Select(rstLookup.pszRoot, &cChoice).FirstChild();
        if (!cFound) {
            Trace(TraceError, L"No <%S>: %d", rstLookup.szElement, pThreatText->ulIdentifier);
            return Result::g_ulFailed;
        }
        // Both texts are there before the record changes.
        std::wstring tszText(cFound.ChildText(rstLookup.pszText));
        if (rstLookup.pszSecondText != nullptr) {
            pThreatText->tszSecondText = cFound.ChildText(rstLookup.pszSecondText);
        }
        pThreatText->tszText = std::move(tszText);
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

} // namespace

} // namespace Varnhelt::Documents

std::uint32_t Documents::QueryThreateNameORKAP(Worker& _rWorker, const Request& _rstRequest)
{
    return LookUpText(LookupNameOrkap, _rWorker, _rstRequest);
}

std::uint32_t Documents::QueryThreateNameELMAP(Worker& _rWorker, const Request& _rstRequest)
{
    return LookUpText(LookupNameElmap, _rWorker, _rstRequest);
}

std::uint32_t Documents::QueryThreateDesELMAP(Worker& _rWorker, const Request& _rstRequest)
{
    return LookUpText(LookupDescription, _rWorker, _rstRequest);
}

std::uint32_t Documents::QueryThreateRecELMAP(Worker& _rWorker, const Request& _rstRequest)
{
    return LookUpText(LookupRecommendation, _rWorker, _rstRequest);
}

std::uint32_t Documents::QueryTitleELMAP(Worker& _rWorker, const Request& _rstRequest)
{
    return LookUpText(LookupScannerTitle, _rWorker, _rstRequest);
}
