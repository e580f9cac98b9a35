#include "Commands/CommonArguments.h"

#include "Arguments.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace Vrnt {

constinit const Argument g_stDirectory{
    .szName = "--dir", .szHelp = "The directory of the document", .szValue = "DIR", .bRequired = true};

constinit const Argument g_stFileName{
    .szName = "--file", .szHelp = "The document's name there", .szValue = "NAME", .bRequired = true};

constinit const Argument g_stInput{.szName = "--input",
                                   .szHelp = "The records in JSON, as --json prints them: the whole object or its "
                                             "\"data\", numbers or words; - is standard input",
                                   .szValue = "FILE.json",
                                   .bRequired = true};

constinit const Argument g_stDocumentKind{
    .szName = "--document", .szHelp = "The kind of document", .szValue = "D", .pfnChoices = &DocumentNames};

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

const Varnhelt::Document* DocumentKind(const Arguments& _rArguments)
{
    return Varnhelt::FindDocument(ToWide(_rArguments.Text(g_stDocumentKind)));
}

SrvFrwk::XmlDirectoryConfig ToDirectoryConfig(const Arguments& _rArguments)
{
    return {{}, _rArguments.Path(g_stDirectory)};
}

SrvFrwk::XmlPathConfig ToPathConfig(const Arguments& _rArguments)
{
    return {ToDirectoryConfig(_rArguments), ToWide(_rArguments.Text(g_stFileName))};
}

} // namespace Vrnt
