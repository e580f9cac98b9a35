// vrnt schema: an XML Schema for an author's editor.

#include "Check/DocumentSchema.h"
#include "Commands/DocumentArgument.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "Tool.h"

#include <memory>

namespace Vrnt {

void AddSchema(Tool& _rTool)
{
    const auto pDocument = std::make_shared<std::string>();
    CLI::App* pSchema = _rTool.cApp.add_subcommand(
        "schema", "Print an XML Schema by which an editor completes and validates a document");
    AddDocumentOption(pSchema, *pDocument);
    pSchema->footer("Example: vrnt schema --document policy > FwPolicy.xsd");
    pSchema->callback([&_rTool, pDocument] {
        const std::string sSchema = SchemaOf(DocumentNamed(*pDocument));
        if (_rTool.stOptions.bJson) {
            WriteJson(SrvFrwk::Result::g_ulSuccess, sSchema);
        } else {
            Write(sSchema);
        }
    });
}

} // namespace Vrnt
