#pragma once

#include "Files/DocumentPath.h"
#include "Files/DocumentTable.h"
#include "Files/EncFile.h"
#include "Request.h"
#include "ZkComn_FileLock.h"

#include <cstdint>
#include <optional>
#include <string>

/** The file of a document while a reader or writer works on it. */
namespace Varnhelt {

/**
 * What becomes of a document: a reader needs the children of its root element only, one by one, by XmlElement::NextChild;
 * a writer keeps all of it.
 */
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

/**
 * A document that is open in a worker, plain or encrypted as its row of the table says. It holds the worker's parser;
 * the file, and the plaintext copy of an encrypted one, are let go with the object. Writers of one file wait for each
 * other, so that none undoes what another one stored.
 */
class DocumentFile
{
public:
    DocumentFile(Worker& _rWorker, DocumentId _enDocument, Access _enAccess)
        : m_rWorker(_rWorker), m_rstDocument(DocumentOf(_enDocument)), m_enAccess(_enAccess)
    {}
    DocumentFile(const DocumentFile&) = delete;
    DocumentFile& operator=(const DocumentFile&) = delete;
    ~DocumentFile();

    /**
     * Finds the file, and makes the plaintext copy of an encrypted one.
     * @param _pOptionData  the request that says where it is, in the form of the document's Location
     * @return g_ulSuccess, or the reader's result after an error line under the reader's name
     */
    std::uint32_t Find(const MethodLines& _rLines, const void* _pOptionData = nullptr);
    /** For a plain document whose place is known otherwise. */
    void FindAt(DocumentPath _stPath);

    const DocumentPath& Path() const noexcept { return m_stPath; }

    /**
     * Parses the file that was found, and finds the worker's element in it.
     * @param _pszRoot  absolute path of the element; null: the document's root
     * @param _pChoice  for Access::Read: picks the one child to keep; null to keep all
     * @return the element; empty when the document has no such element
     * @throws XmlException* when the file cannot be read or is not well-formed
     */
    const ZkCommon::Storage::XmlElement& Select(const wchar_t* _pszRoot = nullptr,
                                                const ZkCommon::Storage::XmlChoice* _pChoice = nullptr);

    /** Find, and when that succeeds Select. */
    std::uint32_t Open(const MethodLines& _rLines, const void* _pOptionData = nullptr);

    /**
     * Replaces the file by the document as it is now; all elements end. The file is then the new one, whole, or else
     * what it was. For Access::Write.
     * @return false when an encrypted file cannot be written or replaced, which is logged
     * @throws XmlException* as DocumentText, and with the system's error when a plain file cannot be replaced
     */
    bool Store();

private:
    /** Takes a writer's lock; before a store or this process's first reading, removes what a dead call left. */
    void Claim();
    void StorePlain(const std::string& _rsText);

    Worker& m_rWorker;
    const Document& m_rstDocument;
    Access m_enAccess;
    ZkCommon::Storage::File::StoreLock m_cLock; // of a writer, from before it reads; let go last
    bool m_bRequested = false;                  // the request says where the parser library is
    DocumentPath m_stPath;
    std::optional<CEncFile> m_cCopy; // of an encrypted document
    std::wstring m_tszPlain;         // the file to parse
};

} // namespace Varnhelt
