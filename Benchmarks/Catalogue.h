#pragma once

#include <cstddef>
#include <string>

namespace Bench {

/** A catalogue of service units, as authors write them, of about that many bytes. */
std::string MakeCatalogue(std::size_t _uSize);

} // namespace Bench
