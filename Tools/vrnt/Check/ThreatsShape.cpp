// The tables of threats: what the look-ups search, of all look-ups into the larger table.

#include "Check/Shapes.h"
#include "Documents/Threats.h"
#include "ZkComn_String.h"

#include <iterator>
#include <string>
#include <vector>

namespace Vrnt::Shapes {

namespace {

namespace Documents = Varnhelt::Documents;
using ZkCommon::String::FromUtf8;

std::uint32_t NumberOf(std::wstring_view _svId)
{
    return Documents::ToThreatNumber(ZkCommon::String::ToUtf8(_svId).c_str());
}

TextShape NumberShape()
{
    return {
        .enKind = TextShape::Kind::Decimal,
        .fnAccepts = [](std::wstring_view _svId) { return Documents::IsThreatNumber(ZkCommon::String::ToUtf8(_svId)); },
        .fnRead = [](std::wstring_view _svId) { return std::to_wstring(NumberOf(_svId)); },
        .sForm = "whole number of 32 bits"};
}

/** Whether a table has any of the texts that the smaller table has not. */
bool HasTexts(const XmlElement& _rRoot, const ElementShape& _rstShape)
{
    for (const ElementShape& stSection : _rstShape.vecChild) {
        const XmlElement cSection = _rRoot.FirstChild(stSection.svName);
        if (stSection.bOptional && cSection) {
            return true;
        }
        for (auto cEntry = cSection.FirstChild(); cEntry; cEntry = cEntry.NextSibling()) {
            for (const ElementShape& stText : stSection.vecChild.front().vecChild) {
                if (stText.bOptional && cEntry.FirstChild(stText.svName)) {
                    return true;
                }
            }
        }
    }
    return false;
}

/** The name of a look-up's element, as shapes have names: for as long as the process runs. */
std::wstring_view ElementName(const Documents::TextLookup& _rstLookup)
{
    static const std::vector<std::wstring> vecName = [] {
        std::vector<std::wstring> vecMade;
        for (const Documents::TextLookup& stLookup : Documents::g_aTextLookup) {
            vecMade.push_back(FromUtf8(stLookup.szElement));
        }
        return vecMade;
    }();
    return vecName[static_cast<std::size_t>(&_rstLookup - std::begin(Documents::g_aTextLookup))];
}

/** A look-up's element and the texts that it gives. A table has all of them, or, as the smaller one, names alone. */
void AddLookup(ElementShape& _rstShape, const Documents::TextLookup& _rstLookup)
{
    static const std::wstring tszNumber = FromUtf8(Documents::g_svTextNumber);
    const bool bInBoth = _rstLookup.enDocument == Varnhelt::DocumentId::ThreatsOrkap;
    const std::wstring_view svPath = _rstLookup.pszRoot;
    ElementShape& rstSection = _rstShape.Child(svPath.substr(svPath.rfind(L'/') + 1));
    rstSection.bOptional = rstSection.bOptional && !bInBoth;
    ElementShape& rstEntry = rstSection.Child(ElementName(_rstLookup));
    if (!rstEntry.bMany) {
        rstEntry.bMany = true;
        rstEntry.vecAttribute.push_back({tszNumber, NumberShape()});
        rstEntry.fnIdentity = [](const XmlElement& _rElement) {
            return std::to_wstring(NumberOf(_rElement.Attribute(tszNumber)));
        };
    }
    for (const wchar_t* pszText : {_rstLookup.pszText, _rstLookup.pszSecondText}) {
        if (pszText != nullptr) {
            ElementShape& rstText = rstEntry.Child(pszText);
            rstText.bOptional = rstText.bOptional && !bInBoth;
            rstText.vecText.assign(1, {});
        }
    }
}

} // namespace

ElementShape Threats(const XmlElement& _rRoot)
{
    ElementShape stShape;
    for (const Documents::TextLookup& stLookup : Documents::g_aTextLookup) {
        AddLookup(stShape, stLookup);
    }
    if (HasTexts(_rRoot, stShape)) {
        for (ElementShape& rstSection : stShape.vecChild) {
            for (ElementShape& rstText : rstSection.vecChild.front().vecChild) {
                rstText.bOptional = false;
            }
        }
    }
    return stShape;
}

} // namespace Vrnt::Shapes
