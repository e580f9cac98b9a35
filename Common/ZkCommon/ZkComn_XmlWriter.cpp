#include "ZkComn_XmlWriter.h"

#include "ZkComn_Exception.h"

#include <algorithm>
#include <limits>
#include <new>
#include <windows.h>

namespace ZkCommon::Storage {

namespace {

constexpr std::string_view g_svDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
constexpr std::string_view g_svLineEnd = "\r\n";

/** No document that means anything is nested deeper, and tabs without end would make the output grow as the square. */
constexpr std::uint32_t g_ulDeepestIndentation = 128;

/** A bit for each of these characters, all of which are below 64. */
constexpr std::uint64_t BitsOf(std::string_view _svCharacters)
{
    std::uint64_t ullBits = 0;
    for (const char c : _svCharacters) {
        ullBits |= std::uint64_t{1} << c;
    }
    return ullBits;
}

// In an attribute a parser reads a line end or a tab as a blank, in a text a carriage return as a line feed.
constexpr std::uint64_t g_ullEscapedInAttribute = BitsOf("<&>\"'\t\n\r");
constexpr std::uint64_t g_ullEscapedInText = BitsOf("<&>\"'\r");

std::string_view ReferenceTo(wchar_t _c) noexcept
{
    switch (_c) {
    case L'<':
        return "&lt;";
    case L'&':
        return "&amp;";
    case L'>':
        return "&gt;";
    case L'"':
        return "&quot;";
    case L'\'':
        return "&apos;";
    case L'\t':
        return "&#9;";
    case L'\n':
        return "&#10;";
    default:
        return "&#13;";
    }
}

void AppendUtf8(std::string& _rsOutput, std::wstring_view _svText)
{
    const std::size_t uBefore = _rsOutput.size();
    _rsOutput.resize(uBefore + _svText.size());
    unsigned uAll = 0;
    std::ranges::transform(_svText, _rsOutput.data() + uBefore, [&](wchar_t _c) {
        uAll |= _c;
        return static_cast<char>(_c);
    });
    if (uAll < 0x80) { // plain ASCII, as most texts: each byte is its character
        return;
    }
    if (_svText.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError);
    }
    const int iLength = static_cast<int>(_svText.size());
    const int iBytes = ::WideCharToMultiByte(CP_UTF8, 0, _svText.data(), iLength, nullptr, 0, nullptr, nullptr);
    _rsOutput.resize(uBefore + static_cast<std::size_t>(iBytes));
    if (iBytes == 0 || ::WideCharToMultiByte(CP_UTF8, 0, _svText.data(), iLength, _rsOutput.data() + uBefore, iBytes,
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
            m_sOutput += g_svDeclaration;
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
        m_sOutput += "<!--";
        AppendUtf8(m_sOutput, _rElement.Text());
        m_sOutput += "-->";
    } else {
        m_sOutput += '<';
        AppendUtf8(m_sOutput, _rElement.Name());
        for (const XmlAttribute& stAttribute : _rElement.Attributes()) {
            m_sOutput += ' ';
            AppendUtf8(m_sOutput, stAttribute.svName);
            m_sOutput += "=\"";
            AppendEscaped(stAttribute.svValue, g_ullEscapedInAttribute);
            m_sOutput += '"';
        }
        if (!bChildren && _rElement.Text().empty()) {
            m_sOutput += "/>";
        } else {
            m_sOutput += '>';
            AppendEscaped(_rElement.Text(), g_ullEscapedInText);
            if (!bChildren) {
                AppendEndTag(_rElement);
            }
        }
    }
    EndLine();
    return bChildren;
}

void XmlWriter::WriteEnd(const XmlElement& _rElement)
{
    StartLine();
    AppendEndTag(_rElement);
    EndLine();
}

void XmlWriter::StartLine()
{
    m_sOutput.append(std::min(m_ulDepth, g_ulDeepestIndentation), '\t');
}

void XmlWriter::EndLine()
{
    m_sOutput += g_svLineEnd;
}

void XmlWriter::AppendEndTag(const XmlElement& _rElement)
{
    m_sOutput += "</";
    AppendUtf8(m_sOutput, _rElement.Name());
    m_sOutput += '>';
}

void XmlWriter::AppendEscaped(std::wstring_view _svText, std::uint64_t _ullEscaped)
{
    auto itPlain = _svText.begin();
    for (auto it = itPlain; it != _svText.end(); ++it) {
        if (*it < 64 && (_ullEscaped >> *it & 1) != 0) {
            AppendUtf8(m_sOutput, {itPlain, it});
            m_sOutput += ReferenceTo(*it);
            itPlain = it + 1;
        }
    }
    AppendUtf8(m_sOutput, {itPlain, _svText.end()});
}

} // namespace ZkCommon::Storage
