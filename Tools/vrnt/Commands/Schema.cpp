// vrnt schema: an XML Schema for an author's editor, and the catalog by which editors find schemas.

#include "Arguments.h"
#include "Check/DocumentSchema.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"

namespace Vrnt {

namespace {

constexpr Argument g_stCatalog{.szName = "--catalog",
                               .szHelp =
                                   "Print an XML catalog instead, by which urn:varnhelt:D is the file D.xsd beside it",
                               .pExcludes = &g_stDocumentKind};
constexpr const Argument* g_apSchemaArgument[] = {&g_stDocumentKind, &g_stCatalog};

void RunSchema(Tool& _rTool, const Arguments& _rArguments)
{
    const Varnhelt::Document* pDocument = DocumentKind(_rArguments);
    if (pDocument == nullptr && !_rArguments.Has(g_stCatalog)) {
        throw UsageError("one of --document and --catalog is required");
    }
    const std::string sSchema = pDocument != nullptr ? SchemaOf(*pDocument) : SchemaCatalog();
    if (_rTool.stOptions.bJson) {
        WriteJson(SrvFrwk::Result::g_ulSuccess, sSchema);
    } else {
        Write(sSchema);
    }
}

} // namespace

constinit const Command g_stSchema{.szName = "schema",
                                   .szHelp =
                                       "Print an XML Schema by which an editor completes and validates a document",
                                   .szExample = "vrnt schema --document policy > FwPolicy.xsd",
                                   .aArgument = g_apSchemaArgument,
                                   .pfnRun = &RunSchema};

} // namespace Vrnt
