#include "Check/Nearest.h"

#include <algorithm>
#include <cwctype>
#include <limits>
#include <utility>

namespace Vrnt {

namespace {

constexpr std::size_t g_uLongest = 64; // longer texts are no slips of words

/** How many steps apart two texts are, in halves: a letter in another case is half a step. */
std::size_t Distance(std::wstring_view _svLeft, std::wstring_view _svRight)
{
    const auto Lower = [](wchar_t _c) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(_c))); };
    const auto Cost = [&](wchar_t _cLeft, wchar_t _cRight) -> std::size_t {
        return _cLeft == _cRight ? 0 : Lower(_cLeft) == Lower(_cRight) ? 1 : 2;
    };
    std::vector<std::size_t> vecBefore;
    std::vector<std::size_t> vecLast(_svRight.size() + 1);
    for (std::size_t k = 0; k < vecLast.size(); ++k) {
        vecLast[k] = 2 * k;
    }
    for (std::size_t i = 1; i <= _svLeft.size(); ++i) {
        std::vector<std::size_t> vecRow(vecLast.size());
        vecRow[0] = 2 * i;
        for (std::size_t k = 1; k < vecRow.size(); ++k) {
            vecRow[k] =
                std::min({vecLast[k] + 2, vecRow[k - 1] + 2, vecLast[k - 1] + Cost(_svLeft[i - 1], _svRight[k - 1])});
            if (i > 1 && k > 1 && _svLeft[i - 1] == _svRight[k - 2] && _svLeft[i - 2] == _svRight[k - 1]) {
                vecRow[k] = std::min(vecRow[k], vecBefore[k - 2] + 2);
            }
        }
        vecBefore = std::exchange(vecLast, std::move(vecRow));
    }
    return vecLast.back();
}

} // namespace

std::wstring_view Nearest(std::wstring_view _svText, const std::vector<std::wstring_view>& _vecCandidate)
{
    std::wstring_view svNearest;
    if (_svText.empty() || _svText.size() > g_uLongest) {
        return svNearest;
    }
    std::size_t uLeast = std::numeric_limits<std::size_t>::max();
    for (const std::wstring_view svCandidate : _vecCandidate) {
        // A slip leaves more than half of the word as it was.
        const std::size_t uDistance = Distance(_svText, svCandidate);
        if (uDistance < uLeast && uDistance <= std::max(_svText.size(), svCandidate.size())) {
            uLeast = uDistance;
            svNearest = svCandidate;
        }
    }
    return svNearest;
}

} // namespace Vrnt
