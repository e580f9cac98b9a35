#pragma once

#include <string>
#include <string_view>

/** The macros of ini file paths: "$INSTALL$", "$WINDOWS$", "$SYSTEM$", "$CURRENT$", each the name of a folder. */
namespace Varnhelt {

/** Whether a path holds a macro. */
bool HasPathMacro(std::wstring_view _svPath) noexcept;

/**
 * Replaces the first occurrence of one macro: the first of the four, in the order above, that the path has. The folder is
 * logged; a folder that cannot be found leaves the path as it is, and the log says so.
 */
void ReplacePathMacro(std::wstring& _rtszPath);

} // namespace Varnhelt
