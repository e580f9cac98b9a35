// A document into records, from the file on, against the bare parser library over the same file with handlers that do
// nothing; and the memory that this takes at its peak: tree, records and input buffer together.

#include "Catalogue.h"
#include "Descriptions/DescriptionReader.h"
#include "Documents/ServiceUnits.h"
#include "Floor.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>
#include <windows.h>

namespace {

using namespace ZkCommon::Storage;

/** A plain catalogue in a file of its own. */
class CatalogueFile
{
public:
    explicit CatalogueFile(std::size_t _uSize)
        : m_Path(std::filesystem::temp_directory_path() /
                 ("varnhelt-bench-" + std::to_string(::GetCurrentProcessId()) + ".xml"))
    {
        const std::string sText = Bench::MakeCatalogue(_uSize);
        m_uSize = sText.size();
        std::ofstream(m_Path, std::ios::binary).write(sText.data(), static_cast<std::streamsize>(m_uSize));
    }
    CatalogueFile(const CatalogueFile&) = delete;
    CatalogueFile& operator=(const CatalogueFile&) = delete;
    ~CatalogueFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }

    std::wstring Path() const { return m_Path.wstring(); }
    std::size_t Size() const { return m_uSize; }

private:
    std::filesystem::path m_Path;
    std::size_t m_uSize = 0;
};

void Read(benchmark::State& _rState)
{
    const Bench::Expat kept; // loading the library is part of a query, not of reading
    const CatalogueFile file(static_cast<std::size_t>(_rState.range(0)));
    for (auto _ : _rState) {
        std::vector<SrvFrwk::ServiceUnit> vecUnit;
        XmlParser parser;
        XmlElement root;
        parser.Load(file.Path());
        parser.Select(L"/BaseFramework", root);
        Varnhelt::Documents::ReadRecords(root, Varnhelt::Documents::g_stServiceUnit, vecUnit);
        if (vecUnit.empty()) {
            _rState.SkipWithError("nothing was read");
        }
    }
    _rState.SetBytesProcessed(_rState.iterations() * static_cast<std::int64_t>(file.Size()));
}

void Scan(benchmark::State& _rState)
{
    const Bench::Expat expat;
    const CatalogueFile file(static_cast<std::size_t>(_rState.range(0)));
    for (auto _ : _rState) {
        if (!expat.ScanFile(file.Path().c_str())) {
            _rState.SkipWithError("the scan failed");
        }
    }
    _rState.SetBytesProcessed(_rState.iterations() * static_cast<std::int64_t>(file.Size()));
}

/**
 * What is taken now, and what was at most. The parser library rounds its buffer up to a power of two; what lies behind
 * the document there is never touched, so a block counts for no more than the document.
 */
std::size_t g_uDocument = 0;
std::size_t g_uTaken = 0;
std::size_t g_uPeak = 0;

constexpr std::size_t g_uHeader = 16; // before each block: its size

void Count(std::size_t _uOld, std::size_t _uNew)
{
    g_uTaken = g_uTaken - std::min(_uOld, g_uDocument) + std::min(_uNew, g_uDocument);
    g_uPeak = std::max(g_uPeak, g_uTaken);
}

void* Reallocate(void* _pMemory, std::size_t _uSize)
{
    char* pBlock = _pMemory != nullptr ? static_cast<char*>(_pMemory) - g_uHeader : nullptr;
    const std::size_t uOld = pBlock != nullptr ? *reinterpret_cast<std::size_t*>(pBlock) : 0;
    pBlock = static_cast<char*>(std::realloc(pBlock, g_uHeader + _uSize));
    if (pBlock == nullptr) {
        return nullptr;
    }
    *reinterpret_cast<std::size_t*>(pBlock) = _uSize;
    Count(uOld, _uSize);
    return pBlock + g_uHeader;
}

void* Allocate(std::size_t _uSize)
{
    return Reallocate(nullptr, _uSize);
}

void Free(void* _pMemory)
{
    if (_pMemory != nullptr) {
        char* pBlock = static_cast<char*>(_pMemory) - g_uHeader;
        Count(*reinterpret_cast<std::size_t*>(pBlock), 0);
        std::free(pBlock);
    }
}

template <class T>
struct CountingAllocator
{
    using value_type = T;

    CountingAllocator() = default;
    template <class TOther>
    explicit CountingAllocator(const CountingAllocator<TOther>&)
    {}
    T* allocate(std::size_t _uCount) { return static_cast<T*>(Allocate(_uCount * sizeof(T))); }
    void deallocate(T* _pMemory, std::size_t) { Free(_pMemory); }
    friend bool operator==(const CountingAllocator&, const CountingAllocator&) { return true; }
};

/** Bytes of a text that does not fit into its own object. */
std::size_t HeapOf(const std::wstring& _rtszText)
{
    return _rtszText.capacity() > std::wstring().capacity() ? (_rtszText.capacity() + 1) * sizeof(wchar_t) : 0;
}

void Memory(benchmark::State& _rState)
{
    constexpr XmlMemory stMemory{&Allocate, &Reallocate, &Free};
    const Bench::Expat kept;
    const CatalogueFile file(static_cast<std::size_t>(_rState.range(0)));
    for (auto _ : _rState) {
        g_uDocument = file.Size();
        g_uPeak = g_uTaken = 0;
        std::vector<SrvFrwk::ServiceUnit, CountingAllocator<SrvFrwk::ServiceUnit>> vecUnit;
        XmlParser parser(&stMemory);
        XmlElement root;
        parser.Load(file.Path());
        parser.Select(L"/BaseFramework", root);
        const std::size_t uParsing = std::exchange(g_uPeak, g_uTaken);
        Varnhelt::Documents::ReadRecords(root, Varnhelt::Documents::g_stServiceUnit, vecUnit);
        for (const SrvFrwk::ServiceUnit& rstUnit : vecUnit) {
            g_uPeak += HeapOf(rstUnit.tszModuleName) + HeapOf(rstUnit.tszVersion);
        }
        g_uPeak = std::max(g_uPeak, uParsing);
    }
    _rState.counters["bytes_per_byte"] = static_cast<double>(g_uPeak) / static_cast<double>(file.Size());
}

constexpr std::int64_t g_llMegabyte = 1 << 20;

BENCHMARK(Read)->Name("read-20k/candidate")->Arg(20 << 10)->Unit(benchmark::kMicrosecond);
BENCHMARK(Scan)->Name("read-20k/floor")->Arg(20 << 10)->Unit(benchmark::kMicrosecond);
BENCHMARK(Read)->Name("read-1m/candidate")->Arg(g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Scan)->Name("read-1m/floor")->Arg(g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Read)->Name("read-50m/candidate")->Arg(50 * g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Scan)->Name("read-50m/floor")->Arg(50 * g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Read)->Name("read-100m/candidate")->Arg(100 * g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Scan)->Name("read-100m/floor")->Arg(100 * g_llMegabyte)->Unit(benchmark::kMillisecond);
BENCHMARK(Memory)->Name("memory-1m/candidate")->Arg(g_llMegabyte)->Iterations(1);
BENCHMARK(Memory)->Name("memory-50m/candidate")->Arg(50 * g_llMegabyte)->Iterations(1);

} // namespace
