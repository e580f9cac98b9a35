#include "Verbs.h"

#include "Footprint.h"

#include <cstdio>
#include <psapi.h>
#include <stdexcept>

namespace Proof {

double ProcessorSeconds()
{
    FILETIME stIgnored = {};
    FILETIME stKernel = {};
    FILETIME stUser = {};
    ::GetProcessTimes(::GetCurrentProcess(), &stIgnored, &stIgnored, &stKernel, &stUser);
    const auto seconds = [](const FILETIME& _rstTime) {
        return (static_cast<double>(_rstTime.dwHighDateTime) * 4294967296.0 + _rstTime.dwLowDateTime) / 1e7;
    };
    return seconds(stKernel) + seconds(stUser);
}

std::string Repeated(std::string_view _svText, std::size_t _uTimes)
{
    std::string sText;
    while (_uTimes-- > 0) {
        sText += _svText;
    }
    return sText;
}

namespace {

std::size_t PeakBytes()
{
    PROCESS_MEMORY_COUNTERS stCounters = {};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &stCounters, sizeof(stCounters));
    return stCounters.PeakWorkingSetSize;
}

/** "before" + number + "behind" for each number, up to so many bytes. */
std::string Numbered(const char* _szBefore, const char* _szBehind, std::size_t _uBytes)
{
    std::string sText;
    for (std::size_t uNumber = 0; sText.size() < _uBytes; ++uNumber) {
        sText += _szBefore + std::to_string(uNumber) + _szBehind;
    }
    return sText;
}

/** A list of component numbers in one of many forms, of about so many bytes. */
std::string Shape(const std::string& _sShape, std::size_t _uBytes)
{
    if (_sShape == "defaults" || _sShape == "declarations") { // 94, which are accepted, or very many
        return "<!DOCTYPE x [<!ATTLIST n" + Numbered(" a", " CDATA 'v'", _sShape == "defaults" ? 1300 : _uBytes / 2) +
               ">]><x>" + Repeated("<n/>", _uBytes / 8) + "</x>";
    }
    const std::string sContent =
        _sShape == "nesting"      ? Repeated("<n>", _uBytes / 7) + Repeated("</n>", _uBytes / 7)
        : _sShape == "names"      ? Numbered("<n", "/>", _uBytes)
        : _sShape == "attributes" ? "<InstallPuId" + Numbered(" a", "='v'", _uBytes) + "/>"
        : _sShape == "text"       ? "<InstallPuId><PuId>" + std::string(_uBytes, '1') + "</PuId></InstallPuId>"
        : _sShape == "records"    ? Repeated("<InstallPuId><PuId>1</PuId></InstallPuId>", _uBytes / 41)
                                  : throw std::runtime_error("no such shape: " + _sShape);
    return "<InstallPuIds>" + sContent + "</InstallPuIds>";
}

} // namespace

/** cost NAME BYTES: what a query of such a document costs. */
int Cost(Host& _rHost, const Arguments& _vecArgument)
{
    const Operation& rstOperation = OperationOf("pu-ids");
    const std::wstring tszFile = _rHost.FileOf(rstOperation);
    const std::string sBefore = Contents(tszFile);
    std::size_t uBytes = 0;
    {
        const std::string sText = Shape(_vecArgument.at(0), std::stoul(_vecArgument.at(1)));
        uBytes = sText.size();
        Put(tszFile, sText);
    }
    const std::size_t uAtRest = Footprint::Now().uPrivateBytes;
    const double dBefore = ProcessorSeconds();
    const std::uint32_t ulResult = _rHost.Run(rstOperation);
    const double dSeconds = ProcessorSeconds() - dBefore;
    Put(tszFile, sBefore);
    std::printf("%s %zu bytes: 0x%08x, %.3f s, at rest %zu, peak %zu bytes\n", _vecArgument[0].c_str(), uBytes,
                static_cast<unsigned>(ulResult), dSeconds, uAtRest, PeakBytes());
    return 0;
}

} // namespace Proof
