#pragma once

#include "Boundary.h"

/** What the readers and writers of the deployment documents have in common. */
namespace Varnhelt::Documents {

/** How they tell of what they caught: a document's failure in two lines, the second of which names its file. */
FailureTexts DeploymentFailures(const wchar_t* _pszMethod) noexcept;

} // namespace Varnhelt::Documents
