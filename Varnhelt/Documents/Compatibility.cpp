#include "Documents/Compatibility.h"

#include "Boundary.h"
#include "Descriptions/DescriptionDump.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"

#include <vector>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-interfaces-global-init): the table of which it takes the words is a constant
const Frwk::WordTable g_stComponentEnabled{
    Frwk::Words::g_stBoolean.aWord,
    {.pszUnknownTextLine = L"*** Frwk::Utility::GetBooleanType() - Invalid boolean Type. [%s]"}};

constexpr Documents::DumpTexts g_stDump{L"[CFunctionXml::QueryValueAsInstallCompatibilityCheckDB]", L"=[", L"]",
                                        TraceDetail};

/** Dumps what is read while it is read, and passes the components over that are not enabled. */
class Dump : public Documents::ReadHook
{
public:
    using ReadHook::OnElement;
    bool OnElement(const Storage::XmlElement& _rElement, const CompatibilityComponent&) const
    {
        const std::wstring tszEnabled(_rElement.Text());
        Trace(TraceDetail, L"[CFunctionXml::QueryValueAsInstallCompatibilityCheckDB]\tis enable this component\t[%s]",
              tszEnabled);
        return Frwk::Utility::ToValue(Documents::ComponentEnabled(), tszEnabled) != 0;
    }

    template <class TField, class TRecord>
    void OnField(const Storage::XmlElement&, const TField& _rstField, const TRecord& _rstRecord) const
    {
        Documents::DumpField(_rstField, _rstRecord, g_stDump);
    }

    template <class TField>
    void OnList(const Storage::XmlElement&, const TField& _rstField) const
    {
        if (_rstField.pszLabel != nullptr) {
            Trace(TraceDetail, L"[CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()] %s", _rstField.pszLabel);
        }
    }
};

} // namespace

const Frwk::WordTable& Documents::ComponentEnabled() noexcept
{
    return g_stComponentEnabled;
}

std::uint32_t Documents::QueryValueAsInstallCompatibilityCheckDB(Worker& _rWorker, const Request& _rstRequest)
{
    return AtQueryBoundary<std::vector<CompatibilityPlatform>>(
        {L"CFunctionXml::QueryValueAsInstallCompatibilityCheckDB()"}, _rstRequest.pValueData,
        L"pArrayCompatibilityOSCheckEntry", [&](const MethodTrace& _rTrace, auto& _rvecPlatform) {
            DocumentFile cDocument(_rWorker, DocumentId::Compatibility, Access::Read);
            if (const std::uint32_t ulResult = cDocument.Find(_rTrace, _rstRequest.pOptionData);
                Result::IsFailure(ulResult)) {
                return ulResult;
            }
            _rTrace.Detail(L"tszXmlFile = [%s]", cDocument.Path().tszFile);
            cDocument.Select();
            Documents::ReadRecords(_rWorker.cElement, Documents::g_stCompatibilityPlatform, _rvecPlatform, Dump());
            return Result::g_ulSuccess;
        });
}
