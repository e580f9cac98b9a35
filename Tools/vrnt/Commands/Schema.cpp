// vrnt schema: an XML Schema for an author's editor.

#include "Check/DocumentSchema.h"
#include "Commands/Commands.h"
#include "Commands/CommonArguments.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"

namespace Vrnt {

namespace {

constexpr const Argument* g_apArgument[] = {&g_stDocumentKind};

void Run(Tool& _rTool, const Arguments& _rArguments)
{
    const std::string sSchema = SchemaOf(DocumentKind(_rArguments));
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
                                   .aArgument = g_apArgument,
                                   .pfnRun = &Run};

} // namespace Vrnt
