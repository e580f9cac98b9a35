#pragma once

#include "Check/Rules.h"
#include "Files/DocumentTable.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
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
    std::uint32_t ulLine = 0;   // counted from 1; 0 when it is about the whole file
    std::uint32_t ulColumn = 0; // likewise
    Severity enSeverity = Severity::Warning;
    Rule enRule = Rule::Missing;
    std::string sElement; // the path of the element: "/PolicyEnforceLayer/PolicyControllers"
    std::string sText;    // one line
};

std::size_t CountErrors(const std::vector<Finding>& _rvecFinding);

/** Receives how much of a document was looked at, from 0 to 1. */
using Progress = std::function<void(double _dDone)>;

/**
 * What is to be said about the bytes of a document, plain or encrypted, in the order of its lines. The installed product
 * is not needed. Threads may check documents side by side.
 * @throws UsageError when the parser library is missing
 */
std::vector<Finding> CheckContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes,
                                  const Progress& _fnProgress = {});

/** The same for a file, which is only read. @throws UsageError also when it cannot be read */
std::vector<Finding> CheckDocument(const Varnhelt::Document& _rstDocument, const std::wstring& _rtszPath,
                                   const Progress& _fnProgress = {});

} // namespace Vrnt
