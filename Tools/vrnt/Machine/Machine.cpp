#include "Machine/Machine.h"

#include "Output/Output.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <windows.h>

namespace Vrnt {

namespace {

/** Local time, with what it is ahead of UTC: "2026-11-24 23:20:06 +01:00". */
std::string Now()
{
    SYSTEMTIME stUtc{};
    SYSTEMTIME stLocal{};
    FILETIME stUtcTime{};
    FILETIME stLocalTime{};
    ::GetSystemTime(&stUtc);
    if (!::SystemTimeToTzSpecificLocalTime(nullptr, &stUtc, &stLocal) || !::SystemTimeToFileTime(&stUtc, &stUtcTime) ||
        !::SystemTimeToFileTime(&stLocal, &stLocalTime)) {
        stLocal = stUtc;
        stLocalTime = stUtcTime;
    }
    const auto Ticks = [](const FILETIME& _rstTime) {
        return static_cast<std::int64_t>(_rstTime.dwHighDateTime) << 32 | _rstTime.dwLowDateTime;
    };
    constexpr std::int64_t ullTicksPerMinute = 600'000'000;
    const int iAhead = static_cast<int>((Ticks(stLocalTime) - Ticks(stUtcTime)) / ullTicksPerMinute);
    std::array<char, 64> aText{};
    static_cast<void>(std::snprintf(aText.data(), aText.size(), "%04d-%02d-%02d %02d:%02d:%02d %c%02d:%02d",
                                    stLocal.wYear, stLocal.wMonth, stLocal.wDay, stLocal.wHour, stLocal.wMinute,
                                    stLocal.wSecond, iAhead < 0 ? '-' : '+', std::abs(iAhead) / 60,
                                    std::abs(iAhead) % 60));
    return aText.data();
}

bool IsElevated()
{
    HANDLE hOpened = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &hOpened) == FALSE) {
        return false;
    }
    const ZkCommon::Handle hToken(hOpened);
    TOKEN_ELEVATION stElevation{};
    DWORD ulSize = 0;
    return ::GetTokenInformation(hToken.Get(), TokenElevation, &stElevation, sizeof stElevation, &ulSize) != FALSE &&
           stElevation.TokenIsElevated != 0;
}

/** A name that one of the system's functions gives. */
std::string NameBy(BOOL(WINAPI* _pfnName)(wchar_t*, DWORD*))
{
    std::array<wchar_t, 257> aName{};
    DWORD ulSize = static_cast<DWORD>(aName.size());
    return OrUnknown(_pfnName(aName.data(), &ulSize) != FALSE ? aName.data() : L"");
}

} // namespace

MachineFacts FindMachine()
{
    return {NameBy(&::GetComputerNameW), NameBy(&::GetUserNameW), IsElevated(), Now()};
}

} // namespace Vrnt
