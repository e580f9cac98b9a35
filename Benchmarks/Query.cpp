// A whole query of an encrypted catalogue of 20 KB, from the function object to the records, against the system calls,
// the cipher and the scan that it cannot do without. "query-20k" loads the parser library for each call, as hosts see
// it; "query-20k-kept" is the same for a host that keeps the library loaded.

#include "Catalogue.h"
#include "Floor.h"
#include "FunctionProvider.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace {

constexpr std::size_t g_uSize = 20 * 1024;

void Query(benchmark::State& _rState)
{
    const TestProduct cProduct;
    cProduct.Store(Varnhelt::DocumentId::ServiceUnits, Bench::MakeCatalogue(g_uSize));
    CFunctionProvider cProvider;
    for (auto _ : _rState) {
        std::vector<SrvFrwk::ServiceUnit> vecUnit;
        if (cProvider.QueryValue(0, SrvFrwk::ValueType::g_ulServiceUnit, 0, &vecUnit, 0, nullptr) !=
                SrvFrwk::Result::g_ulSuccess ||
            vecUnit.empty()) {
            _rState.SkipWithError("the query failed");
        }
    }
}

void Floor(benchmark::State& _rState)
{
    const TestProduct cProduct;
    cProduct.Store(Varnhelt::DocumentId::ServiceUnits, Bench::MakeCatalogue(g_uSize));
    for (auto _ : _rState) {
        const Varnhelt::Document& stDocument = Varnhelt::DocumentOf(Varnhelt::DocumentId::ServiceUnits);
        const auto vecPlain = Bench::ReadDecrypted(Bench::ReadProductPath() + L"\\" + stDocument.pszFile, stDocument);
        const Bench::Expat cExpat;
        if (!Bench::ScanThroughTemporaryFile(cExpat, vecPlain)) {
            _rState.SkipWithError("the scan failed");
        }
    }
}

void WithLibraryKept(benchmark::State& _rState, void (*_pfnBenchmark)(benchmark::State&))
{
    const Bench::Expat cKept;
    _pfnBenchmark(_rState);
}

BENCHMARK(Query)->Name("query-20k/candidate")->Unit(benchmark::kMicrosecond);
BENCHMARK(Floor)->Name("query-20k/floor")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(WithLibraryKept, candidate, &Query)->Name("query-20k-kept/candidate")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(WithLibraryKept, floor, &Floor)->Name("query-20k-kept/floor")->Unit(benchmark::kMicrosecond);

} // namespace
