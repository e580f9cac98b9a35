#include "Output/RecordTable.h"

#include "ZkComn_String.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace Vrnt {

namespace {

/** A JSON key as words: "orderOfLoading" becomes "order of loading". */
std::string ToHeading(const char* _szKey)
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

RecordRows WithoutLists(const RecordRows& _rvecRow)
{
    RecordRows vecRow = _rvecRow;
    std::erase_if(vecRow, [](const FieldRow& _rstRow) { return _rstRow.IsList(); });
    return vecRow;
}

void AppendHeadings(std::vector<std::string>& _rvecHeading, const RecordRows& _rvecRow)
{
    for (const FieldRow& stRow : _rvecRow) {
        _rvecHeading.push_back(ToHeading(stRow.szKey));
    }
}

void AppendCells(std::vector<std::string>& _rvecCell, const void* _pRecord, const RecordRows& _rvecRow)
{
    for (const FieldRow& stRow : _rvecRow) {
        _rvecCell.push_back(FieldToCell(stRow, _pRecord));
    }
}

} // namespace

std::string FieldToCell(const FieldRow& _rstRow, const void* _pRecord)
{
    const void* pMember = _rstRow.MemberOf(_pRecord);
    if (_rstRow.IsList()) {
        return std::to_string(_rstRow.pList->pfnSize(pMember));
    }
    switch (_rstRow.enKind) {
    case FieldKind::Boolean:
        return *static_cast<const bool*>(pMember) ? "yes" : "no";
    case FieldKind::SystemBool:
        return *static_cast<const BOOL*>(pMember) != FALSE ? "yes" : "no";
    default:
        return ZkCommon::String::ToUtf8(_rstRow.pfnWrite(_rstRow.pField, pMember));
    }
}

Table ListToTable(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow)
{
    std::vector<std::string> vecHeading;
    AppendHeadings(vecHeading, _rvecRow);
    Table cTable(std::move(vecHeading));
    _rstList.pfnForEach(_pList, [&](const void* _pRecord) {
        std::vector<std::string> vecCell;
        AppendCells(vecCell, _pRecord, _rvecRow);
        cTable.Add(std::move(vecCell));
    });
    return cTable;
}

Table NestedToTable(const void* _pList, const ListAccess& _rstList, const RecordRows& _rvecRow, const char* _szNested)
{
    const auto itNested = std::find_if(_rvecRow.begin(), _rvecRow.end(), [&](const FieldRow& _rstRow) {
        return std::strcmp(_rstRow.szKey, _szNested) == 0;
    });
    const RecordRows vecOwner = WithoutLists(_rvecRow);
    const RecordRows vecNested = WithoutLists(itNested->Rows());
    std::vector<std::string> vecHeading;
    AppendHeadings(vecHeading, vecOwner);
    AppendHeadings(vecHeading, vecNested);
    const std::size_t uCells = vecHeading.size();
    Table cTable(std::move(vecHeading));
    _rstList.pfnForEach(_pList, [&](const void* _pRecord) {
        std::vector<std::string> vecOwnerCell;
        AppendCells(vecOwnerCell, _pRecord, vecOwner);
        const void* pNested = itNested->MemberOf(_pRecord);
        itNested->pList->pfnForEach(pNested, [&](const void* _pNestedRecord) {
            std::vector<std::string> vecCell = vecOwnerCell;
            AppendCells(vecCell, _pNestedRecord, vecNested);
            cTable.Add(std::move(vecCell));
        });
        if (itNested->pList->pfnSize(pNested) == 0) {
            vecOwnerCell.resize(uCells);
            cTable.Add(std::move(vecOwnerCell));
        }
    });
    return cTable;
}

} // namespace Vrnt
