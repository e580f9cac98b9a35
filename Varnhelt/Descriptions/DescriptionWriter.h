#pragma once

#include "Descriptions/Description.h"
#include "ZkComn_XmlParser.h"

#include <string_view>
#include <unordered_map>

/** Puts records back into the elements of a document, as their descriptions say. */
namespace Varnhelt::Documents {

/**
 * Writes every field that is no list over its attribute, child or text; one that the element lacks is added. Lists,
 * and whatever the description does not name, stay as they are.
 * @throws XmlException* code 6 when memory runs out
 */
template <class TDescription>
void WriteRecord(ZkCommon::Storage::XmlElement _cElement, const TDescription& _rstDescription,
                 const typename TDescription::Record& _rstRecord)
{
    const auto ChildOf = [&](std::wstring_view _svName) {
        const auto cChild = _cElement.FirstChild(_svName);
        return cChild ? cChild : _cElement.AddChild(_svName);
    };
    const auto WriteField = [&]<class TField>(const TField& _rstField) {
        if constexpr (!TField::g_bList) {
            const std::wstring tszText = _rstField.stConversion.Write(_rstRecord.*_rstField.pMember);
            switch (_rstField.enSource) {
            case Source::Attribute:
                _cElement.SetAttribute(_rstField.svName, tszText);
                break;
            case Source::Child:
                ChildOf(_rstField.svName).SetText(tszText);
                break;
            case Source::ChildAttribute:
                ChildOf(_rstField.svChild).SetAttribute(_rstField.svName, tszText);
                break;
            case Source::OwnText:
                _cElement.SetText(tszText);
                break;
            case Source::Derived:
                break;
            }
        }
    };
    ForEachField(_rstDescription, WriteField);
}

/**
 * Adds a record of texts, with its lists, as an element of the description's name. Empty texts are left out: absent and
 * empty are the same to the reader.
 * @throws XmlException* code 6 when memory runs out
 */
template <class TDescription>
ZkCommon::Storage::XmlElement AddRecord(ZkCommon::Storage::XmlElement _cParent, const TDescription& _rstDescription,
                                        const typename TDescription::Record& _rstRecord)
{
    ZkCommon::Storage::XmlElement cElement = _cParent.AddChild(_rstDescription.svElement);
    ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
        if constexpr (TField::g_bList) {
            for (const auto& stRecord : _rstRecord.*_rstField.pMember) {
                AddRecord(cElement, *_rstField.pDescription, stRecord);
            }
        } else if (const std::wstring& rtszText = _rstRecord.*_rstField.pMember; !rtszText.empty()) {
            if (_rstField.enSource == Source::Attribute) {
                cElement.SetAttribute(_rstField.svName, rtszText);
            } else {
                cElement.AddChild(_rstField.svName).SetText(rtszText);
            }
        }
    });
    return cElement;
}

/**
 * The children of an element by a key of theirs, found in one pass: storing many records into many elements is then no
 * search for each record. Of several elements with one key it knows the first.
 */
template <class TKey>
class ElementIndex
{
public:
    /** @param _fnKeyOf  gives the key of an element */
    template <class TKeyOf>
    ElementIndex(const ZkCommon::Storage::XmlElement& _rContainer, std::wstring_view _svElement, const TKeyOf& _fnKeyOf)
    {
        const ZkCommon::Storage::XmlName name = _rContainer.FindName(_svElement);
        for (auto cElement = _rContainer.FirstChild(name); cElement; cElement = cElement.NextSibling(name)) {
            m_mapElement.try_emplace(_fnKeyOf(cElement), cElement);
        }
    }

    /** Empty when no element has the key. */
    ZkCommon::Storage::XmlElement Find(const TKey& _rKey) const
    {
        const auto itFound = m_mapElement.find(_rKey);
        return itFound != m_mapElement.end() ? itFound->second : ZkCommon::Storage::XmlElement();
    }

private:
    std::unordered_map<TKey, ZkCommon::Storage::XmlElement> m_mapElement;
};

} // namespace Varnhelt::Documents
