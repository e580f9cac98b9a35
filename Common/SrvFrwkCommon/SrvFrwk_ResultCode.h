#pragma once

#include <cstdint>
#include <string_view>

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

/** A result in words, in ASCII and zero-terminated; empty for a number that is not one of ours. */
constexpr std::string_view ToText(std::uint32_t _ulResult) noexcept
{
    switch (_ulResult) {
    case g_ulSuccess:
        return "success";
    case g_ulPartialSuccess:
        return "partial success: nothing was applied";
    case g_ulNotImplemented:
        return "the operation is not implemented";
    case g_ulFailed:
        return "the operation failed: the document is missing, unreadable or not well-formed, or cannot be written";
    case g_ulUndetermined:
        return "a state could not be determined";
    case g_ulRefused:
        return "the value type is refused, or an element or word is invalid";
    case g_ulInvalidArgument:
        return "an invalid argument, or an unsupported value or action type";
    case g_ulMissingObject:
        return "a required object or input is missing";
    case g_ulNoMemory:
        return "out of memory";
    default:
        return {};
    }
}

} // namespace SrvFrwk::Result
