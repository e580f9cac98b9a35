#pragma once

#include "Check/DocumentCheck.h"
#include "Machine/InstalledDocuments.h"
#include "Machine/Machine.h"
#include "Machine/TraceFile.h"
#include "Machine/Versions.h"
#include "Output/Table.h"
#include "SrvFrwk_Records.h"

#include <string>
#include <vector>

namespace Vrnt {

/** What the library answered to a query. */
template <class TValue>
struct Answer
{
    TValue value;                           // also after a failure: what came before it
    std::string sFailure = "was not asked"; // the result code and why; empty when it was answered

    bool IsFailure() const noexcept { return !sFailure.empty(); }
};

/** What a check found in a document that is there. */
struct CheckedDocument
{
    std::string sFile;
    std::vector<Finding> vecFinding;
    std::string sUnreadable; // why it could not be looked at; empty: it was
};

/** The installed configuration. */
struct ReportData
{
    MachineFacts stMachine;
    std::vector<TraceFileLine> vecTraceError; // the newest last
    InstalledDocuments stDocuments;
    Answer<std::vector<SrvFrwk::ServiceUnit>> stServiceUnits;
    Answer<std::vector<SrvFrwk::PolicyController>> stPolicy;
    Answer<std::vector<SrvFrwk::DataController>> stEnforceData;
    Answer<SrvFrwk::InstallPuIds> stPuIds;
    std::vector<CheckedDocument> vecChecked;
    Table cTrace;
    std::vector<VersionFact> vecVersion;
};

/**
 * The installed configuration as one page of HTML in UTF-8, which needs nothing but itself and has no script. The same
 * data give the same bytes.
 */
std::string ReportPage(const ReportData& _rstData);

} // namespace Vrnt
