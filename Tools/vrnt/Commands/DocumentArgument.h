#pragma once

#include "Files/DocumentTable.h"
#include "Tool.h"

/** Documents as the command line names them. */
namespace Vrnt {

/** The names, each once, in the order of the documents' table. */
std::vector<std::string> DocumentNames();

/** Adds the required option "--document D". */
void AddDocumentOption(CLI::App* _pCommand, std::string& _rsDocument);

/** The first document of a name that DocumentNames has. */
const Varnhelt::Document& DocumentNamed(const std::string& _rsName);

} // namespace Vrnt
