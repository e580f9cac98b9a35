#include "Machine/TraceErrors.h"

#include "Arguments.h"
#include "Machine/TraceSettings.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace Vrnt {

namespace {

constexpr std::streamoff g_llTail = 1 << 20; // bytes of a file's end that are looked at
constexpr std::size_t g_uMost = 10;

std::filesystem::path FileOf(const TraceSettings& _rstSettings)
{
    const std::filesystem::path tszFolder =
        _rstSettings.tszFolder.empty() ? ToolFolder() : std::filesystem::path(_rstSettings.tszFolder);
    return tszFolder / (_rstSettings.tszPrefix + (_rstSettings.tszFile.empty() ? L"Varnhelt" : _rstSettings.tszFile) +
                        L"." + _rstSettings.tszExtension);
}

std::string TailOf(const std::filesystem::path& _rtszFile)
{
    std::ifstream cFile(_rtszFile, std::ios::binary | std::ios::ate);
    const std::streamoff llSize = cFile ? static_cast<std::streamoff>(cFile.tellg()) : 0;
    cFile.seekg(llSize > g_llTail ? llSize - g_llTail : 0);
    return {std::istreambuf_iterator<char>(cFile), {}};
}

} // namespace

std::vector<TraceFileLine> LastTraceErrors()
{
    std::vector<TraceFileLine> vecError;
    std::filesystem::path tszBefore;
    for (const TraceSession& stSession : g_aTraceSession) {
        const std::filesystem::path tszFile = FileOf(ReadTraceSettings(stSession));
        if (tszFile == tszBefore) {
            continue; // both sessions write into one file
        }
        tszBefore = tszFile;
        for (TraceFileLine& rstLine : ParseTraceFile(TailOf(tszFile))) {
            if (rstLine.sLevel == "error") {
                vecError.push_back(std::move(rstLine));
            }
        }
    }
    if (vecError.size() > g_uMost) {
        vecError.erase(vecError.begin(), vecError.end() - g_uMost);
    }
    return vecError;
}

} // namespace Vrnt
