#pragma once

#include "Documents/Compatibility.h"

#include <string_view>

/** The update request that is sent before an installation: a document of the caller's, of which two places are set. */
namespace Varnhelt::Documents {

inline constexpr std::wstring_view g_svRequestProduct = L"product";
inline constexpr std::wstring_view g_svRequestPlatform = L"plat";
inline constexpr std::wstring_view g_svRequestComponents = L"components";
/** An element of the list; its attributes are those of a compatibility component. */
inline constexpr std::wstring_view g_svRequestComponent = L"component";

} // namespace Varnhelt::Documents
