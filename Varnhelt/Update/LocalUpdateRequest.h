#pragma once

#include "Request.h"

#include <cstdint>
#include <string>

namespace Varnhelt {

/** Reads a local update description and applies it to this machine. Results of the single items are only logged. */
std::uint32_t DoActionAsLocalUpdate(Worker& _rWorker, const std::wstring* _ptszXmlPath);

} // namespace Varnhelt
