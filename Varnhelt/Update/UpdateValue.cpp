#include "Update/UpdateValue.h"

#include "ZkComn_HexDigit.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

namespace Varnhelt {

using namespace ZkCommon;
using Value = UpdateValueType::Value;

namespace {

template <class TNumber>
std::optional<Value> ValueOf(std::optional<TNumber> _ulNumber)
{
    return _ulNumber ? std::optional(Value::Of(*_ulNumber)) : std::nullopt;
}

/** Two lower-case digits a byte. */
std::wstring HexadecimalOf(const std::vector<std::uint8_t>& _rvecBytes)
{
    constexpr wchar_t szDigits[] = L"0123456789abcdef";
    std::wstring tszText;
    tszText.reserve(_rvecBytes.size() * 2);
    for (const std::uint8_t ucByte : _rvecBytes) {
        tszText += szDigits[ucByte >> 4];
        tszText += szDigits[ucByte & 15];
    }
    return tszText;
}

/** An odd last digit is ignored; there must be a byte. */
std::optional<Value> BytesOf(const std::wstring& _rtszHex)
{
    std::vector<std::uint8_t> vecBytes(_rtszHex.size() / 2);
    for (std::size_t i = 0; i < vecBytes.size(); ++i) {
        const unsigned uHigh = String::DigitOf(_rtszHex[2 * i]);
        const unsigned uLow = String::DigitOf(_rtszHex[2 * i + 1]);
        if (uHigh == String::g_uNoDigit || uLow == String::g_uNoDigit) {
            return std::nullopt;
        }
        vecBytes[i] = static_cast<std::uint8_t>(uHigh << 4 | uLow);
    }
    return vecBytes.empty() ? std::nullopt : std::optional(Value::Of(std::move(vecBytes)));
}

std::optional<std::wstring> TextWhen(bool _bOfType, auto&& _fnText)
{
    return _bOfType ? std::optional<std::wstring>(_fnText()) : std::nullopt;
}

constexpr UpdateValueType g_aType[] = {
    {UpdateWords::TypeUint32, false,
     [](const std::wstring& _rtszText) { return ValueOf(String::ToWholeNumber(_rtszText)); },
     [](const Value& _rstValue) {
         return TextWhen(_rstValue.ulType == REG_DWORD && _rstValue.vecData.size() == sizeof(std::uint32_t),
                         [&] { return std::to_wstring(_rstValue.Number()); });
     }},
    {UpdateWords::TypeUint64, false,
     [](const std::wstring& _rtszText) { return ValueOf(String::ToWholeNumber64(_rtszText)); },
     [](const Value& _rstValue) {
         return TextWhen(_rstValue.ulType == REG_QWORD && _rstValue.vecData.size() == sizeof(std::uint64_t),
                         [&] { return std::to_wstring(_rstValue.Number64()); });
     }},
    {UpdateWords::TypeString, true, [](const std::wstring& _rtszText) { return std::optional(Value::Of(_rtszText)); },
     [](const Value& _rstValue) { // an expandable text is read as a text, too
         return TextWhen(_rstValue.ulType == REG_SZ || _rstValue.ulType == REG_EXPAND_SZ,
                         [&] { return _rstValue.Text(); });
     }},
    {UpdateWords::TypeBinary, true, &BytesOf,
     [](const Value& _rstValue) {
         return TextWhen(_rstValue.ulType == REG_BINARY, [&] { return HexadecimalOf(_rstValue.vecData); });
     }},
};

} // namespace

const UpdateValueType* FindUpdateValueType(std::wstring_view _svWord) noexcept
{
    const Frwk::Word* pWord = Frwk::Utility::FindWord(UpdateWords::g_stType, _svWord);
    return pWord != nullptr ? std::ranges::find(g_aType, pWord->ulValue, &UpdateValueType::enType) : nullptr;
}

std::optional<UpdateValueText> UpdateTextOf(const Value& _rstValue)
{
    for (const UpdateValueType& rstType : g_aType) {
        std::optional<std::wstring> tszText = rstType.TextOf(_rstValue);
        if (tszText && rstType.Of(*tszText) == _rstValue) {
            return UpdateValueText{rstType.enType, std::move(*tszText)};
        }
    }
    return std::nullopt;
}

} // namespace Varnhelt
