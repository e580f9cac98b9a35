#pragma once

#include "ZkComn_XmlElement.h"
#include "ZkComn_XmlParserExpat.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ZkCommon::Storage {

class XmlChildSource;

/** Picks an element by its start tag. */
class XmlChoice
{
public:
    XmlChoice(const XmlChoice&) = delete;
    XmlChoice& operator=(const XmlChoice&) = delete;
    virtual ~XmlChoice() = default;

    /** Name and attributes as XmlParserSaxBase::Handlers has them. */
    virtual bool Wants(const char* _szName, const char** _pszAttributes) const noexcept = 0;

protected:
    XmlChoice() = default;
};

/**
 * A document: loads it, and owns its elements.
 *
 *     XmlParser document;
 *     document.SetProperty(L"PathOfDll", tszFolder);
 *     document.Load(tszFile);
 *     XmlElement layer;
 *     document.Select(L"/BaseFramework", layer);
 *     for (XmlElement unit = layer.FirstChild(L"FrameworkService"); unit; unit = unit.NextNamesake()) ...
 *
 * A document of which a part is read keeps that part only: Select reads it from the file. One that will be written back
 * is loaded with KeepWhole. Either way the whole document must be well-formed, to its last byte, and its elements may take
 * at most 100 times its bytes, or 8 MB.
 *
 * Every failure is an XmlException*: code 6 with the parser library's error and line for a document that is not
 * well-formed or outgrows the memory, 160 for a bad argument, else the system's error. An object belongs to one thread
 * at a time; different objects share nothing.
 */
class XmlParser
{
public:
    enum Options : std::uint32_t
    {
        KeepSelected = 0,
        KeepWhole = 1, // all elements and comments, from Load on
        KeepLines = 2, // the line of each element and of its text; costs a second look at the text
        OneByOne = 4,  // of the selected element, the present child only: see Select
    };

    /** _pMemory, when given, provides the memory of elements and parser library, and outlives this object. */
    explicit XmlParser(const XmlMemory* _pMemory = nullptr);
    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;
    ~XmlParser();

    /**
     * "PathOfDll": folder of the parser library; where that holds none, the library beside this module is taken.
     * "Encoding": "UTF8", "UTF16", "ISO_8859_1" or "US_ASCII"; without it the document says so. Other names change nothing.
     * @return true
     * @throws XmlException* code 160 for an empty name or value, 34 for a value of 260 characters or more
     */
    bool SetProperty(std::wstring_view _svName, std::wstring_view _svValue);

    /** Parses in pieces of so many bytes, however small, instead of those that suit the document; 0 for these again. */
    void SetPieceSize(std::size_t _uSize) noexcept { m_source.SetPieceSize(_uSize); }

    /** Opens a file, which stays open, shared with readers, writers and deleters, until Close or the next Load. */
    void Load(const std::wstring& _tszPath, std::uint32_t _ulOptions = KeepSelected);
    /** Takes a document in memory; unless KeepWhole is given, it must live until Close or the next Load. */
    void LoadText(std::string_view _svText, std::uint32_t _ulOptions = KeepSelected);

    /**
     * Finds the first element, in document order, at an absolute path like "/A/B". Without KeepWhole this is where the
     * document is parsed, each time; what was selected before stays valid.
     * @param _pChoice  of the element's children, the first that it wants is kept and no other, nor any text: looking
     *                  one up in a table costs hardly more than checking the document. Not with KeepWhole: code 160
     *
     * With OneByOne and no choice, Select parses a document of more than one piece up to the element. Then
     * XmlElement::NextChild parses from child to child, and after the last one to the document's end: until it has
     * returned an empty element, what was read may be of a document that is not well-formed.
     * @return whether it was found; _rElement is empty when not, as after a failure, and a notice says so
     */
    bool Select(std::wstring_view _svPath, XmlElement& _rElement, const XmlChoice* _pChoice = nullptr);

    /** With KeepWhole: a nameless element whose children are the root and the comments around it; XmlWriter takes it. */
    XmlElement Document() const noexcept;

    /**
     * With KeepWhole: whether a text that was written from the document reads back as it is now: same elements, attributes,
     * comments and texts, but for the layout around texts that have children beside them. It does not when it holds what
     * XML cannot: control characters, half surrogate pairs, "--" or a carriage return in a comment.
     * @throws XmlException* when the text is not well-formed
     */
    bool ReadsBack(std::string_view _svText) const;
    /** Bytes of the document as it was loaded, until Close. */
    std::uint64_t Size() const noexcept { return m_source.Size(); }

    /** Where the last Load or Select found the document not well-formed. */
    XmlPlace FailurePlace() const noexcept { return m_source.FailurePlace(); }
    /** What the parser library says of that, until Close; empty before. */
    const char* FailureText() const noexcept { return m_source.FailureText(); }

    /** Ends all elements, closes the file and frees the parser library. */
    void Close() noexcept;

private:
    void Load();
    XmlNode* Build(std::wstring_view _svPath, const XmlChoice* _pChoice);

    XmlParserExpat m_source;
    std::unique_ptr<XmlTree> m_pTree;
    std::unique_ptr<XmlChildSource> m_pSource; // of the last Select
    XmlNode* m_pDocument = nullptr;
    std::wstring m_tszFile;
    std::wstring m_tszEncoding;
    std::wstring m_tszPathOfDll;
    std::uint32_t m_ulOptions = KeepSelected;
    const XmlMemory* m_pMemory;
};

} // namespace ZkCommon::Storage
