#pragma once

#include "Boundary.h"

/** What the readers and writers of the deployment documents have in common. */
namespace Varnhelt::Documents {

/** How they tell of what they caught: where a document failed in the code, and where in its text. */
FailureTexts DeploymentFailures(const wchar_t* _pszMethod) noexcept;

} // namespace Varnhelt::Documents
