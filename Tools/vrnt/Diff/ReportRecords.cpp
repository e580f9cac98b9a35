#include "Diff/ReportRecords.h"

#include "Arguments.h"
#include "Documents/EnforceData.h"
#include "Documents/Policy.h"
#include "Documents/ServiceUnits.h"
#include "Output/Output.h"
#include "Records/RecordRows.h"
#include "Records/ReportParts.h"

#include <algorithm>
#include <string_view>

namespace Vrnt {

namespace {

/** The rows of a part of the report; none where it is no list of records. */
RecordRows RowsOfPart(std::string_view _svKey)
{
    namespace Documents = Varnhelt::Documents;
    if (_svKey == ReportPart::g_szServiceUnits) {
        return RowsOf(Documents::g_stServiceUnit);
    }
    if (_svKey == ReportPart::g_szPolicy) {
        return RowsOf(Documents::g_stPolicyController);
    }
    return _svKey == ReportPart::g_szEnforceData ? RowsOf(Documents::g_stDataController) : RecordRows();
}

const FieldRow* FindRow(const RecordRows& _rvecRow, const std::string& _rsKey)
{
    const auto itRow = std::ranges::find_if(_rvecRow, [&](const FieldRow& _rst) { return _rsKey == _rst.szKey; });
    return itRow == _rvecRow.end() ? nullptr : &*itRow;
}

/** A value in words; of an array all of them. */
std::string TextOf(const Json& _rjsValue, const FieldRow* _pRow)
{
    if (const auto* pText = _rjsValue.As<std::string>(); pText != nullptr) {
        return *pText;
    }
    if (const auto* pElements = _rjsValue.As<Json::Elements>(); pElements != nullptr) {
        std::vector<std::string> vecText;
        for (const Json& jsElement : *pElements) {
            vecText.push_back(TextOf(jsElement, nullptr));
        }
        return Joined(vecText);
    }
    const auto* pNumber = _rjsValue.As<std::uint64_t>();
    if (pNumber != nullptr && _pRow != nullptr && _pRow->pWords != nullptr) {
        return WordText(*_pRow->pWords, static_cast<std::uint32_t>(*pNumber));
    }
    return _rjsValue.IsNull() ? std::string() : _rjsValue.ToText();
}

void AddMembers(const Json::Members& _rMembers, const RecordRows& _rvecRow, DiffRecord& _rstRecord);

/** Adds the records of an array of objects. */
void AddRecords(const Json::Elements& _rElements, const std::string& _rsKind, const RecordRows& _rvecRow,
                DiffRecord& _rstRecord)
{
    constexpr std::string_view svFile = "file"; // tells a document from others, and says where a finding is
    for (const Json& jsElement : _rElements) {
        const auto* pMembers = jsElement.As<Json::Members>();
        if (pMembers == nullptr) {
            continue;
        }
        DiffRecord stInner{_rsKind, {}};
        AddMembers(*pMembers, _rvecRow, stInner);
        std::vector<std::string> vecTitle;
        for (const auto& [sKey, sValue] : stInner.vecField) {
            const FieldRow* pRow = FindRow(_rvecRow, sKey);
            if (pRow != nullptr && pRow->bIdentity) {
                stInner.sIdentity += sValue + "\n";
                vecTitle.push_back(sValue);
            } else if (sKey == svFile) {
                stInner.sIdentity = _rsKind == ReportPart::g_szDocuments ? sValue : std::string();
                vecTitle.push_back(sValue);
            }
        }
        stInner.sTitle = Joined(vecTitle, " ");
        _rstRecord.vecRecord.push_back(std::move(stInner));
    }
}

void AddMembers(const Json::Members& _rMembers, const RecordRows& _rvecRow, DiffRecord& _rstRecord)
{
    for (const auto& [sKey, jsValue] : _rMembers) {
        const FieldRow* pRow = FindRow(_rvecRow, sKey);
        const auto* pElements = jsValue.As<Json::Elements>();
        if (pRow != nullptr && pRow->enKind == FieldKind::Records && pElements != nullptr) {
            AddRecords(*pElements, sKey, pRow->Rows(), _rstRecord);
        } else {
            _rstRecord.Add(sKey, TextOf(jsValue, pRow));
        }
    }
}

} // namespace

DiffRecord RecordsOfReport(const Json& _rjsReport, const std::string& _rsName)
{
    const auto* pMembers = _rjsReport.As<Json::Members>();
    if (pMembers == nullptr || _rjsReport.Find(ReportPart::g_szVersions) == nullptr ||
        _rjsReport.Find(ReportPart::g_szPolicy) == nullptr) {
        throw UsageError(Quoted(_rsName) + " is JSON, but not what vrnt report --json writes");
    }
    DiffRecord stReport{{}, {}};
    for (const auto& [sKey, jsValue] : *pMembers) {
        if (!ReportPart::IsPart(sKey)) {
            if (sKey != "made") { // two reports differ in that anyway
                stReport.Add(sKey, TextOf(jsValue, nullptr));
            }
            continue;
        }
        DiffRecord stPart{sKey, sKey, sKey};
        stPart.Add("readable", jsValue.IsNull() ? "no" : "yes");
        if (const auto* pObject = jsValue.As<Json::Members>(); pObject != nullptr) {
            AddMembers(*pObject, {}, stPart);
        } else if (const auto* pElements = jsValue.As<Json::Elements>(); pElements != nullptr) {
            AddRecords(*pElements, sKey, RowsOfPart(sKey), stPart);
        }
        stReport.vecRecord.push_back(std::move(stPart));
    }
    return stReport;
}

} // namespace Vrnt
