// vrnt direct: documents that only the readers themselves give.

#include "Commands/Commands.h"

namespace Vrnt {

namespace {

constexpr const Command* g_apDirectCommand[] = {&g_stDirectVersionInfo, &g_stDirectAlias, &g_stDirectStoreAlias,
                                                &g_stDirectComponent};

} // namespace

constinit const Command g_stDirect{.szName = "direct",
                                   .szHelp = "Read and write the documents that no function object serves",
                                   .szExample = "vrnt direct version-info --dir C:\\Setup",
                                   .aCommand = g_apDirectCommand};

} // namespace Vrnt
