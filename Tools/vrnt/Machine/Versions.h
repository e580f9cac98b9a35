#pragma once

#include "Tool.h"

#include <string>
#include <vector>

/** What runs here, and which version of it. */
namespace Vrnt {

struct VersionFact
{
    std::string sWhat;
    std::string sVersion; // in words where it is not known
};

/**
 * The tool, the library that it drives, the parser library that this one takes, the installed product as it is registered,
 * and Windows.
 */
std::vector<VersionFact> FindVersions(const GlobalOptions& _rstOptions, const std::wstring& _rtszInstalledFolder);

} // namespace Vrnt
