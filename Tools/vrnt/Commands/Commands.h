#pragma once

#include "Command.h"

/** Every command and group. Each is defined in the file of its name, in this folder. */
namespace Vrnt {

/** The whole tool. */
extern const Command g_stVrnt;

extern const Command g_stQuery;
extern const Command g_stQueryServiceUnits;
extern const Command g_stQueryPolicy;
extern const Command g_stQueryEnforceData;
extern const Command g_stQueryPuIds;
extern const Command g_stQueryCompetitorActions;
extern const Command g_stQueryCompetitorDetections;
extern const Command g_stQueryThreatName; // in QueryThreats.cpp, with the next three
extern const Command g_stQueryThreatDescription;
extern const Command g_stQueryThreatRecommendation;
extern const Command g_stQueryScannerTitle;
extern const Command g_stQueryKeyConfig;
extern const Command g_stQueryRegistryData;
extern const Command g_stQueryCompatibility;

extern const Command g_stStore;
extern const Command g_stStorePolicy;
extern const Command g_stStorePreUpdateList;

extern const Command g_stDirect;
extern const Command g_stDirectVersionInfo;
extern const Command g_stDirectAlias;
extern const Command g_stDirectStoreAlias;
extern const Command g_stDirectComponent;

extern const Command g_stUpdate;
extern const Command g_stXen;
extern const Command g_stCheck;
extern const Command g_stDiff;
extern const Command g_stSchema;
extern const Command g_stDocuments;
extern const Command g_stTrace;
extern const Command g_stTraceShow;
extern const Command g_stTraceRecord;
extern const Command g_stReport;
extern const Command g_stSample;
extern const Command g_stCompletion;
extern const Command g_stHelpCommand;

} // namespace Vrnt
