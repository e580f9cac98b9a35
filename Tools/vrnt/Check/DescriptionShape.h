#pragma once

#include "Check/DocumentShape.h"
#include "Descriptions/DescriptionReader.h"

#include <type_traits>
#include <utility>

/** Shapes from the descriptions of records. A description must outlive its shape. */
namespace Vrnt {

/** A record as its element has it, without its lists, and whatever it would be dropped for. */
template <class TDescription>
typename TDescription::Record FieldsOf(const XmlElement& _rElement, const TDescription& _rstDescription)
{
    typename TDescription::Record stRecord;
    Varnhelt::Documents::ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
        if constexpr (!TField::g_bList) {
            if (_rstField.enSource != Varnhelt::Documents::Source::Derived) {
                auto& rMember = stRecord.*_rstField.pMember;
                rMember = static_cast<std::decay_t<decltype(rMember)>>(_rstField.stConversion.Read(
                    Varnhelt::Documents::TextOf(_rElement, _rstField, _rstField.svName, _rstField.svChild)));
            }
        }
    });
    return stRecord;
}

/** A question about a record, or what it derives from, as one about its element. */
template <class TDescription, class TAnswer, class TAsked>
std::function<TAnswer(const XmlElement&)> AsksElement(const TDescription& _rstDescription,
                                                      TAnswer (*_pfnAsk)(const TAsked&))
{
    if (_pfnAsk == nullptr) {
        return {};
    }
    return [&_rstDescription, _pfnAsk](const XmlElement& _rElement) {
        return _pfnAsk(FieldsOf(_rElement, _rstDescription));
    };
}

template <class TRecord, class TValue, class TConversion>
TextShape ShapeOfText(const Varnhelt::Documents::Field<TRecord, TValue, TConversion>& _rstField)
{
    const TConversion& rstConversion = _rstField.stConversion;
    TextShape stText;
    if (const Frwk::WordTable* pWords = rstConversion.WordsOf(); pWords != nullptr) {
        stText = WordShape(*pWords);
    } else {
        stText.fnAccepts = [&rstConversion](std::wstring_view _svText) { return rstConversion.Accepts(_svText); };
        stText.fnRead = [&rstConversion](std::wstring_view _svText) {
            return rstConversion.Write(rstConversion.Read(_svText));
        };
    }
    if constexpr (std::is_integral_v<TValue>) {
        constexpr bool b32Bit = sizeof(TValue) <= sizeof(std::uint32_t);
        stText.sForm = b32Bit ? "whole number of 32 bits" : "whole number of 64 bits";
        stText.enKind = stText.pWords == nullptr && b32Bit ? TextShape::Kind::Number : stText.enKind;
    } else if constexpr (requires { TConversion::g_szForm; }) {
        stText.sForm = TConversion::g_szForm;
    }
    stText.szKey = _rstField.szKey;
    stText.svAbsent = _rstField.svDefault;
    stText.sElse = _rstField.szElse != nullptr ? _rstField.szElse : "";
    stText.enStrange = _rstField.enStrange;
    stText.bOptional = _rstField.bOptional;
    return stText;
}

template <class TDescription>
ElementShape ShapeOfRecord(const TDescription& _rstDescription);

/** Puts the text of a field where it is in the record's element. */
template <class TField>
void AddText(ElementShape& _rstShape, const TField& _rstField, TextShape _stText)
{
    using Varnhelt::Documents::Source;
    switch (_rstField.enSource) {
    case Source::Attribute:
        _rstShape.vecAttribute.push_back({_rstField.svName, std::move(_stText)});
        break;
    case Source::Child: {
        ElementShape& rstChild = _rstShape.Child(_rstField.svName);
        rstChild.bOptional = _stText.bOptional;
        rstChild.vecText.push_back(std::move(_stText));
        break;
    }
    case Source::ChildAttribute: {
        ElementShape& rstChild = _rstShape.Child(_rstField.svChild);
        rstChild.bOptional = false;
        rstChild.vecAttribute.push_back({_rstField.svName, std::move(_stText)});
        break;
    }
    case Source::OwnText:
        _rstShape.vecText.push_back(std::move(_stText));
        break;
    case Source::Derived:
        break;
    }
}

template <class TDescription, class TField>
void AddField(ElementShape& _rstShape, const TDescription& _rstDescription, const TField& _rstField)
{
    if constexpr (!TField::g_bList) {
        TextShape stText = ShapeOfText(_rstField);
        stText.fnStrange = AsksElement(_rstDescription, _rstField.pfnStrange);
        AddText(_rstShape, _rstField, std::move(stText));
    } else if constexpr (TField::g_bTexts) {
        ElementShape& rstChild = _rstShape.Child(_rstField.svElement);
        rstChild.bMany = true;
        rstChild.vecAttribute.push_back(
            {_rstField.svName, {.fnAccepts = &Varnhelt::Documents::FilledText::Accepts, .enStrange = Strange::Drop}});
    } else {
        ElementShape* pContainer = &_rstShape;
        if (!_rstField.svPath.empty()) {
            const std::wstring_view svPath = _rstField.svPath;
            pContainer = &_rstShape.Child(svPath.starts_with(L"./") ? svPath.substr(2) : svPath);
            pContainer->bOptional = false;
            pContainer->fnRead = AsksElement(_rstDescription, _rstField.pfnWhen);
        }
        pContainer->vecChild.push_back(ShapeOfRecord(*_rstField.pDescription));
    }
}

/** What a record's fields of identity are in its element; none where it has none. */
template <class TDescription>
std::function<std::wstring(const XmlElement&)> IdentityOf(const TDescription& _rstDescription)
{
    using Varnhelt::Documents::ForEachField;
    bool bIdentity = false;
    ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
        if constexpr (!TField::g_bList) {
            bIdentity = bIdentity || _rstField.bIdentity;
        }
    });
    if (!bIdentity) {
        return {};
    }
    return [&_rstDescription](const XmlElement& _rElement) {
        const auto stRecord = FieldsOf(_rElement, _rstDescription);
        std::wstring tszIdentity;
        ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
            if constexpr (!TField::g_bList) {
                if (_rstField.bIdentity) {
                    tszIdentity += _rstField.stConversion.Write(stRecord.*_rstField.pMember) + L'\n';
                }
            }
        });
        return tszIdentity;
    };
}

/** The shape of a record's element, of which there may be many. */
template <class TDescription>
ElementShape ShapeOfRecord(const TDescription& _rstDescription)
{
    ElementShape stShape{
        .svName = _rstDescription.svElement, .bAnyName = _rstDescription.svElement.empty(), .bMany = true};
    Varnhelt::Documents::ForEachField(_rstDescription,
                                      [&](const auto& _rstField) { AddField(stShape, _rstDescription, _rstField); });
    if (!_rstDescription.svTitle.empty()) {
        AttributeShape& rstTitle = stShape.vecAttribute.emplace_back(Filter(_rstDescription.svTitle));
        rstTitle.stText.enStrange = Strange::Unread;
    }
    stShape.fnIdentity = IdentityOf(_rstDescription);
    return stShape;
}

/** An element that holds the records of a description and nothing else. */
template <class TDescription>
ElementShape ListShape(const TDescription& _rstDescription)
{
    ElementShape stShape;
    stShape.vecChild.push_back(ShapeOfRecord(_rstDescription));
    return stShape;
}

} // namespace Vrnt
