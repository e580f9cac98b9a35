#include "Check/MarkupScan.h"

#include <algorithm>

namespace Vrnt {

std::optional<MarkupScan::Markup> MarkupScan::Next()
{
    while ((m_uAt = m_svText.find('<', m_uAt)) != std::string_view::npos) {
        const std::size_t uStart = m_uAt;
        const std::string_view svRest = m_svText.substr(uStart);
        const auto NameAt = [&](std::size_t _uFrom) {
            return svRest.substr(_uFrom, svRest.find_first_of(" \t\r\n/>?=", _uFrom) - _uFrom);
        };
        if (svRest.starts_with("<!--")) {
            SkipPast("-->");
        } else if (svRest.starts_with("<![CDATA[")) {
            SkipPast("]]>");
        } else if (svRest.starts_with("<!DOCTYPE")) {
            SkipDoctype();
            return Markup{Kind::Doctype, {}, uStart};
        } else if (svRest.starts_with("<?")) {
            SkipPast("?>");
            if (const std::string_view svName = NameAt(2); svName != "xml") {
                return Markup{Kind::Instruction, svName, uStart};
            }
        } else {
            ++m_uAt;
            if (const std::string_view svName = NameAt(1); !svName.empty()) { // else an end tag
                return Markup{Kind::Start, svName, uStart};
            }
        }
    }
    return std::nullopt;
}

void MarkupScan::SkipPast(std::string_view _svEnd)
{
    const std::size_t uEnd = m_svText.find(_svEnd, m_uAt);
    m_uAt = uEnd == std::string_view::npos ? m_svText.size() : uEnd + _svEnd.size();
}

/** Up to its end, past the declarations that it may hold. */
void MarkupScan::SkipDoctype()
{
    const std::size_t uInside = m_svText.find_first_of("[>", m_uAt);
    if (uInside != std::string_view::npos && m_svText[uInside] == '[') {
        SkipPast("]");
    }
    SkipPast(">");
}

} // namespace Vrnt
