#pragma once

#include "ZkComn_XmlElement.h"
#include "ZkComn_XmlParserExpat.h"

#include <cstddef>
#include <limits>
#include <new>
#include <vector>

/** The storage under a document's elements: for the parser and the elements themselves, nobody else includes this. */
namespace ZkCommon::Storage {

/** A text: its length in characters, and after it the characters. */
struct XmlText
{
    std::uint32_t ulLength;

    wchar_t* Chars() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
    const wchar_t* Chars() const noexcept { return reinterpret_cast<const wchar_t*>(this + 1); }
    std::wstring_view View() const noexcept { return {Chars(), ulLength}; }
};

/** An attribute: a link, and after it the value's characters. */
struct XmlAttributeNode
{
    XmlAttributeNode* pNext;
    std::uint32_t ulName;
    XmlText stValue;
};

/**
 * An element or a comment. Most elements have children or a text and nothing else, so that one field holds either; what
 * has more, or attributes, has it in a record of its own.
 */
class XmlNode
{
public:
    struct Extras
    {
        XmlNode* pFirstChild;
        XmlText* pText;
        XmlAttributeNode* pFirstAttribute;
    };

    explicit XmlNode(std::uint32_t _ulName) noexcept : ulName(_ulName) {}

    std::uint32_t ulName;
    std::uint32_t ulPlace = 0; // which of the tree's places it begins at, from 1; 0: not kept

    /** Null for the last sibling. */
    XmlNode* Next() const noexcept { return IsLast() ? nullptr : Pointer<XmlNode>(m_uLink); }
    bool IsLast() const noexcept { return (m_uLink & 1) != 0; }
    /** Of a last child only. */
    XmlNode* ParentOfLast() const noexcept { return Pointer<XmlNode>(m_uLink & ~std::uintptr_t{1}); }
    void LinkToParent(XmlNode* _pParent) noexcept { m_uLink = reinterpret_cast<std::uintptr_t>(_pParent) | 1; }
    void LinkToNext(XmlNode* _pNext) noexcept { m_uLink = reinterpret_cast<std::uintptr_t>(_pNext); }

    XmlNode* FirstChild() const noexcept
    {
        return Holds(HoldsChild)    ? Pointer<XmlNode>(m_uContent)
               : Holds(HoldsExtras) ? ExtrasRecord()->pFirstChild
                                    : nullptr;
    }
    XmlText* TextRecord() const noexcept
    {
        return Holds(HoldsText)     ? Pointer<XmlText>(m_uContent & ~g_uTag)
               : Holds(HoldsExtras) ? ExtrasRecord()->pText
                                    : nullptr;
    }
    std::wstring_view Text() const noexcept
    {
        const XmlText* pText = TextRecord();
        return pText != nullptr ? pText->View() : std::wstring_view(L"");
    }
    XmlAttributeNode* FirstAttribute() const noexcept
    {
        return Holds(HoldsExtras) ? ExtrasRecord()->pFirstAttribute : nullptr;
    }

private:
    friend class XmlTree; // which has the memory for the record

    enum Content : std::uintptr_t
    {
        HoldsChild, // or nothing: null
        HoldsText,
        HoldsExtras,
    };
    static constexpr std::uintptr_t g_uTag = 3;

    template <class T>
    static T* Pointer(std::uintptr_t _uAddress) noexcept
    {
        return reinterpret_cast<T*>(_uAddress); // NOLINT(performance-no-int-to-ptr): its low bits carried a tag
    }
    bool Holds(Content _enContent) const noexcept { return (m_uContent & g_uTag) == _enContent; }
    Extras* ExtrasRecord() const noexcept { return Pointer<Extras>(m_uContent & ~g_uTag); }
    void Hold(const void* _pContent, Content _enContent) noexcept
    {
        m_uContent = reinterpret_cast<std::uintptr_t>(_pContent) | _enContent;
    }

    std::uintptr_t m_uLink = 0; // the next sibling; for the last child, its parent with the lowest bit set
    std::uintptr_t m_uContent = 0;
};

/**
 * Memory that is given out piece by piece and taken back as a whole. Throws std::bad_alloc: AboveLimit when more is wanted
 * than a document of the expected size can honestly need, as by attributes that it declares once and gets everywhere.
 */
class XmlArena
{
public:
    struct AboveLimit : std::bad_alloc
    {};

    explicit XmlArena(const XmlMemory* _pMemory) noexcept;
    XmlArena(const XmlArena&) = delete;
    XmlArena& operator=(const XmlArena&) = delete;
    ~XmlArena();

    /** Sizes the first chunk for a document of so many bytes, and sets what it may take in all. */
    void Expect(std::uint64_t _ullDocument) noexcept;
    /** Adds memory that is taken elsewhere for the document's sake. */
    void Charge(std::uint64_t _ullSize);

    /** Room for a T and _uExtra bytes after it, uninitialised. */
    template <class T>
    T* Take(std::size_t _uExtra = 0)
    {
        T* pRoom = Top<T>(0, sizeof(T) + _uExtra);
        Commit(reinterpret_cast<std::byte*>(pRoom + 1) + _uExtra);
        return pRoom;
    }
    /**
     * The aligned place at the arena's top with room for _uSize bytes, of which the first _uKeep are already written
     * there; they move along when the room is elsewhere. Nothing is taken until Commit.
     */
    template <class T>
    T* Top(std::size_t _uKeep, std::size_t _uSize)
    {
        std::byte* pTop = Aligned(alignof(T));
        // The difference is negative when the alignment steps over the end.
        if (m_pEnd - pTop < static_cast<std::ptrdiff_t>(_uSize)) {
            pTop = Grow(pTop, _uKeep, _uSize);
        }
        return reinterpret_cast<T*>(pTop);
    }
    void Commit(std::byte* _pTop) noexcept { m_pTop = _pTop; }

    struct Chunk;
    /** How much is given out, for TakeBack. */
    struct Mark
    {
        Chunk* pChunk;
        std::byte* pTop;
        std::size_t uTotal;
    };
    Mark Here() const noexcept { return {m_pChunk, m_pTop, m_uTotal}; }
    /** Bytes that were given out since, or the chunks that were taken for them. */
    std::size_t Since(const Mark& _rstMark) const noexcept
    {
        return m_pChunk == _rstMark.pChunk ? static_cast<std::size_t>(m_pTop - _rstMark.pTop)
                                           : m_uTotal - _rstMark.uTotal;
    }
    /** Takes back what was given out since. */
    void TakeBack(const Mark& _rstMark) noexcept;

private:
    std::byte* Aligned(std::size_t _uAlignment) const noexcept
    {
        const std::uintptr_t uTop = reinterpret_cast<std::uintptr_t>(m_pTop);
        return m_pTop + ((_uAlignment - uTop % _uAlignment) % _uAlignment);
    }
    std::byte* Grow(const std::byte* _pWritten, std::size_t _uKeep, std::size_t _uSize);

    void* (*m_pfnAllocate)(std::size_t);
    void (*m_pfnFree)(void*);
    Chunk* m_pChunk = nullptr; // the newest
    std::byte* m_pTop = nullptr;
    std::byte* m_pEnd = nullptr;
    std::size_t m_uNext = 4096; // size of the next chunk
    std::size_t m_uTotal = 0;
    std::uint64_t m_ullCharged = 0;
    std::uint64_t m_ullLimit = std::numeric_limits<std::uint64_t>::max();
};

/** A parse that gives the children of a selected element one by one. */
class XmlChildSource
{
public:
    XmlChildSource() = default;
    XmlChildSource(const XmlChildSource&) = delete;
    XmlChildSource& operator=(const XmlChildSource&) = delete;
    virtual ~XmlChildSource() = default;

    /** The child after one, which ends, or the first; null after the last, when the document is parsed to its end. */
    virtual XmlNode* NextChild(const XmlNode* _pPassed) = 0;
    /** See XmlElement::Share. */
    virtual double Share() const noexcept = 0;
};

/** A document's nodes, names and texts. */
class XmlTree
{
public:
    /** Name of comments and of the node above a document's root. */
    static constexpr std::uint32_t g_ulNoName = 0;

    explicit XmlTree(const XmlMemory* _pMemory);
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;
    ~XmlTree() = default;

    XmlArena& Arena() noexcept { return m_arena; }

    /** Where an element and its text begin, counted from 1; zeros where that is not kept, or there is none. */
    struct Place
    {
        std::uint32_t ulLine = 0;
        std::uint32_t ulColumn = 0;
        std::uint32_t ulTextLine = 0;
        std::uint32_t ulTextColumn = 0;
    };
    void KeepPlace(XmlNode* _pNode, std::uint32_t _ulLine, std::uint32_t _ulColumn)
    {
        m_vecPlace.push_back({_ulLine, _ulColumn});
        _pNode->ulPlace = static_cast<std::uint32_t>(m_vecPlace.size());
    }
    /** Of a node whose place is kept. */
    void KeepTextPlace(const XmlNode* _pNode, std::uint32_t _ulLine, std::uint32_t _ulColumn) noexcept
    {
        Place& rstPlace = m_vecPlace[_pNode->ulPlace - 1];
        rstPlace.ulTextLine = _ulLine;
        rstPlace.ulTextColumn = _ulColumn;
    }
    Place PlaceOf(const XmlNode* _pNode) const noexcept
    {
        return _pNode->ulPlace != 0 ? m_vecPlace[_pNode->ulPlace - 1] : Place();
    }

    XmlNode* NewNode(std::uint32_t _ulName) { return new (m_arena.Take<XmlNode>()) XmlNode(_ulName); }
    XmlAttributeNode* NewAttribute(std::uint32_t _ulName, std::wstring_view _svValue);
    XmlText* NewText(std::wstring_view _svText);

    /** The node's record, made when it has none yet. */
    XmlNode::Extras& ExtrasOf(XmlNode* _pNode)
    {
        if (!_pNode->Holds(XmlNode::HoldsExtras)) {
            XmlNode::Extras* pExtras = m_arena.Take<XmlNode::Extras>();
            *pExtras = {_pNode->FirstChild(), _pNode->TextRecord(), nullptr};
            _pNode->Hold(pExtras, XmlNode::HoldsExtras);
        }
        return *_pNode->ExtrasRecord();
    }
    void SetText(XmlNode* _pNode, XmlText* _pText)
    {
        if (_pNode->Holds(XmlNode::HoldsText) || _pNode->m_uContent == 0) {
            _pNode->Hold(_pText, _pText != nullptr ? XmlNode::HoldsText : XmlNode::HoldsChild);
        } else {
            ExtrasOf(_pNode).pText = _pText;
        }
    }
    /** Puts a node after its parent's children, the last of which is known (null when there is none). */
    void Append(XmlNode* _pParent, XmlNode* _pLast, XmlNode* _pNode)
    {
        if (_pLast != nullptr) {
            _pLast->LinkToNext(_pNode);
        } else if (_pParent->m_uContent == 0) {
            _pParent->Hold(_pNode, XmlNode::HoldsChild);
        } else {
            ExtrasOf(_pParent).pFirstChild = _pNode;
        }
        _pNode->LinkToParent(_pParent);
    }
    /** As above, looking for the last child; quick when a run of children is added to one parent. */
    void Append(XmlNode* _pParent, XmlNode* _pNode);

    /** The node or the first sibling after it that is no comment. */
    static XmlNode* FirstElement(XmlNode* _pNode) noexcept
    {
        while (_pNode != nullptr && _pNode->ulName == g_ulNoName) {
            _pNode = _pNode->Next();
        }
        return _pNode;
    }

    /** Ends the children of a node, and takes back what was given out since. */
    void DropChildren(XmlNode* _pParent, const XmlArena::Mark& _rstMark) noexcept
    {
        if (_pParent->Holds(XmlNode::HoldsExtras)) {
            _pParent->ExtrasRecord()->pFirstChild = nullptr;
        } else {
            _pParent->Hold(nullptr, XmlNode::HoldsChild);
        }
        m_arena.TakeBack(_rstMark);
    }

    /** The parse that still gives children, and the element that they are of; null when there is none. */
    void SetSource(XmlChildSource* _pSource, const XmlNode* _pParent) noexcept
    {
        m_pSource = _pSource;
        m_pSourceOf = _pParent;
    }
    XmlChildSource* Source() const noexcept { return m_pSource; }
    XmlChildSource* SourceOf(const XmlNode* _pParent) const noexcept
    {
        return m_pSourceOf == _pParent ? m_pSource : nullptr;
    }

    /**
     * Number of a name, a new one when it was not known. Documents repeat themselves: what followed the name interned
     * before this one last time is tried first.
     */
    std::uint32_t Intern(const char* _szName)
    {
        const std::uint32_t ulGuess = m_vecName[m_ulBefore].ulFollower;
        if (Equals(_szName, m_vecName[ulGuess].szName)) {
            return m_ulBefore = ulGuess;
        }
        return InternUnguessed(_szName);
    }
    std::uint32_t Intern(std::wstring_view _svName);
    XmlName Find(std::wstring_view _svName) const noexcept;
    std::wstring_view NameOf(std::uint32_t _ulName) const noexcept { return m_vecName[_ulName].svName; }

private:
    struct Entry
    {
        const char* szName; // UTF-8, in the arena; empty until the document uses it
        std::wstring_view svName;
        std::uint64_t ullHash;
        std::uint32_t ulFollower;
    };

    /** The names are short: a loop beats a call. */
    static bool Equals(const char* _szLeft, const char* _szRight) noexcept
    {
        while (*_szLeft == *_szRight) {
            if (*_szLeft == '\0') {
                return true;
            }
            ++_szLeft;
            ++_szRight;
        }
        return false;
    }
    std::uint32_t InternUnguessed(const char* _szName);
    const char* KeepNarrow(const char* _szName);
    std::uint32_t Add(const char* _szName, std::wstring_view _svName, std::uint64_t _ullHash, std::size_t _uSlot);
    std::uint64_t HashOf(std::wstring_view _svName) const noexcept;
    /** Slot of the name, or the free slot where it belongs. */
    std::size_t SlotOf(std::wstring_view _svName, std::uint64_t _ullHash) const noexcept;
    void Rehash();

    XmlArena m_arena;
    XmlArena m_arenaOfNames; // apart, since they stay when elements end
    std::uint64_t m_ullSalt;
    std::vector<Entry> m_vecName;
    std::vector<std::uint32_t> m_vecSlot; // numbers of names, a power of two of them; 0 is a free slot
    std::uint32_t m_ulBefore = g_ulNoName;
    XmlNode* m_pAppendedTo = nullptr;
    XmlNode* m_pAppended = nullptr;
    XmlChildSource* m_pSource = nullptr;
    const XmlNode* m_pSourceOf = nullptr;
    std::vector<Place> m_vecPlace;
};

/**
 * A method of a receiver of events as a handler: no exception may reach the parser library, so running out of memory ends
 * the parse. The receiver has a method Source().
 */
template <auto t_pMethod>
struct XmlEvent;

template <class TReceiver, class... TArgs, void (TReceiver::*t_pMethod)(TArgs...)>
struct XmlEvent<t_pMethod>
{
    static void Handle(void* _pReceiver, TArgs... _args) noexcept
    {
        TReceiver& rReceiver = *static_cast<TReceiver*>(_pReceiver);
        try {
            (rReceiver.*t_pMethod)(_args...);
        } catch (const XmlArena::AboveLimit&) {
            rReceiver.Source().Stop(XML_ERROR_AMPLIFICATION_LIMIT_BREACH);
        } catch (const std::bad_alloc&) {
            rReceiver.Source().Stop(XML_ERROR_NO_MEMORY);
        }
    }
};

/** Widens UTF-8 to UTF-16; _pTo has room for a character per byte. @return past the last character written */
wchar_t* WidenUtf8(wchar_t* _pTo, const char* _pFrom, std::size_t _uLength) noexcept;

/** What XML takes for white space. */
constexpr bool IsXmlBlank(wchar_t _c) noexcept
{
    return _c == L' ' || _c == L'\t' || _c == L'\n' || _c == L'\r';
}

enum TrimSide : std::uint8_t
{
    TrimBegin = 1,
    TrimEnd = 2,
    TrimBoth = 3,
};

/** The text without the white space at its ends. */
std::wstring_view TrimXmlBlanks(std::wstring_view _svText, TrimSide _enSide = TrimBoth) noexcept;

} // namespace ZkCommon::Storage
