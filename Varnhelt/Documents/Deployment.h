#pragma once

#include "Boundary.h"

/** What the readers and writers of the deployment documents have in common. */
namespace Varnhelt::Documents {

/** How failures are logged: a document's takes two lines, the second names the file. */
FailureTexts DeploymentFailures(const wchar_t* _pszMethod) noexcept;

} // namespace Varnhelt::Documents
