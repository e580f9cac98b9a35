#pragma once

#include "Files/DocumentTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace Vrnt {

/** The plain document; std::nullopt when it is neither XML nor encrypted with the key of its kind. */
std::optional<std::string> PlainContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes);

} // namespace Vrnt
