#pragma once

#include "Frwk_DataTypesUtility.h"
#include "ZkComn_String.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

/**
 * What a record looks like in its document, said once. For each record one constexpr description binds every field to
 * its place in the record's element, its conversion, its default and its JSON key:
 *
 *     inline constexpr auto g_stServiceUnit = Describe<ServiceUnit>(
 *         L"FrameworkService",
 *         Attribute(L"Layer", &ServiceUnit::ulLayer, Words(Frwk::Words::g_stLayerType)).Key("layer"),
 *         Child(L"OrderOfLoading", &ServiceUnit::ulOrderOfLoading, Number()).Default(L"0").Key("orderOfLoading"),
 *         ...);
 *
 * Reader, writer and trace dump (DescriptionReader.h, DescriptionWriter.h, DescriptionDump.h), the tool's JSON and tables,
 * and whatever else walks over records go through it with ForEachField. The order of the fields is the order in which
 * they are read, converted, written and dumped.
 */
namespace Varnhelt::Documents {

/** Where a field's text is. */
enum class Source
{
    Attribute,      // an attribute of the record's element
    Child,          // the text of a child element
    ChildAttribute, // an attribute of a child element
    OwnText,        // the text of the record's element itself
    Derived,        // worked out by the reader, of what is around the element or of other fields
};

/** How a trace dump shows a value. */
enum class Show
{
    Text,        // as the document writes the value
    AsRead,      // the text that was read, whatever it means
    Hexadecimal, // "0x%08x"
    Decimal,     // "%u"
};

// Conversions: Accepts says whether a text is one that is meant; Read turns any text into a value and never fails; Write
// is its reverse.

/** Text as it is. */
struct Text
{
    static constexpr Show g_enShow = Show::Text;
    static constexpr const Frwk::WordTable* WordsOf() { return nullptr; }
    static constexpr bool Accepts(std::wstring_view) { return true; }
    static std::wstring Read(std::wstring_view _svText) { return std::wstring(_svText); }
    static std::wstring Write(const std::wstring& _rtszValue) { return _rtszValue; }
};

/** Text as it is, which should not be empty. */
struct FilledText : Text
{
    static constexpr bool Accepts(std::wstring_view _svText) { return !_svText.empty(); }
};

/** Text as it is, of which the table knows the words that mean something. */
struct WordText : Text
{
    constexpr explicit WordText(const Frwk::WordTable& _rstTable) : pTable(&_rstTable) {}
    constexpr const Frwk::WordTable* WordsOf() const { return pTable; }
    bool Accepts(std::wstring_view _svText) const { return Frwk::Utility::FindWord(*pTable, _svText) != nullptr; }

    const Frwk::WordTable* pTable;
};

/** An unsigned number of 32 bits in the base that its prefix says; what follows its digits is ignored. */
struct Number
{
    static constexpr Show g_enShow = Show::Decimal;
    static constexpr const Frwk::WordTable* WordsOf() { return nullptr; }
    static bool Accepts(std::wstring_view _svText) { return ZkCommon::String::ToWholeNumber(_svText).has_value(); }
    static std::uint32_t Read(std::wstring_view _svText) { return ZkCommon::String::ToNumber(_svText); }
    static std::wstring Write(std::uint32_t _ulValue) { return std::to_wstring(_ulValue); }
};

/** A number of 64 bits; 0 unless the whole text is one. */
struct WholeNumber
{
    static constexpr Show g_enShow = Show::Text;
    static constexpr const Frwk::WordTable* WordsOf() { return nullptr; }
    static bool Accepts(std::wstring_view _svText) { return ZkCommon::String::ToWholeNumber64(_svText).has_value(); }
    static std::uint64_t Read(std::wstring_view _svText)
    {
        return ZkCommon::String::ToWholeNumber64(_svText).value_or(0);
    }
    static std::wstring Write(std::uint64_t _ullValue) { return std::to_wstring(_ullValue); }
};

/** One word of a table; an unknown one is logged and reads as the table's default. */
struct Words
{
    static constexpr Show g_enShow = Show::Hexadecimal;
    constexpr explicit Words(const Frwk::WordTable& _rstTable) : pTable(&_rstTable) {}
    constexpr const Frwk::WordTable* WordsOf() const { return pTable; }
    bool Accepts(std::wstring_view _svText) const { return Frwk::Utility::FindWord(*pTable, _svText) != nullptr; }
    std::uint32_t Read(std::wstring_view _svText) const { return Frwk::Utility::ToValue(*pTable, _svText); }
    template <class TValue>
    std::wstring Write(TValue _value) const
    {
        return std::wstring(Frwk::Utility::ToText(*pTable, static_cast<std::uint32_t>(_value)));
    }

    const Frwk::WordTable* pTable;
};

/** "true" or "false", in the spellings that documents may use. */
struct Boolean
{
    static constexpr Show g_enShow = Show::Text;
    static constexpr const Frwk::WordTable* WordsOf() { return &Frwk::Words::g_stBoolean; }
    static bool Accepts(std::wstring_view _svText)
    {
        return Frwk::Utility::FindWord(Frwk::Words::g_stBoolean, _svText) != nullptr;
    }
    static bool Read(std::wstring_view _svText) { return Frwk::Utility::GetBooleanType(_svText); }
    static std::wstring Write(bool _bValue) { return Frwk::Utility::GetBooleanTypeString(_bValue); }
};

/** What a text that is not accepted, or not there, does to the record. */
enum class Strange
{
    Unread,   // nothing: nobody looks at it
    Optional, // it reads as something else, and may be missing
    Default,  // it reads as something else
    Drop,     // the record is passed over, or what it asks for is not done
    Refuse,   // the whole document is refused
};

/** One field of a record. */
template <class TRecord, class TValue, class TConversion>
struct Field
{
    static constexpr bool g_bList = false;
    static constexpr bool g_bBoolean = std::is_same_v<TConversion, Boolean> || std::is_same_v<TValue, bool>;

    Source enSource = Source::Attribute;
    std::wstring_view svName; // of the attribute or child; empty for the own text
    TValue TRecord::*pMember;
    TConversion stConversion;
    std::wstring_view svChild = {};    // the child whose attribute it is
    std::wstring_view svDefault = {};  // read where the attribute or child is absent
    const char* szKey = nullptr;       // in JSON
    const wchar_t* pszLabel = nullptr; // in a trace dump, with its brackets and padding; null: not dumped
    Show enShow = TConversion::g_enShow;
    bool (*pfnWhen)(const TRecord&) = nullptr; // whether it is read, by the fields before it; null: always
    bool bRequired = false;                    // a text that is not accepted drops the record

    // What matters to authors only: the readers look at none of these. A test holds them against the readers.
    Strange enStrange = Strange::Default;
    Strange (*pfnStrange)(const TRecord&) = nullptr; // the same, where the other fields decide it
    const char* szElse = nullptr;                    // what it reads as, in words, where it has no word for that
    bool bOptional = false;                          // it may be empty or missing
    bool bIdentity = false;                          // of records with equal identities only the first is used

    constexpr Field Default(std::wstring_view _svDefault) const
    {
        Field stField = *this;
        stField.svDefault = _svDefault;
        return stField;
    }
    constexpr Field Key(const char* _szKey) const
    {
        Field stField = *this;
        stField.szKey = _szKey;
        return stField;
    }
    constexpr Field Label(const wchar_t* _pszLabel, Show _enShow = TConversion::g_enShow) const
    {
        Field stField = *this;
        stField.pszLabel = _pszLabel;
        stField.enShow = _enShow;
        return stField;
    }
    constexpr Field When(bool (*_pfnWhen)(const TRecord&)) const
    {
        Field stField = *this;
        stField.pfnWhen = _pfnWhen;
        return stField;
    }
    constexpr Field Required() const
    {
        Field stField = *this;
        stField.bRequired = true;
        stField.enStrange = Strange::Drop;
        return stField;
    }
    constexpr Field OnStrange(Strange _enStrange) const
    {
        Field stField = *this;
        stField.enStrange = _enStrange;
        return stField;
    }
    constexpr Field OnStrange(Strange (*_pfnStrange)(const TRecord&)) const
    {
        Field stField = *this;
        stField.pfnStrange = _pfnStrange;
        return stField;
    }
    constexpr Field Else(const char* _szElse) const
    {
        Field stField = *this;
        stField.szElse = _szElse;
        return stField;
    }
    constexpr Field Optional() const
    {
        Field stField = *this;
        stField.bOptional = true;
        return stField;
    }
    constexpr Field Identity() const
    {
        Field stField = *this;
        stField.bIdentity = true;
        return stField;
    }
};

/** A field that is a list of records, one for each child element of a container element. */
template <class TRecord, class TContainer, class TDescription>
struct ListField
{
    static constexpr bool g_bList = true;
    static constexpr bool g_bTexts = false;

    std::wstring_view svPath; // relative path of the container element; empty when the record's element is it
    TContainer TRecord::*pMember;
    const TDescription* pDescription;
    const char* szKey = nullptr;
    const wchar_t* pszLabel = nullptr;         // what a trace says before the list; null: nothing
    bool (*pfnWhen)(const TRecord&) = nullptr; // whether it is read, by the fields that are no lists; null: always

    constexpr ListField Key(const char* _szKey) const
    {
        ListField stField = *this;
        stField.szKey = _szKey;
        return stField;
    }
    constexpr ListField Label(const wchar_t* _pszLabel) const
    {
        ListField stField = *this;
        stField.pszLabel = _pszLabel;
        return stField;
    }
    constexpr ListField When(bool (*_pfnWhen)(const TRecord&)) const
    {
        ListField stField = *this;
        stField.pfnWhen = _pfnWhen;
        return stField;
    }
};

/** A field that is a list of texts: an attribute of each child element of a name, where it is not empty. */
template <class TRecord, class TContainer>
struct TextsField
{
    static constexpr bool g_bList = true;
    static constexpr bool g_bTexts = true;

    std::wstring_view svElement;
    std::wstring_view svName; // of the attribute
    TContainer TRecord::*pMember;
    const char* szKey = nullptr;

    constexpr TextsField Key(const char* _szKey) const
    {
        TextsField stField = *this;
        stField.szKey = _szKey;
        return stField;
    }
};

template <class TRecord, class TValue, class TConversion>
constexpr auto Attribute(std::wstring_view _svName, TValue TRecord::*_pMember, TConversion _stConversion)
{
    return Field<TRecord, TValue, TConversion>{Source::Attribute, _svName, _pMember, _stConversion};
}

template <class TRecord, class TValue, class TConversion>
constexpr auto Child(std::wstring_view _svName, TValue TRecord::*_pMember, TConversion _stConversion)
{
    return Field<TRecord, TValue, TConversion>{Source::Child, _svName, _pMember, _stConversion};
}

template <class TRecord, class TValue, class TConversion>
constexpr auto ChildAttribute(std::wstring_view _svChild, std::wstring_view _svName, TValue TRecord::*_pMember,
                              TConversion _stConversion)
{
    return Field<TRecord, TValue, TConversion>{Source::ChildAttribute, _svName, _pMember, _stConversion, _svChild};
}

template <class TRecord, class TValue, class TConversion>
constexpr auto OwnText(TValue TRecord::*_pMember, TConversion _stConversion)
{
    return Field<TRecord, TValue, TConversion>{Source::OwnText, {}, _pMember, _stConversion};
}

/** A value that the reader works out; _svName is the attribute that it comes of, on an element around the record's. */
template <class TRecord, class TValue, class TConversion>
constexpr auto Derived(std::wstring_view _svName, TValue TRecord::*_pMember, TConversion _stConversion)
{
    return Field<TRecord, TValue, TConversion>{Source::Derived, _svName, _pMember, _stConversion};
}

/** One record for each child of the element at _svPath that the nested description is of. */
template <class TRecord, class TContainer, class TDescription>
constexpr auto Children(std::wstring_view _svPath, TContainer TRecord::*_pMember, const TDescription& _rstDescription)
{
    return ListField<TRecord, TContainer, TDescription>{_svPath, _pMember, &_rstDescription};
}

template <class TRecord, class TContainer>
constexpr auto Texts(std::wstring_view _svElement, std::wstring_view _svName, TContainer TRecord::*_pMember)
{
    return TextsField<TRecord, TContainer>{_svElement, _svName, _pMember};
}

/** The description of a record: the name of its elements (empty: children of any name) and its fields. */
template <class TRecord, class... TFields>
struct Description
{
    using Record = TRecord;

    std::wstring_view svElement;
    std::tuple<TFields...> tplFields;
    std::wstring_view svTitle = {};         // an attribute that no field holds: the trace dump alone shows it, first
    const wchar_t* pszTitleLabel = nullptr; // its label there

    constexpr Description Title(std::wstring_view _svTitle, const wchar_t* _pszLabel) const
    {
        Description stDescription = *this;
        stDescription.svTitle = _svTitle;
        stDescription.pszTitleLabel = _pszLabel;
        return stDescription;
    }
};

template <class TRecord, class... TFields>
constexpr auto Describe(std::wstring_view _svElement, TFields... _stFields)
{
    return Description<TRecord, TFields...>{_svElement, std::tuple<TFields...>(_stFields...)};
}

/** Calls _fnVisit with each field in turn. */
template <class TRecord, class... TFields, class TVisit>
constexpr void ForEachField(const Description<TRecord, TFields...>& _rstDescription, TVisit&& _fnVisit)
{
    std::apply([&](const TFields&... _stFields) { (_fnVisit(_stFields), ...); }, _rstDescription.tplFields);
}

} // namespace Varnhelt::Documents
