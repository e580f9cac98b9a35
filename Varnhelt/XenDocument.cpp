#include "XenDocument.h"

#include "ZkComn_File.h"

#include <utility>

namespace Varnhelt {

using namespace ZkCommon;

XenDocument::XenDocument(const Document& _rstDocument, std::wstring _tszPath, Storage::XmlParser& _rParser)
    : m_rstDocument(_rstDocument),
      m_cEncFile(Storage::File::SystemTempFolder(), std::move(_tszPath), _rstDocument.szKey),
      m_rParser(_rParser)
{}

bool XenDocument::Decrypt()
{
    m_tszPlainPath = m_cEncFile.DecryptedPath();
    return !m_tszPlainPath.empty();
}

Storage::XmlElement XenDocument::Select(const std::wstring& _rtszLibraryFolder)
{
    if (!_rtszLibraryFolder.empty()) {
        m_rParser.SetProperty(L"PathOfDll", _rtszLibraryFolder);
    }
    m_rParser.Load(m_tszPlainPath);
    Storage::XmlElement cElement;
    m_rParser.Select(m_rstDocument.pszRoot, cElement);
    return cElement;
}

} // namespace Varnhelt
