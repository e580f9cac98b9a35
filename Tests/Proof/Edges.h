#pragma once

#include <cstdint>
#include <span>
#include <vector>

/** Edges of the library's code, told by the compiler's calls where the library is built with VARNHELT_EDGES; none elsewhere. */
namespace Proof {

using Edges = std::vector<std::uint16_t>;

class EdgeMap
{
public:
    /** Forgets what the last run reached. */
    static void Begin() noexcept;
    /** What the run since Begin reached and no earlier one did; it is known from now on. */
    Edges TakeNew();
    static bool Reached(const Edges& _vecEdge) noexcept;
    std::size_t Known() const noexcept { return m_uKnown; }

private:
    std::vector<bool> m_vecKnown = std::vector<bool>(65536);
    std::size_t m_uKnown = 0;
};

} // namespace Proof
