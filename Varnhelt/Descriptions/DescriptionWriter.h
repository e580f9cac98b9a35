#pragma once

#include "Descriptions/Description.h"
#include "ZkComn_XmlParser.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>

/** Puts records back into the elements of a document, as their descriptions say. */
namespace Varnhelt::Documents {

/**
 * Writes every field that is no list over its attribute, child or text; a missing one is added. Lists,
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
 * The children of an element by the number that one of their attributes means. They are walked once, each attribute
 * is converted at most once, and no further than what was asked for. Of several children with one number it knows the
 * first.
 */
class ElementIndex
{
public:
    using Convert = std::uint32_t (*)(std::wstring_view _svText) noexcept;

    ElementIndex(const ZkCommon::Storage::XmlElement& _rContainer, std::wstring_view _svElement,
                 std::wstring_view _svAttribute, Convert _pfnConvert)
        : m_attribute(_rContainer.FindName(_svAttribute)),
          m_pfnConvert(_pfnConvert),
          m_cNext(_rContainer.FirstChild(_svElement))
    {}

    /** Empty when no element has the number. */
    ZkCommon::Storage::XmlElement Find(std::uint32_t _ulNumber)
    {
        if (const auto itFound = m_mapElement.find(_ulNumber); itFound != m_mapElement.end()) {
            return itFound->second;
        }
        while (m_cNext) {
            const ZkCommon::Storage::XmlElement cElement = m_cNext;
            m_cNext = cElement.NextNamesake();
            const std::uint32_t ulNumber = m_pfnConvert(cElement.Attribute(m_attribute));
            if (m_mapElement.try_emplace(ulNumber, cElement).second && ulNumber == _ulNumber) {
                return cElement;
            }
        }
        return {};
    }

private:
    ZkCommon::Storage::XmlName m_attribute;
    Convert m_pfnConvert;
    ZkCommon::Storage::XmlElement m_cNext; // not yet looked at
    std::unordered_map<std::uint32_t, ZkCommon::Storage::XmlElement> m_mapElement;
};

} // namespace Varnhelt::Documents
