#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/** The versions between which a local update is meant. */
namespace Varnhelt {

/**
 * Compares versions number by number, as far as both have numbers ("6.0" equals "6.0.1234"). Runs of dots count as one;
 * numbers may be hexadecimal or octal by their prefix.
 * @return negative, 0 or positive: the wrapping difference of the first numbers that differ; std::nullopt when a
 *         text has something else between its dots, or is empty
 */
std::optional<std::int32_t> CompareVersion(std::wstring_view _svLeft, std::wstring_view _svRight);

} // namespace Varnhelt
