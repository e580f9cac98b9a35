#pragma once

#include <string>
#include <type_traits>

/** Replaces each occurrence of a text. */
template <class TText>
void ReplaceAll(TText& _rText, const std::type_identity_t<TText>& _rFrom, const std::type_identity_t<TText>& _rTo)
{
    for (std::size_t uAt = 0; (uAt = _rText.find(_rFrom, uAt)) != TText::npos; uAt += _rTo.size()) {
        _rText.replace(uAt, _rFrom.size(), _rTo);
    }
}
