#include "Files/DocumentPath.h"

#include "Frwk_Utility.h"
#include "SrvFrwk_Records.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_String.h"

#include <utility>

namespace Varnhelt {

using namespace ZkCommon;
using namespace SrvFrwk;

DocumentPath PathInInstalledFolder(const Document& _rstDocument)
{
    std::wstring tszFolder = Frwk::Utility::GetInstalledFolder();
    std::wstring tszFile = Frwk::Utility::PathIn(tszFolder, _rstDocument.pszFile);
    return {std::move(tszFolder), std::move(tszFile)};
}

std::optional<DocumentPath> PathInDirectory(const wchar_t* _pszMethod, const void* _pOptionData,
                                            const wchar_t* _pszFile)
{
    const auto* pXmlDirectoryConfig = static_cast<const XmlDirectoryConfig*>(_pOptionData);
    if (pXmlDirectoryConfig == nullptr) {
        Trace(TraceError, L"*** %s - pXmlDirectoryConfig was invalid.", _pszMethod);
        return std::nullopt;
    }
    if (pXmlDirectoryConfig->tszXmlDir.empty()) {
        Trace(TraceError, L"*** %s - pXmlDirectoryConfig->tszXmlDir was empty.", _pszMethod);
        return std::nullopt;
    }
    std::wstring tszDirectory = String::WithBackslash(pXmlDirectoryConfig->tszXmlDir);
    std::wstring tszFile = tszDirectory + _pszFile;
    return DocumentPath{std::move(tszDirectory), std::move(tszFile)};
}

std::optional<DocumentPath> PathInRequest(const wchar_t* _pszMethod, const void* _pOptionData)
{
    const auto* pstXmlPathConfig = static_cast<const XmlPathConfig*>(_pOptionData);
    if (pstXmlPathConfig == nullptr) {
        Trace(TraceError, L"*** %s - pstXmlPathConfig was invalid.", _pszMethod);
        return std::nullopt;
    }
    if (pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir.empty()) {
        Trace(TraceError, L"*** %s - pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir was empty.", _pszMethod);
        return std::nullopt;
    }
    if (pstXmlPathConfig->tszXmlFileName.empty()) {
        Trace(TraceError, L"*** %s - tszXmlFileName was empty.", _pszMethod);
        return std::nullopt;
    }
    std::wstring tszDirectory = String::WithBackslash(pstXmlPathConfig->stXmlDirectoryConfig.tszXmlDir);
    std::wstring tszFile = tszDirectory + pstXmlPathConfig->tszXmlFileName;
    return DocumentPath{std::move(tszDirectory), std::move(tszFile)};
}

void TraceParserDirectory(const std::wstring& _rtszDirectory) noexcept
{
    Trace(TraceNotice, L"Xml parser directory: %s", _rtszDirectory);
}

} // namespace Varnhelt
