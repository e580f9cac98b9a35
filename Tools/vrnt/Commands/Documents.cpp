// vrnt documents: every configuration document, and whether it is there.

#include "Machine/InstalledDocuments.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"
#include "ZkComn_String.h"

namespace Vrnt {

namespace {

void ListDocuments(Tool& _rTool)
{
    const InstalledDocuments stInstalled = FindInstalledDocuments();
    Json jsDocuments = Json::array();
    Table cTable({"document", "file", "location", "encrypted", "value types", "present", "size"});
    for (const DocumentState& stState : stInstalled.vecDocument) {
        const std::string sName = ZkCommon::String::ToUtf8(stState.pDocument->svName);
        const bool bEncrypted = stState.pDocument->szKey != nullptr;
        jsDocuments.push_back({{"document", sName},
                               {"file", stState.pDocument->pszFile == nullptr ? Json() : Json(stState.FileText())},
                               {"location", stState.LocationText()},
                               {"encrypted", bEncrypted},
                               {"valueTypes", stState.vecValueType},
                               {"present", stState.uSize.has_value()},
                               {"size", stState.uSize ? Json(*stState.uSize) : Json()}});
        cTable.Add({sName, stState.FileText(), stState.LocationText(), bEncrypted ? "yes" : "no",
                    CLI::detail::join(stState.vecValueType, " "),
                    stState.uSize ? "yes" : (stState.IsInstalled() ? "no" : "-"),
                    stState.uSize ? std::to_string(*stState.uSize) : ""});
    }
    if (!_rTool.stOptions.bJson) {
        Write("Installed folder: " + stInstalled.FolderText() + "\n\n");
    }
    Report(_rTool, SrvFrwk::Result::g_ulSuccess, jsDocuments, cTable);
}

} // namespace

void AddDocuments(Tool& _rTool)
{
    CLI::App* pDocuments = _rTool.cApp.add_subcommand(
        "documents", "List every configuration document, where it lies and whether it is present");
    pDocuments->footer("Example: vrnt --json documents");
    pDocuments->callback([&_rTool] { ListDocuments(_rTool); });
}

} // namespace Vrnt
