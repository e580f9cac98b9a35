#pragma once

/** Where the product keeps its settings, below HKEY_LOCAL_MACHINE. */
namespace Frwk {

inline constexpr const wchar_t* g_szProductKey = L"Software\\Kestrovane\\Pelto";
inline constexpr const wchar_t* g_szTraceSettingsKey = L"Software\\Kestrovane\\Pelto\\17\\DebugLog";

} // namespace Frwk
