#include "Machine/InstalledDocuments.h"

#include "Frwk_Utility.h"
#include "Output/Output.h"
#include "ValueTypeTable.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <system_error>

namespace Vrnt {

namespace {

using Varnhelt::Document;
using Varnhelt::Location;

std::vector<std::string> ValueTypesOf(const Document& _rstDocument)
{
    std::vector<std::string> vecText;
    for (const Varnhelt::ValueTypeRow& stRow : Varnhelt::ValueTypes()) {
        if (stRow.enDocument == _rstDocument.enId) {
            vecText.push_back(Hexadecimal(stRow.ulValueType, 1));
        }
    }
    return vecText;
}

std::optional<std::uintmax_t> SizeOf(const std::wstring& _rtszPath)
{
    std::error_code cError;
    const std::uintmax_t uSize = std::filesystem::file_size(_rtszPath, cError);
    return cError ? std::nullopt : std::optional(uSize);
}

} // namespace

std::string DocumentState::FileText() const
{
    return pDocument->pszFile == nullptr ? "(as requested)" : ZkCommon::String::ToUtf8(pDocument->pszFile);
}

const char* DocumentState::LocationText() const noexcept
{
    switch (pDocument->enLocation) {
    case Location::Installed:
        return "installed";
    case Location::Directory:
        return "directory";
    default:
        return "path";
    }
}

std::string InstalledDocuments::FolderText() const
{
    return tszFolder.empty() ? "(not registered)" : ZkCommon::String::ToUtf8(tszFolder);
}

InstalledDocuments FindInstalledDocuments()
{
    InstalledDocuments stFound{Frwk::Utility::GetInstalledFolder(), {}};
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        DocumentState stState{&stDocument, ValueTypesOf(stDocument), {}, std::nullopt};
        if (stState.IsInstalled() && !stFound.tszFolder.empty()) {
            stState.tszPath = Frwk::Utility::PathIn(stFound.tszFolder, stDocument.pszFile);
            stState.uSize = SizeOf(stState.tszPath);
        }
        stFound.vecDocument.push_back(std::move(stState));
    }
    return stFound;
}

} // namespace Vrnt
