#include "Records/RecordJson.h"

#include "ZkComn_String.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Vrnt {

namespace {

template <class TValue>
const TValue& As(const void* _pMember)
{
    return *static_cast<const TValue*>(_pMember);
}

Json FieldToJson(const FieldRow& _rstRow, const void* _pRecord)
{
    const void* pMember = _rstRow.MemberOf(_pRecord);
    switch (_rstRow.enKind) {
    case FieldKind::Boolean:
        return As<bool>(pMember);
    case FieldKind::SystemBool:
        return As<BOOL>(pMember) != FALSE;
    case FieldKind::Unsigned:
        return As<std::uint32_t>(pMember);
    case FieldKind::Signed:
        return As<std::int32_t>(pMember);
    case FieldKind::Unsigned64:
        return As<std::uint64_t>(pMember);
    case FieldKind::RegistryRoot: {
        const std::wstring tszRoot = _rstRow.pfnWrite(_rstRow.pField, pMember);
        return tszRoot.empty() ? Json() : Json(tszRoot);
    }
    case FieldKind::Texts: {
        Json jsTexts = Json::Array();
        _rstRow.pList->pfnForEach(pMember, [&](const void* _pText) { jsTexts.Add(As<std::wstring>(_pText)); });
        return jsTexts;
    }
    case FieldKind::Records:
        return ListToJson(pMember, *_rstRow.pList, _rstRow.Rows());
    default:
        return As<std::wstring>(pMember);
    }
}

[[noreturn]] void Refuse(const std::string& _rsPlace, const std::string& _rsWhy)
{
    throw JsonError((_rsPlace.empty() ? "the whole" : _rsPlace) + " " + _rsWhy);
}

/** The words of a set with their values: "0 (eDeny), 1 (eAllow)". */
std::string ValuesOf(const Frwk::WordTable& _rstTable)
{
    std::string sValues;
    for (const Frwk::Word& stWord : _rstTable.aWord) {
        sValues += (sValues.empty() ? "" : ", ") + std::to_string(stWord.ulValue) + " (" +
                   ZkCommon::String::ToUtf8(stWord.svText) + ")";
    }
    return sValues;
}

template <class TValue>
TValue NumberFromJson(const Json& _rjsValue, const std::string& _rsPlace)
{
    using Limits = std::numeric_limits<TValue>;
    const auto* pUnsigned = _rjsValue.As<std::uint64_t>();
    const auto* pSigned = _rjsValue.As<std::int64_t>();
    if (pUnsigned != nullptr && std::in_range<TValue>(*pUnsigned)) {
        return static_cast<TValue>(*pUnsigned);
    }
    if (pSigned != nullptr && std::in_range<TValue>(*pSigned)) {
        return static_cast<TValue>(*pSigned);
    }
    Refuse(_rsPlace,
           "must be a whole number from " + std::to_string(Limits::min()) + " to " + std::to_string(Limits::max()));
}

template <class TValue>
TValue WordFromJson(const Json& _rjsValue, const Frwk::WordTable* _pWords, const std::string& _rsPlace)
{
    if (_pWords == nullptr) {
        return NumberFromJson<TValue>(_rjsValue, _rsPlace);
    }
    if (const auto* pText = _rjsValue.As<std::string>(); pText != nullptr) {
        const Frwk::Word* pWord = Frwk::Utility::FindWord(*_pWords, ZkCommon::String::FromUtf8(*pText));
        if (pWord == nullptr) {
            Refuse(_rsPlace, "must be one of " + ValuesOf(*_pWords));
        }
        return static_cast<TValue>(pWord->ulValue);
    }
    const auto value = NumberFromJson<TValue>(_rjsValue, _rsPlace);
    const auto Has = [&](const Frwk::Word& _rstWord) { return std::cmp_equal(_rstWord.ulValue, value); };
    if (std::none_of(_pWords->aWord.begin(), _pWords->aWord.end(), Has)) {
        Refuse(_rsPlace, "must be one of " + ValuesOf(*_pWords));
    }
    return value;
}

bool BooleanFromJson(const Json& _rjsValue, const std::string& _rsPlace)
{
    const bool* pValue = _rjsValue.As<bool>();
    if (pValue == nullptr) {
        Refuse(_rsPlace, "must be true or false");
    }
    return *pValue;
}

std::wstring TextFromJson(const Json& _rjsValue, const std::string& _rsPlace)
{
    const auto* pText = _rjsValue.As<std::string>();
    if (pText == nullptr) {
        Refuse(_rsPlace, "must be a text");
    }
    return ZkCommon::String::FromUtf8(*pText);
}

void FieldFromJson(const Json& _rjsValue, const FieldRow& _rstRow, void* _pRecord, const std::string& _rsPlace)
{
    void* pMember = _rstRow.pfnMember(_rstRow.pField, _pRecord);
    switch (_rstRow.enKind) {
    case FieldKind::Boolean:
        *static_cast<bool*>(pMember) = BooleanFromJson(_rjsValue, _rsPlace);
        break;
    case FieldKind::SystemBool:
        *static_cast<BOOL*>(pMember) = BooleanFromJson(_rjsValue, _rsPlace) ? TRUE : FALSE;
        break;
    case FieldKind::Unsigned:
        *static_cast<std::uint32_t*>(pMember) = WordFromJson<std::uint32_t>(_rjsValue, _rstRow.pWords, _rsPlace);
        break;
    case FieldKind::Signed:
        *static_cast<std::int32_t*>(pMember) = WordFromJson<std::int32_t>(_rjsValue, _rstRow.pWords, _rsPlace);
        break;
    case FieldKind::Text:
        *static_cast<std::wstring*>(pMember) = TextFromJson(_rjsValue, _rsPlace);
        break;
    case FieldKind::Records:
        ListFromJson(_rjsValue, pMember, *_rstRow.pList, _rstRow.Rows(), _rsPlace);
        break;
    default: // of records that nothing stores
        Refuse(_rsPlace, "cannot be given");
    }
}

void RecordFromJson(const Json& _rjsRecord, void* _pRecord, const RecordRows& _rvecRow, const std::string& _rsPlace)
{
    const auto* pMembers = _rjsRecord.As<Json::Members>();
    if (pMembers == nullptr) {
        Refuse(_rsPlace, "must be an object");
    }
    for (const FieldRow& stRow : _rvecRow) {
        const std::string sPlace = _rsPlace + "." + stRow.szKey;
        const Json* pValue = _rjsRecord.Find(stRow.szKey);
        if (pValue == nullptr) {
            Refuse(sPlace, "is missing");
        }
        FieldFromJson(*pValue, stRow, _pRecord, sPlace);
    }
    for (const auto& rstMember : *pMembers) {
        const auto Has = [&](const FieldRow& _rstRow) { return rstMember.first == _rstRow.szKey; };
        if (std::none_of(_rvecRow.begin(), _rvecRow.end(), Has)) {
            Refuse(_rsPlace + "." + rstMember.first, "is not a key of this record");
        }
    }
}

} // namespace

Json RecordToJson(const void* _pRecord, const RecordRows& _rvecRow)
{
    Json jsRecord = Json::Object();
    for (const FieldRow& stRow : _rvecRow) {
        jsRecord.Set(stRow.szKey, FieldToJson(stRow, _pRecord));
    }
    return jsRecord;
}

Json ListToJson(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow)
{
    Json jsRecords = Json::Array();
    _rstList.pfnForEach(_pList, [&](const void* _pRecord) { jsRecords.Add(RecordToJson(_pRecord, _rvecRow)); });
    return jsRecords;
}

void ListFromJson(const Json& _rjsRecords, void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow,
                  const std::string& _rsPlace)
{
    const auto* pElements = _rjsRecords.As<Json::Elements>();
    if (pElements == nullptr) {
        Refuse(_rsPlace, "must be an array");
    }
    _rstList.pfnClear(_pList);
    for (std::size_t i = 0; i < pElements->size(); ++i) {
        RecordFromJson((*pElements)[i], _rstList.pfnAppend(_pList), _rvecRow, _rsPlace + "[" + std::to_string(i) + "]");
    }
}

} // namespace Vrnt
