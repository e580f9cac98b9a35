#pragma once

#include "Files/DocumentTable.h"

#include <string>

namespace Vrnt {

/**
 * An XML Schema for a document, in UTF-8: an author's editor completes elements, attributes and words by it, shows what
 * they are and what an absent one is read as, and marks what no reader knows.
 */
std::string SchemaOf(const Varnhelt::Document& _rstDocument);

/** An XML catalog for the schemas of all documents, each in a file named after its document beside the catalog. */
std::string SchemaCatalog();

} // namespace Vrnt
