#include "Diff/DiffRecord.h"

#include "Check/DocumentShape.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <deque>
#include <map>

namespace Vrnt {

namespace {

/** By what a record is found among those of the other side. */
std::string KeyOf(const DiffRecord& _rstRecord)
{
    std::string sKey = _rstRecord.sKind + '\n' + _rstRecord.sIdentity;
    if (_rstRecord.sIdentity.empty()) {
        for (const auto& [sField, sValue] : _rstRecord.vecField) {
            sKey.append(1, '\n').append(sField).append(1, '=').append(std::to_string(sValue.size()));
            sKey.append(1, ':').append(sValue);
        }
    }
    return sKey;
}

std::string Below(const std::string& _rsWhere, const std::string& _rsTitle)
{
    return _rsWhere.empty() ? _rsTitle : _rsTitle.empty() ? _rsWhere : _rsWhere + " " + _rsTitle;
}

/** A value within a line: in quotation marks unless it is one word. */
std::string Shown(const std::string& _rsValue)
{
    const bool bWord = !_rsValue.empty() && _rsValue.size() <= 80 &&
                       std::ranges::none_of(_rsValue, [](unsigned char _c) { return _c <= ' ' || _c == ','; });
    return bWord ? _rsValue : Cited(ZkCommon::String::FromUtf8(_rsValue));
}

class Comparison
{
public:
    void Compare(const DiffRecord& _rstOld, const DiffRecord& _rstNew, const std::string& _rsWhere)
    {
        CompareFields(_rstOld, _rstNew, _rsWhere);
        std::map<std::string, std::deque<const DiffRecord*>> mapNew; // those that are not matched yet
        for (const DiffRecord& stNew : _rstNew.vecRecord) {
            mapNew[KeyOf(stNew)].push_back(&stNew);
        }
        for (const DiffRecord& stOld : _rstOld.vecRecord) {
            std::deque<const DiffRecord*>& rqueMatch = mapNew[KeyOf(stOld)];
            if (rqueMatch.empty()) {
                AddWhole(Change::Removed, stOld, _rsWhere);
            } else {
                Compare(stOld, *rqueMatch.front(), Below(_rsWhere, stOld.sTitle));
                rqueMatch.pop_front();
            }
        }
        for (const DiffRecord& stNew : _rstNew.vecRecord) {
            std::deque<const DiffRecord*>& rqueLeft = mapNew[KeyOf(stNew)]; // in the document's order, as this walk
            if (!rqueLeft.empty() && rqueLeft.front() == &stNew) {
                AddWhole(Change::Added, stNew, _rsWhere);
                rqueLeft.pop_front();
            }
        }
    }

    std::vector<Difference> Take() { return std::move(m_vecDifference); }

private:
    void CompareFields(const DiffRecord& _rstOld, const DiffRecord& _rstNew, const std::string& _rsWhere)
    {
        for (const auto& [sField, sOld] : _rstOld.vecField) {
            const std::string sNew = ValueOf(_rstNew, sField);
            if (sNew != sOld) {
                m_vecDifference.push_back({Change::Changed, _rsWhere, {sField, sOld}, sNew});
            }
        }
        for (const auto& [sField, sNew] : _rstNew.vecField) {
            if (std::ranges::find(_rstOld.vecField, sField, &DiffField::first) == _rstOld.vecField.end() &&
                !sNew.empty()) {
                m_vecDifference.push_back({Change::Changed, _rsWhere, {sField, {}}, sNew});
            }
        }
    }

    static std::string ValueOf(const DiffRecord& _rstRecord, const std::string& _rsField)
    {
        const auto itField = std::ranges::find(_rstRecord.vecField, _rsField, &DiffField::first);
        return itField == _rstRecord.vecField.end() ? std::string() : itField->second;
    }

    void AddWhole(Change _enChange, const DiffRecord& _rstRecord, const std::string& _rsWhere)
    {
        const std::string sWhere = Below(_rsWhere, _rstRecord.sTitle);
        m_vecDifference.push_back({_enChange, sWhere, {}, {}, _rstRecord.vecField});
        for (const DiffRecord& stInner : _rstRecord.vecRecord) {
            AddWhole(_enChange, stInner, sWhere);
        }
    }

    std::vector<Difference> m_vecDifference;
};

} // namespace

const char* ChangeText(Change _enChange)
{
    switch (_enChange) {
    case Change::Added:
        return "added";
    case Change::Removed:
        return "removed";
    default:
        return "changed";
    }
}

std::vector<Difference> Compare(const DiffRecord& _rstOld, const DiffRecord& _rstNew)
{
    Comparison cComparison;
    cComparison.Compare(_rstOld, _rstNew, {});
    return cComparison.Take();
}

std::string ToText(const Difference& _rstDifference)
{
    std::string sText = _rstDifference.sWhere.empty() ? "" : _rstDifference.sWhere + ": ";
    if (_rstDifference.enChange == Change::Changed) {
        return sText + _rstDifference.prOld.first + " " + Shown(_rstDifference.prOld.second) + " -> " +
               Shown(_rstDifference.sNew);
    }
    sText += ChangeText(_rstDifference.enChange);
    const char* szBefore = ": ";
    for (const auto& [sField, sValue] : _rstDifference.vecField) {
        if (!sValue.empty()) {
            sText += szBefore + sField + " " + Shown(sValue);
            szBefore = ", ";
        }
    }
    return sText;
}

} // namespace Vrnt
