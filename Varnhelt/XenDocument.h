#pragma once

#include "DocumentTable.h"
#include "EncFile.h"
#include "ZkComn_XmlParser.h"

#include <string>

namespace Varnhelt {

/**
 * An encrypted document while it is read: its plaintext copy, and the parser's hold on that. Both end with the object,
 * the hold first, so that the copy is gone when the operation returns.
 */
class XenDocument
{
public:
    /** @param _tszPath  of the encrypted file; when it is empty there is no copy to be had */
    XenDocument(const Document& _rstDocument, std::wstring _tszPath, ZkCommon::Storage::XmlParser& _rParser);
    XenDocument(const XenDocument&) = delete;
    XenDocument& operator=(const XenDocument&) = delete;
    ~XenDocument() { m_rParser.Close(); }

    /** Makes the plaintext copy. @return false when that fails, which is logged */
    bool Decrypt();

    /**
     * Parses the plaintext copy and finds the element that the document's readers start from.
     * @param _rtszLibraryFolder  where the parser library lies; empty: beside this module
     * @return empty when the document has no such element
     * @throws XmlException* when the document is not well-formed
     */
    ZkCommon::Storage::XmlElement Select(const std::wstring& _rtszLibraryFolder);

private:
    const Document& m_rstDocument;
    CEncFile m_cEncFile;
    std::wstring m_tszPlainPath;
    ZkCommon::Storage::XmlParser& m_rParser;
};

} // namespace Varnhelt
