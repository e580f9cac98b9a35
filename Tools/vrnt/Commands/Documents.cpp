// vrnt documents: every configuration document, and whether it is there.

#include "Commands/Commands.h"
#include "Machine/InstalledDocuments.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

void RunDocuments(Tool& _rTool, const Arguments&)
{
    const InstalledDocuments stInstalled = FindInstalledDocuments();
    Json jsDocuments = Json::Array();
    Table cTable({"document", "file", "location", "encrypted", "value types", "present", "size"});
    for (const DocumentState& stState : stInstalled.vecDocument) {
        const std::string sName = ZkCommon::String::ToUtf8(stState.pDocument->svName);
        const bool bEncrypted = stState.pDocument->szKey != nullptr;
        jsDocuments.Add({{"document", sName},
                         {"file", stState.pDocument->pszFile == nullptr ? Json() : Json(stState.FileText())},
                         {"location", stState.LocationText()},
                         {"encrypted", bEncrypted},
                         {"valueTypes", stState.vecValueType},
                         {"present", stState.uSize.has_value()},
                         {"size", stState.uSize ? Json(*stState.uSize) : Json()}});
        cTable.Add({sName, stState.FileText(), stState.LocationText(), bEncrypted ? "yes" : "no",
                    Joined(stState.vecValueType, " "), stState.uSize ? "yes" : (stState.IsInstalled() ? "no" : "-"),
                    stState.uSize ? std::to_string(*stState.uSize) : ""});
    }
    PrintText(_rTool, "Installed folder: " + stInstalled.FolderText() + "\n\n");
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, jsDocuments, cTable);
}

} // namespace

constinit const Command g_stDocuments{.szName = "documents",
                                      .szHelp = "List every configuration document, where it is and whether it is "
                                                "present",
                                      .szExample = "vrnt documents --json",
                                      .pfnRun = &RunDocuments};

} // namespace Vrnt
