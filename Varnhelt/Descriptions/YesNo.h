#pragma once

#include "Frwk_DataTypesUtility.h"

namespace Varnhelt {

/** The two words of most switches in documents. What another text means, each table of them says. */
inline constexpr Frwk::Word g_aYesNo[] = {{L"yes", 1}, {L"no", 0}};
static_assert(Frwk::IsDistinct(g_aYesNo));

} // namespace Varnhelt
