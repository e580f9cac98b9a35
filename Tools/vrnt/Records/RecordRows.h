#pragma once

#include "Descriptions/Description.h"

#include <functional>
#include <string>
#include <type_traits>
#include <vector>
#include <windows.h>

/**
 * Descriptions without their types: a record is a pointer, its fields are rows. What walks over rows is compiled once for
 * all records. The rows point into the description, which must outlive them, as the constants of the documents do.
 */
namespace Vrnt {

/** How a list of unknown type is walked and filled. */
struct ListAccess
{
    void (*pfnForEach)(const void* _pList, const std::function<void(const void*)>& _fnVisit);
    std::size_t (*pfnSize)(const void* _pList);
    void (*pfnClear)(void* _pList);
    void* (*pfnAppend)(void* _pList); // a new element at the end
};

template <class TContainer>
inline constexpr ListAccess g_stListAccess = {
    [](const void* _pList, const std::function<void(const void*)>& _fnVisit) {
        for (const auto& element : *static_cast<const TContainer*>(_pList)) {
            _fnVisit(&element);
        }
    },
    [](const void* _pList) { return static_cast<const TContainer*>(_pList)->size(); },
    [](void* _pList) { static_cast<TContainer*>(_pList)->clear(); },
    [](void* _pList) -> void* {
        auto* pList = static_cast<TContainer*>(_pList);
        pList->emplace_back();
        return &pList->back();
    }};

/** What a field's member is. */
enum class FieldKind : std::uint8_t
{
    Boolean,      // bool
    SystemBool,   // BOOL
    Unsigned,     // std::uint32_t
    Signed,       // std::int32_t
    Unsigned64,   // std::uint64_t
    Text,         // std::wstring
    RegistryRoot, // HKEY
    Texts,        // a list of std::wstring
    Records,      // a list of records
};

struct FieldRow;
using RecordRows = std::vector<FieldRow>;

/** A field of a record. */
struct FieldRow
{
    const char* szKey = nullptr; // in JSON
    FieldKind enKind = FieldKind::Text;
    bool bIdentity = false;                  // part of what distinguishes a record from others of its list
    const Frwk::WordTable* pWords = nullptr; // of an enumeration
    const void* pField = nullptr;            // of the description
    void* (*pfnMember)(const void* _pField, void* _pRecord) = nullptr;
    std::wstring (*pfnWrite)(const void* _pField,
                             const void* _pMember) = nullptr; // as documents write it; not of lists
    const ListAccess* pList = nullptr;                        // of lists
    RecordRows (*pfnRows)(const void* _pField) = nullptr;     // of lists of records

    bool IsList() const noexcept { return pList != nullptr; }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): finds the member's address only, and nothing writes there
    const void* MemberOf(const void* _pRecord) const { return pfnMember(pField, const_cast<void*>(_pRecord)); }
    /** The rows of the records in a list. */
    RecordRows Rows() const { return pfnRows(pField); }
};

template <class TDescription>
RecordRows RowsOf(const TDescription& _rstDescription);

template <class TField, class TValue>
constexpr FieldKind KindOf()
{
    if constexpr (TField::g_bList) {
        return TField::g_bTexts ? FieldKind::Texts : FieldKind::Records;
    } else if constexpr (std::is_same_v<TValue, bool>) {
        return FieldKind::Boolean;
    } else if constexpr (TField::g_bBoolean) {
        static_assert(std::is_same_v<TValue, BOOL>);
        return FieldKind::SystemBool;
    } else if constexpr (std::is_same_v<TValue, HKEY>) {
        return FieldKind::RegistryRoot;
    } else if constexpr (std::is_same_v<TValue, std::wstring>) {
        return FieldKind::Text;
    } else {
        static_assert(std::is_integral_v<TValue>);
        return sizeof(TValue) == 8 ? FieldKind::Unsigned64
                                   : (std::is_signed_v<TValue> ? FieldKind::Signed : FieldKind::Unsigned);
    }
}

template <class TRecord, class TField>
FieldRow RowOf(const TField& _rstField)
{
    using Value = std::decay_t<decltype(std::declval<TRecord&>().*_rstField.pMember)>;
    FieldRow stRow{.szKey = _rstField.szKey, .enKind = KindOf<TField, Value>(), .pField = &_rstField};
    stRow.pfnMember = [](const void* _pField, void* _pRecord) -> void* {
        return &(static_cast<TRecord*>(_pRecord)->*static_cast<const TField*>(_pField)->pMember);
    };
    if constexpr (!TField::g_bList) {
        stRow.bIdentity = _rstField.bIdentity;
        stRow.pWords = _rstField.stConversion.WordsOf();
        stRow.pfnWrite = [](const void* _pField, const void* _pMember) {
            return static_cast<const TField*>(_pField)->stConversion.Write(*static_cast<const Value*>(_pMember));
        };
    } else {
        stRow.pList = &g_stListAccess<Value>;
        if constexpr (!TField::g_bTexts) {
            stRow.pfnRows = [](const void* _pField) {
                return RowsOf(*static_cast<const TField*>(_pField)->pDescription);
            };
        }
    }
    return stRow;
}

/** The rows of a description, in its order. */
template <class TDescription>
RecordRows RowsOf(const TDescription& _rstDescription)
{
    RecordRows vecRow;
    Varnhelt::Documents::ForEachField(_rstDescription, [&](const auto& _rstField) {
        vecRow.push_back(RowOf<typename TDescription::Record>(_rstField));
    });
    return vecRow;
}

} // namespace Vrnt
