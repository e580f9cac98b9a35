#include "ZkComn_XmlParser.h"

#include "ZkComn_DebugLog.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlComparison.h"
#include "ZkComn_XmlTree.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <vector>

namespace ZkCommon::Storage {

namespace {

/** Longest property value, with its terminator. */
constexpr std::size_t g_uPropertySize = 260;
/**
 * Children that are read one by one are parsed together until they take so many bytes: few enough for the processor's
 * cache, and enough that stopping the parser costs nothing to speak of.
 */
constexpr std::size_t g_uReadTogether = 16U << 10;
/** A document type that declares more attributes is refused. */
constexpr std::size_t g_uMostDeclared = 100;

/** Turns a document's events into nodes: of the whole document, or of the first element at a path. */
class TreeBuilder final : public XmlChildSource
{
public:
    /**
     * @param _pTop     takes what is built as its children
     * @param _vecPath  names from the root to the element to build, as UTF-8; empty for the whole document
     * @param _pChoice  picks one of that element's children; null to build them all
     */
    TreeBuilder(XmlTree& _rTree, XmlParserExpat& _rSource, XmlNode* _pTop, std::vector<std::string> _vecPath,
                const XmlChoice* _pChoice, std::uint32_t _ulOptions)
        : m_rTree(_rTree),
          m_rSource(_rSource),
          m_vecPath(std::move(_vecPath)),
          m_pChoice(_pChoice),
          m_bLines((_ulOptions & XmlParser::KeepLines) != 0),
          m_bOneByOne((_ulOptions & XmlParser::OneByOne) != 0 && _pChoice == nullptr && _rSource.IsInPieces()),
          m_pTop(_pTop),
          m_pOpen(_pTop)
    {}

    /** Parses the document; one by one, until the selected element has begun. */
    void Begin(const std::wstring& _tszFolder, const char* _szEncoding)
    {
        m_rSource.Begin(_tszFolder, _szEncoding, m_vecPath.empty() ? Building() : Seeking());
        Advance();
    }

    XmlNode* NextChild(const XmlNode* _pPassed) override
    {
        if (XmlNode* pNext = _pPassed != nullptr ? XmlTree::FirstElement(_pPassed->Next()) : nullptr;
            pNext != nullptr) {
            return pNext;
        }
        m_rTree.DropChildren(m_pSelected, m_stMark);
        m_pLast = nullptr;
        Advance();
        return XmlTree::FirstElement(m_pSelected->FirstChild());
    }
    double Share() const noexcept override { return m_rSource.Share(); }

    XmlParserSaxBase& Source() noexcept { return m_rSource; }

private:
    template <auto t_pMethod>
    friend struct XmlEvent;
    using Handlers = XmlParserSaxBase::Handlers;

    Handlers Seeking() noexcept
    {
        return {this,    &XmlEvent<&TreeBuilder::PassStart>::Handle,  &XmlEvent<&TreeBuilder::PassEnd>::Handle, nullptr,
                nullptr, &XmlEvent<&TreeBuilder::Declaration>::Handle};
    }
    Handlers Choosing() noexcept
    {
        return {this, &XmlEvent<&TreeBuilder::ChooseStart>::Handle, &XmlEvent<&TreeBuilder::ChooseEnd>::Handle, nullptr,
                nullptr};
    }
    Handlers Building() noexcept
    {
        return {this,
                &XmlEvent<&TreeBuilder::Start>::Handle,
                &XmlEvent<&TreeBuilder::End>::Handle,
                &XmlEvent<&TreeBuilder::Text>::Handle,
                &XmlEvent<&TreeBuilder::Comment>::Handle,
                &XmlEvent<&TreeBuilder::Declaration>::Handle};
    }

    /** Parses on until there are children to read, or to the document's end. */
    void Advance()
    {
        while (m_rSource.Advance()) {
            if (m_rSource.IsSuspended()) {
                return;
            }
        }
        m_rTree.SetSource(nullptr, nullptr);
    }

    /** Each element looks at all attributes that are declared for it: many of them would make a small document costly. */
    void Declaration(const char*, const char*, const char*, const char*, int)
    {
        if (++m_uDeclared > g_uMostDeclared) {
            m_rSource.Stop(XML_ERROR_AMPLIFICATION_LIMIT_BREACH);
        }
    }

    void PassStart(const char* _szName, const char** _pszAttributes)
    {
        if (m_uDepth == m_uMatched && m_vecPath[m_uMatched] == _szName && ++m_uMatched == m_vecPath.size()) {
            Start(_szName, _pszAttributes);
            m_pTop = m_pChoice != nullptr ? m_pOpen : m_pTop;
            m_rSource.SetHandlers(m_pChoice != nullptr ? Choosing() : Building());
            if (m_bOneByOne) {
                m_pSelected = m_pOpen;
                m_stMark = m_rTree.Arena().Here();
                m_rTree.SetSource(this, m_pSelected);
                m_rSource.Suspend();
            }
            return;
        }
        ++m_uDepth;
    }
    void PassEnd(const char*)
    {
        --m_uDepth;
        m_uMatched = std::min(m_uMatched, m_uDepth);
    }

    // Children of the element at the path, until one is wanted: that one is built, and the rest is only checked.
    void ChooseStart(const char* _szName, const char** _pszAttributes)
    {
        if (m_uPassed == 0 && m_pChoice->Wants(_szName, _pszAttributes)) {
            m_rSource.SetHandlers(Building());
            Start(_szName, _pszAttributes);
            return;
        }
        ++m_uPassed;
    }
    void ChooseEnd(const char*)
    {
        if (m_uPassed == 0) {
            m_rSource.SetHandlers({});
            return;
        }
        --m_uPassed;
    }

    void Start(const char* _szName, const char** _pszAttributes)
    {
        EndRun();
        XmlNode* pNode = m_rTree.NewNode(m_rTree.Intern(_szName));
        if (m_bLines) {
            m_rTree.KeepPlace(pNode, m_rSource.Line(), m_rSource.Column());
        }
        XmlAttributeNode** ppLink = *_pszAttributes != nullptr ? &m_rTree.ExtrasOf(pNode).pFirstAttribute : nullptr;
        for (; *_pszAttributes != nullptr; _pszAttributes += 2) {
            XmlAttributeNode* pAttribute = NewAttribute(_pszAttributes[0], _pszAttributes[1]);
            *ppLink = pAttribute;
            ppLink = &pAttribute->pNext;
        }
        m_rTree.Append(m_pOpen, m_pLast, pNode);
        m_pOpen = pNode;
        m_pLast = nullptr;
    }

    void End(const char*)
    {
        if (m_pLast != nullptr || m_pOpen == m_pSelected) {
            EndRun();
            JoinPieces();
        } else if (m_uRun != 0) { // no children: the text is exactly what was written
            m_rTree.SetText(m_pOpen, CommitText());
        }
        m_pLast = m_pOpen;
        m_pOpen = m_pOpen->ParentOfLast();
        if (m_pOpen == m_pSelected) {
            if (const std::size_t uTaken = m_rTree.Arena().Since(m_stMark); uTaken >= g_uReadTogether) {
                m_rTree.Arena().Charge(uTaken); // records that stay are made of what ends
                m_rSource.Suspend();
            }
        } else if (m_pOpen == m_pTop && !m_vecPath.empty()) {
            m_rSource.SetHandlers({}); // the rest is only checked
        }
    }

    void Text(const char* _pText, int _iLength)
    {
        const char* pEnd = _pText + _iLength;
        if (m_bLines) {
            KeepTextPlace(_pText, pEnd);
        }
        if (m_uRun == 0 && m_pLast != nullptr && m_uRunBegin == m_vecPiece.size()) { // layout at a run's beginning
            while (_pText != pEnd && IsXmlBlank(static_cast<wchar_t>(static_cast<unsigned char>(*_pText)))) {
                ++_pText;
            }
            if (_pText == pEnd) {
                return;
            }
        }
        const std::size_t uLength = static_cast<std::size_t>(pEnd - _pText);
        m_pRun = m_rTree.Arena().Top<XmlText>(m_uRun != 0 ? SizeOfText(m_uRun) : 0, SizeOfText(m_uRun + uLength));
        m_uRun = static_cast<std::size_t>(WidenUtf8(m_pRun->Chars() + m_uRun, _pText, uLength) - m_pRun->Chars());
    }

    /** A piece of text ends with its line at the latest. */
    void KeepTextPlace(const char* _pText, const char* _pEnd)
    {
        const auto IsBlank = [](char _c) { return IsXmlBlank(static_cast<wchar_t>(static_cast<unsigned char>(_c))); };
        const char* pFirst = std::find_if_not(_pText, _pEnd, IsBlank);
        if (pFirst != _pEnd && m_rTree.PlaceOf(m_pOpen).ulTextLine == 0) {
            const auto ulBlanks = static_cast<std::uint32_t>(pFirst - _pText);
            m_rTree.KeepTextPlace(m_pOpen, m_rSource.Line(), m_rSource.Column() + ulBlanks);
        }
    }

    void Comment(const char* _szText)
    {
        const std::size_t uLength = std::strlen(_szText);
        if (uLength == 0) { // a comment node is known by its text: without one there is nothing to keep
            return;
        }
        EndPiece();
        XmlNode* pNode = m_rTree.NewNode(XmlTree::g_ulNoName);
        m_pRun = m_rTree.Arena().Top<XmlText>(0, SizeOfText(uLength));
        m_uRun = static_cast<std::size_t>(WidenUtf8(m_pRun->Chars(), _szText, uLength) - m_pRun->Chars());
        m_rTree.SetText(pNode, CommitText());
        m_rTree.Append(m_pOpen, m_pLast, pNode);
        m_pLast = pNode;
    }

    XmlAttributeNode* NewAttribute(const char* _szName, const char* _szValue)
    {
        const std::uint32_t ulName = m_rTree.Intern(_szName);
        const std::size_t uLength = std::strlen(_szValue);
        XmlAttributeNode* pAttribute =
            m_rTree.Arena().Top<XmlAttributeNode>(0, sizeof(XmlAttributeNode) + uLength * sizeof(wchar_t));
        wchar_t* pEnd = WidenUtf8(pAttribute->stValue.Chars(), _szValue, uLength);
        m_rTree.Arena().Commit(reinterpret_cast<std::byte*>(pEnd));
        pAttribute->pNext = nullptr;
        pAttribute->ulName = ulName;
        pAttribute->stValue.ulLength = static_cast<std::uint32_t>(pEnd - pAttribute->stValue.Chars());
        return pAttribute;
    }

    static std::size_t SizeOfText(std::size_t _uLength)
    {
        if (_uLength > std::numeric_limits<std::uint32_t>::max()) {
            throw std::bad_alloc();
        }
        return sizeof(XmlText) + _uLength * sizeof(wchar_t);
    }

    /** Keeps the characters at the arena's top. */
    XmlText* CommitText() noexcept
    {
        m_pRun->ulLength = static_cast<std::uint32_t>(std::exchange(m_uRun, 0));
        m_rTree.Arena().Commit(reinterpret_cast<std::byte*>(m_pRun->Chars() + m_pRun->ulLength));
        return m_pRun;
    }

    /** A comment divides the text between two tags into pieces, which belong together all the same. */
    void EndPiece()
    {
        if (m_pOpen == m_pSelected) { // it would end with the next child
            m_uRun = 0;
        } else if (m_uRun != 0) {
            m_vecPiece.push_back({m_pOpen, {m_pRun->Chars(), m_uRun}});
            CommitText();
        }
    }

    /** Ends the text between two tags, without the blanks around it: among children they are the writer's layout. */
    void EndRun()
    {
        if (m_uRun != 0) { // often it is nothing but layout, which needs no room
            m_uRun = TrimXmlBlanks({m_pRun->Chars(), m_uRun}, TrimEnd).size();
            EndPiece();
        }
        while (m_vecPiece.size() > m_uRunBegin &&
               (m_vecPiece.back().svText = TrimXmlBlanks(m_vecPiece.back().svText, TrimEnd)).empty()) {
            m_vecPiece.pop_back();
        }
        for (; m_uRunBegin < m_vecPiece.size(); ++m_uRunBegin) {
            std::wstring_view& rsvText = m_vecPiece[m_uRunBegin].svText;
            if (!(rsvText = TrimXmlBlanks(rsvText, TrimBegin)).empty()) {
                break;
            }
        }
        m_uRunBegin = m_vecPiece.size();
    }

    /** Makes one text of the pieces of the open element. */
    void JoinPieces()
    {
        std::size_t uFirst = m_vecPiece.size();
        std::size_t uLength = 0;
        while (uFirst != 0 && m_vecPiece[uFirst - 1].pOwner == m_pOpen) {
            uLength += m_vecPiece[--uFirst].svText.size();
        }
        if (uLength != 0) {
            XmlText* pJoined = m_rTree.Arena().Top<XmlText>(0, SizeOfText(uLength));
            wchar_t* pEnd = pJoined->Chars();
            for (std::size_t uPiece = uFirst; uPiece < m_vecPiece.size(); ++uPiece) {
                pEnd += m_vecPiece[uPiece].svText.copy(pEnd, std::wstring_view::npos);
            }
            pJoined->ulLength = static_cast<std::uint32_t>(uLength);
            m_rTree.Arena().Commit(reinterpret_cast<std::byte*>(pEnd));
            m_rTree.SetText(m_pOpen, pJoined);
        }
        m_vecPiece.resize(uFirst);
        m_uRunBegin = uFirst;
    }

    struct Piece
    {
        XmlNode* pOwner = nullptr;
        std::wstring_view svText;
    };

    XmlTree& m_rTree;
    XmlParserExpat& m_rSource;
    std::vector<std::string> m_vecPath;
    std::size_t m_uDeclared = 0;
    std::size_t m_uDepth = 0;   // elements open while the path is sought
    std::size_t m_uMatched = 0; // names of the path that the open elements match
    const XmlChoice* m_pChoice;
    std::size_t m_uPassed = 0; // elements open while one is chosen
    bool m_bLines;
    bool m_bOneByOne;
    XmlNode* m_pSelected = nullptr; // whose children are given one by one
    XmlArena::Mark m_stMark{};      // before them

    XmlNode* m_pTop;
    XmlNode* m_pOpen;              // the innermost open element; always the last child of its parent
    XmlNode* m_pLast = nullptr;    // its last child so far
    XmlText* m_pRun = nullptr;     // the characters since the last tag or comment, not yet taken from the arena
    std::size_t m_uRun = 0;        // how many they are
    std::vector<Piece> m_vecPiece; // texts of open elements that have children, innermost last
    std::size_t m_uRunBegin = 0;   // the first of them since the last tag
};

/** Expat's name of an encoding, null for none. */
const char* EncodingOf(std::wstring_view _svProperty)
{
    struct Encoding
    {
        std::wstring_view svProperty;
        const char* szExpat;
    };
    static constexpr Encoding g_aEncodings[] = {
        {L"UTF8", "UTF-8"}, {L"UTF16", "UTF-16"}, {L"ISO_8859_1", "ISO-8859-1"}, {L"US_ASCII", "US-ASCII"}};
    if (_svProperty.empty()) {
        return nullptr;
    }
    for (const Encoding& stEncoding : g_aEncodings) {
        if (stEncoding.svProperty == _svProperty) {
            return stEncoding.szExpat;
        }
    }
    throw new XmlException(ERROR_BAD_ARGUMENTS);
}

/** The names of an absolute path as UTF-8. */
std::vector<std::string> NamesOf(std::wstring_view _svPath)
{
    std::vector<std::string> vecNames;
    while (!_svPath.empty()) {
        const std::size_t uEnd = _svPath.find(L'/');
        vecNames.push_back(String::ToUtf8(_svPath.substr(0, uEnd)));
        _svPath.remove_prefix(uEnd == std::wstring_view::npos ? _svPath.size() : uEnd + 1);
    }
    return vecNames;
}

} // namespace

XmlParser::XmlParser(const XmlMemory* _pMemory) : m_source(_pMemory), m_pMemory(_pMemory) {}

XmlParser::~XmlParser() = default;

bool XmlParser::SetProperty(std::wstring_view _svName, std::wstring_view _svValue)
{
    if (_svName.empty() || _svValue.empty()) {
        throw new XmlException(ERROR_BAD_ARGUMENTS);
    }
    std::wstring* pField = _svName == L"Encoding"    ? &m_tszEncoding
                           : _svName == L"PathOfDll" ? &m_tszPathOfDll
                                                     : nullptr;
    if (pField != nullptr) {
        pField->clear();
        if (_svValue.size() >= g_uPropertySize) {
            throw new XmlException(ERANGE);
        }
        *pField = _svValue;
    }
    return true;
}

void XmlParser::Load(const std::wstring& _tszPath, std::uint32_t _ulOptions)
{
    Close();
    m_source.Open(_tszPath);
    m_tszFile = _tszPath;
    m_ulOptions = _ulOptions;
    Load();
}

void XmlParser::LoadText(std::string_view _svText, std::uint32_t _ulOptions)
{
    Close();
    m_source.Open(_svText);
    m_ulOptions = _ulOptions;
    Load();
}

void XmlParser::Load()
{
    m_pTree = std::make_unique<XmlTree>(m_pMemory);
    m_pTree->Arena().Expect(m_source.Size());
    if ((m_ulOptions & KeepWhole) != 0) {
        m_pDocument = Build({}, nullptr);
    }
}

bool XmlParser::Select(std::wstring_view _svPath, XmlElement& _rElement, const XmlChoice* _pChoice)
{
    _rElement = {}; // nobody goes on with an element of a document that is closed
    if (_svPath.starts_with(L'/')) {
        _svPath.remove_prefix(1);
    }
    if (_svPath.empty() || (_pChoice != nullptr && (m_ulOptions & KeepWhole) != 0)) {
        throw new XmlException(ERROR_BAD_ARGUMENTS);
    }
    if (m_pTree == nullptr) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError);
    }
    if ((m_ulOptions & KeepWhole) != 0) {
        _rElement = Document().Child(_svPath);
    } else {
        _rElement = XmlElement(m_pTree.get(), Build(_svPath, _pChoice)).FirstChild();
    }
    if (!_rElement) {
        Trace(TraceNotice, L"*** XmlParser::Select() - [/%s] was not found in [%s].", std::wstring(_svPath), m_tszFile);
        return false;
    }
    return true;
}

/** Parses the document. @return the node above what was built of it */
XmlNode* XmlParser::Build(std::wstring_view _svPath, const XmlChoice* _pChoice)
{
    try {
        XmlNode* pTop = m_pTree->NewNode(XmlTree::g_ulNoName);
        auto pBuilder =
            std::make_unique<TreeBuilder>(*m_pTree, m_source, pTop, NamesOf(_svPath), _pChoice, m_ulOptions);
        TreeBuilder& rBuilder = *pBuilder;
        m_pSource = std::move(pBuilder); // the tree asks it for children
        rBuilder.Begin(m_tszPathOfDll, EncodingOf(m_tszEncoding));
        return pTop;
    } catch (const std::bad_alloc&) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError, 0, 0, String::ToAnsi(m_tszFile));
    }
}

bool XmlParser::ReadsBack(std::string_view _svText) const
{
    if (m_pDocument == nullptr) {
        return false;
    }
    XmlParserExpat source(m_pMemory);
    source.Open(_svText);
    XmlComparison comparison(*m_pTree, *m_pDocument, source);
    source.Parse(m_tszPathOfDll, nullptr, comparison.Handlers());
    return comparison.IsSame();
}

XmlElement XmlParser::Document() const noexcept
{
    return m_pDocument != nullptr ? XmlElement(m_pTree.get(), m_pDocument) : XmlElement();
}

void XmlParser::Close() noexcept
{
    m_pDocument = nullptr;
    m_pTree.reset();
    m_pSource.reset();
    m_source.Close();
    m_source.Unload();
    m_tszFile.clear();
}

} // namespace ZkCommon::Storage
