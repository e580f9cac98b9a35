#include "Output/Html.h"

namespace Vrnt::Html {

namespace {

void AppendEscaped(std::string& _rsSource, std::string_view _svText)
{
    for (const char c : _svText) {
        switch (c) {
        case '&':
            _rsSource += "&amp;";
            break;
        case '<':
            _rsSource += "&lt;";
            break;
        case '>':
            _rsSource += "&gt;";
            break;
        case '"':
            _rsSource += "&quot;";
            break;
        case '\'':
            _rsSource += "&#39;";
            break;
        default:
            // A page holds no control characters but blanks.
            if (static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' && c != '\r') {
                _rsSource += "\xEF\xBF\xBD";
            } else {
                _rsSource += c;
            }
        }
    }
}

} // namespace

Markup::Markup(std::string_view _svText)
{
    AppendEscaped(m_sSource, _svText);
}

Markup Element(const char* _szName, const Attributes& _rvecAttribute, const Markup& _rContent)
{
    Markup cElement;
    std::string& rsSource = cElement.m_sSource;
    rsSource.append("<").append(_szName);
    for (const Attribute& stAttribute : _rvecAttribute) {
        rsSource.append(" ").append(stAttribute.szName).append("=\"");
        AppendEscaped(rsSource, stAttribute.sValue);
        rsSource += '"';
    }
    rsSource.append(">").append(_rContent.m_sSource).append("</").append(_szName).append(">");
    return cElement;
}

} // namespace Vrnt::Html
