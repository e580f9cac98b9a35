#include "ZkComn_String.h"

#include "ZkComn_Exception.h"
#include "ZkComn_HexDigit.h"

#include <limits>
#include <memory>
#include <new>
#include <windows.h>

namespace ZkCommon::String {

namespace {

std::wstring ToWide(UINT _uCodePage, std::string_view _svText)
{
    const int iLength = static_cast<int>(_svText.size());
    const int iWide = ::MultiByteToWideChar(_uCodePage, 0, _svText.data(), iLength, nullptr, 0);
    std::wstring tszResult(static_cast<std::size_t>(iWide), L'\0');
    ::MultiByteToWideChar(_uCodePage, 0, _svText.data(), iLength, tszResult.data(), iWide);
    return tszResult;
}

std::string ToNarrow(UINT _uCodePage, std::wstring_view _svText)
{
    const int iLength = static_cast<int>(_svText.size());
    const int iNarrow = ::WideCharToMultiByte(_uCodePage, 0, _svText.data(), iLength, nullptr, 0, nullptr, nullptr);
    std::string sResult(static_cast<std::size_t>(iNarrow), '\0');
    ::WideCharToMultiByte(_uCodePage, 0, _svText.data(), iLength, sResult.data(), iNarrow, nullptr, nullptr);
    return sResult;
}

bool IsBlank(wchar_t _c) noexcept
{
    return _c == L' ' || (_c >= L'\t' && _c <= L'\r');
}

/** What the front of a text holds, read as an unsigned number in automatic base. */
template <class T>
struct Reading
{
    T ulValue = 0;
    std::size_t uEnd = 0; // past the last digit; 0 when there is none
    bool bOverflow = false;
};

/** The digits at _uStart, whose prefix gives their base. */
template <class T>
Reading<T> ReadDigits(std::wstring_view _svText, std::size_t _uStart) noexcept
{
    Reading<T> stReading;
    unsigned uBase = 10;
    std::size_t uAt = _uStart;
    if (uAt < _svText.size() && _svText[uAt] == L'0') {
        uBase = 8;
        if (uAt + 2 < _svText.size() && (_svText[uAt + 1] | 0x20) == L'x' && DigitOf(_svText[uAt + 2]) != g_uNoDigit) {
            uBase = 16;
            uAt += 2;
        }
    }
    constexpr T ulMax = std::numeric_limits<T>::max();
    for (; uAt < _svText.size(); ++uAt) {
        const unsigned uDigit = DigitOf(_svText[uAt]);
        if (uDigit >= uBase) {
            break;
        }
        stReading.uEnd = uAt + 1;
        if (stReading.ulValue > (ulMax - uDigit) / uBase) {
            stReading.bOverflow = true;
        } else {
            stReading.ulValue = static_cast<T>(stReading.ulValue * uBase + uDigit);
        }
    }
    return stReading;
}

template <class T>
std::optional<T> ReadWhole(std::wstring_view _svText) noexcept
{
    const Reading<T> stReading = ReadDigits<T>(_svText, 0);
    if (_svText.empty() || stReading.uEnd != _svText.size() || stReading.bOverflow) {
        return std::nullopt;
    }
    return stReading.ulValue;
}

} // namespace

bool FormatV(std::wstring& _rtszOutput, std::uint32_t& _rulSize, const wchar_t* _pszFormat, std::va_list _args)
{
    const std::unique_ptr<wchar_t[]> pBuffer(new (std::nothrow) wchar_t[_rulSize]());
    if (pBuffer == nullptr) {
        throw new Exception(ZkCommon::Exception::g_ulNoSystemError);
    }
    const int iLength = ::_vsnwprintf_s(pBuffer.get(), _rulSize, _TRUNCATE, _pszFormat, _args);
    if (iLength < 0) {
        _rulSize += g_ulFormatStep;
        return false;
    }
    _rtszOutput.assign(pBuffer.get(), static_cast<std::size_t>(iLength));
    return true;
}

std::wstring FormatList(const wchar_t* _pszFormat, std::va_list _args)
{
    // Each attempt consumes its list.
    const auto WithCopy = [&](auto&& _fnUse) {
        std::va_list args;
        va_copy(args, _args);
        try {
            const auto result = _fnUse(args);
            va_end(args);
            return result;
        } catch (...) {
            va_end(args);
            throw;
        }
    };
    std::wstring tszOutput;
    std::uint32_t ulSize = g_ulFormatStart;
    const auto Attempt = [&](std::va_list _list) { return FormatV(tszOutput, ulSize, _pszFormat, _list); };
    if (!WithCopy(Attempt)) {
        // Growing a step at a time would take quadratic time over a long text, and for ever over one that fails for
        // another reason than its length: the size comes from the length, rounded up to a step.
        const int iLength = WithCopy([&](std::va_list _list) { return ::_vscwprintf(_pszFormat, _list); });
        ulSize = (static_cast<std::uint32_t>(iLength) / g_ulFormatStep + 1) * g_ulFormatStep;
        if (iLength < 0 || !WithCopy(Attempt)) {
            throw new Exception(ZkCommon::Exception::g_ulNoSystemError);
        }
    }
    return tszOutput;
}

bool Format(std::wstring& _rtszOutput, const wchar_t* _pszFormat, ...)
{
    _rtszOutput.clear();
    std::va_list args;
    va_start(args, _pszFormat);
    try {
        _rtszOutput = FormatList(_pszFormat, args);
    } catch (...) {
        va_end(args);
        throw;
    }
    va_end(args);
    return true;
}

std::string ToUtf8(std::wstring_view _svText)
{
    return ToNarrow(CP_UTF8, _svText);
}

std::wstring FromUtf8(std::string_view _svText)
{
    return ToWide(CP_UTF8, _svText);
}

std::string FileTextToUtf8(std::string_view _svBytes)
{
    const bool bLittle = _svBytes.starts_with("\xFF\xFE");
    if (!bLittle && !_svBytes.starts_with("\xFE\xFF")) {
        return std::string(_svBytes);
    }
    std::wstring tszText;
    for (std::size_t i = 2; i + 1 < _svBytes.size(); i += 2) {
        const auto ucFirst = static_cast<unsigned char>(_svBytes[i]);
        const auto ucSecond = static_cast<unsigned char>(_svBytes[i + 1]);
        tszText += static_cast<wchar_t>(bLittle ? ucFirst | ucSecond << 8 : ucFirst << 8 | ucSecond);
    }
    return ToUtf8(tszText);
}

std::string ToAnsi(std::wstring_view _svText)
{
    return ToNarrow(CP_ACP, _svText);
}

std::wstring FromAnsi(std::string_view _svText)
{
    return ToWide(CP_ACP, _svText);
}

std::uint32_t ToNumber(std::wstring_view _svText) noexcept
{
    std::size_t uAt = 0;
    while (uAt < _svText.size() && IsBlank(_svText[uAt])) {
        ++uAt;
    }
    bool bMinus = false;
    if (uAt < _svText.size() && (_svText[uAt] == L'+' || _svText[uAt] == L'-')) {
        bMinus = _svText[uAt++] == L'-';
    }
    const auto stReading = ReadDigits<std::uint32_t>(_svText, uAt);
    if (stReading.bOverflow) {
        return std::numeric_limits<std::uint32_t>::max();
    }
    return bMinus ? 0U - stReading.ulValue : stReading.ulValue;
}

std::optional<std::uint32_t> ToWholeNumber(std::wstring_view _svText) noexcept
{
    return ReadWhole<std::uint32_t>(_svText);
}

std::optional<std::uint64_t> ToWholeNumber64(std::wstring_view _svText) noexcept
{
    return ReadWhole<std::uint64_t>(_svText);
}

bool EqualsNoCase(std::wstring_view _svLeft, std::wstring_view _svRight, std::size_t _uCount) noexcept
{
    const std::wstring_view svLeft = _svLeft.substr(0, _uCount);
    const std::wstring_view svRight = _svRight.substr(0, _uCount);
    // The system is asked only where that can decide: most texts are equal at once or differ in length.
    return svLeft == svRight || (svLeft.size() == svRight.size() &&
                                 ::CompareStringOrdinal(svLeft.data(), static_cast<int>(svLeft.size()), svRight.data(),
                                                        static_cast<int>(svRight.size()), TRUE) == CSTR_EQUAL);
}

bool LessNoCase::operator()(std::wstring_view _svLeft, std::wstring_view _svRight) const noexcept
{
    return ::CompareStringOrdinal(_svLeft.data(), static_cast<int>(_svLeft.size()), _svRight.data(),
                                  static_cast<int>(_svRight.size()), TRUE) == CSTR_LESS_THAN;
}

std::wstring WithBackslash(std::wstring _tszPath)
{
    if (!_tszPath.empty() && _tszPath.back() != L'\\') {
        _tszPath += L'\\';
    }
    return _tszPath;
}

} // namespace ZkCommon::String
