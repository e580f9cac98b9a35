#pragma once

#include "Diff/DiffRecord.h"
#include "Files/DocumentTable.h"

#include <string_view>

namespace Vrnt {

/**
 * A document, plain or encrypted, as its reader sees it on any machine: defaults for what is missing, unknown words as
 * what they are read as, and nothing of what it passes over or never looks at. Conditions and filters are fields.
 * @param _rsName  what it is called in messages
 * @throws UsageError when it is not a document of this kind, or not well-formed
 */
DiffRecord RecordsOf(const Varnhelt::Document& _rstDocument, std::string_view _svBytes, const std::string& _rsName);

} // namespace Vrnt
