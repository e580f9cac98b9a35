#include "Commands/DocumentArgument.h"

#include "ZkComn_String.h"

#include <algorithm>

namespace Vrnt {

std::vector<std::string> DocumentNames()
{
    std::vector<std::string> vecName;
    for (const Varnhelt::Document& stDocument : Varnhelt::DocumentTable()) {
        const std::string sName = ZkCommon::String::ToUtf8(stDocument.svName);
        if (std::ranges::find(vecName, sName) == vecName.end()) {
            vecName.push_back(sName);
        }
    }
    return vecName;
}

void AddDocumentOption(CLI::App* _pCommand, std::string& _rsDocument)
{
    _pCommand->add_option("--document", _rsDocument, "The kind of document")
        ->type_name("D")
        ->required()
        ->check(CLI::IsMember(DocumentNames()));
}

const Varnhelt::Document& DocumentNamed(const std::string& _rsName)
{
    return *Varnhelt::FindDocument(ToWide(_rsName));
}

} // namespace Vrnt
