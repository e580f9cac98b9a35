#pragma once

#include "Descriptions/Description.h"

#include <cstdint>
#include <windows.h>

/** How documents write what the registry is made of; all of it without regard to case. */
namespace Varnhelt::Documents {

inline constexpr Frwk::Word g_aRegistryRoot[] = {
    {L"HKCR", 0x80000000}, {L"HKCU", 0x80000001}, {L"HKLM", 0x80000002}, {L"HKU", 0x80000003}};
static_assert(Frwk::IsDistinct(g_aRegistryRoot));
inline constexpr Frwk::WordTable g_stRegistryRoot{.aWord = g_aRegistryRoot, .stDefaults = {}, .bAnyCase = true};

/** As local updates write them: with case. */
inline constexpr Frwk::WordTable g_stUpdateRoot{g_aRegistryRoot, {}};

/** A predefined root by its short name; null for another text, and the empty text for another root. */
struct RegistryRoot
{
    static constexpr Show g_enShow = Show::Text;
    static constexpr const Frwk::WordTable* WordsOf() { return &g_stRegistryRoot; }
    static bool Accepts(std::wstring_view _svText)
    {
        return Frwk::Utility::FindWord(g_stRegistryRoot, _svText) != nullptr;
    }
    static HKEY Read(std::wstring_view _svText)
    {
        // The system's own roots are such numbers, extended by their sign. NOLINTNEXTLINE(performance-no-int-to-ptr)
        return reinterpret_cast<HKEY>(
            static_cast<std::intptr_t>(static_cast<std::int32_t>(Frwk::Utility::ToValue(g_stRegistryRoot, _svText))));
    }
    static std::wstring Write(HKEY _hRoot)
    {
        return Words(g_stRegistryRoot).Write(reinterpret_cast<std::uintptr_t>(_hRoot));
    }
};

} // namespace Varnhelt::Documents
