// vrnt: all of its commands, in the order of the help.

#include "Commands/Commands.h"

namespace Vrnt {

namespace {

constexpr const Command* g_apVrntCommand[] = {&g_stQuery,  &g_stStore,  &g_stDirect,     &g_stUpdate,     &g_stXen,
                                              &g_stCheck,  &g_stDiff,   &g_stSchema,     &g_stDocuments,  &g_stTrace,
                                              &g_stReport, &g_stSample, &g_stCompletion, &g_stHelpCommand};

} // namespace

constinit const Command g_stVrnt{
    .szName = "vrnt",
    .szHelp = "Asks Varnhelt.dll for configuration, and prepares and inspects the product's documents.",
    .szExample = "vrnt documents",
    .szNote = "Exit status: 0 success, 1 a failure code, 2 a usage error or an input file that cannot be read. "
              "vrnt --version prints the version.",
    .aCommand = g_apVrntCommand};

} // namespace Vrnt
