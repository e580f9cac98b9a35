#pragma once

#include "Files/DocumentTable.h"

#include <optional>
#include <string>

/** Where a document lies: where its request says, or in the installation folder. */
namespace Varnhelt {

struct DocumentPath
{
    std::wstring tszDirectory; // where the parser library is looked for, too
    std::wstring tszFile;      // the full path
};

/** The place of a document of the installation folder; both texts are empty when the folder is not known. */
DocumentPath PathInInstalledFolder(const Document& _rstDocument);

/**
 * The place in a request's directory. What the request lacks is logged under the reader's name.
 * @param _pszMethod    the reader, "CClass::Method()"
 * @param _pOptionData  the request, an XmlDirectoryConfig
 * @param _pszFile      the document's fixed name
 * @return nothing when the request or its directory is missing
 */
std::optional<DocumentPath> PathInDirectory(const wchar_t* _pszMethod, const void* _pOptionData,
                                            const wchar_t* _pszFile);

/** The same for an XmlPathConfig, which also names the file. */
std::optional<DocumentPath> PathInRequest(const wchar_t* _pszMethod, const void* _pOptionData);

/** Writes the notice of the folder that the parser library is looked for in, which is the request's directory. */
void TraceParserDirectory(const std::wstring& _rtszDirectory) noexcept;

} // namespace Varnhelt
