#include "Output/ProgressLine.h"

#include "Output/Output.h"

#include <windows.h>

namespace Vrnt {

namespace {

constexpr std::uint64_t g_ullPatience = 500;  // milliseconds until the first, and between two
constexpr std::uint64_t g_ullMuch = 32 << 20; // bytes that are reported at once
constexpr std::size_t g_uWidth = 60;

} // namespace

ProgressLine::ProgressLine(std::string _sWhat, std::uint64_t _ullBytes)
    : m_sWhat(std::move(_sWhat)),
      m_ullNext(_ullBytes < g_ullMuch ? ::GetTickCount64() + g_ullPatience : 0),
      m_bTerminal(ErrorIsTerminal())
{
    if (m_sWhat.size() > g_uWidth) {
        m_sWhat.replace(g_uWidth - 3, std::string::npos, "...");
    }
}

void ProgressLine::Tell(double _dDone)
{
    if (const std::uint64_t ullNow = ::GetTickCount64(); m_bTerminal && ullNow >= m_ullNext) {
        WriteError("\r" + m_sWhat + ": " + std::to_string(static_cast<int>(_dDone * 100)) + " %  ");
        m_ullNext = ullNow + g_ullPatience;
        m_bShown = true;
    }
}

void ProgressLine::End()
{
    if (m_bShown) {
        WriteError("\r" + std::string(m_sWhat.size() + 10, ' ') + "\r");
        m_bShown = false;
    }
}

std::function<void(double)> ProgressLine::Teller()
{
    return m_bTerminal ? std::function<void(double)>([this](double _dDone) { Tell(_dDone); }) : nullptr;
}

} // namespace Vrnt
