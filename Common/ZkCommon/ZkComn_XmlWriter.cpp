#include "ZkComn_XmlWriter.h"

#include "ZkComn_Exception.h"

#include <algorithm>
#include <limits>
#include <new>
#include <windows.h>

namespace ZkCommon::Storage {

namespace {

constexpr std::wstring_view g_svDeclaration = L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr std::wstring_view g_svLineEnd = L"\r\n";

/** No document that means anything is nested deeper, and tabs without end would make the output grow as the square. */
constexpr std::uint32_t g_ulDeepestIndentation = 128;

void AppendUtf8(std::string& _rsOutput, std::wstring_view _svLine)
{
    if (_svLine.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError);
    }
    const int iLength = static_cast<int>(_svLine.size());
    const int iBytes = ::WideCharToMultiByte(CP_UTF8, 0, _svLine.data(), iLength, nullptr, 0, nullptr, nullptr);
    const std::size_t uBefore = _rsOutput.size();
    _rsOutput.resize(uBefore + static_cast<std::size_t>(iBytes));
    if (iBytes == 0 || ::WideCharToMultiByte(CP_UTF8, 0, _svLine.data(), iLength, _rsOutput.data() + uBefore, iBytes,
                                             nullptr, nullptr) != iBytes) {
        throw new XmlException(ERROR_INVALID_DATA);
    }
}

} // namespace

bool XmlWriter::Write(const XmlElement& _rRoot)
{
    if (m_tszEncoding != L"UTF8") {
        throw new XmlException(ERROR_NOT_SUPPORTED);
    }
    try {
        if (m_bDeclaration) {
            m_tszLine = g_svDeclaration;
            EndLine();
        }
        if (!_rRoot.Name().empty() || _rRoot.IsComment()) {
            WriteTree(_rRoot);
        } else {
            for (XmlElement top = _rRoot.FirstNode(); top; top = top.NextNode()) {
                WriteTree(top);
            }
        }
    } catch (const std::bad_alloc&) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError);
    }
    return true;
}

void XmlWriter::WriteTree(const XmlElement& _rRoot)
{
    const std::uint32_t ulRootDepth = m_ulDepth;
    XmlElement element = _rRoot;
    for (;;) {
        if (WriteStart(element)) {
            ++m_ulDepth;
            element = element.FirstNode();
            continue;
        }
        while (m_ulDepth != ulRootDepth && !element.NextNode()) {
            element = element.Parent();
            --m_ulDepth;
            WriteEnd(element);
        }
        if (m_ulDepth == ulRootDepth) {
            return;
        }
        element = element.NextNode();
    }
}

bool XmlWriter::WriteStart(const XmlElement& _rElement)
{
    const bool bChildren = static_cast<bool>(_rElement.FirstNode());
    StartLine();
    if (_rElement.IsComment()) {
        m_tszLine.append(L"<!--").append(_rElement.Text()).append(L"-->");
    } else {
        m_tszLine.append(L"<").append(_rElement.Name());
        for (const XmlAttribute& stAttribute : _rElement.Attributes()) {
            m_tszLine.append(L" ").append(stAttribute.svName).append(L"=\"");
            AppendEscaped(stAttribute.svValue);
            m_tszLine.append(L"\"");
        }
        if (!bChildren && _rElement.Text().empty()) {
            m_tszLine.append(L"/>");
        } else {
            m_tszLine.append(L">");
            AppendEscaped(_rElement.Text());
            if (!bChildren) {
                m_tszLine.append(L"</").append(_rElement.Name()).append(L">");
            }
        }
    }
    EndLine();
    return bChildren;
}

void XmlWriter::WriteEnd(const XmlElement& _rElement)
{
    StartLine();
    m_tszLine.append(L"</").append(_rElement.Name()).append(L">");
    EndLine();
}

void XmlWriter::StartLine()
{
    m_tszLine.assign(std::min(m_ulDepth, g_ulDeepestIndentation), L'\t');
}

void XmlWriter::EndLine()
{
    if (!m_tszLine.ends_with(g_svLineEnd)) {
        m_tszLine.append(g_svLineEnd);
    }
    AppendUtf8(m_sOutput, m_tszLine);
}

void XmlWriter::AppendEscaped(std::wstring_view _svText)
{
    while (!_svText.empty()) {
        const std::size_t uPlain = std::min(_svText.find_first_of(L"<&>\"'"), _svText.size());
        m_tszLine.append(_svText.substr(0, uPlain));
        _svText.remove_prefix(uPlain);
        if (_svText.empty()) {
            break;
        }
        switch (_svText.front()) {
        case L'<':
            m_tszLine.append(L"&lt;");
            break;
        case L'&':
            m_tszLine.append(L"&amp;");
            break;
        case L'>':
            m_tszLine.append(L"&gt;");
            break;
        case L'"':
            m_tszLine.append(L"&quot;");
            break;
        default:
            m_tszLine.append(L"&apos;");
            break;
        }
        _svText.remove_prefix(1);
    }
}

} // namespace ZkCommon::Storage
