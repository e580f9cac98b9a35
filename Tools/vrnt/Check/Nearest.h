#pragma once

#include <string_view>
#include <vector>

namespace Vrnt {

/**
 * The candidate that somebody who wrote _svText most likely meant: fewest letters to change, insert, drop or swap, where
 * case counts least. Empty when none is near enough to be a slip.
 */
std::wstring_view Nearest(std::wstring_view _svText, const std::vector<std::wstring_view>& _vecCandidate);

} // namespace Vrnt
