#pragma once

#include "Files/DocumentPath.h"
#include "Files/DocumentTable.h"
#include "Files/EncFile.h"
#include "ZkComn_XmlParser.h"

#include <optional>
#include <string>

/** The file of a document while a reader or writer works on it. */
namespace Varnhelt {

/** What becomes of a document: a reader needs its root element only, a writer keeps all of it. */
enum class Access
{
    Read,
    Write,
};

/**
 * A document, loaded with KeepWhole, as text.
 * @throws XmlException* code 13 when it holds what no document can: it would not read back as what it is
 */
std::string DocumentText(const ZkCommon::Storage::XmlParser& _rParser);

/** A plain document. It holds the parser, and lets go of the file when the object goes. */
class PlainDocument
{
public:
    PlainDocument(ZkCommon::Storage::XmlParser& _rParser, Access _enAccess) : m_rParser(_rParser), m_enAccess(_enAccess)
    {}
    PlainDocument(const PlainDocument&) = delete;
    PlainDocument& operator=(const PlainDocument&) = delete;
    ~PlainDocument() { m_rParser.Close(); }

    /**
     * Parses the file and finds an element of it.
     * @param _rtszLibraryFolder  where the parser library lies; empty: beside this module
     * @param _pszRoot            absolute path of the element
     * @param _pChoice            for Access::Read: picks the one child to keep; null to keep all
     * @return empty when the document has no such element
     * @throws XmlException* when the file cannot be read or is not well-formed
     */
    ZkCommon::Storage::XmlElement Select(const std::wstring& _rtszFile, const std::wstring& _rtszLibraryFolder,
                                         const wchar_t* _pszRoot,
                                         const ZkCommon::Storage::XmlChoice* _pChoice = nullptr);

    /**
     * The root of a document that has a fixed name and lies in a request's directory, as does the parser library.
     * @param _pszMethod    the reader, "CClass::Method()", under whose name is logged what the request lacks
     * @param _pOptionData  the request, an XmlDirectoryConfig
     * @return nothing when the request lacks its directory; else as Select
     */
    std::optional<ZkCommon::Storage::XmlElement> SelectInDirectory(const wchar_t* _pszMethod, const void* _pOptionData,
                                                                   const Document& _rstDocument);

    /** The document as it stands now; contract as DocumentText. For Access::Write. */
    std::string ToText() { return DocumentText(m_rParser); }

    /**
     * Replaces the file by the document as it stands now; all elements end. The file is then the new one, whole, or else
     * what it was. For Access::Write.
     * @throws XmlException* as ToText, and with the system's error when the file cannot be replaced
     */
    void Store();

private:
    ZkCommon::Storage::XmlParser& m_rParser;
    Access m_enAccess;
    std::wstring m_tszFile;
};

/** An encrypted document: its plaintext copy is gone when the object goes. */
class XenDocument
{
public:
    /** @param _stPath  of the encrypted file; when it is empty there is no copy to be had */
    XenDocument(const Document& _rstDocument, DocumentPath _stPath, ZkCommon::Storage::XmlParser& _rParser,
                Access _enAccess);

    /** Makes the plaintext copy. @return false when that fails, which is logged */
    bool Decrypt();

    /** Parses the plaintext copy and finds the document's root element; contract as PlainDocument::Select. */
    ZkCommon::Storage::XmlElement Select();

    /**
     * Stores the document as it stands now: the encrypted file is then the new one, whole, or else what it was.
     * @return false when it cannot be encrypted or replaced, which is logged
     * @throws XmlException* as PlainDocument::ToText, before anything is replaced
     */
    bool Store();

private:
    const Document& m_rstDocument;
    DocumentPath m_stPath;
    CEncFile m_cEncFile;
    std::wstring m_tszPlainPath;
    PlainDocument m_cPlain; // goes before the copy does
};

} // namespace Varnhelt
