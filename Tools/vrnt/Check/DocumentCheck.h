#pragma once

#include "Files/DocumentTable.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/** Looks through a document as its reader would, for whoever writes it. */
namespace Vrnt {

enum class Severity : std::uint8_t
{
    Warning, // a reader would take a default, or ignore it
    Error,   // a reader would refuse or drop it
};

/** "error" or "warning". */
const char* SeverityText(Severity _enSeverity);

struct Finding
{
    std::uint32_t ulLine = 0; // counted from 1; 0 when it is about the whole file
    Severity enSeverity = Severity::Warning;
    std::string sElement; // the path of the element: "/PolicyEnforceLayer/PolicyControllers"
    std::string sText;    // one line
};

std::size_t CountErrors(const std::vector<Finding>& _rvecFinding);

/** Is told how much of a document was looked at, from 0 to 1. */
using Progress = std::function<void(double _dDone)>;

/**
 * What is to be said about a document, plain or encrypted, in the order of its lines. The file is only read; the installed
 * product is not needed.
 * @throws UsageError when the file cannot be read
 */
std::vector<Finding> CheckDocument(const Varnhelt::Document& _rstDocument, const std::wstring& _rtszPath,
                                   const Progress& _fnProgress = {});

} // namespace Vrnt
