// vrnt documents: every configuration document, and whether it is there.

#include "DocumentTable.h"
#include "Frwk_Utility.h"
#include "Output.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"
#include "ValueTypeTable.h"
#include "ZkComn_String.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace Vrnt {

namespace {

using Varnhelt::Document;
using Varnhelt::Location;

const char* LocationText(Location _enLocation)
{
    switch (_enLocation) {
    case Location::Installed:
        return "installed";
    case Location::Directory:
        return "directory";
    default:
        return "path";
    }
}

std::vector<std::string> ValueTypesOf(const Document& _rstDocument)
{
    std::vector<std::string> vecText;
    for (const Varnhelt::ValueTypeRow& stRow : Varnhelt::ValueTypes()) {
        if (stRow.enDocument == _rstDocument.enId) {
            vecText.push_back(Hexadecimal(stRow.ulValueType, 1));
        }
    }
    return vecText;
}

/** The size of a document of the installed folder; nothing where it is not there or lies elsewhere. */
std::optional<std::uintmax_t> SizeOf(const Document& _rstDocument, const std::wstring& _rtszInstalledFolder)
{
    if (_rstDocument.enLocation != Location::Installed || _rtszInstalledFolder.empty()) {
        return std::nullopt;
    }
    std::error_code cError;
    const std::filesystem::path tszPath = ZkCommon::String::WithBackslash(_rtszInstalledFolder) + _rstDocument.pszFile;
    const std::uintmax_t uSize = std::filesystem::file_size(tszPath, cError);
    return cError ? std::nullopt : std::optional(uSize);
}

void ListDocuments(Tool& _rTool)
{
    const std::wstring tszInstalledFolder = Frwk::Utility::GetInstalledFolder();
    Json jsDocuments = Json::array();
    Table cTable({"document", "file", "location", "encrypted", "value types", "present", "size"});
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        const std::string sName = ZkCommon::String::ToUtf8(stDocument.svName);
        const Json jsFile = stDocument.pszFile == nullptr ? Json() : Json(ZkCommon::String::ToUtf8(stDocument.pszFile));
        const std::vector<std::string> vecValueType = ValueTypesOf(stDocument);
        const std::optional<std::uintmax_t> uSize = SizeOf(stDocument, tszInstalledFolder);
        jsDocuments.push_back({{"document", sName},
                               {"file", jsFile},
                               {"location", LocationText(stDocument.enLocation)},
                               {"encrypted", stDocument.szKey != nullptr},
                               {"valueTypes", vecValueType},
                               {"present", uSize.has_value()},
                               {"size", uSize ? Json(*uSize) : Json()}});
        const bool bInstalled = stDocument.enLocation == Location::Installed;
        cTable.Add({sName, jsFile.is_null() ? "(as requested)" : jsFile.get<std::string>(),
                    LocationText(stDocument.enLocation), stDocument.szKey != nullptr ? "yes" : "no",
                    CLI::detail::join(vecValueType, " "), uSize ? "yes" : (bInstalled ? "no" : "-"),
                    uSize ? std::to_string(*uSize) : ""});
    }
    if (!_rTool.stOptions.bJson) {
        Write("Installed folder: " +
              (tszInstalledFolder.empty() ? "(not registered)" : ZkCommon::String::ToUtf8(tszInstalledFolder)) +
              "\n\n");
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
