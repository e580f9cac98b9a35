#include "Files/DocumentTable.h"

#include <algorithm>
#include <iterator>

namespace Varnhelt {

namespace {

constexpr Document g_aDocument[] = {
    {DocumentId::ServiceUnits, L"service-units", L"FwSvUnit.xen", Location::Installed, "Wq8#Lp2!Zr7$Mv4&",
     L"/BaseFramework"},
    {DocumentId::Policy, L"policy", L"FwPolicy.xen", Location::Installed, "Hn3^Tx9*Bk5%Cy1(",
     L"/PolicyEnforceLayer/PolicyControllers"},
    {DocumentId::EnforceData, L"enforce-data", L"FwEnfDat.xen", Location::Installed,
     "Pd6@Jm0)Vs8+Gw2=", L"/DataEnforceLayer/DataControllers"},
    {DocumentId::PuIds, L"pu-ids", L"FwCompId.xml", Location::Installed, nullptr, L"/InstallPuIds"},
    {DocumentId::VersionInfo, L"version-info", L"CmpVerIf.xml", Location::Directory, nullptr, L"/QmrVersionInfo"},
    {DocumentId::CompetitorActions, L"competitor-actions", L"rivalact.xml", Location::Directory, nullptr,
     L"/CompetitorAction/Sequence"},
    {DocumentId::CompetitorDetections, L"competitor-detections", L"rivaldet.xml", Location::Directory, nullptr,
     L"/CompetitorDetection"},
    {DocumentId::Compatibility, L"compatibility", L"compatck.xml", Location::Directory, nullptr,
     L"/CompatibilityCheck/Platforms"},
    {DocumentId::PreUpdateList, L"pre-update-list", nullptr, Location::Path, nullptr, L"/body"},
    {DocumentId::Alias, L"alias", nullptr, Location::Path, "Fe5~Qa1;Nu7:Rb3.", L"/Aliases"},
    {DocumentId::Component, L"component", nullptr, Location::Path, "Yt4]Ho9[Ek2{Ui6}", L"/Components"},
    {DocumentId::KeyConfig, L"key-config", L"regkycfg.xml", Location::Directory, nullptr, L"/Config"},
    {DocumentId::RegistryData, L"registry-data", nullptr, Location::Path, nullptr, L"/Quillmar"},
    {DocumentId::ThreatsOrkap, L"threats", L"StrVirus.xml", Location::Installed, nullptr, L"/Quillmar/Threats"},
    {DocumentId::ThreatsElmap, L"threats", L"antispy.xml", Location::Installed, nullptr, L"/Quillmar/Threats"},
    {DocumentId::LocalUpdate, L"local-update", nullptr, Location::Path, nullptr, L"/Quillmar"},
};

consteval bool IsInOrder()
{
    std::size_t uExpected = 0;
    for (const Document& stDocument : g_aDocument) {
        if (static_cast<std::size_t>(stDocument.enId) != uExpected++) {
            return false;
        }
    }
    return uExpected == static_cast<std::size_t>(DocumentId::None);
}
static_assert(IsInOrder());

} // namespace

std::span<const Document> DocumentTable() noexcept
{
    return g_aDocument;
}

const Document& DocumentOf(DocumentId _enId) noexcept
{
    return g_aDocument[static_cast<std::size_t>(_enId)];
}

const Document* FindDocument(std::wstring_view _svName) noexcept
{
    const auto* pRow = std::find_if(std::begin(g_aDocument), std::end(g_aDocument),
                                    [&](const Document& _rstRow) { return _rstRow.svName == _svName; });
    return pRow == std::end(g_aDocument) ? nullptr : pRow;
}

} // namespace Varnhelt
