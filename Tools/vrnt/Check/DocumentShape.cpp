#include "Check/DocumentShape.h"

#include "Check/Shapes.h"
#include "Documents/LocalUpdate.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <utility>

namespace Vrnt {

namespace {

using Varnhelt::DocumentId;

/** The shape of the element that a document's reader starts from. */
ElementShape StartShape(DocumentId _enDocument, const XmlElement& _rRoot)
{
    switch (_enDocument) {
    case DocumentId::ServiceUnits:
        return Shapes::ServiceUnits();
    case DocumentId::Policy:
        return Shapes::Policy();
    case DocumentId::EnforceData:
        return Shapes::EnforceData();
    case DocumentId::PuIds:
        return Shapes::PuIds();
    case DocumentId::VersionInfo:
        return Shapes::VersionInfo();
    case DocumentId::CompetitorActions:
        return Shapes::CompetitorActions();
    case DocumentId::CompetitorDetections:
        return Shapes::CompetitorDetections();
    case DocumentId::Compatibility:
        return Shapes::Compatibility();
    case DocumentId::PreUpdateList:
        return Shapes::PreUpdateList();
    case DocumentId::Alias:
        return Shapes::Alias();
    case DocumentId::Component:
        return Shapes::Component();
    case DocumentId::KeyConfig:
        return Shapes::KeyConfig();
    case DocumentId::RegistryData:
        return Shapes::RegistryData();
    case DocumentId::LocalUpdate:
        return Shapes::LocalUpdate(_rRoot);
    default:
        return Shapes::Threats(_rRoot);
    }
}

bool IsThreats(DocumentId _enDocument)
{
    return _enDocument == DocumentId::ThreatsOrkap || _enDocument == DocumentId::ThreatsElmap;
}

} // namespace

bool TextShape::Accepts(std::wstring_view _svText) const
{
    return !fnAccepts || fnAccepts(_svText) || (bOptional && _svText.empty());
}

std::wstring TextShape::ReadAs(std::wstring_view _svText) const
{
    return fnRead ? fnRead(_svText) : std::wstring(_svText);
}

TextShape WordShape(const Frwk::WordTable& _rstWords)
{
    return {
        .enKind = TextShape::Kind::Word,
        .pWords = &_rstWords,
        .fnAccepts =
            [&_rstWords](std::wstring_view _svText) { return Frwk::Utility::FindWord(_rstWords, _svText) != nullptr; },
        .fnRead =
            [&_rstWords](std::wstring_view _svText) {
                const Frwk::Word* pWord = Frwk::Utility::FindWord(_rstWords, _svText);
                return WordOf(_rstWords, pWord != nullptr ? pWord->ulValue : _rstWords.stDefaults.ulUnknownText);
            }};
}

AttributeShape Filter(std::wstring_view _svName)
{
    return {_svName, {.bOptional = true}};
}

AttributeShape Filter(std::wstring_view _svName, const Frwk::WordTable& _rstWords, Strange _enStrange)
{
    TextShape stText = WordShape(_rstWords);
    stText.enStrange = _enStrange;
    stText.bOptional = true;
    return {_svName, std::move(stText)};
}

std::string Cited(std::wstring_view _svText)
{
    constexpr std::size_t uShown = 80;
    const bool bCut = _svText.size() > uShown;
    // Not between the halves of a character.
    const bool bHalf = bCut && _svText[uShown - 1] >= 0xD800 && _svText[uShown - 1] < 0xDC00;
    std::wstring tszText(_svText.substr(0, bHalf ? uShown - 1 : uShown));
    std::ranges::replace_if(
        tszText, [](wchar_t _c) { return _c < L' '; }, L' ');
    return "\"" + ZkCommon::String::ToUtf8(tszText) + (bCut ? "..." : "") + "\"";
}

bool ElementShape::Matches(std::wstring_view _svName) const
{
    return bAnyName || (bAbbreviated ? Varnhelt::IsOfKind(_svName, svName) : _svName == svName);
}

const AttributeShape* ElementShape::FindAttribute(std::wstring_view _svName) const
{
    const auto itFound = std::ranges::find(vecAttribute, _svName, &AttributeShape::svName);
    return itFound == vecAttribute.end() ? nullptr : &*itFound;
}

AttributeShape* ElementShape::FindAttribute(std::wstring_view _svName)
{
    const auto itFound = std::ranges::find(vecAttribute, _svName, &AttributeShape::svName);
    return itFound == vecAttribute.end() ? nullptr : &*itFound;
}

ElementShape& ElementShape::Child(std::wstring_view _svName)
{
    const auto itFound = std::ranges::find(vecChild, _svName, &ElementShape::svName);
    return itFound != vecChild.end() ? *itFound : vecChild.emplace_back(ElementShape{.svName = _svName});
}

ElementShape ShapeOf(const Varnhelt::Document& _rstDocument, const XmlElement& _rRoot)
{
    // The elements on the way to the one that the reader starts from hold nothing but that.
    ElementShape stShape = StartShape(_rstDocument.enId, _rRoot);
    std::wstring_view svPath = _rstDocument.pszRoot;
    if (IsThreats(_rstDocument.enId)) {
        svPath = svPath.substr(0, svPath.rfind(L'/'));
    }
    for (;;) {
        const std::size_t uName = svPath.rfind(L'/');
        stShape.svName = svPath.substr(uName + 1);
        stShape.bOptional = false;
        stShape.bIndispensable = true;
        svPath = svPath.substr(0, uName);
        if (svPath.empty()) {
            return stShape;
        }
        ElementShape stOuter;
        stOuter.vecChild.push_back(std::move(stShape));
        stShape = std::move(stOuter);
    }
}

std::wstring WordOf(const Frwk::WordTable& _rstTable, std::uint32_t _ulValue)
{
    const auto itWord = std::ranges::find(_rstTable.aWord, _ulValue, &Frwk::Word::ulValue);
    return itWord != _rstTable.aWord.end() ? std::wstring(itWord->svText) : std::to_wstring(_ulValue);
}

} // namespace Vrnt
