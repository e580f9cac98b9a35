#pragma once

#include "Output/Table.h"
#include "Records/RecordRows.h"

#include <string>

/** Records as tables, by the rows of their descriptions. */
namespace Vrnt {

/** A field as a person reads it: enumerations by name, flags as yes and no, lists by their length. */
std::string FieldToCell(const FieldRow& _rstRow, const void* _pRecord);

Table ListToTable(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow);
Table NestedToTable(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow, const char* _szNested);

template <class TContainer, class TDescription>
Table RecordsToTable(const TContainer& _rRecords, const TDescription& _rstDescription)
{
    return ListToTable(&_rRecords, g_stListAccess<TContainer>, RowsOf(_rstDescription));
}

/**
 * Records with a list of records in them, a line for each of the list's: the owner's fields, then its own. An owner whose
 * list is empty has a line too. Each line says all that a search may look for.
 * @param _szNested  the list's JSON key
 */
template <class TContainer, class TDescription>
Table NestedToTable(const TContainer& _rRecords, const TDescription& _rstDescription, const char* _szNested)
{
    return NestedToTable(&_rRecords, g_stListAccess<TContainer>, RowsOf(_rstDescription), _szNested);
}

} // namespace Vrnt
