#include "Floor.h"

#include "Frwk_Settings.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_Rijndael.h"

#include <span>
#include <utility>
#include <windows.h>

namespace Bench {

using namespace ZkCommon;
using Cryptograph::Rijndael;

namespace {

constexpr DWORD g_ulShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

void XMLCALL OnStart(void* /*_pUser*/, const XML_Char* /*_pszName*/, const XML_Char** /*_ppszAttributes*/) {}
void XMLCALL OnEnd(void* /*_pUser*/, const XML_Char* /*_pszName*/) {}
void XMLCALL OnText(void* /*_pUser*/, const XML_Char* /*_pszText*/, int /*_iLength*/) {}

template <class TFunction>
void Bind(HMODULE _hLibrary, TFunction*& _rpfnFunction, const char* _szName)
{
    _rpfnFunction = reinterpret_cast<TFunction*>(reinterpret_cast<void*>(::GetProcAddress(_hLibrary, _szName)));
}

std::vector<std::uint8_t> ReadFileWhole(const std::wstring& _rtszPath)
{
    const FileHandle hFile(::CreateFileW(_rtszPath.c_str(), GENERIC_READ, g_ulShareAll, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    std::vector<std::uint8_t> vecContent(::GetFileSize(hFile.Get(), nullptr));
    DWORD ulRead = 0;
    ::ReadFile(hFile.Get(), vecContent.data(), static_cast<DWORD>(vecContent.size()), &ulRead, nullptr);
    return vecContent;
}

/** Decrypts in place what the cipher holds to be whole blocks. */
void Decrypt(std::vector<std::uint8_t>& _rvecContent, const char* _szKey)
{
    const Storage::File::KeySpan key(reinterpret_cast<const std::uint8_t*>(_szKey), Storage::File::g_uKeySize);
    Rijndael stCipher;
    std::uint32_t ulError = 0;
    std::size_t uConverted = 0;
    std::size_t uFinished = 0;
    std::vector<std::uint8_t> vecPlain(_rvecContent.size());
    stCipher.SetUp(Rijndael::Direction::Decrypt, key, Rijndael::Mode::Cbc, {}, ulError);
    stCipher.Convert(_rvecContent, vecPlain, uConverted, ulError);
    stCipher.Finish(std::span(vecPlain).subspan(uConverted), uFinished, ulError);
    vecPlain.resize(uConverted + uFinished);
    _rvecContent = std::move(vecPlain);
}

} // namespace

Expat::Expat() : m_hLibrary(::LoadLibraryW(L"libexpat.dll"))
{
    Bind(m_hLibrary.Get(), m_pfnCreate, "XML_ParserCreate");
    Bind(m_hLibrary.Get(), m_pfnFree, "XML_ParserFree");
    Bind(m_hLibrary.Get(), m_pfnSetElementHandler, "XML_SetElementHandler");
    Bind(m_hLibrary.Get(), m_pfnSetCharacterDataHandler, "XML_SetCharacterDataHandler");
    Bind(m_hLibrary.Get(), m_pfnGetBuffer, "XML_GetBuffer");
    Bind(m_hLibrary.Get(), m_pfnParseBuffer, "XML_ParseBuffer");
}

bool Expat::ScanFile(const wchar_t* _pszPath) const
{
    return Scan(_pszPath, 0);
}

bool Expat::ScanInPieces(const wchar_t* _pszPath) const
{
    return Scan(_pszPath, 32U << 10);
}

/** @param _ulPiece  bytes of a piece; 0: the file is one */
bool Expat::Scan(const wchar_t* _pszPath, unsigned long _ulPiece) const
{
    const FileHandle hFile(
        ::CreateFileW(_pszPath, GENERIC_READ, g_ulShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD ulSize = ::GetFileSize(hFile.Get(), nullptr);
    const DWORD ulPiece = _ulPiece == 0 ? ulSize : _ulPiece;
    const XML_Parser pParser = m_pfnCreate(nullptr);
    m_pfnSetElementHandler(pParser, &OnStart, &OnEnd);
    m_pfnSetCharacterDataHandler(pParser, &OnText);
    bool bParsed = true;
    for (DWORD ulDone = 0; bParsed && ulDone < ulSize;) {
        DWORD ulRead = 0;
        void* pBuffer = m_pfnGetBuffer(pParser, static_cast<int>(ulPiece));
        bParsed = pBuffer != nullptr && ::ReadFile(hFile.Get(), pBuffer, ulPiece, &ulRead, nullptr) != FALSE &&
                  ulRead != 0 &&
                  m_pfnParseBuffer(pParser, static_cast<int>(ulRead), ulDone + ulRead == ulSize) == XML_STATUS_OK;
        ulDone += ulRead;
    }
    m_pfnFree(pParser);
    return bParsed;
}

std::wstring ReadProductPath()
{
    RegKey hKey;
    std::wstring tszPath(MAX_PATH, L'\0');
    DWORD ulBytes = static_cast<DWORD>(tszPath.size() * sizeof(wchar_t));
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, 0, KEY_QUERY_VALUE, hKey.Receive());
    ::RegQueryValueExW(hKey.Get(), L"ProductPath", nullptr, nullptr, reinterpret_cast<BYTE*>(tszPath.data()), &ulBytes);
    tszPath.resize(ulBytes / sizeof(wchar_t) - 1);
    return tszPath;
}

std::vector<std::uint8_t> ReadDecrypted(const std::wstring& _rtszFile, const Varnhelt::Document& _rstDocument)
{
    std::vector<std::uint8_t> vecContent = ReadFileWhole(_rtszFile);
    Decrypt(vecContent, _rstDocument.szKey);
    return vecContent;
}

namespace {

/** Makes a private temporary file of these bytes, and hands its path over while it exists. */
template <class TUse>
bool WithTemporaryFile(std::span<const std::uint8_t> _spanContent, const TUse& _fnUse)
{
    std::wstring tszFile(MAX_PATH, L'\0');
    tszFile.resize(::GetTempPathW(MAX_PATH, tszFile.data()));
    tszFile += L"varnhelt-bench-" + std::to_wstring(::GetCurrentProcessId()) + L".tmp";
    const FileHandle hFile(::CreateFileW(tszFile.c_str(), GENERIC_WRITE | DELETE, g_ulShareAll, nullptr, CREATE_NEW,
                                         FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    DWORD ulWritten = 0;
    ::WriteFile(hFile.Get(), _spanContent.data(), static_cast<DWORD>(_spanContent.size()), &ulWritten, nullptr);
    return _fnUse(tszFile);
}

} // namespace

bool ScanThroughTemporaryFile(const Expat& _rExpat, bool (Expat::*_pScan)(const wchar_t*) const,
                              const std::vector<std::uint8_t>& _rvecPlain)
{
    return WithTemporaryFile(_rvecPlain,
                             [&](const std::wstring& _rtszFile) { return (_rExpat.*_pScan)(_rtszFile.c_str()); });
}

bool UseTemporaryFile()
{
    constexpr std::uint8_t aContent[96] = {};
    return WithTemporaryFile(aContent,
                             [&](const std::wstring& _rtszFile) { return ReadFileWhole(_rtszFile).size() == 96; });
}

} // namespace Bench
