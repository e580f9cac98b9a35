#pragma once

#include "ZkComn_XmlElement.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ZkCommon::Storage {

/**
 * Turns elements into the bytes of a document: UTF-8 without a mark, an element a line, indented with tabs, lines ended
 * by CR LF. A document that is loaded and written again gives the same bytes. What XML cannot hold is written all the
 * same; whoever replaces a file by the output reads it back and compares (XmlParser::ReadsBack).
 * Belongs to one thread at a time.
 */
class XmlWriter
{
public:
    /** _bDeclaration: whether the XML declaration goes before the element. */
    explicit XmlWriter(bool _bDeclaration = true) noexcept : m_bDeclaration(_bDeclaration) {}

    /** Name of the output's encoding; "UTF8", the only one there is, unless set. */
    void SetEncoding(std::wstring_view _svEncoding) { m_tszEncoding = _svEncoding; }

    /**
     * Appends an element with all that is below it, or all of an XmlParser::Document.
     * @return true
     * @throws XmlException* 50 when the encoding is not "UTF8", 6 when memory runs out, 13 when a conversion fails
     */
    bool Write(const XmlElement& _rRoot);

    /** What was written so far. */
    const std::string& Output() const& noexcept { return m_sOutput; }
    std::string Output() && noexcept { return std::move(m_sOutput); }
    /** Makes room for so many bytes of output. */
    void Reserve(std::size_t _uSize) { m_sOutput.reserve(_uSize); }

private:
    void WriteTree(const XmlElement& _rRoot);
    /** The line up to the element's children. @return whether they and an end tag follow */
    bool WriteStart(const XmlElement& _rElement);
    void WriteEnd(const XmlElement& _rElement);
    void StartLine();
    void EndLine();
    void AppendEndTag(const XmlElement& _rElement);
    void AppendEscaped(std::wstring_view _svText, std::uint64_t _ullEscaped);

    std::string m_sOutput;
    std::wstring m_tszEncoding = L"UTF8";
    std::uint32_t m_ulDepth = 0;
    bool m_bDeclaration;
};

} // namespace ZkCommon::Storage
