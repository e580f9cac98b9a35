#pragma once

#include <cstdint>

/** Result codes of every export and interface operation. The top bit marks failure. */
namespace SrvFrwk::Result {

inline constexpr std::uint32_t g_ulSuccess = 0x00040200;
inline constexpr std::uint32_t g_ulPartialSuccess = 0x00040202;  // a local update that was not applied
inline constexpr std::uint32_t g_ulNotImplemented = 0x00040203;  // of the success class
inline constexpr std::uint32_t g_ulFailed = 0x80040201;          // the operation failed
inline constexpr std::uint32_t g_ulUndetermined = 0x80040202;    // a state could not be determined
inline constexpr std::uint32_t g_ulRefused = 0x80040203;         // value type refused; invalid element or word
inline constexpr std::uint32_t g_ulInvalidArgument = 0x80040204; // invalid argument, unsupported value or action type
inline constexpr std::uint32_t g_ulMissingObject = 0x80040205;   // a required object or input is missing
inline constexpr std::uint32_t g_ulNoMemory = 0x80040206;        // an allocation failed

constexpr bool IsFailure(std::uint32_t _ulResult) noexcept
{
    return (_ulResult & 0x80000000U) != 0;
}

} // namespace SrvFrwk::Result
