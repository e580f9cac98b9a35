#pragma once

#include "Files/DocumentTable.h"

#include <optional>
#include <string>
#include <string_view>

/** The bytes of a document: what kind they are of, and what they say. */
namespace Vrnt {

/** Whether bytes begin as an XML document does, in any of the encodings that one may have. */
bool IsPlain(std::string_view _svBytes);

/** The plain document; std::nullopt when it is neither XML nor encrypted with the key of its kind. */
std::optional<std::string> PlainContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes);

/**
 * The kind of a document: by its key, its root, what is in it where kinds share a root, and then by the file's name.
 * @return null when nobody knows
 */
const Varnhelt::Document* KindOf(std::string_view _svBytes, std::wstring_view _svFileName);

/** A plain document in UTF-8, where it is in UTF-16; otherwise as it is. */
std::string ToUtf8Document(std::string_view _svPlain);

} // namespace Vrnt
