#pragma once

#include "Descriptions/Description.h"
#include "Request.h"

#include <cstdint>
#include <string>
#include <string_view>

/** The update service's component numbers that belong to the product, "FwCompId.xml". */
namespace Varnhelt::Documents {

/** The lists of SrvFrwk::InstallPuIds, and the component that belongs to none. */
enum PuIdComponent : std::uint32_t
{
    PuIdNone,
    PuIdPattern,
    PuIdEngine,
    PuIdProduct,
};

/** The systems on which an entry counts. */
enum PuIdPlatform : std::uint32_t
{
    PuIdOnly32Bit,
    PuIdOnly64Bit,
    PuIdBoth,
};

inline constexpr Frwk::Word g_aPuIdComponent[] = {
    {L"eNone", PuIdNone},
    {L"ePattern", PuIdPattern},
    {L"eEngine", PuIdEngine},
    {L"eProduct", PuIdProduct},
};
inline constexpr Frwk::Word g_aPuIdPlatform[] = {
    {L"eOnly32bit", PuIdOnly32Bit},
    {L"eOnly64bit", PuIdOnly64Bit},
    {L"eBoth32And64bit", PuIdBoth},
};
static_assert(Frwk::IsDistinct(g_aPuIdComponent) && Frwk::IsDistinct(g_aPuIdPlatform));
inline constexpr Frwk::WordTable g_stPuIdComponent{g_aPuIdComponent, {}};
inline constexpr Frwk::WordTable g_stPuIdPlatform{g_aPuIdPlatform, {}};

/** An entry of the document. The words stay as they are written: the trace log shows them. */
struct PuIdEntry
{
    std::wstring tszLabel;
    std::wstring tszVersion;
    std::wstring tszComponent;
    std::uint32_t ulPuId = 0;
    std::wstring tszPlatform;
};

inline constexpr auto g_stPuIdEntry = Describe<PuIdEntry>(
    L"InstallPuId", Attribute(L"label", &PuIdEntry::tszLabel, Text()).Optional().Label(L"[label]    "),
    Attribute(L"version", &PuIdEntry::tszVersion, Text()).Optional().Label(L"[version]  "),
    Child(L"Component", &PuIdEntry::tszComponent, WordText(g_stPuIdComponent))
        .OnStrange(Strange::Drop)
        .Label(L"[Component]"),
    Child(L"PuId", &PuIdEntry::ulPuId, Number()).Label(L"[PuId]     ", Show::Hexadecimal),
    Child(L"Platform", &PuIdEntry::tszPlatform, WordText(g_stPuIdPlatform))
        .OnStrange(Strange::Drop)
        .Label(L"[Platform] "));

/** Whether an entry counts on a 32- or 64-bit system. An unknown word counts on none, and is logged. */
bool IsNeedToAddPuIds(const std::wstring& _rtszPlatform, bool _b64Bit) noexcept;

/** Reads the installed document into an InstallPuIds, for the bits of this system; contract as Handler. */
std::uint32_t QueryValueAsInstallPuIds(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
