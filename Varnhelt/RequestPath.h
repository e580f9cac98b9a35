#pragma once

#include <optional>
#include <string>

/** Where a request says that its document lies. What is missing is logged under the reader's name. */
namespace Varnhelt {

struct DocumentPath
{
    std::wstring tszDirectory; // with a backslash at its end
    std::wstring tszFile;      // the full path
};

/**
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
