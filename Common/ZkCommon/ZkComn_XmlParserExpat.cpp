#include "ZkComn_XmlParserExpat.h"

#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace ZkCommon::Library {

namespace {

constexpr wchar_t g_szLibraryFile[] = L"libexpat.dll";

} // namespace

bool Expat::Load(const std::wstring& _tszFolder, std::uint32_t& _rulError)
{
    if (IsLoaded()) {
        _rulError = ERROR_OBJECT_ALREADY_EXISTS;
        return false;
    }
    // A file system never sees beyond an embedded terminator, so that such a folder names no path.
    if (_tszFolder.find(L'\0') != std::wstring::npos) {
        _rulError = ERROR_BAD_ARGUMENTS;
        return false;
    }
    m_hModule.Reset(::LoadLibraryW(PathOf(_tszFolder, g_szLibraryFile).c_str()));
    if (!IsLoaded()) {
        _rulError = ::GetLastError();
        return false;
    }
    return Bind(true, _rulError);
}

bool Expat::Bind(bool _bBind, std::uint32_t& _rulError) noexcept
{
    const Binding aBindings[] = {
        {"XML_ParserCreate", ParserCreate.Slot()},
        {"XML_ParserCreateNS", ParserCreateNS.Slot()},
        {"XML_ParserCreate_MM", ParserCreateMM.Slot()},
        {"XML_ParserReset", ParserReset.Slot()},
        {"XML_SetElementHandler", SetElementHandler.Slot()},
        {"XML_SetStartElementHandler", SetStartElementHandler.Slot()},
        {"XML_SetEndElementHandler", SetEndElementHandler.Slot()},
        {"XML_SetCharacterDataHandler", SetCharacterDataHandler.Slot()},
        {"XML_SetProcessingInstructionHandler", SetProcessingInstructionHandler.Slot()},
        {"XML_SetCommentHandler", SetCommentHandler.Slot()},
        {"XML_SetDefaultHandler", SetDefaultHandler.Slot()},
        {"XML_SetUnparsedEntityDeclHandler", SetUnparsedEntityDeclHandler.Slot()},
        {"XML_SetNotationDeclHandler", SetNotationDeclHandler.Slot()},
        {"XML_SetNamespaceDeclHandler", SetNamespaceDeclHandler.Slot()},
        {"XML_SetStartNamespaceDeclHandler", SetStartNamespaceDeclHandler.Slot()},
        {"XML_SetEndNamespaceDeclHandler", SetEndNamespaceDeclHandler.Slot()},
        {"XML_SetNotStandaloneHandler", SetNotStandaloneHandler.Slot()},
        {"XML_SetExternalEntityRefHandler", SetExternalEntityRefHandler.Slot()},
        {"XML_SetExternalEntityRefHandlerArg", SetExternalEntityRefHandlerArg.Slot()},
        {"XML_SetUserData", SetUserData.Slot()},
        {"XML_SetEncoding", SetEncoding.Slot()},
        {"XML_Parse", Parse.Slot()},
        {"XML_GetBuffer", GetBuffer.Slot()},
        {"XML_ParseBuffer", ParseBuffer.Slot()},
        {"XML_StopParser", StopParser.Slot()},
        {"XML_ResumeParser", ResumeParser.Slot()},
        {"XML_GetParsingStatus", GetParsingStatus.Slot()},
        {"XML_GetErrorCode", GetErrorCode.Slot()},
        {"XML_GetCurrentLineNumber", GetCurrentLineNumber.Slot()},
        {"XML_GetCurrentColumnNumber", GetCurrentColumnNumber.Slot()},
        {"XML_GetCurrentByteIndex", GetCurrentByteIndex.Slot()},
        {"XML_GetCurrentByteCount", GetCurrentByteCount.Slot()},
        {"XML_ParserFree", ParserFree.Slot()},
        {"XML_ErrorString", ErrorString.Slot()},
        {"XML_ExpatVersion", ExpatVersion.Slot()},
        {"XML_ExpatVersionInfo", ExpatVersionInfo.Slot()},
        {"XML_GetFeatureList", GetFeatureList.Slot()},
    };
    *SetAttlistDeclHandler.Slot() =
        _bBind && IsLoaded() ? ::GetProcAddress(m_hModule.Get(), "XML_SetAttlistDeclHandler") : nullptr;
    return BindAll(aBindings, std::size(aBindings), _bBind, _rulError);
}

} // namespace ZkCommon::Library

namespace ZkCommon::Storage {

namespace {

/** Up to this many bytes are parsed by one call. */
constexpr std::uint64_t g_ullOneCall = 64U << 10;
/** Size of a larger document's pieces, in bytes: one buffer that stays costs less than new memory for all of it. */
constexpr std::size_t g_uPiece = 32U << 10;
constexpr std::size_t g_uLargestPiece = 1U << 30;

/** Whether the current folder and drive have no part in what the path names. */
bool IsFullPath(std::wstring_view _svPath) noexcept
{
    return _svPath.starts_with(L"\\\\") || (_svPath.size() > 2 && _svPath[1] == L':' && _svPath[2] == L'\\');
}

bool HoldsLibrary(const std::wstring& _tszFolder)
{
    return IsFullPath(_tszFolder) &&
           ::GetFileAttributesW(Library::PathOf(_tszFolder, Library::g_szLibraryFile).c_str()) !=
               INVALID_FILE_ATTRIBUTES;
}

/** Folder of the module that contains this code, without a backslash at its end. @throws XmlException* */
std::wstring ModuleFolder()
{
    HMODULE hModule = nullptr;
    if (!::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              reinterpret_cast<const wchar_t*>(&ModuleFolder), &hModule)) {
        throw new XmlException(::GetLastError());
    }
    const std::wstring tszPath = Library::ModulePath(hModule);
    if (tszPath.empty()) {
        throw new XmlException(::GetLastError());
    }
    return tszPath.substr(0, tszPath.find_last_of(L'\\'));
}

/** Refuses the reference to an external entity: nothing but the document itself is ever read. */
int XMLCALL RefuseExternalEntity(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*)
{
    return XML_STATUS_ERROR;
}

/**
 * Refuses a document that is declared by more than itself, be it an external subset or a parameter entity: what only
 * that declares would vanish without a word. One that says it is standalone declares all that it uses.
 */
int XMLCALL RefuseOtherDeclarations(void*)
{
    return XML_STATUS_ERROR;
}

} // namespace

XmlParserExpatBase::Session::Session(XmlParserExpatBase& _rOwner, const char* _szEncoding) : m_rOwner(_rOwner)
{
    const Library::Expat& rExpat = *m_rOwner.m_expat;
    m_rOwner.m_pParser = rExpat.ParserCreateMM(_szEncoding, m_rOwner.m_pMemory, nullptr);
    if (m_rOwner.m_pParser == nullptr) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError, XML_ERROR_NO_MEMORY, 0, m_rOwner.m_sDocument);
    }
    m_rOwner.m_enStopped = XML_ERROR_NONE;
    rExpat.SetExternalEntityRefHandler(m_rOwner.m_pParser, &RefuseExternalEntity);
    rExpat.SetNotStandaloneHandler(m_rOwner.m_pParser, &RefuseOtherDeclarations);
}

XmlParserExpatBase::Session::~Session()
{
    m_rOwner.m_expat->ParserFree(std::exchange(m_rOwner.m_pParser, nullptr));
}

void XmlParserExpatBase::SetHandlers(const Handlers& _stHandlers) noexcept
{
    m_expat->SetUserData(m_pParser, _stHandlers.pTarget);
    m_expat->SetElementHandler(m_pParser, _stHandlers.pfnStart, _stHandlers.pfnEnd);
    m_expat->SetCharacterDataHandler(m_pParser, _stHandlers.pfnText);
    m_expat->SetCommentHandler(m_pParser, _stHandlers.pfnComment);
    if (m_expat->SetAttlistDeclHandler) {
        m_expat->SetAttlistDeclHandler(m_pParser, _stHandlers.pfnDeclaration);
    }
}

void XmlParserExpatBase::Stop(XML_Error _enReason) noexcept
{
    m_enStopped = _enReason;
    SetHandlers({}); // some events may still follow a stop
    m_expat->StopParser(m_pParser, XML_FALSE);
}

std::uint32_t XmlParserExpatBase::Line() const noexcept
{
    return static_cast<std::uint32_t>(m_expat->GetCurrentLineNumber(m_pParser));
}

std::uint32_t XmlParserExpatBase::Column() const noexcept
{
    return static_cast<std::uint32_t>(m_expat->GetCurrentColumnNumber(m_pParser)) + 1;
}

void XmlParserExpatBase::BringLibrary(const std::wstring& _tszFolder)
{
    if (m_expat) {
        return;
    }
    std::uint32_t ulError = ERROR_SUCCESS;
    if (!m_expat.emplace().Load(HoldsLibrary(_tszFolder) ? _tszFolder : ModuleFolder(), ulError)) {
        m_expat.reset();
        throw new XmlException(ulError, 0, 0, m_sDocument);
    }
}

void XmlParserExpatBase::ThrowFailure()
{
    m_stFailure.ulLine = Line();
    m_stFailure.ulColumn = Column();
    const XML_Error enError = m_enStopped != XML_ERROR_NONE ? m_enStopped : m_expat->GetErrorCode(m_pParser);
    const char* szText = m_expat->ErrorString(enError);
    m_szFailure = szText != nullptr ? szText : "";
    throw new XmlException(ZkCommon::Exception::g_ulNoSystemError, static_cast<std::uint32_t>(enError),
                           m_stFailure.ulLine, m_sDocument);
}

void XmlParserExpat::Open(const std::wstring& _tszPath)
{
    Close();
    m_sDocument = String::ToAnsi(_tszPath);
    m_file = File::OpenToRead(_tszPath, File::g_ulShareAll);
    if (!m_file) {
        throw new XmlException(::GetLastError(), 0, 0, m_sDocument);
    }
    LARGE_INTEGER stSize = {};
    if (!::GetFileSizeEx(m_file.Get(), &stSize)) {
        throw new XmlException(::GetLastError(), 0, 0, m_sDocument);
    }
    m_ullSize = static_cast<std::uint64_t>(stSize.QuadPart);
}

void XmlParserExpat::Open(std::string_view _svText) noexcept
{
    Close();
    m_svText = _svText.data() != nullptr ? _svText : std::string_view("");
    m_ullSize = _svText.size();
}

void XmlParserExpat::Close() noexcept
{
    m_session.reset();
    m_file.Reset();
    m_svText = {};
    m_ullRead = 0;
    m_sDocument.clear();
}

void XmlParserExpat::Parse(const std::wstring& _tszFolder, const char* _szEncoding, const Handlers& _stHandlers)
{
    Begin(_tszFolder, _szEncoding, _stHandlers);
    while (Advance()) {
    }
}

void XmlParserExpat::Begin(const std::wstring& _tszFolder, const char* _szEncoding, const Handlers& _stHandlers)
{
    m_session.reset();
    BringLibrary(_tszFolder);
    if (m_file && m_ullRead != 0 && !::SetFilePointerEx(m_file.Get(), {}, nullptr, FILE_BEGIN)) {
        throw new XmlException(::GetLastError(), 0, 0, m_sDocument);
    }
    m_ullRead = 0;
    m_uPiece = UsualPiece();
    m_bSuspended = false;
    m_session.emplace(*this, _szEncoding);
    SetHandlers(_stHandlers);
}

bool XmlParserExpat::Advance()
{
    const XML_Status enStatus = m_bSuspended ? m_expat->ResumeParser(m_pParser) : ParsePiece();
    if (enStatus == XML_STATUS_ERROR) {
        ThrowFailure();
    }
    m_bSuspended = enStatus == XML_STATUS_SUSPENDED;
    if (m_bSuspended) {
        return true;
    }
    if (m_bLast) {
        m_session.reset();
        return false;
    }
    // A token that is longer than a piece is looked at from its beginning with each: growing pieces keep that linear.
    const bool bConsumed = m_expat->GetCurrentByteIndex(m_pParser) != m_begin;
    m_uPiece = bConsumed ? UsualPiece() : std::min(2 * m_uPiece, g_uLargestPiece);
    return true;
}

XML_Status XmlParserExpat::ParsePiece()
{
    void* pBuffer = m_expat->GetBuffer(m_pParser, static_cast<int>(m_uPiece));
    if (pBuffer == nullptr) {
        return XML_STATUS_ERROR;
    }
    const std::size_t uRead = Read(pBuffer, m_uPiece);
    m_bLast = uRead < m_uPiece || m_ullRead >= m_ullSize;
    m_begin = m_expat->GetCurrentByteIndex(m_pParser);
    return m_expat->ParseBuffer(m_pParser, static_cast<int>(uRead), m_bLast);
}

bool XmlParserExpat::IsInPieces() const noexcept
{
    return m_uPieceSize != 0 || m_ullSize > g_ullOneCall;
}

std::size_t XmlParserExpat::UsualPiece() const noexcept
{
    return !IsInPieces() ? std::max<std::size_t>(1, m_ullSize) : m_uPieceSize != 0 ? m_uPieceSize : g_uPiece;
}

/** Fills the buffer as far as the document reaches. */
std::size_t XmlParserExpat::Read(void* _pBuffer, std::size_t _uSize)
{
    std::size_t uRead = 0;
    if (!m_file) {
        uRead = m_svText.copy(static_cast<char*>(_pBuffer), _uSize, static_cast<std::size_t>(m_ullRead));
    }
    while (m_file && uRead < _uSize) {
        DWORD ulRead = 0;
        if (!::ReadFile(m_file.Get(), static_cast<char*>(_pBuffer) + uRead, static_cast<DWORD>(_uSize - uRead), &ulRead,
                        nullptr)) {
            throw new XmlException(::GetLastError(), 0, 0, m_sDocument);
        }
        if (ulRead == 0) {
            break;
        }
        uRead += ulRead;
    }
    m_ullRead += uRead;
    return uRead;
}

} // namespace ZkCommon::Storage
