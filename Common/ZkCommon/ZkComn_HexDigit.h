#pragma once

namespace ZkCommon::String {

/** What DigitOf gives for a character that is not a hexadecimal digit: more than any digit, in every base. */
inline constexpr unsigned g_uNoDigit = 16;

/** The value of a hexadecimal digit, of either case. */
constexpr unsigned DigitOf(wchar_t _c) noexcept
{
    if (_c >= L'0' && _c <= L'9') {
        return static_cast<unsigned>(_c - L'0');
    }
    const wchar_t cLower = static_cast<wchar_t>(_c | 0x20);
    return cLower >= L'a' && cLower <= L'f' ? static_cast<unsigned>(cLower - L'a') + 10 : g_uNoDigit;
}

} // namespace ZkCommon::String
