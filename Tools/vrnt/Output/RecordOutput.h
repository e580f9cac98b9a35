#pragma once

#include "Descriptions/Description.h"
#include "Output/Table.h"
#include "Tool.h"
#include "ZkComn_String.h"

#include <cctype>
#include <string>
#include <type_traits>

/** Records as JSON and as tables, by their descriptions. */
namespace Vrnt {

inline Json ToJson(const std::wstring& _rtszValue)
{
    return ZkCommon::String::ToUtf8(_rtszValue);
}

template <class TDescription>
Json RecordToJson(const typename TDescription::Record& _rstRecord, const TDescription& _rstDescription);

template <class TContainer, class TDescription>
Json RecordsToJson(const TContainer& _rRecords, const TDescription& _rstDescription)
{
    Json jsRecords = Json::array();
    for (const auto& stRecord : _rRecords) {
        jsRecords.push_back(RecordToJson(stRecord, _rstDescription));
    }
    return jsRecords;
}

template <class TField, class TRecord>
Json FieldToJson(const TRecord& _rstRecord, const TField& _rstField)
{
    const auto& rValue = _rstRecord.*_rstField.pMember;
    if constexpr (TField::g_bList) {
        if constexpr (TField::g_bTexts) {
            Json jsTexts = Json::array();
            for (const std::wstring& tszText : rValue) {
                jsTexts.push_back(ToJson(tszText));
            }
            return jsTexts;
        } else {
            return RecordsToJson(rValue, *_rstField.pDescription);
        }
    } else if constexpr (TField::g_bBoolean) {
        return rValue != 0; // a BOOL is a number to the compiler
    } else if constexpr (std::is_same_v<std::decay_t<decltype(rValue)>, std::wstring>) {
        return ToJson(rValue);
    } else if constexpr (std::is_pointer_v<std::decay_t<decltype(rValue)>>) { // a registry root, by its short name
        const std::wstring tszRoot = _rstField.stConversion.Write(rValue);
        return tszRoot.empty() ? Json(nullptr) : ToJson(tszRoot);
    } else {
        return rValue;
    }
}

template <class TDescription>
Json RecordToJson(const typename TDescription::Record& _rstRecord, const TDescription& _rstDescription)
{
    Json jsRecord = Json::object();
    Varnhelt::Documents::ForEachField(_rstDescription, [&](const auto& _rstField) {
        jsRecord[_rstField.szKey] = FieldToJson(_rstRecord, _rstField);
    });
    return jsRecord;
}

/** A JSON key as words: "orderOfLoading" becomes "order of loading". */
inline std::string ToHeading(const char* _szKey)
{
    std::string sHeading;
    for (; *_szKey != '\0'; ++_szKey) {
        const auto c = static_cast<unsigned char>(*_szKey);
        if (std::isupper(c) != 0) {
            sHeading += ' ';
        }
        sHeading += static_cast<char>(std::tolower(c));
    }
    return sHeading;
}

/** A field as a person reads it: enumerations by name, flags as yes and no, lists by their length. */
template <class TField, class TRecord>
std::string FieldToCell(const TRecord& _rstRecord, const TField& _rstField)
{
    const auto& rValue = _rstRecord.*_rstField.pMember;
    if constexpr (TField::g_bList) {
        return std::to_string(rValue.size());
    } else if constexpr (TField::g_bBoolean) {
        return rValue != 0 ? "yes" : "no";
    } else {
        return ZkCommon::String::ToUtf8(_rstField.stConversion.Write(rValue));
    }
}

/** The headings and the cells of a record's own fields, without its lists. */
template <class TDescription>
void AppendHeadings(std::vector<std::string>& _rvecHeading, const TDescription& _rstDescription)
{
    Varnhelt::Documents::ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
        if constexpr (!TField::g_bList) {
            _rvecHeading.push_back(ToHeading(_rstField.szKey));
        }
    });
}

template <class TDescription>
void AppendCells(std::vector<std::string>& _rvecCell, const typename TDescription::Record& _rstRecord,
                 const TDescription& _rstDescription)
{
    Varnhelt::Documents::ForEachField(_rstDescription, [&]<class TField>(const TField& _rstField) {
        if constexpr (!TField::g_bList) {
            _rvecCell.push_back(FieldToCell(_rstRecord, _rstField));
        }
    });
}

/**
 * Records with a list of records in them, a line for each of the list's: the owner's fields, then its own. An owner whose
 * list is empty has a line too. Each line says all that a search may look for.
 */
template <class TContainer, class TDescription, class TList, class TNested>
Table NestedToTable(const TContainer& _rRecords, const TDescription& _rstDescription,
                    TList TDescription::Record::*_pList, const TNested& _rstNested)
{
    std::vector<std::string> vecHeading;
    AppendHeadings(vecHeading, _rstDescription);
    AppendHeadings(vecHeading, _rstNested);
    const std::size_t uCells = vecHeading.size();
    Table cTable(std::move(vecHeading));
    for (const auto& stRecord : _rRecords) {
        std::vector<std::string> vecOwner;
        AppendCells(vecOwner, stRecord, _rstDescription);
        for (const auto& stNested : stRecord.*_pList) {
            std::vector<std::string> vecCell = vecOwner;
            AppendCells(vecCell, stNested, _rstNested);
            cTable.Add(std::move(vecCell));
        }
        if ((stRecord.*_pList).empty()) {
            vecOwner.resize(uCells);
            cTable.Add(std::move(vecOwner));
        }
    }
    return cTable;
}

template <class TContainer, class TDescription>
Table RecordsToTable(const TContainer& _rRecords, const TDescription& _rstDescription)
{
    std::vector<std::string> vecHeading;
    Varnhelt::Documents::ForEachField(_rstDescription,
                                      [&](const auto& _rstField) { vecHeading.push_back(ToHeading(_rstField.szKey)); });
    Table cTable(std::move(vecHeading));
    for (const auto& stRecord : _rRecords) {
        std::vector<std::string> vecCell;
        Varnhelt::Documents::ForEachField(
            _rstDescription, [&](const auto& _rstField) { vecCell.push_back(FieldToCell(stRecord, _rstField)); });
        cTable.Add(std::move(vecCell));
    }
    return cTable;
}

} // namespace Vrnt
