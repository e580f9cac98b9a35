#pragma once

#include "Descriptions/Description.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentTable.h"
#include "ZkComn_XmlElement.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/**
 * The elements that a document consists of and what their readers make of them, for whatever walks over documents of all
 * kinds. The descriptions of the records say most of it; DocumentShapes.cpp adds what stands around the records.
 */
namespace Vrnt {

using Varnhelt::Documents::Strange;
using ZkCommon::Storage::XmlElement;

/** How a text is read, and what becomes of one that is not there or makes no sense. */
struct TextShape
{
    enum class Kind : std::uint8_t
    {
        Any,
        Word,
        Number32, // unsigned, in the base that its prefix tells
        Number64,
        Decimal, // signed; what begins with no number is 0
    };

    Kind enKind = Kind::Any;
    const Frwk::WordTable* pWords = nullptr;
    std::wstring tszDefault{}; // what an absent text is read as
    Strange enStrange = Strange::Default;
    bool bOptional = false;                            // its absence is nothing to tell
    std::function<bool(const XmlElement&)> fnNeeded{}; // whether it is looked at, by its owner; none: always
};

struct AttributeShape
{
    std::wstring_view svName;
    TextShape stText;
};

/** Is told what a rule of a document's own finds at an element: the severity's Strange, and the text. */
using Told = std::function<void(Strange, std::string)>;

struct ElementShape
{
    std::wstring_view svName; // of elements of any name the usual one
    bool bAnyName = false;
    bool bAbbreviated = false;                         // any beginning of the name will do, in any case
    bool bMany = false;                                // else the first counts alone
    bool bOptional = true;                             // its absence is nothing to tell
    bool bIndispensable = false;                       // without it nothing is read or written
    bool bForeign = false;                             // it holds others' attributes and elements too
    bool bUnread = false;                              // nothing of it is looked at
    bool bRefusesOthers = false;                       // an unknown child ends the reading
    std::function<bool(const XmlElement&)> fnNeeded{}; // whether it is looked at, by its owner; none: always
    std::optional<TextShape> stText{};
    std::vector<AttributeShape> vecAttribute{};
    std::vector<ElementShape> vecChild{};
    std::function<std::wstring(const XmlElement&)> fnIdentity{}; // of those with the same only the first counts
    std::function<void(const XmlElement&, const Told&)> fnRule{};

    bool Matches(std::wstring_view _svName) const;
    const AttributeShape* FindAttribute(std::wstring_view _svName) const;
    /** The child of that name; made when there is none. */
    ElementShape& Child(std::wstring_view _svName);
};

/** The shape of a document's root element. Both tables of threats have that of the larger one. */
ElementShape ShapeOf(const Varnhelt::Document& _rstDocument);

/** Whether it is one of the tables of threats. */
bool IsThreats(const Varnhelt::Document& _rstDocument);

/** What an absent text is read as, in words: "eNone", "0", "true"; empty for the empty text. */
std::wstring DefaultWord(const TextShape& _rstText);

/** A value as its table writes it; as a number where it has no word. */
std::wstring WordOf(const Frwk::WordTable& _rstTable, std::uint32_t _ulValue);

// From descriptions.

/** Reads the fields of a record that are no lists. */
struct FieldsOnly : Varnhelt::Documents::ReadHook
{
    template <class TRecord>
    bool OnRecord(const XmlElement&, const TRecord&) const
    {
        return false; // the lists are not read then
    }
};

/** A record as its element has it, without its lists. */
template <class TDescription>
typename TDescription::Record FieldsOf(const XmlElement& _rElement, const TDescription& _rstDescription)
{
    typename TDescription::Record stRecord;
    Varnhelt::Documents::ReadRecord(_rElement, _rstDescription, stRecord, FieldsOnly());
    return stRecord;
}

/** A question about a record, or what it derives from, as one about its element. */
template <class TDescription, class TAsked>
std::function<bool(const XmlElement&)> AsksElement(const TDescription& _rstDescription, bool (*_pfnAsk)(const TAsked&))
{
    if (_pfnAsk == nullptr) {
        return {};
    }
    return [&_rstDescription, _pfnAsk](const XmlElement& _rElement) {
        return _pfnAsk(FieldsOf(_rElement, _rstDescription));
    };
}

template <class TRecord, class TValue, class TConversion>
TextShape TextOf(const Varnhelt::Documents::Field<TRecord, TValue, TConversion>& _rstField)
{
    using Kind = TextShape::Kind;
    TextShape stText;
    stText.pWords = _rstField.stConversion.WordsOf();
    if (stText.pWords != nullptr) {
        stText.enKind = Kind::Word;
        stText.tszDefault = _rstField.svDefault;
    } else if constexpr (std::is_integral_v<TValue>) {
        stText.enKind = sizeof(TValue) > sizeof(std::uint32_t) ? Kind::Number64 : Kind::Number32;
        stText.tszDefault = L"0";
    } else {
        stText.tszDefault = _rstField.stConversion.Write(_rstField.stConversion.Read(_rstField.svDefault));
    }
    stText.enStrange = _rstField.enStrange;
    stText.bOptional = _rstField.bOptional;
    return stText;
}

template <class TDescription>
ElementShape ShapeOf(const TDescription& _rstDescription);

template <class TDescription, class TField>
void AddField(ElementShape& _rstShape, const TDescription& _rstDescription, const TField& _rstField)
{
    using Varnhelt::Documents::Source;
    if constexpr (!TField::g_bList) {
        TextShape stText = TextOf(_rstField);
        stText.fnNeeded =
            AsksElement(_rstDescription, _rstField.pfnNeeded != nullptr ? _rstField.pfnNeeded : _rstField.pfnWhen);
        switch (_rstField.enSource) {
        case Source::Attribute:
            _rstShape.vecAttribute.push_back({_rstField.svName, std::move(stText)});
            break;
        case Source::Child: {
            ElementShape& rstChild = _rstShape.Child(_rstField.svName);
            if (!rstChild.stText) { // of two fields that are read from one text, the first tells what it is
                rstChild.bOptional = stText.bOptional;
                rstChild.fnNeeded = stText.fnNeeded;
                rstChild.stText = std::move(stText);
            }
            break;
        }
        case Source::ChildAttribute: {
            ElementShape& rstChild = _rstShape.Child(_rstField.svChild);
            rstChild.bOptional = false;
            rstChild.vecAttribute.push_back({_rstField.svName, std::move(stText)});
            break;
        }
        case Source::OwnText:
            _rstShape.stText = std::move(stText);
            break;
        case Source::Derived:
            break;
        }
    } else if constexpr (TField::g_bTexts) {
        ElementShape& rstChild = _rstShape.Child(_rstField.svElement);
        rstChild.bMany = true;
        rstChild.vecAttribute.push_back({_rstField.svName, {.enStrange = Strange::Drop}});
    } else {
        ElementShape* pContainer = &_rstShape;
        if (!_rstField.svPath.empty()) {
            const std::wstring_view svPath = _rstField.svPath;
            pContainer = &_rstShape.Child(svPath.starts_with(L"./") ? svPath.substr(2) : svPath);
            pContainer->bOptional = false;
            pContainer->fnNeeded = AsksElement(_rstDescription, _rstField.pfnWhen);
        }
        pContainer->vecChild.push_back(ShapeOf(*_rstField.pDescription));
    }
}

/** The shape of a record's element, of which there may be many. The description must outlive it. */
template <class TDescription>
ElementShape ShapeOf(const TDescription& _rstDescription)
{
    using Varnhelt::Documents::ForEachField;
    ElementShape stShape{
        .svName = _rstDescription.svElement, .bAnyName = _rstDescription.svElement.empty(), .bMany = true};
    bool bIdentity = false;
    ForEachField(_rstDescription, [&](const auto& _rstField) {
        AddField(stShape, _rstDescription, _rstField);
        if constexpr (!std::decay_t<decltype(_rstField)>::g_bList) {
            bIdentity = bIdentity || _rstField.bIdentity;
        }
    });
    if (!_rstDescription.svTitle.empty()) {
        stShape.vecAttribute.push_back({_rstDescription.svTitle, {.bOptional = true}});
    }
    if (bIdentity) {
        stShape.fnIdentity = [&_rstDescription](const XmlElement& _rElement) {
            const auto stRecord = FieldsOf(_rElement, _rstDescription);
            std::wstring tszIdentity;
            ForEachField(_rstDescription, [&](const auto& _rstField) {
                if constexpr (!std::decay_t<decltype(_rstField)>::g_bList) {
                    if (_rstField.bIdentity) {
                        tszIdentity += _rstField.stConversion.Write(stRecord.*_rstField.pMember) + L'\n';
                    }
                }
            });
            return tszIdentity;
        };
    }
    return stShape;
}

} // namespace Vrnt
