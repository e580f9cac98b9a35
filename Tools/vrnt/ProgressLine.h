#pragma once

#include <functional>
#include <string>

namespace Vrnt {

/** A line on a terminal's stderr that tells how far long work has come; nothing at all in a pipe or file. */
class ProgressLine
{
public:
    explicit ProgressLine(std::string _sWhat);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { End(); }

    /** Tells the part that is done, from 0 to 1; quick work never shows. */
    void Tell(double _dDone);
    /** Takes the line away. */
    void End();
    /** What work is given to tell with; empty where nothing shows. It must not outlive this object. */
    std::function<void(double)> Teller();

private:
    std::string m_sWhat;
    std::uint64_t m_ullNext; // when it is shown again, in milliseconds
    bool m_bTerminal;
    bool m_bShown = false;
};

} // namespace Vrnt
