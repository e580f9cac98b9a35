// A whole query of an encrypted catalogue of 20 KB, from the function object to the records, against the system calls,
// the cipher and the scan that it cannot do without. "query-20k" loads the parser library for each call, as hosts see
// it; "query-20k-kept" is the same for a host that keeps the library loaded.

#include "Catalogue.h"
#include "FunctionProvider.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "ZkComn_Owner.h"
#include "ZkComn_Rijndael.h"

#include <benchmark/benchmark.h>
#include <expat.h>
#include <string>
#include <vector>
#include <windows.h>

namespace {

using namespace ZkCommon;
using Cryptograph::Rijndael;

constexpr std::size_t g_uSize = 20 * 1024;
constexpr const wchar_t* g_pszProductKey = L"Software\\Kestrovane\\Pelto";

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

std::wstring ReadProductPath()
{
    RegKey hKey;
    std::wstring tszPath(MAX_PATH, L'\0');
    DWORD ulBytes = static_cast<DWORD>(tszPath.size() * sizeof(wchar_t));
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, g_pszProductKey, 0, KEY_QUERY_VALUE, hKey.Receive());
    ::RegQueryValueExW(hKey.Get(), L"ProductPath", nullptr, nullptr, reinterpret_cast<BYTE*>(tszPath.data()), &ulBytes);
    tszPath.resize(ulBytes / sizeof(wchar_t) - 1);
    return tszPath;
}

std::vector<std::uint8_t> ReadFileWhole(const std::wstring& _rtszPath)
{
    const FileHandle hFile(::CreateFileW(_rtszPath.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    std::vector<std::uint8_t> vecContent(::GetFileSize(hFile.Get(), nullptr));
    DWORD ulRead = 0;
    ::ReadFile(hFile.Get(), vecContent.data(), static_cast<DWORD>(vecContent.size()), &ulRead, nullptr);
    return vecContent;
}

/** Decrypts in place what the cipher holds to be whole blocks. */
void Decrypt(std::vector<std::uint8_t>& _rvecContent)
{
    Rijndael stCipher;
    std::uint32_t ulError = 0;
    std::size_t uConverted = 0;
    std::size_t uFinished = 0;
    std::vector<std::uint8_t> vecPlain(_rvecContent.size());
    stCipher.SetUp(Rijndael::Direction::Decrypt, Bench::CatalogueKey(), Rijndael::Mode::Cbc, {}, ulError);
    stCipher.Convert(_rvecContent, vecPlain, uConverted, ulError);
    stCipher.Finish(std::span(vecPlain).subspan(uConverted), uFinished, ulError);
    vecPlain.resize(uConverted + uFinished);
    _rvecContent = std::move(vecPlain);
}

/** A private temporary file that goes with its handle: made, written, opened a second time, read and parsed. */
bool ScanThroughTemporaryFile(const Bench::Expat& _rExpat, const std::vector<std::uint8_t>& _rvecPlain)
{
    wchar_t aszFolder[MAX_PATH] = {};
    wchar_t aszFile[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, aszFolder);
    ::GetTempFileNameW(aszFolder, L"tmp", 0, aszFile);
    constexpr DWORD ulShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const FileHandle hFile(::CreateFileW(aszFile, GENERIC_WRITE | DELETE, ulShareAll, nullptr, CREATE_ALWAYS,
                                         FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    DWORD ulWritten = 0;
    ::WriteFile(hFile.Get(), _rvecPlain.data(), static_cast<DWORD>(_rvecPlain.size()), &ulWritten, nullptr);
    return _rExpat.ScanFile(aszFile);
}

void Floor(benchmark::State& _rState)
{
    const TestProduct cProduct;
    cProduct.Store(Varnhelt::DocumentId::ServiceUnits, Bench::MakeCatalogue(g_uSize));
    for (auto _ : _rState) {
        const std::wstring tszFolder = ReadProductPath();
        std::vector<std::uint8_t> vecContent = ReadFileWhole(tszFolder + L"\\FwSvUnit.xen");
        Decrypt(vecContent);
        const Bench::Expat cExpat;
        if (!ScanThroughTemporaryFile(cExpat, vecContent)) {
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
