#include "Verbs.h"

#include "Footprint.h"
#include "Frwk_DataTypes.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"

#include <atomic>
#include <cstdio>
#include <thread>

namespace Proof {

/** store policy|alias|pre-update-list|update: again and again, until it is killed. */
int Store(Host& _rHost, const Arguments& _vecArgument)
{
    const std::string& sWhat = _vecArgument.at(0);
    const Operation& rstOperation = OperationOf(sWhat == "update" ? sWhat : "store-" + sWhat);
    const std::wstring tszFile = _rHost.FileOf(rstOperation);
    const std::string sBefore = Contents(tszFile);
    for (std::uint32_t ulRound = 0;; ++ulRound) {
        if (sWhat == "policy") {
            StorePolicy(_rHost.stDesk, ulRound % 2 == 0 ? Frwk::PermissionAllow : Frwk::PermissionDeny);
        } else if (sWhat == "alias") {
            StoreAliases(tszFile, static_cast<wchar_t>(L'a' + ulRound % 2));
        } else {
            rstOperation.pRun(_rHost.stDesk, tszFile);
            if (sWhat == "update" || ulRound % 50 == 49) {
                Put(tszFile, sBefore); // an update deletes its description, the list grows with each store
            }
        }
        if (ulRound == 0) {
            std::puts("storing");
            (void)std::fflush(stdout);
        }
    }
}

/** look policy|alias|pre-update-list [TIMES]: is the document whole, each time? */
int Look(Host& _rHost, const Arguments& _vecArgument)
{
    const std::string& sWhat = _vecArgument.at(0);
    const std::size_t uTimes = _vecArgument.size() > 1 ? std::stoul(_vecArgument[1]) : 1;
    std::uint32_t ulResult = SrvFrwk::Result::g_ulSuccess;
    for (std::size_t uTime = 0; uTime < uTimes && ulResult == SrvFrwk::Result::g_ulSuccess; ++uTime) {
        ulResult = sWhat == "policy"  ? LookAtPolicy(_rHost.stDesk)
                   : sWhat == "alias" ? LookAtAliases(_rHost.stDesk.tszFolder + L"DepAlias.xen")
                                      : _rHost.Run(OperationOf("store-pre-update-list"));
    }
    std::printf("%s: 0x%08x\n", sWhat.c_str(), static_cast<unsigned>(ulResult));
    return ulResult == SrvFrwk::Result::g_ulSuccess ? 0 : 1;
}

/**
 * crowd SECONDS WRITERS READERS: threads of one process over one policy, half of the time to get ready, half to measure.
 * Half of the calls are to the function object of all threads, the rest each to one that is made for it.
 */
int Crowd(Host& _rHost, const Arguments& _vecArgument)
{
    const double dSeconds = std::stod(_vecArgument.at(0));
    const int iWriters = std::stoi(_vecArgument.at(1));
    const int iReaders = std::stoi(_vecArgument.at(2));
    std::atomic<int> aiCount[2] = {};
    std::atomic<int> aiFailed[2] = {};
    std::atomic<int> iTorn = 0;
    const auto work = [&](std::size_t _uWrites) {
        const Clock::time_point tBegin = Clock::now();
        for (std::uint32_t ulRound = 0; SecondsSince(tBegin) < dSeconds / 2; ++ulRound) {
            const Varnhelt::Module::Function pOwn =
                ulRound % 4 < 2 ? Varnhelt::Module::Function() : _rHost.cModule.CreateFunction();
            const Desk stDesk{pOwn ? *pOwn : *_rHost.pFunction, _rHost.stDesk.tszFolder};
            const std::uint32_t ulResult =
                _uWrites != 0 ? StorePolicy(stDesk, ulRound % 2 == 0 ? Frwk::PermissionAllow : Frwk::PermissionDeny)
                              : LookAtPolicy(stDesk);
            ++aiCount[_uWrites];
            aiFailed[_uWrites] += SrvFrwk::Result::IsFailure(ulResult) ? 1 : 0;
            iTorn += !SrvFrwk::Result::IsFailure(ulResult) && ulResult != SrvFrwk::Result::g_ulSuccess ? 1 : 0;
        }
    };
    Footprint astAfter[2]; // what the system keeps of the first threads, and of locks they waited for, is in the first
    for (Footprint& rstAfter : astAfter) {
        std::vector<std::jthread> vecThread;
        for (int iThread = 0; iThread < iWriters + iReaders; ++iThread) {
            vecThread.emplace_back(work, iThread < iWriters ? 1U : 0U);
        }
        vecThread.clear();
        rstAfter = Footprint::Now();
    }
    std::printf("queries %d, failed %d; stores %d, failed %d; torn %d; handles %lu -> %lu; heap %zu -> %zu\n",
                aiCount[0].load(), aiFailed[0].load(), aiCount[1].load(), aiFailed[1].load(), iTorn.load(),
                astAfter[0].ulHandles, astAfter[1].ulHandles, astAfter[0].uHeapBytes, astAfter[1].uHeapBytes);
    const bool bFlat = astAfter[1].ulHandles <= astAfter[0].ulHandles + 1 && // one event of a lock, at most
                       astAfter[1].uHeapBytes <= astAfter[0].uHeapBytes + 4096;
    return aiFailed[0] + aiFailed[1] + iTorn == 0 && bFlat ? 0 : 1;
}

/** changes SECONDS FIRST: two threads store a controller each, number FIRST and the next, and look whether it stays so. */
int Changes(Host& _rHost, const Arguments& _vecArgument)
{
    const double dSeconds = std::stod(_vecArgument.at(0));
    const std::size_t uFirst = std::stoul(_vecArgument.at(1));
    const Clock::time_point tBegin = Clock::now();
    std::atomic<int> iStores = 0;
    std::atomic<int> iFailed = 0;
    std::atomic<int> iLost = 0;
    const auto work = [&](std::size_t _uController) {
        for (std::uint32_t ulRound = 0; SecondsSince(tBegin) < dSeconds; ++ulRound) {
            const std::uint32_t ulPermission = ulRound % 2 == 0 ? Frwk::PermissionAllow : Frwk::PermissionDeny;
            const std::uint32_t ulStored = StoreController(_rHost.stDesk, _uController, ulPermission);
            const std::uint32_t ulRead = PermissionOf(_rHost.stDesk, _uController);
            ++iStores;
            iFailed += SrvFrwk::Result::IsFailure(ulStored) ? 1 : 0;
            iLost += !SrvFrwk::Result::IsFailure(ulStored) && ulRead != ulPermission ? 1 : 0;
        }
    };
    {
        const std::jthread cOther(work, uFirst + 1);
        work(uFirst);
    }
    std::printf("stores %d, failed %d, lost %d\n", iStores.load(), iFailed.load(), iLost.load());
    return iFailed + iLost == 0 ? 0 : 1;
}

} // namespace Proof
