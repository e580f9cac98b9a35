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
        // A file without a folder is beside its program, which is this tool here.
        const std::filesystem::path tszFile = ToolFolder() / TraceFileOf(ReadTraceSettings(stSession));
        if (tszFile == tszBefore) {
            continue; // both sessions write into one file
        }
        tszBefore = tszFile;
        TraceFileReader cReader([&](TraceFileLine&& _rstLine) {
            if (_rstLine.sLevel == "error") {
                vecError.push_back(std::move(_rstLine));
            }
        });
        cReader.Read(TailOf(tszFile));
        cReader.End();
    }
    if (vecError.size() > g_uMost) {
        vecError.erase(vecError.begin(), vecError.end() - g_uMost);
    }
    return vecError;
}

} // namespace Vrnt
