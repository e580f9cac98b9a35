#pragma once

#include <cstdint>
#include <string_view>

/**
 * The elements of a document. The document, an XmlParser, owns all of them with their names and texts; an XmlElement is
 * a handle that borrows, two pointers wide and passed by value, and so are the views that it returns. They end with the
 * document's Close, next Load or destruction; an edit ends the views of what it replaces.
 *
 * An empty handle means an element that is not there. All reads are defined on it and give emptiness or the
 * caller's default, so a walk needs one check, at its end.
 *
 * Threads may read one document together; an edit must be alone.
 */
namespace ZkCommon::Storage {

class XmlNode;
class XmlTree;

/** A name as one document knows it: found once, then compared as a number. Matches nothing in other documents. */
class XmlName
{
public:
    /** The name of nothing. */
    constexpr XmlName() noexcept = default;
    constexpr explicit XmlName(std::uint32_t _ulId) noexcept : m_ulId(_ulId) {}
    constexpr std::uint32_t Id() const noexcept { return m_ulId; }
    friend constexpr bool operator==(XmlName, XmlName) noexcept = default;

private:
    std::uint32_t m_ulId = 0xFFFFFFFF;
};

struct XmlAttribute
{
    std::wstring_view svName;
    std::wstring_view svValue;
};

class XmlElement
{
public:
    XmlElement() noexcept = default;
    XmlElement(XmlTree* _pTree, XmlNode* _pNode) noexcept : m_pTree(_pTree), m_pNode(_pNode) {}

    explicit operator bool() const noexcept { return m_pNode != nullptr; }
    friend bool operator==(const XmlElement& _rLeft, const XmlElement& _rRight) noexcept
    {
        return _rLeft.m_pNode == _rRight.m_pNode;
    }

    /** Empty for a comment. */
    std::wstring_view Name() const noexcept;
    std::wstring_view Text() const noexcept;
    bool IsComment() const noexcept;
    /** Line of the start tag, counted from 1; 0 unless the document was loaded with XmlParser::KeepLines. */
    std::uint32_t Line() const noexcept;
    /** Its column, likewise. */
    std::uint32_t Column() const noexcept;
    /** Where its text begins, likewise: the first character that is no blank; 0 when there is none. */
    std::uint32_t TextLine() const noexcept;
    std::uint32_t TextColumn() const noexcept;

    /**
     * This document's form of a name; the name of nothing when the document does not use it.
     * @throws XmlException* code 6 when memory runs out, only while the document is still read
     */
    XmlName FindName(std::wstring_view _svName) const;
    bool Is(XmlName _name) const noexcept;

    /** Children that are elements, in document order. */
    XmlElement FirstChild() const noexcept;
    XmlElement FirstChild(std::wstring_view _svName) const noexcept;
    XmlElement FirstChild(XmlName _name) const noexcept;
    XmlElement NextSibling() const noexcept;
    XmlElement NextSibling(std::wstring_view _svName) const noexcept;
    XmlElement NextSibling(XmlName _name) const noexcept;
    /** The next sibling with this element's own name. */
    XmlElement NextNamesake() const noexcept;

    /**
     * The first child, or the one after _passed: for a reader that looks at each child once. Of the element that was
     * selected with XmlParser::OneByOne it is parsed now, and _passed ends.
     * @throws XmlException* there only, when the document turns out not to be well-formed or cannot be read
     */
    XmlElement NextChild(XmlElement _passed) const;
    XmlElement NextChild() const;
    /** The share of the document, from 0 to 1, that the children so far are in: for a guess at how many will come. */
    double Share() const noexcept;

    /**
     * Accounts for memory of a reader that copies a text of this document more often than the document has it.
     * @throws XmlException* code 6 when the document would take more than its size allows, see XmlParser
     */
    void Charge(std::size_t _uBytes) const;

    /** Children, comments included. */
    XmlElement FirstNode() const noexcept;
    XmlElement NextNode() const noexcept;
    /** Looks at the siblings after this element. Empty for the root and for a selected element. */
    XmlElement Parent() const noexcept;

    /** First element, in document order, at a path of child names: "./Install/Products"; the leading "./" may be missing. */
    XmlElement Child(std::wstring_view _svPath) const noexcept;
    std::wstring_view ChildText(std::wstring_view _svPath, std::wstring_view _svDefault = L"") const noexcept;
    std::wstring_view ChildText(XmlName _name, std::wstring_view _svDefault = L"") const noexcept;

    bool HasAttribute(std::wstring_view _svName) const noexcept;
    std::wstring_view Attribute(std::wstring_view _svName, std::wstring_view _svDefault = L"") const noexcept;
    std::wstring_view Attribute(XmlName _name, std::wstring_view _svDefault = L"") const noexcept;

    /** Attributes in document order: for (const XmlAttribute& stAttribute : element.Attributes()). */
    class AttributeRange;
    AttributeRange Attributes() const noexcept;

    /**
     * Edits. They copy what they are given, and do nothing on an empty handle or with an empty name.
     * @throws XmlException* code 6 when memory runs out
     */
    void SetAttribute(std::wstring_view _svName, std::wstring_view _svValue);
    void SetText(std::wstring_view _svText);
    /** The new element, after the present children. */
    XmlElement AddChild(std::wstring_view _svName);
    XmlElement AddComment(std::wstring_view _svText);

private:
    XmlElement At(XmlNode* _pNode) const noexcept;
    XmlName KnownName(std::wstring_view _svName) const noexcept;

    XmlTree* m_pTree = nullptr;
    XmlNode* m_pNode = nullptr;
};

class XmlElement::AttributeRange
{
public:
    class Iterator
    {
    public:
        Iterator(const XmlTree* _pTree, const void* _pAt) noexcept : m_pTree(_pTree), m_pAt(_pAt) {}
        XmlAttribute operator*() const noexcept;
        /** The name as its document knows it. */
        XmlName Name() const noexcept;
        Iterator& operator++() noexcept;
        friend bool operator==(const Iterator& _rLeft, const Iterator& _rRight) noexcept
        {
            return _rLeft.m_pAt == _rRight.m_pAt;
        }

    private:
        const XmlTree* m_pTree;
        const void* m_pAt;
    };

    AttributeRange(const XmlTree* _pTree, const void* _pFirst) noexcept : m_pTree(_pTree), m_pFirst(_pFirst) {}
    Iterator begin() const noexcept { return {m_pTree, m_pFirst}; }
    Iterator end() const noexcept { return {m_pTree, nullptr}; }

private:
    const XmlTree* m_pTree;
    const void* m_pFirst;
};

} // namespace ZkCommon::Storage
