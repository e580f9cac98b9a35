#include "Files/DocumentPath.h"

#include "Frwk_Utility.h"
#include "SrvFrwk_Records.h"
#include "ZkComn_String.h"

#include <utility>

namespace Varnhelt {

using namespace ZkCommon;
using namespace SrvFrwk;

namespace {

DocumentPath PathIn(std::wstring _tszDirectory, const std::wstring& _rtszFile)
{
    std::wstring tszPath = _tszDirectory + _rtszFile;
    return {std::move(_tszDirectory), std::move(tszPath)};
}

DocumentPath PathInInstalledFolder(const wchar_t* _pszFile)
{
    std::wstring tszFolder = Frwk::Utility::GetInstalledFolder();
    std::wstring tszFile = Frwk::Utility::PathIn(tszFolder, _pszFile);
    return {std::move(tszFolder), std::move(tszFile)};
}

std::optional<DocumentPath> PathInDirectory(const wchar_t* _pszFile, const XmlDirectoryConfig* _pXmlDirectoryConfig,
                                            const MethodLines& _rLines)
{
    if (_pXmlDirectoryConfig == nullptr) {
        _rLines.Error(L"pXmlDirectoryConfig was invalid.");
        return std::nullopt;
    }
    if (_pXmlDirectoryConfig->tszXmlDir.empty()) {
        _rLines.Error(L"pXmlDirectoryConfig->tszXmlDir was empty.");
        return std::nullopt;
    }
    return PathIn(String::WithBackslash(_pXmlDirectoryConfig->tszXmlDir), _pszFile);
}

std::optional<DocumentPath> PathInRequest(const XmlPathConfig* _pstXmlPathConfig, const MethodLines& _rLines)
{
    if (_pstXmlPathConfig == nullptr) {
        _rLines.Error(L"pstXmlPathConfig was invalid.");
        return std::nullopt;
    }
    if (_pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir.empty()) {
        _rLines.Error(L"pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir was empty.");
        return std::nullopt;
    }
    if (_pstXmlPathConfig->tszXmlFileName.empty()) {
        _rLines.Error(L"tszXmlFileName was empty.");
        return std::nullopt;
    }
    return PathIn(String::WithBackslash(_pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir),
                  _pstXmlPathConfig->tszXmlFileName);
}

} // namespace

std::optional<DocumentPath> PathOf(const Document& _rstDocument, const void* _pOptionData, const MethodLines& _rLines)
{
    switch (_rstDocument.enLocation) {
    case Location::Directory:
        return PathInDirectory(_rstDocument.pszFile, static_cast<const XmlDirectoryConfig*>(_pOptionData), _rLines);
    case Location::Path:
        return PathInRequest(static_cast<const XmlPathConfig*>(_pOptionData), _rLines);
    default:
        return PathInInstalledFolder(_rstDocument.pszFile);
    }
}

} // namespace Varnhelt
