#include "Records/Json.h"

#include "ZkComn_String.h"

#include <array>
#include <charconv>

namespace Vrnt {

namespace {

constexpr std::size_t g_uIndent = 2;

void AppendText(std::string& _rsText, std::string_view _svUtf8)
{
    constexpr std::string_view svDigits = "0123456789abcdef";
    _rsText += '"';
    for (const wchar_t c : ZkCommon::String::FromUtf8(_svUtf8)) {
        switch (c) {
        case L'"':
            _rsText += "\\\"";
            break;
        case L'\\':
            _rsText += "\\\\";
            break;
        case L'\n':
            _rsText += "\\n";
            break;
        case L'\r':
            _rsText += "\\r";
            break;
        case L'\t':
            _rsText += "\\t";
            break;
        default:
            if (c >= L' ' && c <= L'~') {
                _rsText += static_cast<char>(c);
                break;
            }
            _rsText += "\\u";
            for (int iShift = 12; iShift >= 0; iShift -= 4) {
                _rsText += svDigits[static_cast<std::size_t>(c >> iShift) & 0xF];
            }
        }
    }
    _rsText += '"';
}

void Append(std::string& _rsText, const Json& _rjsValue, std::size_t _uIndent);

/** Elements or members between their brackets, each on its line. */
template <class TItems, class TAppend>
void AppendItems(std::string& _rsText, const char* _szBrackets, const TItems& _rItems, std::size_t _uIndent,
                 const TAppend& _fnAppend)
{
    _rsText += _szBrackets[0];
    const char* szBefore = "\n";
    for (const auto& item : _rItems) {
        _rsText.append(szBefore).append(_uIndent + g_uIndent, ' ');
        _fnAppend(item);
        szBefore = ",\n";
    }
    if (!_rItems.empty()) {
        _rsText.append("\n").append(_uIndent, ' ');
    }
    _rsText += _szBrackets[1];
}

struct Appender
{
    std::string& rsText;
    std::size_t uIndent;

    void operator()(std::nullptr_t) const { rsText += "null"; }
    void operator()(bool _bValue) const { rsText += _bValue ? "true" : "false"; }
    void operator()(std::uint64_t _ullValue) const { rsText += std::to_string(_ullValue); }
    void operator()(std::int64_t _llValue) const { rsText += std::to_string(_llValue); }
    void operator()(double _dValue) const
    {
        std::array<char, 32> aText{};
        rsText.append(aText.data(), std::to_chars(aText.data(), aText.data() + aText.size(), _dValue).ptr);
    }
    void operator()(const std::string& _rsText) const { AppendText(rsText, _rsText); }
    void operator()(const Json::Elements& _rvecElement) const
    {
        AppendItems(rsText, "[]", _rvecElement, uIndent,
                    [&](const Json& _rjsElement) { Append(rsText, _rjsElement, uIndent + g_uIndent); });
    }
    void operator()(const Json::Members& _rvecMember) const
    {
        AppendItems(rsText, "{}", _rvecMember, uIndent, [&](const Json::Member& _rMember) {
            AppendText(rsText, _rMember.first);
            rsText += ": ";
            Append(rsText, _rMember.second, uIndent + g_uIndent);
        });
    }
};

void Append(std::string& _rsText, const Json& _rjsValue, std::size_t _uIndent)
{
    _rjsValue.Visit(Appender{_rsText, _uIndent});
}

} // namespace

Json::Json(const std::wstring& _rtszText) : m_value(ZkCommon::String::ToUtf8(_rtszText)) {}

const Json* Json::Find(std::string_view _svKey) const noexcept
{
    if (const Members* pMembers = As<Members>(); pMembers != nullptr) {
        for (const auto& [sKey, jsValue] : *pMembers) {
            if (sKey == _svKey) {
                return &jsValue;
            }
        }
    }
    return nullptr;
}

std::string Json::ToText() const
{
    std::string sText;
    Append(sText, *this, 0);
    return sText;
}

} // namespace Vrnt
