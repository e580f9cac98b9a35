#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Vrnt {

/**
 * The start tags, processing instructions and document type declarations of a document that may not be well-formed, piece
 * by piece. End tags, comments and CDATA sections are passed over.
 */
class MarkupScan
{
public:
    enum class Kind
    {
        Start,       // a start tag, or that of an empty element
        Instruction, // the XML declaration is not one
        Doctype,
    };
    struct Markup
    {
        Kind enKind;
        std::string_view svName; // of an element or instruction
        std::size_t uOffset;
    };

    /** @param _svUtf8  must outlive this object and what it returns */
    explicit MarkupScan(std::string_view _svUtf8) : m_svText(_svUtf8) {}

    /** std::nullopt at the end. */
    std::optional<Markup> Next();

private:
    void SkipPast(std::string_view _svEnd);
    void SkipDoctype();

    std::string_view m_svText;
    std::size_t m_uAt = 0;
};

} // namespace Vrnt
