#pragma once

#include "ZkComn_FileCrypt.h"
#include "ZkComn_Owner.h"

#include <expat.h>
#include <string>
#include <string_view>

/** What the benchmarks of documents share: a catalogue of any size, and the bare parser library. */
namespace Bench {

/** A catalogue of service units, as authors write them, of about that many bytes. */
std::string MakeCatalogue(std::size_t _uSize);

/** The key of the encrypted catalogue. */
ZkCommon::Storage::File::KeySpan CatalogueKey();

/** The parser library from beside the program, loaded as long as the object lives: what a scan costs at least. */
class Expat
{
public:
    Expat();

    /** Reads a file into the library's own buffer and has it parsed by one call, with handlers that do nothing. */
    bool ScanFile(const wchar_t* _pszPath) const;
    /** The same for bytes in memory. */
    bool Scan(std::string_view _svText) const;

private:
    template <class TRead>
    bool ScanWith(std::size_t _uSize, const TRead& _fnRead) const;

    ZkCommon::ModuleHandle m_hLibrary;
    decltype(&XML_ParserCreate) m_pfnCreate = nullptr;
    decltype(&XML_ParserFree) m_pfnFree = nullptr;
    decltype(&XML_SetElementHandler) m_pfnSetElementHandler = nullptr;
    decltype(&XML_SetCharacterDataHandler) m_pfnSetCharacterDataHandler = nullptr;
    decltype(&XML_GetBuffer) m_pfnGetBuffer = nullptr;
    decltype(&XML_ParseBuffer) m_pfnParseBuffer = nullptr;
};

} // namespace Bench
