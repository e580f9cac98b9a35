// A host of Varnhelt.dll: asks for the service units and lists them, then loads, asks and unloads again and again, and
// reports whether all that was taken came back.
//
//     host VARNHELT.DLL [ROUNDS]
//
// Exit status: 0 when it did, 1 when the library failed, 2 for a wrong call, 3 when something was left behind.

#include "Footprint.h"

#include <Varnhelt/VarnheltLoader.h>

#include <cstdio>
#include <cwchar>
#include <exception>
#include <filesystem>
#include <vector>

namespace {

enum ExitStatus
{
    ExitClean = 0,
    ExitFailed = 1,
    ExitUsage = 2,
    ExitLeftBehind = 3
};

std::vector<SrvFrwk::ServiceUnit> AskForUnits(const wchar_t* _szModule)
{
    return Varnhelt::Module(_szModule).Query<SrvFrwk::ValueType::g_ulServiceUnit>();
}

void Print(const char* _szWhen, const Footprint& _rFootprint)
{
    std::printf("%s: %lu handles, %lu threads, %llu bytes of heap, %llu bytes of pages\n", _szWhen,
                _rFootprint.ulHandles, _rFootprint.ulThreads, static_cast<unsigned long long>(_rFootprint.uHeapBytes),
                static_cast<unsigned long long>(_rFootprint.uPrivateBytes));
}

ExitStatus Run(const wchar_t* _szModule, unsigned long _ulRounds)
{
    for (const SrvFrwk::ServiceUnit& rUnit : AskForUnits(_szModule)) {
        std::printf("%3u  %-20ls %ls\n", static_cast<unsigned>(rUnit.ulOrderOfLoading), rUnit.tszModuleName.c_str(),
                    rUnit.tszVersion.c_str());
    }
    // The system keeps something of a first use (loaded libraries, heap pages): what matters is that it grows no further.
    for (unsigned long ulRound = 0; ulRound < _ulRounds; ++ulRound) {
        AskForUnits(_szModule);
    }
    const Footprint stBefore = Footprint::Now();
    for (unsigned long ulRound = 0; ulRound < _ulRounds; ++ulRound) {
        AskForUnits(_szModule);
    }
    const Footprint stAfter = Footprint::Now();
    Print("before", stBefore);
    Print("after ", stAfter);
    const bool bClean = stAfter.IsWithin(stBefore) && ::GetModuleHandleW(L"Varnhelt.dll") == nullptr;
    std::puts(bClean ? "all came back" : "something was left behind");
    return bClean ? ExitClean : ExitLeftBehind;
}

} // namespace

int wmain(int _iArguments, wchar_t** _pszArgument)
{
    if (_iArguments < 2 || _iArguments > 3) {
        std::fputs("usage: host VARNHELT.DLL [ROUNDS]\n", stderr);
        return ExitUsage;
    }
    try {
        // Has failures carry their reason, where the trace library is beside the module.
        const Varnhelt::Reasons stReasons(std::filesystem::path(_pszArgument[1]).replace_filename(L"ZkDbgLog.dll"));
        return Run(_pszArgument[1], _iArguments == 3 ? std::wcstoul(_pszArgument[2], nullptr, 10) : 20);
    } catch (const std::exception& rError) {
        std::fprintf(stderr, "host: %s\n", rError.what());
        return ExitFailed;
    }
}
