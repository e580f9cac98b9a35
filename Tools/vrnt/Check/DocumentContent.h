#pragma once

#include "Files/DocumentTable.h"

#include <optional>
#include <string>
#include <string_view>

namespace Vrnt {

/** The plain document; std::nullopt when it is neither XML nor encrypted with the key of its kind. */
std::optional<std::string> PlainContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes);

/**
 * The kind of a document, plain or encrypted: by its root, of kinds that share a root by what is in it, then by the name
 * of its file. Null when no kind is like it.
 * @param _svFileName  without its folder; empty where there is none
 */
const Varnhelt::Document* KindOf(std::string_view _svBytes, std::wstring_view _svFileName);

} // namespace Vrnt
