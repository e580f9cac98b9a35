// vrnt query: what a host asks a function object for.

#include "Commands/Commands.h"

namespace Vrnt {

namespace {

constexpr const Command* g_apQueryCommand[] = {
    &g_stQueryServiceUnits,
    &g_stQueryPolicy,
    &g_stQueryEnforceData,
    &g_stQueryPuIds,
    &g_stQueryCompetitorActions,
    &g_stQueryCompetitorDetections,
    &g_stQueryThreatName,
    &g_stQueryThreatDescription,
    &g_stQueryThreatRecommendation,
    &g_stQueryScannerTitle,
    &g_stQueryKeyConfig,
    &g_stQueryRegistryData,
    &g_stQueryCompatibility,
};

} // namespace

constinit const Command g_stQuery{.szName = "query",
                                  .szHelp = "Ask a function object for a configuration document",
                                  .szExample = "vrnt query policy --controller eAntiVirus",
                                  .aCommand = g_apQueryCommand};

} // namespace Vrnt
