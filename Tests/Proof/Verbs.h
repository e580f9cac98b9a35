#pragma once

#include "Operations.h"
#include "VarnheltLoader.h"

#include <chrono>
#include <string>
#include <vector>

/** What the driver can be asked to do; see each verb's own comment for its arguments and figures. */
namespace Proof {

using Arguments = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

struct Host
{
    Host(const std::wstring& _tszModule, std::wstring _tszFolder)
        : cModule(_tszModule), pFunction(cModule.CreateFunction()), stDesk{*pFunction, std::move(_tszFolder)}
    {}
    std::wstring FileOf(const Operation& _rstOperation) const { return stDesk.tszFolder + _rstOperation.pszFile; }
    std::uint32_t Run(const Operation& _rstOperation) const
    {
        return _rstOperation.pRun(stDesk, FileOf(_rstOperation));
    }

    Varnhelt::Module cModule;
    Varnhelt::Module::Function pFunction;
    Desk stDesk;
};

inline double SecondsSince(Clock::time_point _tBegin)
{
    return std::chrono::duration<double>(Clock::now() - _tBegin).count();
}

std::string Repeated(std::string_view _svText, std::size_t _uTimes);
/** Processor time of this process: what the machine does besides is not in it. */
double ProcessorSeconds();

/** Each gives the exit status: 0, or 1 when something was lost. */
int Store(Host& _rHost, const Arguments& _vecArgument);
int Look(Host& _rHost, const Arguments& _vecArgument);
int Crowd(Host& _rHost, const Arguments& _vecArgument);
int Changes(Host& _rHost, const Arguments& _vecArgument);
int Refusals(Host& _rHost, const Arguments& _vecArgument);
int Mutants(Host& _rHost, const Arguments& _vecArgument);
int Mutate(Host& _rHost, const Arguments& _vecArgument);
int Cost(Host& _rHost, const Arguments& _vecArgument);
int One(Host& _rHost, const Arguments& _vecArgument);

} // namespace Proof
