#pragma once

#include "Files/DocumentTable.h"
#include "Request.h"

#include <cstdint>
#include <string_view>

/**
 * The texts of threats and scanners, by number: "StrVirus.xml" for the virus scan engine's, "antispy.xml" for the
 * spyware scan engine's.
 */
namespace Varnhelt::Documents {

/** A look-up: which table it searches, and which texts of the element with the number it gives. */
struct TextLookup
{
    const wchar_t* pszMethod;
    DocumentId enDocument;
    const wchar_t* pszRoot;
    const char* szElement; // as the parser library has its name
    const wchar_t* pszText;
    const wchar_t* pszSecondText; // null: there is none
};

enum TextLookupId : std::uint8_t
{
    LookupNameOrkap,
    LookupNameElmap,
    LookupDescription,
    LookupRecommendation,
    LookupScannerTitle,
};

/** The attribute that holds an element's number. */
inline constexpr std::string_view g_svTextNumber = "id";

/** In the order of their TextLookupId. */
inline constexpr TextLookup g_aTextLookup[] = {
    {L"CFunctionXml::QueryThreateNameORKAP()", DocumentId::ThreatsOrkap, L"/Quillmar/Threats", "Threat", L"Name",
     nullptr},
    {L"CFunctionXml::QueryThreateNameELMAP()", DocumentId::ThreatsElmap, L"/Quillmar/Threats", "Threat", L"Name",
     nullptr},
    {L"CFunctionXml::QueryThreateDesELMAP()", DocumentId::ThreatsElmap, L"/Quillmar/Threats", "Threat", L"Description",
     nullptr},
    {L"CFunctionXml::QueryThreateRecELMAP()", DocumentId::ThreatsElmap, L"/Quillmar/Threats", "Threat",
     L"Recommendation", nullptr},
    {L"CFunctionXml::QueryTitleELMAP()", DocumentId::ThreatsElmap, L"/Quillmar/Scanners", "Scanner", L"Name", L"Desc"},
};

/**
 * The number of an "id" attribute: signed decimal, 0 for a text that begins with no number, of which the
 * lower 32 bits are used.
 */
std::uint32_t ToThreatNumber(const char* _szId) noexcept;

/** Whether the text is such a number and nothing else, of 32 bits with or without a sign. */
bool IsThreatNumber(std::string_view _svId) noexcept;

/** Look the number of a ThreatText up and fill its texts, or leave it unchanged; contract as Handler. */
std::uint32_t QueryThreateNameORKAP(Worker& _rWorker, const Request& _rstRequest);
std::uint32_t QueryThreateNameELMAP(Worker& _rWorker, const Request& _rstRequest);
std::uint32_t QueryThreateDesELMAP(Worker& _rWorker, const Request& _rstRequest);
std::uint32_t QueryThreateRecELMAP(Worker& _rWorker, const Request& _rstRequest);
std::uint32_t QueryTitleELMAP(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
