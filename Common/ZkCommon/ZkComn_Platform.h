#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/** Which Windows this is. Thread-safe. */
namespace ZkCommon::Platform {

/** Kinds of system; the numbers are fixed. */
enum OsType : std::uint32_t
{
    OsMe = 1,
    Os9xOrMe = 2,
    Os2000 = 3,
    Os2003 = 4,
    OsXp32 = 5,
    OsXp64 = 6,
    OsXp32Or64 = 7,
    OsVista32 = 8,
    OsVista64 = 9,
    OsVista32Or64 = 10,
    OsSeven32 = 11,
    OsSeven64 = 12,
    OsSeven32Or64 = 13,
    OsEight32 = 14,
    OsEight64 = 15,
    OsEight32Or64 = 16,
    OsNtOrLater = 101,
    Os2000OrLater = 102,
    OsXpOrLater = 103,
    OsXpSp2OrLater = 104,
    OsXpSp3OrLater = 105,
    OsVistaOrLater = 106,
    OsVistaSp1OrLater = 107,
    OsVistaSp2OrLater = 108,
    OsSevenOrLater = 109,
    OsSevenSp1OrLater = 110,
    OsEightOrLater = 111,
    OsNtServer = 112,
};

struct OsTypeName
{
    std::uint32_t ulOsType;
    std::wstring_view svName;
};

/** The names that documents use. The other kinds of system have none. */
inline constexpr OsTypeName g_aOsTypeName[] = {
    {OsMe, L"Me"},
    {Os9xOrMe, L"9xorMe"},
    {Os2000, L"2000"},
    {Os2003, L"2003"},
    {OsXp32, L"XP32"},
    {OsXp64, L"XP64"},
    {OsXp32Or64, L"XP32or64"},
    {OsVista32, L"Vista32"},
    {OsVista64, L"Vista64"},
    {OsVista32Or64, L"Vista32or64"},
    {OsSeven32, L"Seven32"},
    {OsSeven64, L"Seven64"},
    {OsSeven32Or64, L"Seven32or64"},
    {OsNtOrLater, L"NTorLater"},
    {Os2000OrLater, L"2000orLater"},
    {OsXpOrLater, L"XPorLater"},
    {OsXpSp2OrLater, L"XPSp2orLater"},
    {OsXpSp3OrLater, L"XPSp3orLater"},
    {OsVistaOrLater, L"VistaorLater"},
    {OsVistaSp1OrLater, L"VistaSp1orLater"},
    {OsVistaSp2OrLater, L"VistaSp2orLater"},
    {OsSevenOrLater, L"SevenorLater"},
};

/** The number of a name (case-sensitive), if there is such a name. */
std::optional<std::uint32_t> OsTypeOf(std::wstring_view _svName) noexcept;
/** The name of a number; empty when it has none. */
std::wstring_view NameOf(std::uint32_t _ulOsType) noexcept;

/** What decides the kind of a system. */
struct Version
{
    std::uint32_t ulPlatform = 0; // 1 is the 9x family, 2 the NT family
    std::uint32_t ulMajor = 0;
    std::uint32_t ulMinor = 0;
    std::uint32_t ulServicePack = 0; // major number
    std::uint32_t ulProductType = 0; // 1 workstation, 2 domain controller, 3 server
    bool b64Bit = false;             // the native processor is x64
};

/** Whether a system of that version is of the kind; false for a number that is no OsType. */
bool IsOfType(std::uint32_t _ulOsType, const Version& _rstVersion) noexcept;

/**
 * Whether this machine is of the kind. The version is asked for once; when that fails the answer is false and ErrorCode
 * says why, and the next call asks again.
 */
bool CheckOsType(std::uint32_t _ulOsType) noexcept;

/** System error of the last attempt to read the version; 0 when it succeeded or was not made yet. */
std::uint32_t ErrorCode() noexcept;

/** Whether the native processor is x64, also for a 32-bit process; false when that cannot be found out. */
bool IsNative64Bit() noexcept;

} // namespace ZkCommon::Platform
