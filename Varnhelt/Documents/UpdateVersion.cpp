#include "Documents/UpdateVersion.h"

#include "ZkComn_String.h"

#include <algorithm>

namespace Varnhelt {

namespace {

/** The text up to the next dot; removes it and the dots after it from the rest. */
std::wstring_view NextNumber(std::wstring_view& _rsvRest)
{
    const std::wstring_view svNumber = _rsvRest.substr(0, _rsvRest.find(L'.'));
    _rsvRest.remove_prefix(std::min(_rsvRest.size(), _rsvRest.find_first_not_of(L'.', svNumber.size())));
    return svNumber;
}

bool HasDotAtAnEnd(std::wstring_view _svVersion)
{
    return _svVersion.starts_with(L'.') || _svVersion.ends_with(L'.');
}

} // namespace

std::optional<std::int32_t> CompareVersion(std::wstring_view _svLeft, std::wstring_view _svRight)
{
    if (HasDotAtAnEnd(_svLeft) || HasDotAtAnEnd(_svRight)) {
        return std::nullopt;
    }
    do {
        const auto ulLeft = ZkCommon::String::ToWholeNumber(NextNumber(_svLeft));
        const auto ulRight = ZkCommon::String::ToWholeNumber(NextNumber(_svRight));
        if (!ulLeft || !ulRight) {
            return std::nullopt;
        }
        if (*ulLeft != *ulRight) {
            return static_cast<std::int32_t>(*ulLeft - *ulRight);
        }
    } while (!_svLeft.empty() && !_svRight.empty());
    return 0;
}

} // namespace Varnhelt
