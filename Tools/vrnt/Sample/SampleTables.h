#pragma once

#include <string>

/** The sample product's large tables, the same ones each time. All text is UTF-8. */
namespace Vrnt {

std::string SampleVirusNames();         // StrVirus.xml
std::string SampleSpyware();            // antispy.xml
std::string SampleCompetitorActions();  // rivalact.xml
std::string SampleCompetitorPatterns(); // rivaldet.xml

} // namespace Vrnt
