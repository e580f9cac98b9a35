#pragma once

#include "Files/DocumentTable.h"
#include "MethodTrace.h"

#include <optional>
#include <string>

/** Where a document is: where its request says, or in the installation folder. */
namespace Varnhelt {

struct DocumentPath
{
    std::wstring tszDirectory; // where the parser library is looked for, too; empty: beside this module
    std::wstring tszFile;      // the full path
};

/**
 * The place of a document, by its Location: in the installation folder, both texts being empty when that is not known;
 * in the directory of an XmlDirectoryConfig, under its fixed name; or where an XmlPathConfig says.
 * @param _pOptionData  the request; ignored for an installed document
 * @return std::nullopt when the request or a text of it is missing, which is logged under the reader's name
 */
std::optional<DocumentPath> PathOf(const Document& _rstDocument, const void* _pOptionData, const MethodLines& _rLines);

} // namespace Varnhelt
