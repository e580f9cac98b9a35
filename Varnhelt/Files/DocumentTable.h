#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/** Every configuration document: its file, where that is, and how it is stored. */
namespace Varnhelt {

/** Where a document's file is. */
enum class Location
{
    Installed, // in the product's installation folder
    Directory, // in the request's directory, under its fixed name
    Path,      // where the request says
};

/** The documents, in the order of their table. */
enum class DocumentId : std::uint8_t
{
    ServiceUnits,
    Policy,
    EnforceData,
    PuIds,
    VersionInfo,
    CompetitorActions,
    CompetitorDetections,
    Compatibility,
    PreUpdateList,
    Alias,
    Component,
    KeyConfig,
    RegistryData,
    ThreatsOrkap,
    ThreatsElmap,
    LocalUpdate,
    None, // past the last
};

struct Document
{
    DocumentId enId;
    std::wstring_view svName; // as the tool calls it; both tables of threats have one name
    const wchar_t* pszFile;   // null where the request names the file
    Location enLocation;
    const char* szKey;      // the 16 characters of its key; null for a plain document
    const wchar_t* pszRoot; // the path of the element that its reader starts from
};

/** Every document, in the order of DocumentId. */
std::span<const Document> DocumentTable() noexcept;

const Document& DocumentOf(DocumentId _enId) noexcept;

/** The first document of that name; null when there is none. */
const Document* FindDocument(std::wstring_view _svName) noexcept;

} // namespace Varnhelt
