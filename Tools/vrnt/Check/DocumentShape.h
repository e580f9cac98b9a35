#pragma once

#include "Descriptions/Description.h"
#include "Files/DocumentTable.h"
#include "ZkComn_XmlElement.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/**
 * The elements that a document consists of and what its reader makes of them, for whatever walks over documents of all
 * kinds. DescriptionShape.h makes most of it from the descriptions of the records; the files of Shapes.h add what is
 * around the records.
 */
namespace Vrnt {

using Varnhelt::Documents::Strange;
using ZkCommon::Storage::XmlElement;

/** How a text is read, and what becomes of one that is missing or is not accepted. */
struct TextShape
{
    /** What an accepted text looks like. */
    enum class Kind : std::uint8_t
    {
        Any,
        Word,
        Number,  // unsigned, of 32 bits, in the base that its prefix says
        Decimal, // signed
    };

    Kind enKind = Kind::Any;
    const char* szKey = nullptr; // of its field in JSON; null where no record has it
    const Frwk::WordTable* pWords = nullptr;
    std::function<bool(std::wstring_view)> fnAccepts{};      // as its reader judges; none: accepts every text
    std::function<std::wstring(std::wstring_view)> fnRead{}; // as what it is read; none: as it is
    std::wstring_view svAbsent{};                            // the text that a missing one is read as
    std::string sForm{};                                     // what an accepted text is: "whole number"
    std::string sElse{};                                     // what happens to another one, where that is no word
    std::string sWhen{};                                     // a sentence: when it is looked at
    Strange enStrange = Strange::Default;
    std::function<Strange(const XmlElement&)> fnStrange{}; // the same, where its owner's other texts decide it
    bool bOptional = false;                                // it may be empty or missing

    bool Accepts(std::wstring_view _svText) const;
    /** What becomes of a text that is missing or is not accepted, in an owner's element. */
    Strange StrangeAt(const XmlElement& _rOwner) const { return fnStrange ? fnStrange(_rOwner) : enStrange; }
    /** What a text is read as, for people: a word, a number, "none of its words"; empty for the empty text. */
    std::wstring ReadAs(std::wstring_view _svText) const;
};

/** A text that is one of the words, as a table knows them. */
TextShape WordShape(const Frwk::WordTable& _rstWords);

struct AttributeShape
{
    std::wstring_view svName;
    TextShape stText;
};

/** An attribute that may be missing, and whose text may be anything, or one of the words. */
AttributeShape Filter(std::wstring_view _svName);
AttributeShape Filter(std::wstring_view _svName, const Frwk::WordTable& _rstWords,
                      Strange _enStrange = Strange::Default);

/** Receives what a document's own rule finds at an element: what it does, and the text. */
using OnFinding = std::function<void(Strange, std::string)>;

struct ElementShape
{
    std::wstring_view svName; // of elements of any name the usual one
    bool bAnyName = false;
    bool bAbbreviated = false;                       // any beginning of the name will do, in any case
    bool bMany = false;                              // else only the first is used
    bool bOptional = true;                           // it may be missing
    bool bIndispensable = false;                     // without it nothing is read or written
    bool bForeign = false;                           // may also hold attributes and elements of other readers
    bool bUnread = false;                            // nothing of it is looked at
    bool bRefusesOthers = false;                     // an unknown child ends the reading
    std::function<bool(const XmlElement&)> fnRead{}; // whether it is read, by its owner; none: always
    std::vector<TextShape> vecText{};                // what its text is read as; in case of several, the first shows
    std::vector<AttributeShape> vecAttribute{};
    std::vector<ElementShape> vecChild{};
    std::function<std::wstring(const XmlElement&)> fnIdentity{}; // of those with the same only the first is used
    std::function<void(const XmlElement&, const OnFinding&)> fnRule{};

    bool Matches(std::wstring_view _svName) const;
    const AttributeShape* FindAttribute(std::wstring_view _svName) const;
    AttributeShape* FindAttribute(std::wstring_view _svName);
    /** The child of that name; made when there is none. */
    ElementShape& Child(std::wstring_view _svName);
};

/**
 * The shape of a document's root element.
 * @param _rRoot  the root of the document itself, where there is one: a description without "check" has no conditions,
 *                and a table of threats without texts need not have them
 */
ElementShape ShapeOf(const Varnhelt::Document& _rstDocument, const XmlElement& _rRoot = {});

/** A text of a document in quotation marks, on one line and not too long. */
std::string Cited(std::wstring_view _svText);

/** A value as its table writes it; as a number where it has no word. */
std::wstring WordOf(const Frwk::WordTable& _rstTable, std::uint32_t _ulValue);

} // namespace Vrnt
