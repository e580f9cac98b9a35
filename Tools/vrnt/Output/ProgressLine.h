#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace Vrnt {

/** A line on a terminal's stderr that says how far long work has come; nothing at all in a pipe or file. */
class ProgressLine
{
public:
    /** @param _ullBytes  how much there is to do: of little work, nothing is written in the first half second */
    explicit ProgressLine(std::string _sWhat, std::uint64_t _ullBytes = 0);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { End(); }

    /** Tells the part that is done, from 0 to 1. */
    void Tell(double _dDone);
    /** Takes the line away. */
    void End();
    /** The function by which work reports; empty where nothing shows. It must not outlive this object. */
    std::function<void(double)> Teller();

private:
    std::string m_sWhat;
    std::uint64_t m_ullNext; // when it is shown again, in milliseconds
    bool m_bTerminal;
    bool m_bShown = false;
};

} // namespace Vrnt
