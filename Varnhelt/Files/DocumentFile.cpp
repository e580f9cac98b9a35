#include "Files/DocumentFile.h"

#include "SrvFrwk_ResultCode.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_XmlWriter.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace Varnhelt {

using namespace ZkCommon;
namespace File = Storage::File;
namespace Result = SrvFrwk::Result;

namespace {

/**
 * A copy that is only read is where the system wants temporary files, so that reading needs no right to write beside the
 * document; beside the document all the same where that folder is missing.
 */
std::wstring CopyFolder(Access _enAccess, const std::wstring& _rtszFile)
{
    std::wstring tszFolder = File::SystemTempFolder();
    return _enAccess == Access::Read && File::IsFolder(tszFolder) ? tszFolder : File::FolderOf(_rtszFile);
}

/**
 * A document that is read while it is parsed may turn out not to be well-formed after lines about its records: where they
 * are written, it is checked to its end before.
 */
std::uint32_t ParserOptions(Access _enAccess) noexcept
{
    return _enAccess == Access::Write        ? Storage::XmlParser::KeepWhole
           : TracePasses(g_ulAllTraceLevels) ? Storage::XmlParser::KeepSelected
                                             : Storage::XmlParser::OneByOne;
}

/**
 * Whether this process reads the file for the first time, as far as it remembers. What a system that died left is there
 * from the beginning, and looking through two folders at each reading costs a third of a small query.
 */
bool IsFirstReading(const std::wstring& _rtszFile) noexcept
{
    static constinit std::array<std::atomic<std::size_t>, 64> s_aKnown{};
    const std::size_t uHash = std::hash<std::wstring>{}(_rtszFile) | 1; // 0 is a place that is free
    return s_aKnown[uHash / 2 % s_aKnown.size()].exchange(uHash, std::memory_order_relaxed) != uHash;
}

} // namespace

std::string DocumentText(const Storage::XmlParser& _rParser)
{
    Storage::XmlWriter cWriter;
    cWriter.Reserve(static_cast<std::size_t>(_rParser.Size() + _rParser.Size() / 8));
    cWriter.Write(_rParser.Document());
    if (!_rParser.ReadsBack(cWriter.Output())) {
        throw new Storage::XmlException(ERROR_INVALID_DATA);
    }
    return std::move(cWriter).Output();
}

DocumentFile::~DocumentFile()
{
    m_rWorker.cElement = {};
    m_rWorker.cParser.Close();
}

std::uint32_t DocumentFile::Find(const MethodLines& _rLines, const void* _pOptionData)
{
    const bool bInstalled = m_rstDocument.enLocation == Location::Installed;
    std::optional<DocumentPath> stPath = PathOf(m_rstDocument, _pOptionData, _rLines);
    if (!stPath) {
        return Result::g_ulMissingObject;
    }
    m_stPath = std::move(*stPath);
    m_bRequested = !bInstalled;
    Claim();
    if (m_rstDocument.szKey == nullptr) {
        m_tszPlain = m_stPath.tszFile;
        return Result::g_ulSuccess;
    }
    m_cCopy.emplace(CopyFolder(m_enAccess, m_stPath.tszFile), m_stPath.tszFile, m_rstDocument.szKey);
    m_tszPlain = m_cCopy->DecryptedPath();
    if (!m_tszPlain.empty()) {
        return Result::g_ulSuccess;
    }
    if (bInstalled) {
        _rLines.Error(L"tszXmlFile is empty");
        return Result::g_ulFailed;
    }
    _rLines.Error(L"tszXmlPath was empty.");
    return Result::g_ulMissingObject;
}

void DocumentFile::Claim()
{
    const std::wstring tszFolder = File::FolderOf(m_stPath.tszFile);
    const std::wstring tszName = File::NameOf(m_stPath.tszFile);
    if (m_enAccess == Access::Write) {
        if (const std::uint32_t ulError = m_cLock.Acquire(m_stPath.tszFile, File::StoreLock::g_ulWait);
            ulError != ERROR_SUCCESS) {
            Trace(TraceNotice, L"The lock of [%s] could not be had, the document is stored without it. [0x%08x]",
                  m_stPath.tszFile, ulError);
        } else { // only then is a file that is just being moved not taken for one that was left
            File::RemoveLeftovers(tszFolder, tszName);
        }
    } else if (m_rstDocument.szKey != nullptr && IsFirstReading(m_stPath.tszFile)) {
        File::RemoveLeftovers(File::SystemTempFolder(), tszName);
        File::StoreLock cLock;
        if (File::HasLeftovers(tszFolder, tszName) && cLock.Acquire(m_stPath.tszFile, 0) == ERROR_SUCCESS) {
            File::RemoveLeftovers(tszFolder, tszName);
        }
    }
}

void DocumentFile::FindAt(DocumentPath _stPath)
{
    m_stPath = std::move(_stPath);
    Claim();
    m_tszPlain = m_stPath.tszFile;
}

const Storage::XmlElement& DocumentFile::Select(const wchar_t* _pszRoot, const Storage::XmlChoice* _pChoice)
{
    if (m_bRequested) {
        Trace(TraceNotice, L"Xml parser directory: %s", m_stPath.tszDirectory);
    }
    if (!m_stPath.tszDirectory.empty()) { // without the property it is the library beside this module
        m_rWorker.cParser.SetProperty(L"PathOfDll", m_stPath.tszDirectory);
    }
    m_rWorker.cParser.Load(m_tszPlain, ParserOptions(m_enAccess));
    m_rWorker.cElement = {}; // which is what remains when the document has no such element
    m_rWorker.cParser.Select(_pszRoot != nullptr ? _pszRoot : m_rstDocument.pszRoot, m_rWorker.cElement, _pChoice);
    return m_rWorker.cElement;
}

std::uint32_t DocumentFile::Open(const MethodLines& _rLines, const void* _pOptionData)
{
    const std::uint32_t ulResult = Find(_rLines, _pOptionData);
    if (!Result::IsFailure(ulResult)) {
        Select();
    }
    return ulResult;
}

bool DocumentFile::Store()
{
    const std::string sText = DocumentText(m_rWorker.cParser);
    if (m_cCopy) {
        return m_cCopy->WritePlain(sText) && m_cCopy->Encrypt();
    }
    StorePlain(sText);
    return true;
}

void DocumentFile::StorePlain(const std::string& _rsText)
{
    m_rWorker.cParser.Close(); // a file that is open here could not be moved over
    const auto IsText = [&](std::span<const std::uint8_t> _spanWritten) {
        return std::ranges::equal(_spanWritten, _rsText, [](std::uint8_t _c, char _cMeant) {
            return _c == static_cast<std::uint8_t>(_cMeant);
        });
    };
    if (const std::uint32_t ulError = File::Replace(m_stPath.tszFile, _rsText, IsText); ulError != ERROR_SUCCESS) {
        throw new Storage::XmlException(ulError);
    }
}

} // namespace Varnhelt
