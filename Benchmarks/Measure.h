#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/** Measures two ways of doing the same work against each other, on a machine that others may keep busy. */
namespace Bench {

/**
 * Processor time of this thread, together with that of the Wine server while it works for the thread: what neighbours do
 * moves neither. Runs while a way is measured; what is no part of the work pauses it.
 */
class Clock
{
public:
    void Resume() noexcept { m_dBegin = Now(); }
    void Pause() noexcept { m_dSeconds += Now() - m_dBegin; }
    double Seconds() const noexcept { return m_dSeconds; }

    /** Lets go of a result, which is its caller's business. */
    template <class TResult>
    void Discard(TResult& _rResult)
    {
        Pause();
        _rResult = TResult();
        Resume();
    }

    /** Process id of the Wine server; 0 without one. */
    static std::uint32_t s_ulServer;

private:
    static double Now() noexcept;

    double m_dBegin = 0;
    double m_dSeconds = 0;
};

/** One way of doing the work, once; it may pause the clock. @return false when it failed */
using Way = std::function<bool(Clock& _rClock)>;

/** What is compared. Of several floors the one that takes the least applies. */
struct Ways
{
    Way fnCandidate;
    std::vector<Way> vecFloor;
};

/** Adds a benchmark; _fnMake prepares it when its turn comes. @param _bAlways  false: with --all only */
void Add(std::string _sName, std::function<Ways()> _fnMake, bool _bAlways = true);

/** Adds one that is no comparison of times: _fnRatio gives the figure, or 0 when it failed. */
void AddFigure(std::string _sName, std::function<double()> _fnRatio, bool _bAlways = true);

} // namespace Bench
