#pragma once

#include <cstdint>
#include <vector>

/** Edges of the library's code, told by the compiler's calls where the library is built with VARNHELT_EDGES; none elsewhere. */
namespace Proof {

using Edges = std::vector<std::uint16_t>;

/** Forgets what the last run reached. */
void BeginRun() noexcept;
/** What the run reached and none before it; it is known from now on. */
Edges NewEdges();
bool Reached(const Edges& _vecEdge) noexcept;

} // namespace Proof
