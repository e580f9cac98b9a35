#pragma once

#include "Records/Json.h"
#include "Records/RecordRows.h"

#include <string>

/** Records as JSON and back, by the rows of their descriptions. */
namespace Vrnt {

Json RecordToJson(const void* _pRecord, const RecordRows& _rvecRow);
Json ListToJson(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow);

/**
 * Fills a list from an array of objects. Every key of the description must be there and no other. Where a field has
 * words, a word or its number is accepted.
 * @throws JsonError that names the value's place, like "[2].providers[0].permission"
 */
void ListFromJson(const Json& _rjsRecords, void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow,
                  const std::string& _rsPlace = {});

template <class TDescription>
Json RecordToJson(const typename TDescription::Record& _rstRecord, const TDescription& _rstDescription)
{
    return RecordToJson(static_cast<const void*>(&_rstRecord), RowsOf(_rstDescription));
}

template <class TContainer, class TDescription>
Json RecordsToJson(const TContainer& _rRecords, const TDescription& _rstDescription)
{
    return ListToJson(&_rRecords, g_stListAccess<TContainer>, RowsOf(_rstDescription));
}

template <class TContainer, class TDescription>
TContainer RecordsFromJson(const Json& _rjsRecords, const TDescription& _rstDescription)
{
    TContainer cRecords;
    ListFromJson(_rjsRecords, &cRecords, g_stListAccess<TContainer>, RowsOf(_rstDescription));
    return cRecords;
}

} // namespace Vrnt
