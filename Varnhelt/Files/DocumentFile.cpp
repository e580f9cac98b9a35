#include "Files/DocumentFile.h"

#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_XmlWriter.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace Varnhelt {

using namespace ZkCommon;

namespace {

std::wstring FolderOf(const std::wstring& _rtszPath)
{
    return _rtszPath.substr(0, _rtszPath.find_last_of(L"\\/") + 1);
}

} // namespace

Storage::XmlElement PlainDocument::Select(const std::wstring& _rtszFile, const std::wstring& _rtszLibraryFolder,
                                          const wchar_t* _pszRoot, const Storage::XmlChoice* _pChoice)
{
    m_tszFile = _rtszFile;
    if (!_rtszLibraryFolder.empty()) { // without the property it is the library beside this module
        m_rParser.SetProperty(L"PathOfDll", _rtszLibraryFolder);
    }
    m_rParser.Load(_rtszFile,
                   m_enAccess == Access::Write ? Storage::XmlParser::KeepWhole : Storage::XmlParser::KeepSelected);
    Storage::XmlElement cElement;
    m_rParser.Select(_pszRoot, cElement, _pChoice);
    return cElement;
}

std::optional<Storage::XmlElement> PlainDocument::SelectInDirectory(const wchar_t* _pszMethod, const void* _pOptionData,
                                                                    const Document& _rstDocument)
{
    const auto stPath = PathInDirectory(_pszMethod, _pOptionData, _rstDocument.pszFile);
    if (!stPath) {
        return std::nullopt;
    }
    TraceParserDirectory(stPath->tszDirectory);
    return Select(stPath->tszFile, stPath->tszDirectory, _rstDocument.pszRoot);
}

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

void PlainDocument::Store()
{
    const std::string sText = ToText();
    m_rParser.Close(); // a file that is open here could not be moved over
    const auto IsText = [&](std::span<const std::uint8_t> _spanWritten) {
        return std::ranges::equal(_spanWritten, sText, [](std::uint8_t _c, char _cMeant) {
            return _c == static_cast<std::uint8_t>(_cMeant);
        });
    };
    if (const std::uint32_t ulError = Storage::File::Replace(m_tszFile, sText, IsText); ulError != ERROR_SUCCESS) {
        throw new Storage::XmlException(ulError);
    }
}

// A copy that is only read lies where the system wants temporary files, so that reading needs no right to write beside
// the document.
XenDocument::XenDocument(const Document& _rstDocument, DocumentPath _stPath, Storage::XmlParser& _rParser,
                         Access _enAccess)
    : m_rstDocument(_rstDocument),
      m_stPath(std::move(_stPath)),
      m_cEncFile(_enAccess == Access::Write ? FolderOf(m_stPath.tszFile) : Storage::File::SystemTempFolder(),
                 m_stPath.tszFile, _rstDocument.szKey),
      m_cPlain(_rParser, _enAccess)
{}

bool XenDocument::Decrypt()
{
    m_tszPlainPath = m_cEncFile.DecryptedPath();
    return !m_tszPlainPath.empty();
}

Storage::XmlElement XenDocument::Select()
{
    return m_cPlain.Select(m_tszPlainPath, m_stPath.tszDirectory, m_rstDocument.pszRoot);
}

bool XenDocument::Store()
{
    return m_cEncFile.WritePlain(m_cPlain.ToText()) && m_cEncFile.Encrypt();
}

} // namespace Varnhelt
