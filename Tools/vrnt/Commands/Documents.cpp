// vrnt documents: every configuration document, and whether it is there.

#include "Commands/Commands.h"
#include "Machine/InstalledDocuments.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

Json InstalledToJson(const InstalledDocuments& _rstInstalled)
{
    Json jsDocuments = Json::Array();
    for (const DocumentState& stState : _rstInstalled.vecDocument) {
        jsDocuments.Add({{"document", std::wstring(stState.pDocument->svName)},
                         {"file", stState.pDocument->pszFile == nullptr ? Json() : Json(stState.FileText())},
                         {"location", stState.LocationText()},
                         {"encrypted", stState.pDocument->szKey != nullptr},
                         {"valueTypes", stState.vecValueType},
                         {"present", stState.uSize.has_value()},
                         {"size", stState.uSize ? Json(*stState.uSize) : Json()}});
    }
    return jsDocuments;
}

Table InstalledToTable(const InstalledDocuments& _rstInstalled)
{
    Table cTable({"document", "file", "location", "encrypted", "value types", "present", "size"});
    for (const DocumentState& stState : _rstInstalled.vecDocument) {
        cTable.Add({ZkCommon::String::ToUtf8(stState.pDocument->svName), stState.FileText(), stState.LocationText(),
                    stState.pDocument->szKey != nullptr ? "yes" : "no", Joined(stState.vecValueType, " "),
                    stState.uSize ? "yes" : (stState.IsInstalled() ? "no" : "-"),
                    stState.uSize ? std::to_string(*stState.uSize) : ""});
    }
    return cTable;
}

void RunDocuments(Tool& _rTool, const Arguments&)
{
    const InstalledDocuments stInstalled = FindInstalledDocuments();
    PrintText(_rTool, "Installed folder: " + stInstalled.FolderText() + "\n\n");
    PrintAnswer(
        _rTool, SrvFrwk::Result::g_ulSuccess, [&] { return InstalledToJson(stInstalled); },
        [&] { return InstalledToTable(stInstalled); });
}

} // namespace

constinit const Command g_stDocuments{.szName = "documents",
                                      .szHelp = "List every configuration document, where it is and whether it is "
                                                "present",
                                      .szExample = "vrnt documents --json",
                                      .pfnRun = &RunDocuments};

} // namespace Vrnt
