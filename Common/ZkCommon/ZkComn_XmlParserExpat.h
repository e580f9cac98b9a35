#pragma once

#include "ZkComn_Library.h"

#include <cstddef>
#include <cstdint>
#include <expat.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ZkCommon::Library {

/** One entry point, called with the type that the library's header declares for it. */
template <class TFunction>
class EntryPoint
{
public:
    FARPROC* Slot() noexcept { return &m_pfnEntry; }
    explicit operator bool() const noexcept { return m_pfnEntry != nullptr; }

    template <class... TArgs>
    auto operator()(TArgs&&... _args) const
    {
        return FunctionAt<TFunction>(m_pfnEntry)(std::forward<TArgs>(_args)...);
    }

private:
    FARPROC m_pfnEntry = nullptr;
};

/** The XML parser library, "libexpat.dll". */
class Expat final : public Wrapper
{
public:
    /**
     * Loads the library from a folder (with or without a backslash at its end) and binds it.
     * @param _rulError  5010 when it is already loaded, 160 when no path can be formed, else the system's error or Bind's
     */
    bool Load(const std::wstring& _tszFolder, std::uint32_t& _rulError);
    bool Bind(bool _bBind, std::uint32_t& _rulError) noexcept override;

    EntryPoint<decltype(XML_ParserCreate)> ParserCreate;
    EntryPoint<decltype(XML_ParserCreateNS)> ParserCreateNS;
    EntryPoint<decltype(XML_ParserCreate_MM)> ParserCreateMM;
    EntryPoint<decltype(XML_ParserReset)> ParserReset;
    EntryPoint<decltype(XML_SetElementHandler)> SetElementHandler;
    EntryPoint<decltype(XML_SetStartElementHandler)> SetStartElementHandler;
    EntryPoint<decltype(XML_SetEndElementHandler)> SetEndElementHandler;
    EntryPoint<decltype(XML_SetCharacterDataHandler)> SetCharacterDataHandler;
    EntryPoint<decltype(XML_SetProcessingInstructionHandler)> SetProcessingInstructionHandler;
    EntryPoint<decltype(XML_SetCommentHandler)> SetCommentHandler;
    EntryPoint<decltype(XML_SetDefaultHandler)> SetDefaultHandler;
    EntryPoint<decltype(XML_SetUnparsedEntityDeclHandler)> SetUnparsedEntityDeclHandler;
    EntryPoint<decltype(XML_SetNotationDeclHandler)> SetNotationDeclHandler;
    EntryPoint<decltype(XML_SetNamespaceDeclHandler)> SetNamespaceDeclHandler;
    EntryPoint<decltype(XML_SetStartNamespaceDeclHandler)> SetStartNamespaceDeclHandler;
    EntryPoint<decltype(XML_SetEndNamespaceDeclHandler)> SetEndNamespaceDeclHandler;
    EntryPoint<decltype(XML_SetNotStandaloneHandler)> SetNotStandaloneHandler;
    EntryPoint<decltype(XML_SetExternalEntityRefHandler)> SetExternalEntityRefHandler;
    EntryPoint<decltype(XML_SetExternalEntityRefHandlerArg)> SetExternalEntityRefHandlerArg;
    EntryPoint<decltype(XML_SetUserData)> SetUserData;
    EntryPoint<decltype(XML_SetEncoding)> SetEncoding;
    EntryPoint<decltype(XML_Parse)> Parse;
    EntryPoint<decltype(XML_GetBuffer)> GetBuffer;
    EntryPoint<decltype(XML_ParseBuffer)> ParseBuffer;
    EntryPoint<decltype(XML_StopParser)> StopParser;
    EntryPoint<decltype(XML_ResumeParser)> ResumeParser;
    EntryPoint<decltype(XML_GetParsingStatus)> GetParsingStatus;
    EntryPoint<decltype(XML_GetErrorCode)> GetErrorCode;
    EntryPoint<decltype(XML_GetCurrentLineNumber)> GetCurrentLineNumber;
    EntryPoint<decltype(XML_GetCurrentColumnNumber)> GetCurrentColumnNumber;
    EntryPoint<decltype(XML_GetCurrentByteIndex)> GetCurrentByteIndex;
    EntryPoint<decltype(XML_GetCurrentByteCount)> GetCurrentByteCount;
    EntryPoint<decltype(XML_ParserFree)> ParserFree;
    EntryPoint<decltype(XML_ErrorString)> ErrorString;
    EntryPoint<decltype(XML_ExpatVersion)> ExpatVersion;
    EntryPoint<decltype(XML_ExpatVersionInfo)> ExpatVersionInfo;
    EntryPoint<decltype(XML_GetFeatureList)> GetFeatureList;
    EntryPoint<decltype(XML_SetAttlistDeclHandler)> SetAttlistDeclHandler; // the only one that may be missing
};

} // namespace ZkCommon::Library

namespace ZkCommon::Storage {

/** Where a document's memory comes from: the parser library's, and the element tree's. */
using XmlMemory = XML_Memory_Handling_Suite;

/** A place in a document: line and column, both counted from 1; 0 when there is none. */
struct XmlPlace
{
    std::uint32_t ulLine = 0;
    std::uint32_t ulColumn = 0;
};

/**
 * A source of a document's events. It pushes them: each handler is called while the document is being parsed, with the
 * target of its set, and gets names and text as UTF-8. A handler does not throw; it stops the source instead.
 */
class XmlParserSaxBase
{
public:
    /** The receiver of events; an event without a handler is passed over. */
    struct Handlers
    {
        void* pTarget = nullptr;
        /** Name, and attribute names and values in turn up to a null; all of them live until the handler returns. */
        void (*pfnStart)(void* _pTarget, const char* _szName, const char** _pszAttributes) = nullptr;
        void (*pfnEnd)(void* _pTarget, const char* _szName) = nullptr;
        /** Part of a text; one text may come in many parts. */
        void (*pfnText)(void* _pTarget, const char* _pText, int _iLength) = nullptr;
        void (*pfnComment)(void* _pTarget, const char* _szText) = nullptr;
        /** The document type declares an attribute, with a default or none. */
        XML_AttlistDeclHandler pfnDeclaration = nullptr;
    };

    XmlParserSaxBase() = default;
    XmlParserSaxBase(const XmlParserSaxBase&) = delete;
    XmlParserSaxBase& operator=(const XmlParserSaxBase&) = delete;
    virtual ~XmlParserSaxBase() = default;

    /** Changes the receiver; also from within a handler. */
    virtual void SetHandlers(const Handlers& _stHandlers) noexcept = 0;
    /** Ends the parse with a failure; from within a handler only. */
    virtual void Stop(XML_Error _enReason) noexcept = 0;
    /** Line of the present event, counted from 1; from within a handler only. Costs a look at the text up to there. */
    virtual std::uint32_t Line() const noexcept = 0;
    /** Its column, in the same way. */
    virtual std::uint32_t Column() const noexcept = 0;
};

/** Events by the expat library, which is loaded for the first parse and freed with this object or by Unload. */
class XmlParserExpatBase : public XmlParserSaxBase
{
public:
    explicit XmlParserExpatBase(const XmlMemory* _pMemory) noexcept : m_pMemory(_pMemory) {}

    void SetHandlers(const Handlers& _stHandlers) noexcept override;
    void Stop(XML_Error _enReason) noexcept override;
    std::uint32_t Line() const noexcept override;
    std::uint32_t Column() const noexcept override;

    /** Where the last parse failed. */
    XmlPlace FailurePlace() const noexcept { return m_stFailure; }
    /** What the library says of that, in English; empty before. */
    const char* FailureText() const noexcept { return m_szFailure; }
    /** Frees the parser library. */
    void Unload() noexcept
    {
        m_szFailure = "";
        m_expat.reset();
    }

protected:
    /** Owns expat's parser object for the length of one parse. */
    class Session
    {
    public:
        Session(XmlParserExpatBase& _rOwner, const char* _szEncoding);
        Session(const Session&) = delete;
        Session& operator=(const Session&) = delete;
        ~Session();

    private:
        XmlParserExpatBase& m_rOwner;
    };

    /**
     * Makes sure that the library is loaded: from the folder when it holds one, else from beside the module that
     * contains this code; both by full path.
     * @throws XmlException*
     */
    void BringLibrary(const std::wstring& _tszFolder);
    /** Throws what expat says of its failure. */
    [[noreturn]] void ThrowFailure();

    const XmlMemory* m_pMemory;
    std::optional<Library::Expat> m_expat;
    XML_Parser m_pParser = nullptr;         // while a parse is running
    XML_Error m_enStopped = XML_ERROR_NONE; // why the parse was stopped
    std::string m_sDocument;                // the document's path in the ANSI code page, for failures

private:
    XmlPlace m_stFailure;
    const char* m_szFailure = ""; // the library's own; see Unload
};

/** Parses a file, or text in memory, as often as it is asked to. */
class XmlParserExpat final : public XmlParserExpatBase
{
public:
    using XmlParserExpatBase::XmlParserExpatBase;

    /** Opens a file and lets others read, write and delete it meanwhile. @throws XmlException* */
    void Open(const std::wstring& _tszPath);
    /** Takes text in memory, which stays the caller's and must live until Close. */
    void Open(std::string_view _svText) noexcept;
    void Close() noexcept;

    bool IsOpen() const noexcept { return m_file || m_svText.data() != nullptr; }
    /** Bytes of the document when it was opened. */
    std::uint64_t Size() const noexcept { return m_ullSize; }
    /** Whether the document is parsed in more than one piece. */
    bool IsInPieces() const noexcept;
    /** How much of the document is parsed, from 0 to 1; during a parse only. */
    double Share() const noexcept
    {
        return static_cast<double>(m_expat->GetCurrentByteIndex(m_pParser)) / static_cast<double>(m_ullSize);
    }
    /** See XmlParser::SetPieceSize. */
    void SetPieceSize(std::size_t _uSize) noexcept { m_uPieceSize = _uSize; }

    /**
     * Parses the document from its beginning to its end.
     * @param _tszFolder    folder of the parser library, see BringLibrary
     * @param _szEncoding   expat's name of the encoding, or null: the document says it
     * @throws XmlException* with expat's error and line when the document is not well-formed, a handler stopped the
     *         parse, memory ran out or the file could not be read
     */
    void Parse(const std::wstring& _tszFolder, const char* _szEncoding, const Handlers& _stHandlers);

    /** Begins such a parse, which each Advance takes on by a piece; the next Begin, and Close, end it as well. */
    void Begin(const std::wstring& _tszFolder, const char* _szEncoding, const Handlers& _stHandlers);
    /** @return false when the document is parsed to its end @throws XmlException* as Parse */
    bool Advance();
    /** Whether Suspend ended the last one. */
    bool IsSuspended() const noexcept { return m_bSuspended; }
    /** Ends the present Advance, from within a handler; the next one goes on from there. */
    void Suspend() noexcept { m_expat->StopParser(m_pParser, XML_TRUE); }

private:
    std::size_t UsualPiece() const noexcept;
    XML_Status ParsePiece();
    std::size_t Read(void* _pBuffer, std::size_t _uSize);

    FileHandle m_file;
    std::string_view m_svText;
    std::uint64_t m_ullSize = 0;
    std::uint64_t m_ullRead = 0; // so far, by the present or last parse
    std::size_t m_uPieceSize = 0;
    std::size_t m_uPiece = 0; // of the present parse, the next one
    XML_Index m_begin = 0;    // where the present piece begins, less what the one before left
    bool m_bSuspended = false;
    bool m_bLast = false; // the present piece is the last
    std::optional<Session> m_session;
};

} // namespace ZkCommon::Storage
