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

namespace {

std::size_t PeakBytes()
{
    PROCESS_MEMORY_COUNTERS stCounters = {};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &stCounters, sizeof(stCounters));
    return stCounters.PeakWorkingSetSize;
}

/** A list of component numbers in one of many forms, of about so many bytes. */
std::string Shape(const std::string& _sShape, std::size_t _uBytes)
{
    const std::string sItem =
        "<InstallPuId><Component>ePattern</Component><PuId>1</PuId><Platform>eBoth32And64bit</Platform></InstallPuId>";
    std::string sText = "<InstallPuIds>";
    if (_sShape == "nesting") {
        const std::size_t uDepth = _uBytes / 7;
        for (std::size_t uLevel = 0; uLevel < uDepth; ++uLevel) {
            sText += "<n>";
        }
        for (std::size_t uLevel = 0; uLevel < uDepth; ++uLevel) {
            sText += "</n>";
        }
    } else if (_sShape == "names") {
        for (std::size_t uName = 0; sText.size() < _uBytes; ++uName) {
            sText += "<n" + std::to_string(uName) + "/>";
        }
    } else if (_sShape == "attributes") {
        sText += "<InstallPuId";
        for (std::size_t uName = 0; sText.size() < _uBytes; ++uName) {
            sText += " a" + std::to_string(uName) + "='v'";
        }
        sText += "/>";
    } else if (_sShape == "text") {
        sText += "<InstallPuId><PuId>" + std::string(_uBytes, '1') + "</PuId></InstallPuId>";
    } else if (_sShape == "defaults" || _sShape == "declarations") { // as many as are accepted, and more
        sText = "<!DOCTYPE InstallPuIds [<!ATTLIST n";
        const std::size_t uMost = _sShape == "defaults" ? 100 : _uBytes;
        for (std::size_t uName = 0; uName < uMost && sText.size() < _uBytes / 2; ++uName) {
            sText += " a" + std::to_string(uName) + " CDATA 'v'";
        }
        sText += ">]><x>";
        while (sText.size() < _uBytes) {
            sText += "<n/>";
        }
        sText += "</x>";
        return sText;
    } else if (_sShape == "records") {
        while (sText.size() < _uBytes) {
            sText += sItem;
        }
    } else {
        throw std::runtime_error("no such shape: " + _sShape);
    }
    return sText + "</InstallPuIds>";
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
