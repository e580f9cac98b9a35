#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/** Text as a terminal shows it. All of it is UTF-8. */
namespace Vrnt {

/** The columns that a text takes: two for each East Asian wide character, none for a combining mark. */
std::size_t WidthOf(std::string_view _svText);

/**
 * The text in one line that shows all that is in it: line ends, tabs, control characters and those that change the
 * direction of writing become escapes (\n, \t, \u202e).
 */
std::string Escaped(std::string_view _svText);

/** The text, cut to so many columns with "..." at its end where it takes more. */
std::string CutTo(std::string_view _svText, std::size_t _uWidth);

} // namespace Vrnt
