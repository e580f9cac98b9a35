#include "Check/CheckSarif.h"

#include "Output/Output.h"

#include <algorithm>
#include <cctype>

namespace Vrnt {

namespace {

/** A file's name as an address: relative where the name is. */
std::string ToUri(const std::string& _rsName)
{
    const bool bDrive = _rsName.size() > 2 && _rsName[1] == ':';
    std::string sUri = bDrive ? "file:///" : _rsName.starts_with(R"(\\)") ? "file:" : "";
    for (std::size_t i = 0; i < _rsName.size(); ++i) {
        const auto uc = static_cast<unsigned char>(_rsName[i]);
        if (uc == '\\') {
            sUri += '/';
        } else if (std::isalnum(uc) != 0 || std::string_view("/-._~").find(_rsName[i]) != std::string_view::npos ||
                   (bDrive && i == 1)) {
            sUri += _rsName[i];
        } else {
            sUri += "%" + Hexadecimal(uc, 2).substr(2);
        }
    }
    return sUri;
}

Json RulesToJson()
{
    Json jsRules = Json::Array();
    for (const RuleRow& stRule : Rules()) {
        jsRules.Add({{"id", stRule.szId}, {"shortDescription", {{"text", stRule.szMeaning}}}});
    }
    return jsRules;
}

Json ResultOf(const Finding& _rstFinding, const std::string& _rsUri)
{
    Json jsLocation{
        {"physicalLocation",
         {{"artifactLocation", {{"uri", _rsUri}}},
          {"region",
           {{"startLine", std::max(_rstFinding.ulLine, 1U)}, {"startColumn", std::max(_rstFinding.ulColumn, 1U)}}}}}};
    if (!_rstFinding.sElement.empty()) {
        jsLocation.Set("logicalLocations", std::vector<Json>{{{"fullyQualifiedName", _rstFinding.sElement}}});
    }
    return {{"ruleId", RowOf(_rstFinding.enRule).szId},
            {"ruleIndex", static_cast<unsigned>(_rstFinding.enRule)},
            {"level", SeverityText(_rstFinding.enSeverity)},
            {"message", {{"text", _rstFinding.sText}}},
            {"locations", std::vector<Json>{std::move(jsLocation)}}};
}

} // namespace

Json ToSarif(const std::vector<CheckedFile>& _rvecFile)
{
    Json jsResults = Json::Array();
    Json jsNotifications = Json::Array();
    bool bTrouble = false;
    for (const CheckedFile& stFile : _rvecFile) {
        const std::string sUri = ToUri(stFile.sName);
        for (const Finding& stFinding : stFile.vecFinding) {
            jsResults.Add(ResultOf(stFinding, sUri));
        }
        if (!stFile.sTrouble.empty()) {
            bTrouble = true;
            jsNotifications.Add({{"level", "error"}, {"message", {{"text", stFile.sTrouble}}}});
        }
    }
    const Json jsDriver{{"name", "vrnt"}, {"version", VARNHELT_VERSION}, {"rules", RulesToJson()}};
    Json jsRun{{"tool", {{"driver", jsDriver}}},
               {"columnKind", "unicodeCodePoints"},
               {"invocations", std::vector<Json>{{{"executionSuccessful", !bTrouble},
                                                  {"toolExecutionNotifications", jsNotifications}}}},
               {"results", jsResults}};
    return {{"$schema", "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json"},
            {"version", "2.1.0"},
            {"runs", std::vector<Json>{std::move(jsRun)}}};
}

} // namespace Vrnt
