#pragma once

#include "Command.h"
#include "Files/DocumentTable.h"
#include "SrvFrwk_Records.h"

/** Arguments that several commands have. */
namespace Vrnt {

/** "--dir": the directory of a document that is not in the installed folder. */
extern const Argument g_stDirectory;
/** "--file": a document's name in that directory. */
extern const Argument g_stFileName;
/** "--input": the JSON file of records to store. */
extern const Argument g_stInput;
/** "--document": the kind of a document. */
extern const Argument g_stDocumentKind;

/** The names of the documents, each once, in the order of the documents' table. */
std::vector<std::string> DocumentNames();

/** The kind that "--document" names, of several of one name the first; null where it is not given. */
const Varnhelt::Document* DocumentKind(const Arguments& _rArguments);

/** The request for a document in a directory. @throws UsageError when the directory is empty */
SrvFrwk::XmlDirectoryConfig ToDirectoryConfig(const Arguments& _rArguments);
/** The request for a document by its directory and name. @throws UsageError when the directory is empty */
SrvFrwk::XmlPathConfig ToPathConfig(const Arguments& _rArguments);

} // namespace Vrnt
