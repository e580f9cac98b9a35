// Every document's query at a product's size and at a hundred times that, from CFunctionXml to the records, against the
// bare parser library over the same text; and what storing costs, against the query of the same document.
//
// The parser library stays loaded on both sides. At a product's size most of a query is what every query costs, however
// little there is to read. The floor of an encrypted document holds what its reader cannot do without: reading the file,
// decrypting it, a private temporary file. Many records cost more memory than their text: the least that a reader can take
// is measured too.

#include "Descriptions/DescriptionReader.h"
#include "Documents/Compatibility.h"
#include "Files/DocumentFile.h"
#include "Floor.h"
#include "FunctionXml.h"
#include "Measure.h"
#include "Sample/SampleTables.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace SrvFrwk;
using Varnhelt::Document;
using Varnhelt::DocumentId;
using Varnhelt::Request;

constexpr unsigned g_ulMore = 100;

/** A document to measure: its sample, and how that grows. */
struct Sample
{
    DocumentId enDocument;
    const char* szFile;                 // full path of the plain text, or the name of one that is made
    std::string_view svRecords;         // the element whose content is repeated
    std::string_view svIdentifier{};    // an attribute whose values stay distinct, with its equals sign and quote
    const wchar_t* pszStored = nullptr; // where the document has no fixed name
    std::string (*pfnText)() = nullptr; // makes the plain text
};

constexpr Sample g_stServiceUnits{DocumentId::ServiceUnits, SAMPLES_FOLDER "/FwSvUnit.xml", "BaseFramework"};
constexpr Sample g_stPolicy{DocumentId::Policy, SAMPLES_FOLDER "/FwPolicy.xml", "PolicyControllers"};
constexpr Sample g_stEnforceData{DocumentId::EnforceData, SAMPLES_FOLDER "/FwEnfDat.xml", "DataControllers"};
constexpr Sample g_stPuIds{DocumentId::PuIds, SAMPLES_FOLDER "/FwCompId.xml", "InstallPuIds"};
constexpr Sample g_stVersionInfo{DocumentId::VersionInfo, SAMPLES_FOLDER "/CmpVerIf.xml", "QmrVersionInfo"};
constexpr Sample g_stCompetitorActions{DocumentId::CompetitorActions, "rivalact.xml", "Sequence", {}, nullptr,
                                       &Vrnt::SampleCompetitorActions};
constexpr Sample g_stCompetitorDetections{
    DocumentId::CompetitorDetections, "rivaldet.xml", "CompetitorDetection", {}, nullptr,
    &Vrnt::SampleCompetitorPatterns};
constexpr Sample g_stCompatibility{DocumentId::Compatibility, SAMPLES_FOLDER "/compatck.xml", "Platforms"};
constexpr Sample g_stPreUpdateList{
    DocumentId::PreUpdateList, SAMPLES_FOLDER "/PrePuReq.xml", "components", {}, L"PrePuReq.xml"};
constexpr Sample g_stAlias{DocumentId::Alias, SAMPLES_FOLDER "/DepAlias.xml", "Aliases", "Id=\"", L"DepAlias.xen"};
constexpr Sample g_stComponent{DocumentId::Component, SAMPLES_FOLDER "/DepComp.xml", "Install", {}, L"DepComp.xen"};
constexpr Sample g_stKeyConfig{DocumentId::KeyConfig, SAMPLES_FOLDER "/regkycfg.xml", "Config"};
constexpr Sample g_stRegistryData{
    DocumentId::RegistryData, SAMPLES_FOLDER "/RegData.xml", "Quillmar", {}, L"RegData.xml"};
constexpr Sample g_stThreatsOrkap{DocumentId::ThreatsOrkap, "StrVirus.xml", "Threats", "id=\"", nullptr,
                                  &Vrnt::SampleVirusNames};
constexpr Sample g_stThreatsElmap{DocumentId::ThreatsElmap, "antispy.xml", "Threats", "id=\"", nullptr,
                                  &Vrnt::SampleSpyware};

const std::string& TextOf(const Sample& _rstSample)
{
    static std::map<std::string, std::string> mapText;
    std::string& rsText = mapText[_rstSample.szFile];
    if (rsText.empty() && _rstSample.pfnText != nullptr) {
        rsText = _rstSample.pfnText();
    } else if (rsText.empty()) {
        std::ifstream cFile(_rstSample.szFile, std::ios::binary);
        rsText.assign(std::istreambuf_iterator<char>(cFile), {});
    }
    return rsText;
}

/**
 * The sample with what its element of records holds repeated _ulTimes, not at all for 0. Each repetition puts its number
 * before the identifiers, the last one the highest.
 */
std::string Grown(const Sample& _rstSample, unsigned _ulTimes)
{
    const std::string& rsText = TextOf(_rstSample);
    const std::string sName(_rstSample.svRecords);
    const std::size_t uBegin = rsText.find('>', rsText.find("<" + sName)) + 1;
    const std::size_t uEnd = rsText.rfind("</" + sName + ">");
    const std::string_view svRecords = std::string_view(rsText).substr(uBegin, uEnd - uBegin);

    std::string sGrown = rsText.substr(0, uBegin);
    sGrown.reserve(rsText.size() + svRecords.size() * _ulTimes * 11 / 10);
    for (unsigned i = 0; i < _ulTimes; ++i) {
        std::size_t uDone = 0;
        if (i > 0 && !_rstSample.svIdentifier.empty()) {
            const std::string sNumber = std::to_string(i);
            std::size_t uFound = 0;
            while ((uFound = svRecords.find(_rstSample.svIdentifier, uDone)) != std::string_view::npos) {
                uFound += _rstSample.svIdentifier.size();
                sGrown.append(svRecords, uDone, uFound - uDone).append(sNumber);
                uDone = uFound;
            }
        }
        sGrown.append(svRecords, uDone);
    }
    return sGrown.append(rsText, uEnd);
}

/** A product with one document, and the request for that. */
class Bed
{
public:
    Bed(const Sample& _rstSample, unsigned _ulTimes)
        : m_rstDocument(Varnhelt::DocumentOf(_rstSample.enDocument)),
          m_pszFile(m_rstDocument.pszFile != nullptr ? m_rstDocument.pszFile : _rstSample.pszStored),
          m_sText(Grown(_rstSample, _ulTimes))
    {
        Reset();
        m_stDirectory.tszXmlDir = m_cProduct.Folder().Path().wstring();
        m_stPath.stXmlDirectoryConfig = m_stDirectory;
        m_stPath.tszXmlFileName = m_pszFile;
        m_stRegistryData = {{L"*"}, File()};
    }

    /** The document as it was before it was stored. */
    void Reset() const { m_cProduct.Store(m_rstDocument.enId, m_sText, m_pszFile); }

    std::wstring File() const { return m_cProduct.Folder().File(m_pszFile); }

    Request RequestFor(std::uint32_t _ulValueType, void* _pValueData)
    {
        Request stRequest;
        stRequest.ulValueType = _ulValueType;
        stRequest.ulValueSubType = ComponentSection::g_ulInstall;
        stRequest.pValueData = _pValueData;
        if (_ulValueType == ValueType::g_ulRegistryData) {
            stRequest.pOptionData = &m_stRegistryData;
        } else if (m_rstDocument.enLocation == Varnhelt::Location::Path) {
            stRequest.pOptionData = &m_stPath;
        } else {
            stRequest.pOptionData = &m_stDirectory;
        }
        return stRequest;
    }

    /** What reading the document costs at the least. */
    bool Scan(const Bench::Expat& _rExpat, bool (Bench::Expat::*_pScan)(const wchar_t*) const) const
    {
        const std::wstring tszFile = m_rstDocument.enLocation == Varnhelt::Location::Installed
                                         ? Bench::ReadProductPath() + L"\\" + m_pszFile
                                         : File();
        return m_rstDocument.szKey == nullptr
                   ? (_rExpat.*_pScan)(tszFile.c_str())
                   : Bench::ScanThroughTemporaryFile(_rExpat, _pScan, Bench::ReadDecrypted(tszFile, m_rstDocument));
    }

private:
    TestProduct m_cProduct;
    const Document& m_rstDocument;
    const wchar_t* m_pszFile;
    std::string m_sText;
    XmlDirectoryConfig m_stDirectory;
    XmlPathConfig m_stPath;
    RegistryDataRequest m_stRegistryData;
};

bool IsFilled(const InstallPuIds& _rstPuIds)
{
    return !_rstPuIds.vecProduct.empty();
}
bool IsFilled(const ThreatText& _rstText)
{
    return !_rstText.tszText.empty();
}
template <class TRecords>
bool IsFilled(const TRecords& _rRecords)
{
    return !_rRecords.empty();
}

template <class TRecords>
bool Query(Bed& _rBed, std::uint32_t _ulValueType, TRecords& _rRecords)
{
    CFunctionXml cXml;
    return cXml.QueryValue(_rBed.RequestFor(_ulValueType, &_rRecords)) == Result::g_ulSuccess;
}

/** Where a document's records stand and its library stays loaded while it is measured. */
struct MeasuredBed : Bed
{
    using Bed::Bed;
    Bench::Expat cKept;
};

/** A query; what its caller does with the records, freeing them included, is no part of it. */
template <class TRecords>
Bench::Way QueryWay(const std::shared_ptr<MeasuredBed>& _pBed, std::uint32_t _ulValueType, const TRecords& _rstAsked)
{
    return [=](Bench::Clock& _rClock) {
        TRecords stRecords = _rstAsked;
        const bool bFilled = Query(*_pBed, _ulValueType, stRecords) && IsFilled(stRecords);
        _rClock.Discard(stRecords);
        return bFilled;
    };
}

std::string NameOf(const char* _szName, unsigned _ulTimes)
{
    return _ulTimes == 1 ? _szName : _szName + ("-" + std::to_string(_ulTimes)) + "x";
}

/** The least that any reader can take: the same text only parsed, and the records only copied; against the text alone. */
template <class TRecords>
void AddLeast(const std::string& _rsName, const Sample& _rstSample, std::uint32_t _ulValueType,
              const TRecords& _rstAsked)
{
    Bench::Add(NameOf(_rsName.c_str(), g_ulMore), [=, &_rstSample] {
        const auto pBed = std::make_shared<MeasuredBed>(_rstSample, g_ulMore);
        const auto pRecords = std::make_shared<TRecords>(_rstAsked);
        const bool bQueried = Query(*pBed, _ulValueType, *pRecords);
        const auto Scan = [=](Bench::Clock&) { return pBed->Scan(pBed->cKept, &Bench::Expat::ScanInPieces); };
        return Bench::Ways{[=](Bench::Clock& _rClock) {
                               const bool bScanned = Scan(_rClock);
                               TRecords stRecords = *pRecords;
                               _rClock.Discard(stRecords);
                               return bScanned && bQueried;
                           },
                           {Scan}};
    });
}

/** @param _stAsked, _stAskedOfMore  what the caller hands in: for a look-up, the last entry */
template <class TRecords>
void AddQuery(const char* _szName, const Sample& _rstSample, std::uint32_t _ulValueType, TRecords _stAsked = {},
              TRecords _stAskedOfMore = {})
{
    for (const unsigned ulTimes : {1U, g_ulMore}) {
        const TRecords stAsked = ulTimes > 1 ? _stAskedOfMore : _stAsked;
        Bench::Add(
            NameOf(_szName, ulTimes),
            [=, &_rstSample] {
                const auto pBed = std::make_shared<MeasuredBed>(_rstSample, ulTimes);
                return Bench::Ways{
                    QueryWay(pBed, _ulValueType, stAsked),
                    {[=](Bench::Clock&) { return pBed->Scan(pBed->cKept, &Bench::Expat::ScanFile); },
                     [=](Bench::Clock&) { return pBed->Scan(pBed->cKept, &Bench::Expat::ScanInPieces); }}};
            },
            ulTimes > 1);
    }
    AddLeast("least-" + std::string(_szName).substr(std::size("query")), _rstSample, _ulValueType, _stAskedOfMore);
}

/** All records stored unchanged, against their query. */
template <class TRecords>
void AddStore(const char* _szName, const Sample& _rstSample, std::uint32_t _ulValueType)
{
    Bench::Add(NameOf(_szName, g_ulMore), [=, &_rstSample] {
        const auto pBed = std::make_shared<MeasuredBed>(_rstSample, g_ulMore);
        const auto pRecords = std::make_shared<TRecords>();
        Query(*pBed, _ulValueType, *pRecords);
        return Bench::Ways{[=](Bench::Clock&) {
                               CFunctionXml cXml;
                               return IsFilled(*pRecords) &&
                                      cXml.StoreValue(pBed->RequestFor(_ulValueType, pRecords.get())) ==
                                          Result::g_ulSuccess;
                           },
                           {QueryWay(pBed, _ulValueType, TRecords())}};
    });
}

/** The list before an update has no query; as one would read it, whole. @return how many components it has */
std::size_t QueryPreUpdateList(const std::wstring& _rtszFile, std::vector<CompatibilityComponent>& _rvecComponent)
{
    auto stComponent = Varnhelt::Documents::g_stCompatibilityComponent;
    stComponent.svElement = L"component";
    Varnhelt::Worker stWorker;
    Varnhelt::DocumentFile cDocument(stWorker, Varnhelt::DocumentId::PreUpdateList, Varnhelt::Access::Read);
    cDocument.FindAt({{}, _rtszFile});
    Varnhelt::Documents::ReadRecords(cDocument.Select(L"/body/product/components"), stComponent, _rvecComponent);
    return _rvecComponent.size();
}

/**
 * Its store has three steps, each of which stores the document: the first leaves it as long as it was, the others leave
 * it with as many components more. The floor is the sum of the queries of these three documents. The sample is a small
 * one, hence how far it grows; and each store starts from the document as it was.
 */
void AddPreUpdateListStore()
{
    constexpr unsigned ulTimes = 100 * g_ulMore;
    Bench::Add(NameOf("store-pre-update-list", ulTimes), [=] {
        const auto pBed = std::make_shared<MeasuredBed>(g_stPreUpdateList, ulTimes);
        const auto pBefore = std::make_shared<Bed>(g_stPreUpdateList, ulTimes);
        const auto pAfter = std::make_shared<Bed>(g_stPreUpdateList, 2 * ulTimes);
        const auto pList = std::make_shared<PreUpdateList>(PreUpdateList{pBed->File(), {}});
        QueryPreUpdateList(pBed->File(), pList->vecComponent);
        return Bench::Ways{[=](Bench::Clock& _rClock) {
                               CFunctionXml cXml;
                               const bool bStored =
                                   cXml.StoreValue(pBed->RequestFor(ValueType::g_ulPreUpdateList, pList.get())) ==
                                   Result::g_ulSuccess;
                               _rClock.Pause();
                               pBed->Reset();
                               _rClock.Resume();
                               return bStored;
                           },
                           {[=](Bench::Clock&) {
                               std::size_t uComponents = 0;
                               for (const Bed* pRead : {pBefore.get(), pAfter.get(), pAfter.get()}) {
                                   std::vector<CompatibilityComponent> vecComponent;
                                   uComponents += QueryPreUpdateList(pRead->File(), vecComponent);
                               }
                               return uComponents != 0;
                           }}};
    });
}

ThreatText Threat(std::uint32_t _ulIdentifier)
{
    return {.ulIdentifier = _ulIdentifier, .tszText = {}, .tszSecondText = {}};
}

bool AddAll()
{
    AddQuery<std::vector<ServiceUnit>>("query-service-units", g_stServiceUnits, ValueType::g_ulServiceUnit);
    AddQuery<std::vector<PolicyController>>("query-policy", g_stPolicy, ValueType::g_ulEnforcePolicy);
    AddQuery<std::vector<DataController>>("query-enforce-data", g_stEnforceData, ValueType::g_ulEnforceData);
    AddQuery<InstallPuIds>("query-pu-ids", g_stPuIds, ValueType::g_ulInstallPuIds);
    AddQuery<std::vector<VersionInformation>>("query-version-info", g_stVersionInfo, ValueType::g_ulVersionInfo);
    AddQuery<std::vector<CompetitorAction>>("query-competitor-actions", g_stCompetitorActions,
                                            ValueType::g_ulCompetitorAction);
    AddQuery<std::vector<CompetitorDetection>>("query-competitor-detections", g_stCompetitorDetections,
                                               ValueType::g_ulCompetitorDetection);
    AddQuery<std::vector<CompatibilityPlatform>>("query-compatibility", g_stCompatibility,
                                                 ValueType::g_ulCompatibilityCheck);
    AddQuery<DeployAliasConfig>("query-alias", g_stAlias, ValueType::g_ulDeployAlias);
    AddQuery<DeployComponentConfig>("query-component", g_stComponent, ValueType::g_ulDeployComponent);
    AddQuery<std::vector<DeployKey>>("query-key-config", g_stKeyConfig, ValueType::g_ulKeyConfig);
    AddQuery<std::vector<RegistryData>>("query-registry-data", g_stRegistryData, ValueType::g_ulRegistryData);
    AddQuery("query-threat-name", g_stThreatsOrkap, ValueType::g_ulThreatNameOrkap, Threat(6999), Threat(996999));
    // Names and recommendations of this table are looked up as descriptions are.
    AddQuery("query-threat-description", g_stThreatsElmap, ValueType::g_ulThreatDescription, Threat(4999),
             Threat(994999));
    AddQuery("query-scanner-title", g_stThreatsElmap, ValueType::g_ulScannerTitle, Threat(8), Threat(8));

    AddStore<std::vector<PolicyController>>("store-policy", g_stPolicy, ValueType::g_ulEnforcePolicy);
    AddStore<DeployAliasConfig>("store-alias", g_stAlias, ValueType::g_ulDeployAlias);
    AddPreUpdateListStore();
    return true;
}

[[maybe_unused]] const bool g_bAdded = AddAll();

} // namespace
