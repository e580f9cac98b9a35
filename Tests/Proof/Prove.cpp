// One driver for scripts/prove: asks the library under conditions that no product should meet, and counts what went wrong.
//
//     prove VERB VARNHELT.DLL FOLDER [ARGUMENT ...]
//
// FOLDER is the registered product's, ending in a backslash. Each verb prints its figures in one line; exit status 1 says
// that something was lost, 2 that the call was wrong.

#include "SrvFrwk_ResultCode.h"
#include "Verbs.h"

#include <algorithm>
#include <cstdio>
#include <exception>

using namespace Proof;

/** one OPERATION: its result code. */
int Proof::One(Host& _rHost, const Arguments& _vecArgument)
{
    const std::uint32_t ulResult = _rHost.Run(OperationOf(_vecArgument.at(0)));
    std::printf("%s: 0x%08x\n", _vecArgument[0].c_str(), static_cast<unsigned>(ulResult));
    return SrvFrwk::Result::IsFailure(ulResult) ? 1 : 0;
}

namespace {

/** operations: the name of each. */
int Names(Host&, const Arguments&)
{
    for (const Operation& rstOperation : Operations()) {
        std::puts(std::string(rstOperation.svName).c_str());
    }
    return 0;
}

struct Verb
{
    std::string_view svName;
    int (*pRun)(Host&, const Arguments&);
};

constexpr Verb g_aVerb[] = {{"store", &Store},       {"look", &Look},       {"crowd", &Crowd},   {"changes", &Changes},
                            {"refusals", &Refusals}, {"mutants", &Mutants}, {"mutate", &Mutate}, {"cost", &Cost},
                            {"one", &One},           {"operations", &Names}};

} // namespace

int wmain(int _iCount, wchar_t** _ppArgument)
{
    Arguments vecArgument;
    for (int iArgument = 1; iArgument < _iCount; ++iArgument) {
        const std::wstring sArgument = _ppArgument[iArgument];
        vecArgument.emplace_back(sArgument.begin(), sArgument.end());
    }
    const auto* pVerb = std::ranges::find(g_aVerb, vecArgument.empty() ? "" : vecArgument[0], &Verb::svName);
    if (_iCount < 4 || pVerb == std::end(g_aVerb)) {
        (void)std::fputs("usage: prove VERB VARNHELT.DLL FOLDER [ARGUMENT ...]\n", stderr);
        return 2;
    }
    try {
        Host cHost(_ppArgument[2], _ppArgument[3]);
        return pVerb->pRun(cHost, Arguments(vecArgument.begin() + 3, vecArgument.end()));
    } catch (const std::exception& rError) {
        (void)std::fprintf(stderr, "prove: %s\n", rError.what());
        return 2;
    }
}
