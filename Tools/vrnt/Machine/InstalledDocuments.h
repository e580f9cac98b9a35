#pragma once

#include "Files/DocumentTable.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** The configuration documents as this machine has them. */
namespace Vrnt {

struct DocumentState
{
    const Varnhelt::Document* pDocument = nullptr;
    std::vector<std::string> vecValueType; // those that reach it, in hexadecimal
    std::wstring tszPath;                  // empty where it does not lie in the installed folder
    std::optional<std::uintmax_t> uSize;   // in bytes; std::nullopt where it is not there or is elsewhere

    bool IsInstalled() const noexcept { return pDocument->enLocation == Varnhelt::Location::Installed; }
    /** The name of its file; "(as requested)" where it has none of its own. */
    std::string FileText() const;
    /** "installed", "directory" or "path". */
    const char* LocationText() const noexcept;
};

struct InstalledDocuments
{
    std::wstring tszFolder;                 // as it is registered; empty when it is not
    std::vector<DocumentState> vecDocument; // in the order of their table

    /** The folder, or that there is none. */
    std::string FolderText() const;
};

InstalledDocuments FindInstalledDocuments();

} // namespace Vrnt
