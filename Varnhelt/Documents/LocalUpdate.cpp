#include "Documents/LocalUpdate.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Documents/LocalUpdateFile.h"
#include "Files/DocumentTable.h"
#include "MethodTrace.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Owner.h"

#include <utility>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace Varnhelt::Documents {

/** The names of a description as its document knows them, looked up once. */
struct LocalUpdateNames
{
    explicit LocalUpdateNames(const Storage::XmlElement& _rRoot)
        : cRegistry(_rRoot, g_stLocalUpdateRegistry), cIniFile(_rRoot, g_stLocalUpdateIniFile)
    {}

    Bound<std::remove_const_t<decltype(g_stLocalUpdateRegistry)>> cRegistry;
    Bound<std::remove_const_t<decltype(g_stLocalUpdateIniFile)>> cIniFile;
};

} // namespace Varnhelt::Documents

namespace {

using Documents::LocalUpdateNames;

constexpr FailureTexts g_stReadingTexts{.pszMethod = L"CFunctionXml::QueryValueAsLocalUpdate()",
                                        .pszAny = L"Got Exception."};
constexpr MethodLines g_cReadingLines(g_stReadingTexts.pszMethod);

/** Whether there is a description: success, or the result of the whole request. */
std::uint32_t FindDescription(const std::wstring& _rtszPath)
{
    std::uint32_t ulError = ERROR_BAD_ARGUMENTS;
    if (!_rtszPath.empty()) {
        WIN32_FIND_DATAW stFound{};
        if (const FindHandle hFind(::FindFirstFileW(_rtszPath.c_str(), &stFound)); hFind) {
            return Result::g_ulSuccess;
        }
        ulError = ::GetLastError();
        if (ulError == ERROR_FILE_NOT_FOUND) {
            g_cReadingLines.Error(L"File [%s] was not found.", _rtszPath);
            return Result::g_ulPartialSuccess;
        }
    }
    g_cReadingLines.Error(L"ZkCommon::Storage::File::IsExisted() failed. [0x%08x]", ulError);
    return Result::g_ulUndetermined;
}

std::uint32_t SetLocalUpdateRegistry(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                     LocalUpdateKey* _pstKey)
{
    const MethodTrace cTrace(L"CFunctionXml::SetLocalUpdateRegistry()");
    if (_pstKey == nullptr) {
        cTrace.Error(L"_pstKey was invalid ");
        return Result::g_ulMissingObject;
    }
    cTrace.Detail(L"clear _pstKey->Entries.");
    _pstKey->lstEntry.clear();
    _rstNames.cRegistry.ReadOne(_rElement, *_pstKey, Documents::ReadHook());
    return cTrace.LeaveAs(L"CFunctionXml::SetLocalUpdateKey()", Result::g_ulSuccess);
}

std::uint32_t SetLocalUpdateIniFile(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                    LocalUpdateKey* _pstIniFile)
{
    const MethodTrace cTrace(L"CFunctionXml::SetLocalUpdateIniFile()");
    if (_pstIniFile == nullptr) {
        cTrace.Error(L"_pstIniFile was invalid ");
        return Result::g_ulMissingObject;
    }
    cTrace.Detail(L"clear _pstIniFile->Entries.");
    _pstIniFile->lstEntry.clear();
    _rstNames.cIniFile.ReadOne(_rElement, *_pstIniFile, Documents::ReadHook());
    return cTrace.LeaveAs(L"CFunctionXml::SetLocalUpdateKey()", Result::g_ulSuccess);
}

void SetLocalUpdateDirectory()
{
    MethodTrace(L"CFunctionXml::SetLocalUpdateDirectory()").Leave(0);
}

/** A kind of item with entries. */
struct ItemKind
{
    const wchar_t* pszKind;
    const wchar_t* pszReader;
    std::uint32_t (*pfnRead)(const Storage::XmlElement&, const LocalUpdateNames&, LocalUpdateKey*);
    std::list<LocalUpdateKey> LocalUpdateConfig::*plstItem;
};
constexpr ItemKind g_aItemKind[] = {
    {g_szRegistryKind, L"SetLocalUpdateRegistry()", &SetLocalUpdateRegistry, &LocalUpdateConfig::lstRegistry},
    {g_szIniFileKind, L"SetLocalUpdateIniFile()", &SetLocalUpdateIniFile, &LocalUpdateConfig::lstIniFile},
};

std::uint32_t ReadLocalUpdateItem(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                  LocalUpdateConfig& _rstConfig)
{
    const std::wstring_view svName = _rElement.Name();
    for (const ItemKind& stKind : g_aItemKind) {
        if (IsOfKind(svName, stKind.pszKind)) {
            LocalUpdateKey stKey;
            stKey.tszKind = stKind.pszKind;
            const std::uint32_t ulResult = stKind.pfnRead(_rElement, _rstNames, &stKey);
            if (Result::IsFailure(ulResult)) {
                g_cReadingLines.Error(L"%s failed(). [0x%08x]", stKind.pszReader, ulResult);
            } else {
                (_rstConfig.*stKind.plstItem).push_back(std::move(stKey));
            }
            return ulResult;
        }
    }
    if (!IsOfKind(svName, g_szDirectoryKind)) {
        g_cReadingLines.Error(L"specified [%s] element was invalid ", std::wstring(svName));
        return Result::g_ulRefused;
    }
    SetLocalUpdateDirectory();
    _rstConfig.lstDirectory.push_back({g_szDirectoryKind});
    return Result::g_ulSuccess;
}

std::uint32_t ReadItems(Worker& _rWorker, LocalUpdateConfig& _rstConfig, bool& _rbStay)
{
    Storage::XmlElement& rElement = _rWorker.cElement;
    _rWorker.cParser.Select(DocumentOf(DocumentId::LocalUpdate).pszRoot, rElement);
    _rstConfig.tszVersion = rElement.Attribute(g_svUpdateVersion);
    _rstConfig.tszCheck = rElement.Attribute(g_svUpdateCheck);
    _rbStay = rElement.Attribute(g_svUpdateStay) == UpdateWords::g_svYes;

    const LocalUpdateNames stNames(rElement);
    std::uint32_t ulResult = Result::g_ulSuccess;
    for (auto cItem = rElement.FirstChild(); cItem && !Result::IsFailure(ulResult); cItem = cItem.NextSibling()) {
        ulResult = ReadLocalUpdateItem(cItem, stNames, _rstConfig);
    }
    return ulResult;
}

/** Reads the content of the file at a path, which stays open. */
std::uint32_t ReadLocalUpdate(Worker& _rWorker, const LocalUpdateFile& _rFile, const std::wstring& _rtszPath,
                              LocalUpdateConfig& _rstConfig, bool& _rbStay)
{
    return AtBoundary(g_stReadingTexts, [&] {
        try {
            const ByteArray stText = _rFile.Read();
            _rWorker.cParser.LoadText({reinterpret_cast<const char*>(stText.Data()), stText.Size()});
            const std::uint32_t ulResult = ReadItems(_rWorker, _rstConfig, _rbStay);
            _rWorker.cParser.Close();
            return ulResult;
        } catch (Storage::XmlException* _pError) {
            const Exception::Caught pCaught(_pError);
            _rWorker.cParser.Close();
            g_cReadingLines.Error(L"Got ZkCommon::Storage::XmlException(). [0x%08x]", _pError->ErrorCode());
            g_cReadingLines.Error(L"Xml Error [0x%08x] line [%d] file [%s]", _pError->XmlErrorCode(),
                                  _pError->XmlLine(), _rtszPath);
            return Result::g_ulFailed;
        }
    });
}

} // namespace

std::uint32_t Documents::QueryValueAsLocalUpdate(Worker& _rWorker, LocalUpdateConfig* _pConfig,
                                                 const std::wstring* _ptszXmlPath, bool* _pbStay)
{
    return AtBoundary(g_stReadingTexts, [&] {
        const MethodTrace cTrace(L"CFunctionXml::QueryValueAsLocalUpdate()");
        if (!cTrace.Has(_pConfig, L"pRegistryConfig")) {
            return Result::g_ulMissingObject;
        }
        // Known by this name.
        MethodLines(L"CFunctionXml::SetLocalUpdateRegistry()").Detail(L"clear pConfig->Items.");
        _pConfig->lstRegistry.clear();
        _pConfig->lstIniFile.clear();
        _pConfig->lstDirectory.clear();
        if (_ptszXmlPath == nullptr) {
            cTrace.Error(L"ptszXmlPath was NULL.");
            return Result::g_ulMissingObject;
        }
        cTrace.Detail(L"Read XmlFile [%s]", *_ptszXmlPath);
        if (const std::uint32_t ulFound = FindDescription(*_ptszXmlPath); ulFound != Result::g_ulSuccess) {
            return ulFound;
        }

        LocalUpdateFile cFile(*_ptszXmlPath);
        bool bStay = false;
        std::uint32_t ulResult = ReadLocalUpdate(_rWorker, cFile, *_ptszXmlPath, *_pConfig, bStay);
        if (!bStay) {
            const std::uint32_t ulError = _pbStay == nullptr ? cFile.Delete() : cFile.DeletionError();
            if (ulError != ERROR_SUCCESS) {
                // A description that stays unasked would be applied again and again: rather not at all.
                cTrace.Error(L"ZkCommon::Storage::File::Delete() failed. [0x%08x]", ulError);
                ulResult = Result::g_ulPartialSuccess;
            }
        }
        if (_pbStay != nullptr) {
            *_pbStay = bStay;
        }
        return cTrace.Leave(ulResult);
    });
}
