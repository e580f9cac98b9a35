// vrnt check: tells an author what a reader would make of a document.

#include "Check/DocumentCheck.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "SrvFrwk_ResultCode.h"

namespace Vrnt {

namespace {

constexpr Argument g_stFile{
    .szName = "FILE", .szHelp = "The document, plain or encrypted; it is only read", .bRequired = true};
constexpr const Argument* g_apArgument[] = {&g_stDocumentKind, &g_stFile};

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
    Json jsFindings = Json::Array();
    for (const Finding& stFinding : _rvecFinding) {
        jsFindings.Add({{"line", stFinding.ulLine},
                        {"severity", SeverityText(stFinding.enSeverity)},
                        {"element", stFinding.sElement},
                        {"text", stFinding.sText}});
    }
    return jsFindings;
}

void Run(Tool& _rTool, const Arguments& _rArguments)
{
    const std::string& rsFile = _rArguments.Text(g_stFile);
    ProgressLine cProgress("Checking " + rsFile);
    const std::vector<Finding> vecFinding =
        CheckDocument(DocumentKind(_rArguments), _rArguments.Path(g_stFile), cProgress.Teller());
    cProgress.End();
    if (_rTool.stOptions.bJson) {
        const std::uint32_t ulResult = vecFinding.empty() ? SrvFrwk::Result::g_ulSuccess : SrvFrwk::Result::g_ulFailed;
        WriteJson(ulResult, ToJson(vecFinding));
    } else {
        Write(ToText(vecFinding, rsFile));
    }
    _rTool.iExitStatus = vecFinding.empty() ? ExitSuccess : ExitFailure;
}

} // namespace

constinit const Command g_stCheck{
    .szName = "check",
    .szHelp = "Report what a reader would default, skip or refuse in a document; status 1 when there is anything",
    .szExample = "vrnt check --document policy FwPolicy.xml",
    .aArgument = g_apArgument,
    .pfnRun = &Run};

} // namespace Vrnt
