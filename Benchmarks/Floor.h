#pragma once

#include "Files/DocumentTable.h"
#include "ZkComn_Owner.h"

#include <cstdint>
#include <expat.h>
#include <string>
#include <vector>

/** The least that reading a document can cost: the bare calls of system, cipher and parser library. */
namespace Bench {

/** The parser library from beside the program, loaded as long as the object lives: what a scan costs at least. */
class Expat
{
public:
    Expat();

    /** Reads a file into the library's own buffer and has it parsed by one call, with handlers that do nothing. */
    bool ScanFile(const wchar_t* _pszPath) const;
    /** The same in pieces through one buffer that stays, where the file has more than one. */
    bool ScanInPieces(const wchar_t* _pszPath) const;

private:
    bool Scan(const wchar_t* _pszPath, unsigned long _ulPiece) const;

    ZkCommon::ModuleHandle m_hLibrary;
    decltype(&XML_ParserCreate) m_pfnCreate = nullptr;
    decltype(&XML_ParserFree) m_pfnFree = nullptr;
    decltype(&XML_SetElementHandler) m_pfnSetElementHandler = nullptr;
    decltype(&XML_SetCharacterDataHandler) m_pfnSetCharacterDataHandler = nullptr;
    decltype(&XML_GetBuffer) m_pfnGetBuffer = nullptr;
    decltype(&XML_ParseBuffer) m_pfnParseBuffer = nullptr;
};

/** The installation folder, by two calls. */
std::wstring ReadProductPath();

/** An encrypted document's plain text: its file read in one piece, and decrypted by the cipher in one piece. */
std::vector<std::uint8_t> ReadDecrypted(const std::wstring& _rtszFile, const Varnhelt::Document& _rstDocument);

/** A private temporary file that goes with its handle: made, written, opened a second time, read and parsed. */
bool ScanThroughTemporaryFile(const Expat& _rExpat, bool (Expat::*_pScan)(const wchar_t*) const,
                              const std::vector<std::uint8_t>& _rvecPlain);

/** A private temporary file: made, written, read through a second handle, and closed. */
bool UseTemporaryFile();

} // namespace Bench
