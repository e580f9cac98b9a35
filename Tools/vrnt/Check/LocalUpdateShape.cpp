// Descriptions of local updates.

#include "Check/DescriptionShape.h"
#include "Check/Shapes.h"
#include "Documents/LocalUpdate.h"
#include "Documents/UpdateWords.h"
#include "Update/UpdateValue.h"

namespace Vrnt::Shapes {

namespace {

namespace Documents = Varnhelt::Documents;
namespace UpdateWords = Varnhelt::UpdateWords;

using RuleOf = void (*)(const XmlElement&, const OnFinding&);

/** The type of an entry that stores; null where it stores nothing, or nothing that is known. */
const Varnhelt::UpdateValueType* StoredType(const Varnhelt::LocalUpdateEntry& _rstEntry)
{
    return Documents::IsStoring(_rstEntry) ? Varnhelt::FindUpdateValueType(_rstEntry.tszType) : nullptr;
}

bool IsVainAppend(const Varnhelt::LocalUpdateEntry& _rstEntry, const Varnhelt::UpdateValueType& _rstType)
{
    return !_rstType.bAppend && Documents::IsAction(_rstEntry, UpdateWords::ActionAppend);
}

constexpr const char* g_szVainAppend = "nothing can be appended to a number";

/** An ini file holds any value as a text. */
void CheckIniEntry(const XmlElement& _rEntry, const OnFinding& _fnFinding)
{
    const auto stEntry = FieldsOf(_rEntry, Documents::g_stLocalUpdateIniEntry);
    const Varnhelt::UpdateValueType* pType = StoredType(stEntry);
    if (pType != nullptr && IsVainAppend(stEntry, *pType)) {
        _fnFinding(Strange::Drop, g_szVainAppend);
    }
}

/** What the texts of a type are, for people. */
const char* FormOf(UpdateWords::Type _enType)
{
    switch (_enType) {
    case UpdateWords::TypeUint32:
        return "whole number of 32 bits";
    case UpdateWords::TypeUint64:
        return "whole number of 64 bits";
    case UpdateWords::TypeBinary:
        return "row of hexadecimal digits, two a byte";
    default:
        return "text";
    }
}

/** Whether the registry takes the name of what an entry makes: a key below the item's, or a value. */
bool IsNameTaken(const Varnhelt::LocalUpdateEntry& _rstEntry)
{
    using ZkCommon::Storage::Registry;
    if (Documents::IsAction(_rstEntry, UpdateWords::ActionCreate)) {
        return Registry::IsPath(L"Path\\" + _rstEntry.tszName);
    }
    return !Documents::IsStoring(_rstEntry) || _rstEntry.tszName.size() <= Registry::g_uLongestValueName;
}

/** The registry holds what the type says. */
void CheckRegistryEntry(const XmlElement& _rEntry, const OnFinding& _fnFinding)
{
    const auto stEntry = FieldsOf(_rEntry, Documents::g_stLocalUpdateValue);
    if (!IsNameTaken(stEntry)) {
        _fnFinding(Strange::Drop, "the registry takes no name as long as " + Cited(stEntry.tszName));
    }
    const Varnhelt::UpdateValueType* pType = StoredType(stEntry);
    if (pType == nullptr) {
        return;
    }
    if (IsVainAppend(stEntry, *pType)) {
        _fnFinding(Strange::Drop, g_szVainAppend);
    } else if (!pType->Of(stEntry.tszValue)) {
        _fnFinding(Strange::Drop, "the value " + Cited(stEntry.tszValue) + " is no " + FormOf(pType->enType));
    }
}

/** Says what the conditions of an item or an entry are to the description's reader. */
void SetConditions(ElementShape& _rstShape, const XmlElement& _rRoot)
{
    const bool bChecked = _rRoot.Attribute(Varnhelt::g_svUpdateCheck) == UpdateWords::g_svYes;
    Documents::ForEachField(Documents::g_stUpdateConditions, [&](const auto& _rstField) {
        TextShape& rstText = _rstShape.FindAttribute(_rstField.svName)->stText;
        rstText.bOptional = !bChecked;
        rstText.enStrange = bChecked || !_rRoot ? rstText.enStrange : Strange::Unread;
        rstText.sWhen = R"(Applies where the root's "check" is "yes", and is needed there.)";
    });
}

template <class TDescription>
ElementShape ItemShape(const TDescription& _rstDescription, const XmlElement& _rRoot, RuleOf _pfnRule)
{
    ElementShape stItem = ShapeOfRecord(_rstDescription);
    stItem.bAbbreviated = true;
    SetConditions(stItem, _rRoot);
    ElementShape& rstEntry = stItem.vecChild.back();
    SetConditions(rstEntry, _rRoot);
    rstEntry.fnRule = _pfnRule;
    return stItem;
}

} // namespace

ElementShape LocalUpdate(const XmlElement& _rRoot)
{
    ElementShape stShape{.svName = {}, .bRefusesOthers = true};
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateVersion));
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateCheck, UpdateWords::g_stYesNo));
    stShape.vecAttribute.push_back(Filter(Varnhelt::g_svUpdateStay, UpdateWords::g_stYesNo));
    stShape.vecChild.push_back(ItemShape(Documents::g_stLocalUpdateRegistry, _rRoot, &CheckRegistryEntry));
    stShape.vecChild.push_back(ItemShape(Documents::g_stLocalUpdateIniFile, _rRoot, &CheckIniEntry));
    stShape.vecChild.push_back(
        {.svName = Varnhelt::g_szDirectoryKind, .bAbbreviated = true, .bMany = true, .bUnread = true});
    return stShape;
}

} // namespace Vrnt::Shapes
