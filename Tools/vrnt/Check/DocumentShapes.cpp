// What stands around the records of each document, and the rules that no description holds.

#include "Check/DocumentShape.h"
#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/EnforceData.h"
#include "Documents/KeyConfig.h"
#include "Documents/LocalUpdate.h"
#include "Documents/Policy.h"
#include "Documents/PreUpdateList.h"
#include "Documents/PuIds.h"
#include "Documents/RegistryData.h"
#include "Documents/ServiceUnits.h"
#include "Documents/Threats.h"
#include "Documents/UpdateWords.h"
#include "Documents/VersionInfo.h"
#include "Output/Output.h"
#include "Update/LocalUpdateAgent.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cwctype>
#include <list>

namespace Vrnt {

namespace {

namespace Documents = Varnhelt::Documents;
namespace UpdateWords = Varnhelt::UpdateWords;
using Varnhelt::DocumentId;
using ZkCommon::String::ToUtf8;

/** An optional attribute, whose text may be anything or one of the words. */
AttributeShape Filter(std::wstring_view _svName, const Frwk::WordTable* _pWords = nullptr,
                      Strange _enStrange = Strange::Default)
{
    TextShape stText{.pWords = _pWords, .enStrange = _enStrange, .bOptional = true};
    stText.enKind = _pWords != nullptr ? TextShape::Kind::Word : TextShape::Kind::Any;
    return {_svName, std::move(stText)};
}

/** The names of systems, behind words that mean something else. */
std::vector<Frwk::Word> SystemNames(std::vector<Frwk::Word> _vecWord)
{
    for (const ZkCommon::Platform::OsTypeName& stName : ZkCommon::Platform::g_aOsTypeName) {
        _vecWord.push_back({stName.svName, stName.ulOsType});
    }
    return _vecWord;
}

/** A "Registry" element: where values lie, and the values. */
ElementShape RegistryShape()
{
    static const std::vector<Frwk::Word> vecSystem = SystemNames({{L"", 0}});
    static const Frwk::WordTable stSystem{.aWord = vecSystem, .stDefaults = {}, .bAnyCase = true};
    ElementShape stValue = ShapeOf(Documents::g_stDeployKey);
    stValue.vecAttribute.push_back(Filter(Documents::g_svOsType, &stSystem, Strange::Refuse));
    stValue.vecAttribute.push_back(Filter(Documents::g_svAssign));
    stValue.stText->bOptional = true;
    ElementShape stRegistry{.svName = Documents::g_svRegistry, .bMany = true};
    stRegistry.vecAttribute.push_back({Documents::g_svRegistryRoot,
                                       {.enKind = TextShape::Kind::Word,
                                        .pWords = &Documents::g_stRegistryRoot,
                                        .tszDefault = L"the root of the one before it"}});
    stRegistry.vecAttribute.push_back({Documents::g_svRegistryKey, {}});
    stRegistry.vecChild.push_back(std::move(stValue));
    return stRegistry;
}

/** Adds what registry values are read from to the element that holds them. */
void AddRegistry(ElementShape& _rstShape)
{
    std::erase_if(_rstShape.vecChild,
                  [](const ElementShape& _rstChild) { return _rstChild.svName == Documents::g_svRegistry; });
    _rstShape.vecChild.push_back(RegistryShape());
    _rstShape.vecChild.push_back({.svName = Documents::g_svIniFile, .bMany = true, .bUnread = true});
}

ElementShape KeyConfigShape()
{
    ElementShape stShape;
    AddRegistry(stShape);
    return stShape;
}

ElementShape ComponentShape()
{
    static const std::vector<Frwk::Word> vecSystem = SystemNames({{L"", 0}, {Documents::g_svAllPlatforms, 0}});
    static const Frwk::WordTable stSystem{.aWord = vecSystem, .stDefaults = {}};
    ElementShape stComponent = ShapeOf(Documents::g_stDeployComponent);
    AddRegistry(stComponent);
    // Another word for the run mode means all modes; a system that does not exist is none.
    stComponent.vecAttribute.push_back(Filter(Documents::g_svExecute, &Documents::g_stExecute));
    stComponent.vecAttribute.push_back(Filter(Documents::g_svPlatform, &stSystem, Strange::Drop));
    stComponent.vecAttribute.push_back(Filter(Documents::g_svProcess));
    ElementShape stShape;
    for (const std::wstring_view svSection : {Documents::g_svInstall, Documents::g_svUninstall}) {
        ElementShape& rstSection = stShape.Child(svSection);
        rstSection.bOptional = false;
        rstSection.vecChild.push_back(stComponent);
    }
    return stShape;
}

ElementShape CompatibilityShape()
{
    static const Frwk::WordTable stEnabled{Frwk::Words::g_stBoolean.aWord, {}};
    ElementShape stShape;
    stShape.vecChild.push_back(ShapeOf(Documents::g_stCompatibilityPlatform));
    ElementShape& rstProduct = stShape.vecChild.back().Child(Documents::g_stCompatibilityProduct.svElement);
    // A name that no document can hold.
    std::erase_if(rstProduct.vecChild,
                  [](const ElementShape& _rstChild) { return std::iswdigit(_rstChild.svName.front()) != 0; });
    ElementShape& rstComponent = rstProduct.Child(L"Components").Child(Documents::g_stCompatibilityComponent.svElement);
    rstComponent.stText = TextShape{.enKind = TextShape::Kind::Word, .pWords = &stEnabled, .enStrange = Strange::Drop};
    return stShape;
}

ElementShape PreUpdateShape()
{
    ElementShape stComponent = ShapeOf(Documents::g_stCompatibilityComponent);
    stComponent.svName = Documents::g_svRequestComponent;
    for (AttributeShape& rstAttribute : stComponent.vecAttribute) {
        rstAttribute.stText.bOptional = true; // all of them are written
    }
    ElementShape stShape{.svName = {}, .bForeign = true};
    ElementShape& rstProduct = stShape.Child(Documents::g_svRequestProduct);
    rstProduct.bForeign = true;
    rstProduct.bOptional = false;
    rstProduct.bIndispensable = true;
    rstProduct.vecAttribute.push_back(Filter(Documents::g_svRequestPlatform));
    ElementShape& rstList = rstProduct.Child(Documents::g_svRequestComponents);
    rstList.bOptional = false;
    rstList.bIndispensable = true;
    rstList.vecChild.push_back(std::move(stComponent));
    return stShape;
}

void CheckRegKey(const XmlElement& _rReg, const Told& _fnTell)
{
    const std::wstring_view svKey = _rReg.Attribute(Documents::g_svRegKey);
    const std::size_t uRoot = svKey.find(L'\\');
    if (uRoot == std::wstring_view::npos) {
        _fnTell(Strange::Refuse, Quoted(Documents::g_svRegKey) + " has no backslash: " + Quoted(svKey));
    } else if (svKey.substr(0, uRoot) != Documents::g_svRegRoot) {
        _fnTell(Strange::Refuse, "the root of a key must be " + Quoted(Documents::g_svRegRoot) + ", and is " +
                                     Quoted(svKey.substr(0, uRoot)));
    }
}

void CheckRegistryDatum(const XmlElement& _rElement, const Told& _fnTell)
{
    const auto stData = FieldsOf(_rElement, Documents::g_stRegistryData);
    const bool bNumber = stData.ulType == REG_DWORD || stData.ulType == REG_QWORD;
    if (bNumber && !ZkCommon::String::ToWholeNumber64(stData.tszValue)) {
        _fnTell(Strange::Default, "the value " + Quoted(stData.tszValue) + " is no whole number: read as 0");
    } else if (stData.ulType == REG_BINARY && !_rElement.FirstChild(L"Value")) {
        _fnTell(Strange::Default, "\"Value\" is missing: read as empty");
    }
}

ElementShape RegistryDataShape()
{
    ElementShape stData = ShapeOf(Documents::g_stRegistryData);
    stData.Child(L"Value").bOptional = true; // the rule tells where it is needed
    stData.fnRule = &CheckRegistryDatum;
    ElementShape stShape;
    ElementShape& rstComponent = stShape.Child(Documents::g_svRegistryComponent);
    rstComponent.bMany = true;
    rstComponent.vecAttribute.push_back({Documents::g_svComponentLabel, {}});
    ElementShape& rstReg = rstComponent.Child(Documents::g_svReg);
    rstReg.bMany = true;
    rstReg.vecAttribute.push_back({Documents::g_svRegKey, {.bOptional = true}}); // the rule tells
    rstReg.vecAttribute.push_back(
        {Documents::g_svRegAccess, {.enKind = TextShape::Kind::Word, .pWords = &Documents::g_stRegAccess}});
    rstReg.fnRule = &CheckRegKey;
    rstReg.vecChild.push_back(std::move(stData));
    return stShape;
}

/** The elements that the look-ups search, of all look-ups into the larger table. */
ElementShape ThreatsShape()
{
    static const std::wstring tszNumber(Documents::g_svTextNumber.begin(), Documents::g_svTextNumber.end());
    static std::list<std::wstring> lstElement; // their names, wide
    ElementShape stShape;
    for (const Documents::TextLookup& stLookup : Documents::g_aTextLookup) {
        const std::wstring_view svPath = stLookup.pszRoot;
        ElementShape& rstSection = stShape.Child(svPath.substr(svPath.rfind(L'/') + 1));
        const std::wstring& rtszElement = lstElement.emplace_back(ZkCommon::String::FromUtf8(stLookup.szElement));
        ElementShape& rstEntry = rstSection.Child(rtszElement);
        if (!rstEntry.bMany) {
            rstEntry.bMany = true;
            rstEntry.vecAttribute.push_back({tszNumber, {.enKind = TextShape::Kind::Decimal, .tszDefault = L"0"}});
            rstEntry.fnIdentity = [](const XmlElement& _rElement) {
                const std::string sNumber = ToUtf8(_rElement.Attribute(tszNumber));
                return std::to_wstring(Documents::ToThreatNumber(sNumber.c_str()));
            };
        }
        for (const wchar_t* pszText : {stLookup.pszText, stLookup.pszSecondText}) {
            if (pszText != nullptr) {
                ElementShape& rstText = rstEntry.Child(pszText);
                // A table has all texts of its entries, or, as the smaller one, names alone.
                const bool bInBoth = stLookup.enDocument == DocumentId::ThreatsOrkap;
                rstText.bOptional = rstText.stText ? rstText.bOptional : !bInBoth;
                rstText.stText = TextShape{};
            }
        }
    }
    return stShape;
}

/** Whether the value of an entry can be stored as what its type says. */
void CheckUpdateValue(const XmlElement& _rEntry, const Told& _fnTell)
{
    // What entries of both kinds have.
    const auto stEntry = FieldsOf(_rEntry, Documents::g_stLocalUpdateIniEntry);
    const Frwk::Word* pType = Frwk::Utility::FindWord(UpdateWords::g_stType, stEntry.tszType);
    if (pType == nullptr || !Documents::IsStoring(stEntry)) {
        return;
    }
    const std::wstring_view svValue = stEntry.tszValue;
    const std::string sIs = "the value " + Quoted(svValue) + " is ";
    const bool bNumber = pType->ulValue == UpdateWords::TypeUint32 || pType->ulValue == UpdateWords::TypeUint64;
    if (bNumber && Documents::IsAction(stEntry, UpdateWords::ActionAppend)) {
        _fnTell(Strange::Drop, "nothing can be appended to a number");
    } else if (pType->ulValue == UpdateWords::TypeUint32 && !ZkCommon::String::ToWholeNumber(svValue)) {
        _fnTell(Strange::Drop, sIs + "no whole number of 32 bits");
    } else if (pType->ulValue == UpdateWords::TypeUint64 && !ZkCommon::String::ToWholeNumber64(svValue)) {
        _fnTell(Strange::Drop, sIs + "no whole number of 64 bits");
    } else if (pType->ulValue == UpdateWords::TypeBinary &&
               (svValue.size() < 2 || !std::ranges::all_of(svValue.substr(0, svValue.size() & ~std::size_t{1}),
                                                           [](wchar_t _c) { return std::iswxdigit(_c) != 0; }))) {
        _fnTell(Strange::Drop, sIs + "no row of hexadecimal digits, two a byte");
    }
}

void CheckVersions(const XmlElement& _rElement, const Told& _fnTell)
{
    for (const std::wstring_view svName : {L"minversion", L"maxversion"}) {
        if (_rElement.HasAttribute(svName) && !Varnhelt::CompareVersion(_rElement.Attribute(svName), L"1")) {
            _fnTell(Strange::Drop, Quoted(svName) + " is no version: " + Quoted(_rElement.Attribute(svName)));
        }
    }
}

template <class TDescription>
ElementShape UpdateItemShape(const TDescription& _rstDescription)
{
    ElementShape stItem = ShapeOf(_rstDescription);
    stItem.bAbbreviated = true;
    stItem.fnRule = &CheckVersions;
    stItem.vecChild.back().fnRule = [](const XmlElement& _rEntry, const Told& _fnTell) {
        CheckVersions(_rEntry, _fnTell);
        CheckUpdateValue(_rEntry, _fnTell);
    };
    return stItem;
}

ElementShape LocalUpdateShape()
{
    ElementShape stShape{.svName = {}, .bRefusesOthers = true};
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateVersion));
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateCheck, &UpdateWords::g_stYesNo));
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateStay, &UpdateWords::g_stYesNo));
    stShape.vecChild.push_back(UpdateItemShape(Documents::g_stLocalUpdateRegistry));
    stShape.vecChild.push_back(UpdateItemShape(Documents::g_stLocalUpdateIniFile));
    stShape.vecChild.push_back(
        {.svName = Varnhelt::g_szDirectoryKind, .bAbbreviated = true, .bMany = true, .bUnread = true});
    return stShape;
}

/** An element that holds the records of a description and nothing else. */
template <class TDescription>
ElementShape ListShape(const TDescription& _rstDescription)
{
    ElementShape stShape;
    stShape.vecChild.push_back(ShapeOf(_rstDescription));
    return stShape;
}

/** The shape of the element that a document's reader starts from. */
ElementShape StartShape(DocumentId _enDocument)
{
    switch (_enDocument) {
    case DocumentId::ServiceUnits:
        return ListShape(Documents::g_stServiceUnit);
    case DocumentId::Policy:
        return ListShape(Documents::g_stPolicyController);
    case DocumentId::EnforceData:
        return ListShape(Documents::g_stDataController);
    case DocumentId::PuIds:
        return ListShape(Documents::g_stPuIdEntry);
    case DocumentId::VersionInfo:
        return ListShape(Documents::g_stVersionInformation);
    case DocumentId::CompetitorActions:
        return ListShape(Documents::g_stCompetitorAction);
    case DocumentId::CompetitorDetections:
        return ListShape(Documents::g_stCompetitorDetection);
    case DocumentId::Compatibility:
        return CompatibilityShape();
    case DocumentId::PreUpdateList:
        return PreUpdateShape();
    case DocumentId::Alias:
        return ListShape(Documents::g_stDeployAlias);
    case DocumentId::Component:
        return ComponentShape();
    case DocumentId::KeyConfig:
        return KeyConfigShape();
    case DocumentId::RegistryData:
        return RegistryDataShape();
    case DocumentId::LocalUpdate:
        return LocalUpdateShape();
    default:
        return ThreatsShape();
    }
}

} // namespace

bool IsThreats(const Varnhelt::Document& _rstDocument)
{
    return _rstDocument.enId == DocumentId::ThreatsOrkap || _rstDocument.enId == DocumentId::ThreatsElmap;
}

bool ElementShape::Matches(std::wstring_view _svName) const
{
    return bAnyName || (bAbbreviated ? _svName.size() <= svName.size() &&
                                           ZkCommon::String::EqualsNoCase(_svName, svName, _svName.size())
                                     : _svName == svName);
}

const AttributeShape* ElementShape::FindAttribute(std::wstring_view _svName) const
{
    const auto itFound = std::ranges::find(vecAttribute, _svName, &AttributeShape::svName);
    return itFound == vecAttribute.end() ? nullptr : &*itFound;
}

ElementShape& ElementShape::Child(std::wstring_view _svName)
{
    const auto itFound = std::ranges::find(vecChild, _svName, &ElementShape::svName);
    return itFound != vecChild.end() ? *itFound : vecChild.emplace_back(ElementShape{.svName = _svName});
}

ElementShape ShapeOf(const Varnhelt::Document& _rstDocument)
{
    // The elements on the way to the one that the reader starts from hold nothing but that.
    ElementShape stShape = StartShape(_rstDocument.enId);
    std::wstring_view svPath = _rstDocument.pszRoot;
    if (IsThreats(_rstDocument)) {
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

std::wstring DefaultWord(const TextShape& _rstText)
{
    if (_rstText.pWords == nullptr || !_rstText.tszDefault.empty()) {
        return _rstText.tszDefault;
    }
    const Frwk::Word* pEmpty = Frwk::Utility::FindWord(*_rstText.pWords, {});
    return WordOf(*_rstText.pWords, pEmpty != nullptr ? pEmpty->ulValue : _rstText.pWords->stDefaults.ulUnknownText);
}

} // namespace Vrnt
