#pragma once

#include <string>

namespace Frwk::Utility {

/**
 * The product's installation folder, as the installer registered it: nothing is added or removed at its end.
 * @return empty when it cannot be read, which is logged
 */
std::wstring GetInstalledFolder();

/** The path of a file in a folder, with or without a backslash at its end; empty when the folder is: not known. */
std::wstring PathIn(const std::wstring& _rtszFolder, const wchar_t* _pszFile);

} // namespace Frwk::Utility
