#include "Verbs.h"

#include "Footprint.h"
#include "ZkComn_XmlParserExpat.h"

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
    if (_sShape == "pieces") { // what the parser hands over in very many pieces is one text
        return "<InstallPuIds><InstallPuId><PuId>" + Repeated("1&#49;<!---->", _uBytes / 13) +
               "</PuId></InstallPuId></InstallPuIds>";
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

/** Processor seconds of one call, the mean of as many as a clock of 10 ms needs. */
template <class TCall>
double SecondsOf(const TCall& _fnCall)
{
    constexpr double dEnough = 0.3;
    const double dBegin = ProcessorSeconds();
    double dTaken = 0;
    int iCalls = 0;
    for (; dTaken < dEnough; ++iCalls) {
        _fnCall();
        dTaken = ProcessorSeconds() - dBegin;
    }
    return dTaken / iCalls;
}

/** What the parser library from that folder takes by itself, with no handler. */
double ParserSeconds(const std::wstring& _tszFolder, const std::string& _sText)
{
    ZkCommon::Library::Expat stExpat;
    std::uint32_t ulError = 0;
    if (!stExpat.Load(_tszFolder, ulError)) {
        throw std::runtime_error("no parser library: " + std::to_string(ulError));
    }
    return SecondsOf([&] {
        const XML_Parser pParser = stExpat.ParserCreate(nullptr);
        stExpat.Parse(pParser, _sText.data(), static_cast<int>(_sText.size()), XML_TRUE);
        stExpat.ParserFree(pParser);
    });
}

} // namespace

/**
 * cost NAME BYTES: what a query of such a document costs, and what the parser library takes for it by itself, unless
 * the document is refused, which ends the query before the parser has read it all.
 */
int Cost(Host& _rHost, const Arguments& _vecArgument)
{
    const Operation& rstOperation = OperationOf("pu-ids");
    const std::wstring tszFile = _rHost.FileOf(rstOperation);
    const std::string sBefore = Contents(tszFile);
    Put(tszFile, Shape(_vecArgument.at(0), std::stoul(_vecArgument.at(1))));
    const std::size_t uAtRest = Footprint::Now().uPrivateBytes;
    const std::uint32_t ulResult = _rHost.Run(rstOperation);
    const std::size_t uPeak = PeakBytes();
    const double dSeconds = SecondsOf([&] { _rHost.Run(rstOperation); });
    const std::string sText = Contents(tszFile); // read only now, so that it is no part of the peak
    Put(tszFile, sBefore);
    std::printf("%s %zu bytes: 0x%08x, %.4f s", _vecArgument[0].c_str(), sText.size(), static_cast<unsigned>(ulResult),
                dSeconds);
    if (!SrvFrwk::Result::IsFailure(ulResult)) {
        std::printf(", parser alone %.4f s", ParserSeconds(_rHost.stDesk.tszFolder, sText));
    }
    std::printf(", at rest %zu, peak %zu bytes\n", uAtRest, uPeak);
    return 0;
}

} // namespace Proof
