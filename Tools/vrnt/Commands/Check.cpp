// vrnt check: tells an author what a reader would make of a document.

#include "Check/DocumentCheck.h"
#include "Commands/DocumentArgument.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"

#include <memory>

namespace Vrnt {

namespace {

struct CheckOptions
{
    std::string sDocument;
    std::string sFile;
};

std::string ToText(const std::vector<Finding>& _rvecFinding, const std::string& _rsFile)
{
    std::string sText;
    for (const Finding& stFinding : _rvecFinding) {
        sText += _rsFile + ":" + std::to_string(stFinding.ulLine) + ": " + SeverityText(stFinding.enSeverity) + ": " +
                 stFinding.sText + "\n";
    }
    if (!_rvecFinding.empty()) {
        const std::size_t uErrors = CountErrors(_rvecFinding);
        sText += Count(uErrors, "error") + ", " + Count(_rvecFinding.size() - uErrors, "warning") + "\n";
    }
    return sText;
}

Json ToJson(const std::vector<Finding>& _rvecFinding)
{
    Json jsFindings = Json::array();
    for (const Finding& stFinding : _rvecFinding) {
        jsFindings.push_back({{"line", stFinding.ulLine},
                              {"severity", SeverityText(stFinding.enSeverity)},
                              {"element", stFinding.sElement},
                              {"text", stFinding.sText}});
    }
    return jsFindings;
}

void Check(Tool& _rTool, const CheckOptions& _rstOptions)
{
    ProgressLine cProgress("Checking " + _rstOptions.sFile);
    const std::vector<Finding> vecFinding =
        CheckDocument(DocumentNamed(_rstOptions.sDocument), ToFullPath(_rstOptions.sFile), cProgress.Teller());
    cProgress.End();
    if (_rTool.stOptions.bJson) {
        const std::uint32_t ulResult = vecFinding.empty() ? SrvFrwk::Result::g_ulSuccess : SrvFrwk::Result::g_ulFailed;
        WriteJson(ulResult, ToJson(vecFinding));
    } else {
        Write(ToText(vecFinding, _rstOptions.sFile));
    }
    _rTool.iExitStatus = vecFinding.empty() ? ExitSuccess : ExitFailure;
}

} // namespace

void AddCheck(Tool& _rTool)
{
    const auto pOptions = std::make_shared<CheckOptions>();
    CLI::App* pCheck = _rTool.cApp.add_subcommand(
        "check", "Tell what a reader would default, skip or refuse in a document; status 1 when there is anything");
    AddDocumentOption(pCheck, pOptions->sDocument);
    pCheck->add_option("FILE", pOptions->sFile, "The document, plain or encrypted; it is only read")->required();
    pCheck->footer("Example: vrnt check --document policy FwPolicy.xml");
    pCheck->callback([&_rTool, pOptions] { Check(_rTool, *pOptions); });
}

} // namespace Vrnt
