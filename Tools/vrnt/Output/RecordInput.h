#pragma once

#include "Descriptions/Description.h"
#include "Output/InputFile.h"
#include "Tool.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

/**
 * Records from JSON, by their descriptions: the reverse of RecordOutput.h. Every key of a description must be there and
 * no other; what does not fit is a UsageError that names the value's place, like "[2].providers[0].permission".
 */
namespace Vrnt {

[[noreturn]] inline void Refuse(const std::string& _rsPlace, const std::string& _rsWhy)
{
    throw UsageError((_rsPlace.empty() ? "the whole" : _rsPlace) + " " + _rsWhy);
}

/** The values of a set of words: "0 (eDeny), 1 (eAllow)". */
inline std::string ValuesOf(const Frwk::WordTable& _rstTable)
{
    std::string sValues;
    for (const Frwk::Word& stWord : _rstTable.aWord) {
        sValues += (sValues.empty() ? "" : ", ") + std::to_string(stWord.ulValue) + " (" +
                   ZkCommon::String::ToUtf8(stWord.svText) + ")";
    }
    return sValues;
}

template <class TValue>
TValue NumberFromJson(const Json& _rjsValue, const Frwk::WordTable* _pWords, const std::string& _rsPlace)
{
    using Limits = std::numeric_limits<TValue>;
    const bool bFits = _rjsValue.is_number_unsigned()
                           ? std::in_range<TValue>(_rjsValue.get<std::uint64_t>())
                           : _rjsValue.is_number_integer() && std::in_range<TValue>(_rjsValue.get<std::int64_t>());
    if (!bFits) {
        Refuse(_rsPlace,
               "must be a whole number from " + std::to_string(Limits::min()) + " to " + std::to_string(Limits::max()));
    }
    const auto value = _rjsValue.get<TValue>();
    const auto Has = [&](const Frwk::Word& _rstWord) { return std::cmp_equal(_rstWord.ulValue, value); };
    if (_pWords != nullptr && std::none_of(_pWords->aWord.begin(), _pWords->aWord.end(), Has)) {
        Refuse(_rsPlace, "must be one of " + ValuesOf(*_pWords));
    }
    return value;
}

inline std::wstring TextFromJson(const Json& _rjsValue, const std::string& _rsPlace)
{
    if (!_rjsValue.is_string()) {
        Refuse(_rsPlace, "must be a text");
    }
    return ZkCommon::String::FromUtf8(_rjsValue.get_ref<const std::string&>());
}

template <class TContainer, class TDescription>
TContainer RecordsFromJson(const Json& _rjsRecords, const TDescription& _rstDescription,
                           const std::string& _rsPlace = {});

template <class TField, class TRecord>
void FieldFromJson(const Json& _rjsValue, const TField& _rstField, TRecord& _rstRecord, const std::string& _rsPlace)
{
    auto& rValue = _rstRecord.*_rstField.pMember;
    using Value = std::decay_t<decltype(rValue)>;
    if constexpr (TField::g_bList) {
        rValue = RecordsFromJson<Value>(_rjsValue, *_rstField.pDescription, _rsPlace);
    } else if constexpr (TField::g_bBoolean) {
        if (!_rjsValue.is_boolean()) {
            Refuse(_rsPlace, "must be true or false");
        }
        rValue = static_cast<Value>(_rjsValue.get<bool>());
    } else if constexpr (std::is_same_v<Value, std::wstring>) {
        rValue = TextFromJson(_rjsValue, _rsPlace);
    } else {
        rValue = NumberFromJson<Value>(_rjsValue, _rstField.stConversion.WordsOf(), _rsPlace);
    }
}

template <class TDescription>
typename TDescription::Record RecordFromJson(const Json& _rjsRecord, const TDescription& _rstDescription,
                                             const std::string& _rsPlace = {})
{
    if (!_rjsRecord.is_object()) {
        Refuse(_rsPlace, "must be an object");
    }
    typename TDescription::Record stRecord;
    std::vector<std::string> vecKnown;
    Varnhelt::Documents::ForEachField(_rstDescription, [&](const auto& _rstField) {
        const std::string sPlace = _rsPlace + (_rsPlace.empty() ? "" : ".") + _rstField.szKey;
        const auto itValue = _rjsRecord.find(_rstField.szKey);
        if (itValue == _rjsRecord.end()) {
            Refuse(sPlace, "is missing");
        }
        FieldFromJson(*itValue, _rstField, stRecord, sPlace);
        vecKnown.emplace_back(_rstField.szKey);
    });
    for (const auto& cItem : _rjsRecord.items()) {
        if (std::find(vecKnown.begin(), vecKnown.end(), cItem.key()) == vecKnown.end()) {
            Refuse(_rsPlace + (_rsPlace.empty() ? "" : ".") + cItem.key(), "is no key of this record");
        }
    }
    return stRecord;
}

template <class TContainer, class TDescription>
TContainer RecordsFromJson(const Json& _rjsRecords, const TDescription& _rstDescription, const std::string& _rsPlace)
{
    if (!_rjsRecords.is_array()) {
        Refuse(_rsPlace, "must be an array");
    }
    TContainer cRecords;
    for (std::size_t i = 0; i < _rjsRecords.size(); ++i) {
        cRecords.push_back(RecordFromJson(_rjsRecords[i], _rstDescription, _rsPlace + "[" + std::to_string(i) + "]"));
    }
    return cRecords;
}

/** The records of a JSON file that the command line names. @throws UsageError when it is unreadable or does not fit */
template <class TContainer, class TDescription>
TContainer RecordsFromFile(const std::string& _rsPath, const TDescription& _rstDescription)
{
    const std::string sContent = ReadInputFile(_rsPath);
    try {
        return RecordsFromJson<TContainer>(Json::parse(sContent), _rstDescription);
    } catch (const Json::parse_error& rError) {
        throw UsageError("\"" + _rsPath + "\" is no JSON: " + rError.what());
    } catch (const UsageError& rError) {
        throw UsageError("\"" + _rsPath + "\": " + rError.what());
    }
}

} // namespace Vrnt
