// The benchmark program: VarnheltBench [--all] [--server PROCESS] --out FILE [NAME ...]
// A line a benchmark goes to the file: name, seconds of the candidate and of the floor, median of their ratios, and how far
// the middle half of the ratios is apart, in percent; tabs between. A name selects every benchmark that it is a part of.

#include "Measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string_view>
#include <utility>
#include <windows.h>

namespace Bench {

std::uint32_t Clock::s_ulServer = 0;

namespace {

/** A slice is long enough for the clock, and short enough that both sides of a pair meet the same machine. */
constexpr double g_dSlice = 0.004;
constexpr double g_dEnough = 1.5; // seconds for one benchmark
constexpr std::size_t g_uFewest = 5;
constexpr std::size_t g_uMost = 150;

struct Benchmark
{
    std::string sName;
    std::function<Ways()> fnMake;
    std::function<double()> fnRatio;
    bool bAlways;
};

std::vector<Benchmark>& Benchmarks()
{
    static std::vector<Benchmark> vecBenchmark;
    return vecBenchmark;
}

bool IsWine() noexcept
{
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/** Asks the kernel below Wine, whose own thread times come in steps of ten milliseconds. */
double KernelSeconds(std::int64_t _llClock) noexcept
{
    struct
    {
        std::int64_t llSeconds;
        std::int64_t llNanoseconds;
    } stTime{};
    std::int64_t llResult = 228; // clock_gettime
    asm volatile("syscall" : "+a"(llResult) : "D"(_llClock), "S"(&stTime) : "rcx", "r11", "memory");
    return static_cast<double>(stTime.llSeconds) + static_cast<double>(stTime.llNanoseconds) * 1e-9;
}

double ThreadSeconds() noexcept
{
    FILETIME aTime[4] = {}; // created, ended, in the kernel, in the program
    ::GetThreadTimes(::GetCurrentThread(), &aTime[0], &aTime[1], &aTime[2], &aTime[3]);
    const auto Seconds = [](const FILETIME& _rstTime) {
        return (_rstTime.dwHighDateTime * 4294967296.0 + _rstTime.dwLowDateTime) / 1e7;
    };
    return Seconds(aTime[2]) + Seconds(aTime[3]);
}

/** Seconds for one call, the mean of so many; negative when one failed. */
double Slice(const Way& _fnWay, unsigned _uCalls)
{
    Clock clock;
    clock.Resume();
    for (unsigned u = 0; u < _uCalls; ++u) {
        if (!_fnWay(clock)) {
            return -1;
        }
    }
    clock.Pause();
    return std::max(clock.Seconds() / _uCalls, 1e-12);
}

/** A way, its calls for a slice, and the seconds of its slices. */
struct Series
{
    explicit Series(const Way& _fnWay) : fnWay(_fnWay)
    {
        double dSlice = Slice(fnWay, 1); // warms up
        while (dSlice >= 0 && dSlice < g_dSlice / 2 && uCalls < 1U << 24) {
            uCalls *= static_cast<unsigned>(std::clamp(g_dSlice / dSlice, 2.0, 64.0)); // the clock may be a coarse one
            dSlice = Slice(fnWay, uCalls) * uCalls;
        }
        bFailed = dSlice < 0;
    }
    void Add()
    {
        vecSeconds.push_back(Slice(fnWay, uCalls));
        bFailed = bFailed || vecSeconds.back() < 0;
    }

    const Way& fnWay;
    unsigned uCalls = 1;
    bool bFailed = false;
    std::vector<double> vecSeconds;
};

double At(std::vector<double> _vecValue, double _dQuantile)
{
    std::sort(_vecValue.begin(), _vecValue.end());
    return _vecValue[static_cast<std::size_t>(std::lround(static_cast<double>(_vecValue.size() - 1) * _dQuantile))];
}

/** The line of a comparison. */
std::string Compare(const Ways& _stWays)
{
    std::vector<Series> vecSeries{Series(_stWays.fnCandidate)};
    for (const Way& fnFloor : _stWays.vecFloor) {
        vecSeries.emplace_back(fnFloor);
    }
    double dSpent = 0;
    for (std::size_t u = 0; u < g_uFewest || (u < g_uMost && dSpent < g_dEnough); ++u) {
        for (std::size_t uWay = 0; uWay < vecSeries.size(); ++uWay) {
            Series& rSeries = vecSeries[u % 2 == 0 ? uWay : vecSeries.size() - 1 - uWay];
            rSeries.Add();
            if (rSeries.bFailed) {
                return "failed";
            }
            dSpent += rSeries.vecSeconds.back() * rSeries.uCalls;
        }
    }
    const auto itFloor =
        std::min_element(vecSeries.begin() + 1, vecSeries.end(), [](const Series& _rLeft, const Series& _rRight) {
            return At(_rLeft.vecSeconds, 0.5) < At(_rRight.vecSeconds, 0.5);
        });
    std::vector<double> vecRatio;
    for (std::size_t u = 0; u < itFloor->vecSeconds.size(); ++u) {
        vecRatio.push_back(vecSeries[0].vecSeconds[u] / itFloor->vecSeconds[u]);
    }
    char szLine[160];
    (void)std::snprintf(szLine, sizeof szLine, "%.9f\t%.9f\t%.3f\t%.1f", At(vecSeries[0].vecSeconds, 0.5),
                        At(itFloor->vecSeconds, 0.5), At(vecRatio, 0.5),
                        100 * (At(vecRatio, 0.75) - At(vecRatio, 0.25)) / At(vecRatio, 0.5));
    return szLine;
}

std::string Figure(double _dRatio)
{
    char szLine[80];
    (void)std::snprintf(szLine, sizeof szLine, "-\t-\t%.3f\t-", _dRatio);
    return _dRatio > 0 ? szLine : "failed";
}

} // namespace

double Clock::Now() noexcept
{
    static const bool bWine = IsWine();
    constexpr std::int64_t llThread = 3;
    return bWine ? KernelSeconds(llThread) +
                       (s_ulServer != 0 ? KernelSeconds((~static_cast<std::int64_t>(s_ulServer) << 3) | 2) : 0)
                 : ThreadSeconds();
}

void Add(std::string _sName, std::function<Ways()> _fnMake, bool _bAlways)
{
    Benchmarks().push_back({std::move(_sName), std::move(_fnMake), nullptr, _bAlways});
}

void AddFigure(std::string _sName, std::function<double()> _fnRatio, bool _bAlways)
{
    Benchmarks().push_back({std::move(_sName), nullptr, std::move(_fnRatio), _bAlways});
}

} // namespace Bench

int main(int _iArguments, char** _pszArguments)
{
    bool bAll = false;
    const char* szOut = "measured.tsv";
    std::vector<std::string> vecName;
    for (int i = 1; i < _iArguments; ++i) {
        const std::string_view svArgument = _pszArguments[i];
        if (svArgument == "--all") {
            bAll = true;
        } else if (svArgument == "--server" && i + 1 < _iArguments) {
            Bench::Clock::s_ulServer = static_cast<std::uint32_t>(std::strtoul(_pszArguments[++i], nullptr, 10));
        } else if (svArgument == "--out" && i + 1 < _iArguments) {
            szOut = _pszArguments[++i];
        } else {
            vecName.emplace_back(svArgument);
        }
    }
    auto& rvecBenchmark = Bench::Benchmarks();
    std::erase_if(rvecBenchmark, [&](const auto& _rstBenchmark) {
        const auto Names = [&](const std::string& _rsName) {
            return _rstBenchmark.sName.find(_rsName) != std::string::npos;
        };
        return vecName.empty() ? !_rstBenchmark.bAlways && !bAll : std::ranges::none_of(vecName, Names);
    });
    std::ranges::sort(rvecBenchmark, {}, [](const auto& _rstBenchmark) { return _rstBenchmark.sName; });
    std::ofstream out(szOut, std::ios::binary);
    std::size_t uDone = 0;
    for (const auto& stBenchmark : rvecBenchmark) {
        std::printf("[%zu/%zu] %s\n", ++uDone, rvecBenchmark.size(), stBenchmark.sName.c_str());
        (void)std::fflush(stdout);
        out << stBenchmark.sName << '\t'
            << (stBenchmark.fnMake ? Bench::Compare(stBenchmark.fnMake()) : Bench::Figure(stBenchmark.fnRatio()))
            << '\n';
    }
    return out.flush().good() && uDone != 0 ? 0 : 1;
}
