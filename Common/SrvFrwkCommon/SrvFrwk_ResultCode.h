#pragma once

#include <cstdint>

/** Result codes of every export and interface operation: 32 bits, of which the top one marks failure. */
namespace SrvFrwk::Result {

inline constexpr std::uint32_t g_ulSuccess = 0x00040200;
inline constexpr std::uint32_t g_ulPartialSuccess = 0x00040202;  // a local update that was not applied
inline constexpr std::uint32_t g_ulNotImplemented = 0x00040203;  // of the success class
inline constexpr std::uint32_t g_ulFailed = 0x80040201;          // document missing, unreadable, not to be written, ...
inline constexpr std::uint32_t g_ulUndetermined = 0x80040202;    // a state that decides could not be determined
inline constexpr std::uint32_t g_ulRefused = 0x80040203;         // value type refused; unknown item of a local update
inline constexpr std::uint32_t g_ulInvalidArgument = 0x80040204; // a null record or slot; a reserved value type
inline constexpr std::uint32_t g_ulMissingObject = 0x80040205;   // a request or its path is missing; no manager
inline constexpr std::uint32_t g_ulNoMemory = 0x80040206;        // no memory for a function object

/** Whether a result is a failure; every other one is a success, also of codes to come. */
constexpr bool IsFailure(std::uint32_t _ulResult) noexcept
{
    return (_ulResult & 0x80000000U) != 0;
}

} // namespace SrvFrwk::Result
