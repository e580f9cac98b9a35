// Tables on the report's page. On a narrow screen a row is a card on which each cell has its column's heading.

#include "Output/Output.h"
#include "Report/ReportSections.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace Vrnt {

using Html::Element;
using Html::Markup;
using ZkCommon::String::ToUtf8;

namespace {

bool SaysNothing(const std::string& _rsText)
{
    return _rsText.empty() || _rsText == "eNone";
}

constexpr const char* g_szDash = "\xE2\x80\x93";

/** A text that no word of a document is as long as may be broken anywhere. */
const char* BreakClass(const std::string& _rsText)
{
    constexpr std::size_t uLongestWord = 24;
    return _rsText.size() > uLongestWord ? "long" : "";
}

Markup CellContent(const std::string& _rsText, const std::string& _rsSecond)
{
    const Markup cText = SaysNothing(_rsText) ? Markup(g_szDash) : Markup(_rsText);
    return SaysNothing(_rsSecond) ? cText : cText + " " + Element("small", _rsSecond);
}

} // namespace

std::string ControllerWord(std::uint32_t _ulController)
{
    return ToUtf8(Frwk::Utility::ToText(Frwk::Words::g_stControllerType, _ulController));
}

std::string ProviderWord(std::uint32_t _ulProvider)
{
    return ToUtf8(Frwk::Utility::ToText(Frwk::Words::g_stProviderType, _ulProvider));
}

Markup Cell(const std::string& _rsHeading, const std::string& _rsText, const std::string& _rsSecond)
{
    if (SaysNothing(_rsText) && SaysNothing(_rsSecond)) {
        return Element("td", {{"data-label", _rsHeading}, {"class", "off nothing"}}, g_szDash);
    }
    const bool bOff = _rsText == "no" && (_rsSecond.empty() || _rsSecond == "no");
    return Element("td", {{"data-label", _rsHeading}, {"class", bOff ? "off" : BreakClass(_rsText)}},
                   CellContent(_rsText, _rsSecond));
}

Markup HeadingRow(const std::vector<std::string>& _rvecHeading)
{
    Markup cCells;
    for (const std::string& sHeading : _rvecHeading) {
        cCells += Element("th", {{"scope", "col"}}, sHeading);
    }
    return Element("thead", Element("tr", cCells));
}

Markup TableOf(const char* _szClass, const std::vector<std::string>& _rvecHeading, const Markup& _rBodies)
{
    return Element("table", {{"class", _szClass}}, HeadingRow(_rvecHeading) + _rBodies);
}

Markup GroupRow(std::size_t _uColumns, const std::string& _rsName, const std::string& _rsNote)
{
    return Element("tr", {{"class", "group"}},
                   Element("th", {{"colspan", std::to_string(_uColumns)}, {"scope", "rowgroup"}},
                           Markup(_rsName) + " " + Element("small", _rsNote)));
}

std::vector<std::string> HeadingsOf(std::span<const Column> _aColumn)
{
    std::vector<std::string> vecHeading;
    for (const Column& stColumn : _aColumn) {
        vecHeading.emplace_back(stColumn.szHeading);
    }
    return vecHeading;
}

std::map<std::string, std::string> TextsOf(const void* _pRecord, const RecordRows& _rvecRow)
{
    std::map<std::string, std::string> mapText;
    for (const FieldRow& stRow : _rvecRow) {
        if (!stRow.IsList()) {
            mapText[stRow.szKey] = FieldToCell(stRow, _pRecord);
        }
    }
    return mapText;
}

Markup RecordRow(std::span<const Column> _aColumn, const std::map<std::string, std::string>& _rmapText)
{
    Markup cCells;
    for (const Column& stColumn : _aColumn) {
        const std::string& rsText = _rmapText.at(stColumn.szKey);
        const std::string sSecond = stColumn.szSecondKey != nullptr ? _rmapText.at(stColumn.szSecondKey) : "";
        cCells += stColumn.bTitle
                      ? Element("th", {{"scope", "row"}, {"class", std::string("title ") + BreakClass(rsText)}},
                                CellContent(rsText, sSecond))
                      : Cell(stColumn.szHeading, rsText, sSecond);
    }
    return Element("tr", cCells);
}

} // namespace Vrnt
