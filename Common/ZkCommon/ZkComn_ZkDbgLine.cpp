#include "ZkComn_ZkDbgLine.h"

#include "ZkComn_String.h"

namespace ZkCommon::Library {

std::string ToFileText(std::wstring_view _svLine)
{
    constexpr std::wstring_view svEnd = L"\r\n";
    const bool bEnded = _svLine.ends_with(svEnd);
    std::wstring_view svText = _svLine.substr(0, _svLine.size() - (bEnded ? svEnd.size() : 0));
    std::size_t uAt = svText.find_first_of(svEnd);
    if (uAt == std::wstring_view::npos) {
        return String::ToUtf8(_svLine);
    }
    std::wstring tszText;
    for (; uAt != std::wstring_view::npos; uAt = svText.find_first_of(svEnd)) {
        tszText.append(svText.substr(0, uAt)).append(svEnd).append(1, L'\t');
        svText.remove_prefix(uAt + (svText.substr(uAt).starts_with(svEnd) ? svEnd.size() : 1));
    }
    tszText.append(svText).append(bEnded ? svEnd : std::wstring_view());
    return String::ToUtf8(tszText);
}

} // namespace ZkCommon::Library
