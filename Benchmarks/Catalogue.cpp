#include "Catalogue.h"

#include "DocumentTable.h"

#include <cstring>
#include <windows.h>

namespace Bench {

namespace {

void XMLCALL OnStart(void* /*_pUser*/, const XML_Char* /*_pszName*/, const XML_Char** /*_ppszAttributes*/) {}
void XMLCALL OnEnd(void* /*_pUser*/, const XML_Char* /*_pszName*/) {}
void XMLCALL OnText(void* /*_pUser*/, const XML_Char* /*_pszText*/, int /*_iLength*/) {}

template <class TFunction>
void Bind(HMODULE _hLibrary, TFunction*& _rpfnFunction, const char* _szName)
{
    _rpfnFunction = reinterpret_cast<TFunction*>(reinterpret_cast<void*>(::GetProcAddress(_hLibrary, _szName)));
}

} // namespace

std::string MakeCatalogue(std::size_t _uSize)
{
    std::string sText = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<BaseFramework>\r\n";
    for (unsigned i = 0; sText.size() < _uSize; ++i) {
        const std::string sNumber = std::to_string(i);
        sText += "  <FrameworkService Layer=\"eServiceLayer\" Service=\"eEventManager\" version=\"17.0." + sNumber +
                 "\">\r\n"
                 "    <Module>eDynamicLinkLibrary</Module>\r\n"
                 "    <Startup>eAutomatic</Startup>\r\n"
                 "    <Load>eDelayLoad</Load>\r\n"
                 "    <OrderOfLoading>" +
                 sNumber +
                 "</OrderOfLoading>\r\n"
                 "    <OrderOfUnloading>0x10</OrderOfUnloading>\r\n"
                 "    <ConcurrentUnLoading>true</ConcurrentUnLoading>\r\n"
                 "    <Shared>eSharedProvider</Shared>\r\n"
                 "    <Controller>eAntiVirus</Controller>\r\n"
                 "    <Provider>eRealTimeScan</Provider>\r\n"
                 "    <ModuleName>SrvUnit" +
                 sNumber +
                 ".dll</ModuleName>\r\n"
                 "    <AllowToLoadSetupMode>false</AllowToLoadSetupMode>\r\n"
                 "  </FrameworkService>\r\n";
    }
    return sText + "</BaseFramework>\r\n";
}

ZkCommon::Storage::File::KeySpan CatalogueKey()
{
    const char* szKey = Varnhelt::DocumentOf(Varnhelt::DocumentId::ServiceUnits).szKey;
    return ZkCommon::Storage::File::KeySpan(reinterpret_cast<const std::uint8_t*>(szKey),
                                            ZkCommon::Storage::File::g_uKeySize);
}

Expat::Expat() : m_hLibrary(::LoadLibraryW(L"libexpat.dll"))
{
    Bind(m_hLibrary.Get(), m_pfnCreate, "XML_ParserCreate");
    Bind(m_hLibrary.Get(), m_pfnFree, "XML_ParserFree");
    Bind(m_hLibrary.Get(), m_pfnSetElementHandler, "XML_SetElementHandler");
    Bind(m_hLibrary.Get(), m_pfnSetCharacterDataHandler, "XML_SetCharacterDataHandler");
    Bind(m_hLibrary.Get(), m_pfnGetBuffer, "XML_GetBuffer");
    Bind(m_hLibrary.Get(), m_pfnParseBuffer, "XML_ParseBuffer");
}

template <class TRead>
bool Expat::ScanWith(std::size_t _uSize, const TRead& _fnRead) const
{
    const XML_Parser pParser = m_pfnCreate(nullptr);
    m_pfnSetElementHandler(pParser, &OnStart, &OnEnd);
    m_pfnSetCharacterDataHandler(pParser, &OnText);
    void* pBuffer = m_pfnGetBuffer(pParser, static_cast<int>(_uSize));
    const bool bParsed = pBuffer != nullptr && _fnRead(pBuffer) &&
                         m_pfnParseBuffer(pParser, static_cast<int>(_uSize), XML_TRUE) == XML_STATUS_OK;
    m_pfnFree(pParser);
    return bParsed;
}

bool Expat::ScanFile(const wchar_t* _pszPath) const
{
    constexpr DWORD ulShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const ZkCommon::FileHandle hFile(
        ::CreateFileW(_pszPath, GENERIC_READ, ulShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD ulSize = ::GetFileSize(hFile.Get(), nullptr);
    return ScanWith(ulSize, [&](void* _pBuffer) {
        DWORD ulRead = 0;
        return ::ReadFile(hFile.Get(), _pBuffer, ulSize, &ulRead, nullptr) != FALSE && ulRead == ulSize;
    });
}

bool Expat::Scan(std::string_view _svText) const
{
    return ScanWith(_svText.size(), [&](void* _pBuffer) {
        std::memcpy(_pBuffer, _svText.data(), _svText.size());
        return true;
    });
}

} // namespace Bench
