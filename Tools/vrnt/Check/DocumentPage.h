#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vrnt {

/**
 * What the page for authors of documents, docs/documents.md, says of a kind of document: its first sentence, and the rows
 * of its tables of names and of words. So what a name or a word means is said once.
 */
class DocumentPage
{
public:
    /**
     * @param _svPage  Markdown in UTF-8; empty where the program has no page
     * @param _svKind  the kind, which is the heading of a section
     */
    DocumentPage(std::string_view _svPage, std::string_view _svKind);

    /** What the document is: a sentence in plain text; empty where the page does not say it. */
    const std::string& Purpose() const noexcept { return m_sPurpose; }

    /** What an attribute or child of an element is: "text, for the trace log only"; empty likewise. */
    std::string Meaning(std::string_view _svElement, std::string_view _svName) const;

    /** What a word is as the text of an attribute or child of an element: "may not run; the default"; empty likewise. */
    std::string WordMeaning(std::string_view _svElement, std::string_view _svName, std::string_view _svWord) const;

private:
    struct Row
    {
        std::string sNames; // or words, with their marks
        std::string sWhere; // likewise: what has them
        std::string sMeaning;
    };

    /** The meaning in the first row of a name whose place satisfies the first of the tests that any row satisfies. */
    template <class... TTests>
    std::string FirstOf(std::string_view _svName, const TTests&... _fnIsWhere) const;

    void AddRows(std::string_view _svSection);

    std::string m_sPurpose;
    std::vector<Row> m_vecRow;
};

} // namespace Vrnt
