#include "Documents/LocalUpdate.h"

#include "Boundary.h"
#include "Descriptions/DescriptionReader.h"
#include "Files/DocumentFile.h"
#include "SrvFrwk_ResultCode.h"
#include "Update/LocalUpdateManager.h"
#include "Update/UpdateStorage.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_File.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

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

/** Entries meant for another consumer of the description are passed over. */
struct EntriesFor : Documents::ReadHook
{
    explicit EntriesFor(std::wstring_view _svKind) : svKind(_svKind) {}

    using ReadHook::OnRecord;
    bool OnRecord(const Storage::XmlElement&, const LocalUpdateEntry& _rstEntry) const
    {
        return _rstEntry.tszTarget == svKind;
    }

    std::wstring_view svKind;
};

void TraceXmlError(const wchar_t* _pszMethod, const Storage::XmlException& _rError) noexcept
{
    Trace(TraceError, L"*** %s - Got ZkCommon::Storage::XmlException(). [0x%08x]", _pszMethod, _rError.ErrorCode());
    Trace(TraceError, L"*** %s - Xml Error [0x%08x] line [%d] file [%s]", _pszMethod, _rError.XmlErrorCode(),
          _rError.XmlLine(), XmlFileOf(_rError));
}

constexpr FailureTexts g_stReadingTexts{L"CFunctionXml::QueryValueAsLocalUpdate()", &TraceXmlError, L"Got Exception."};

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
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsLocalUpdate() - File [%s] was not found.", _rtszPath);
            return Result::g_ulPartialSuccess;
        }
    }
    Trace(TraceError,
          L"*** CFunctionXml::QueryValueAsLocalUpdate() - ZkCommon::Storage::File::IsExisted() failed. [0x%08x]",
          ulError);
    return Result::g_ulUndetermined;
}

/** A description while it is read: nobody else may write it then, so that nothing half written is consumed. */
class HeldDescription
{
public:
    explicit HeldDescription(const std::wstring& _rtszPath)
        : m_rtszPath(_rtszPath),
          m_hFile(::CreateFileW(_rtszPath.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr)),
          m_ulError(m_hFile ? ERROR_SUCCESS : ::GetLastError())
    {}

    /** The system's error. One that somebody else has open, for writing say, stays. */
    std::uint32_t Delete() const
    {
        return m_ulError == ERROR_SHARING_VIOLATION ? m_ulError : Storage::File::Delete(m_rtszPath);
    }

    /** The error that Delete would have, as far as that can be told. */
    std::uint32_t DeletionError() const
    {
        const DWORD ulAttributes = ::GetFileAttributesW(m_rtszPath.c_str());
        const bool bRefused = (ulAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
        return m_ulError == ERROR_SUCCESS && bRefused ? ERROR_ACCESS_DENIED : m_ulError;
    }

private:
    const std::wstring& m_rtszPath;
    FileHandle m_hFile;
    std::uint32_t m_ulError;
};

std::uint32_t SetLocalUpdateRegistry(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                     LocalUpdateKey* _pstKey)
{
    const MethodTrace cTrace(L"CFunctionXml::SetLocalUpdateRegistry()");
    if (_pstKey == nullptr) {
        Trace(TraceError, L"*** CFunctionXml::SetLocalUpdateRegistry() - _pstKey was invalid ");
        return Result::g_ulMissingObject;
    }
    Trace(TraceDetail, L"*** CFunctionXml::SetLocalUpdateRegistry() - clear _pstKey->Entries.");
    _pstKey->lstEntry.clear();
    _rstNames.cRegistry.ReadOne(_rElement, *_pstKey, EntriesFor(_pstKey->tszKind));
    return cTrace.LeaveAs(L"CFunctionXml::SetLocalUpdateKey()", Result::g_ulSuccess);
}

std::uint32_t SetLocalUpdateIniFile(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                    LocalUpdateKey* _pstIniFile)
{
    const MethodTrace cTrace(L"CFunctionXml::SetLocalUpdateIniFile()");
    if (_pstIniFile == nullptr) {
        Trace(TraceError, L"*** CFunctionXml::SetLocalUpdateIniFile() - _pstIniFile was invalid ");
        return Result::g_ulMissingObject;
    }
    Trace(TraceDetail, L"*** CFunctionXml::SetLocalUpdateIniFile() - clear _pstIniFile->Entries.");
    _pstIniFile->lstEntry.clear();
    _rstNames.cIniFile.ReadOne(_rElement, *_pstIniFile, EntriesFor(_pstIniFile->tszKind));
    return cTrace.LeaveAs(L"CFunctionXml::SetLocalUpdateKey()", Result::g_ulSuccess);
}

void SetLocalUpdateDirectory()
{
    MethodTrace(L"CFunctionXml::SetLocalUpdateDirectory()").Leave(0);
}

std::uint32_t ReadLocalUpdateItem(const Storage::XmlElement& _rElement, const LocalUpdateNames& _rstNames,
                                  LocalUpdateConfig& _rstConfig)
{
    const std::wstring_view svName = _rElement.Name();
    // A name of fewer letters is an abbreviation.
    const auto IsOfKind = [&](const wchar_t* _pszKind) {
        return String::EqualsNoCase(svName, _pszKind, svName.size());
    };
    LocalUpdateKey stKey;
    if (IsOfKind(g_szRegistryKind)) {
        stKey.tszKind = g_szRegistryKind;
        if (const std::uint32_t ulResult = SetLocalUpdateRegistry(_rElement, _rstNames, &stKey);
            Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::QueryValueAsLocalUpdate() - SetLocalUpdateRegistry() failed(). [0x%08x]",
                  ulResult);
            return ulResult;
        }
        _rstConfig.lstRegistry.push_back(std::move(stKey));
    } else if (IsOfKind(g_szIniFileKind)) {
        stKey.tszKind = g_szIniFileKind;
        if (const std::uint32_t ulResult = SetLocalUpdateIniFile(_rElement, _rstNames, &stKey);
            Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::QueryValueAsLocalUpdate() - SetLocalUpdateIniFile() failed(). [0x%08x]",
                  ulResult);
            return ulResult;
        }
        _rstConfig.lstIniFile.push_back(std::move(stKey));
    } else if (IsOfKind(g_szDirectoryKind)) {
        SetLocalUpdateDirectory();
        _rstConfig.lstDirectory.push_back({g_szDirectoryKind});
    } else {
        Trace(TraceError, L"*** CFunctionXml::QueryValueAsLocalUpdate() - specified [%s] element was invalid ",
              std::wstring(svName));
        return Result::g_ulRefused;
    }
    return Result::g_ulSuccess;
}

std::uint32_t ReadLocalUpdate(Worker& _rWorker, const std::wstring& _rtszPath, LocalUpdateConfig& _rstConfig,
                              bool& _rbStay)
{
    return AtBoundary(g_stReadingTexts, [&] {
        PlainDocument cDocument(_rWorker.cParser, Access::Read);
        _rWorker.cElement = cDocument.Select(_rtszPath, {}, DocumentOf(DocumentId::LocalUpdate).pszRoot);
        _rstConfig.tszVersion = _rWorker.cElement.Attribute(g_svUpdateVersion);
        _rstConfig.tszCheck = _rWorker.cElement.Attribute(g_svUpdateCheck);
        _rbStay = _rWorker.cElement.Attribute(g_svUpdateStay) == UpdateWords::g_svYes;

        const LocalUpdateNames stNames(_rWorker.cElement);
        std::uint32_t ulResult = Result::g_ulSuccess;
        for (auto cItem = _rWorker.cElement.FirstChild(); cItem && !Result::IsFailure(ulResult);
             cItem = cItem.NextSibling()) {
            ulResult = ReadLocalUpdateItem(cItem, stNames, _rstConfig);
        }
        return ulResult;
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
        Trace(TraceDetail, L"*** CFunctionXml::SetLocalUpdateRegistry() - clear pConfig->Items."); // known by this name
        _pConfig->lstRegistry.clear();
        _pConfig->lstIniFile.clear();
        _pConfig->lstDirectory.clear();
        if (_ptszXmlPath == nullptr) {
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsLocalUpdate() - ptszXmlPath was NULL.");
            return Result::g_ulMissingObject;
        }
        Trace(TraceDetail, L"*** CFunctionXml::QueryValueAsLocalUpdate() - Read XmlFile [%s]", *_ptszXmlPath);
        if (const std::uint32_t ulFound = FindDescription(*_ptszXmlPath); ulFound != Result::g_ulSuccess) {
            return ulFound;
        }

        const HeldDescription cHeld(*_ptszXmlPath);
        bool bStay = false;
        std::uint32_t ulResult = ReadLocalUpdate(_rWorker, *_ptszXmlPath, *_pConfig, bStay);
        if (!bStay) {
            const std::uint32_t ulError = _pbStay == nullptr ? cHeld.Delete() : cHeld.DeletionError();
            if (ulError != ERROR_SUCCESS) {
                // A description that stays unasked would be applied again and again: rather not at all.
                Trace(TraceError,
                      L"*** CFunctionXml::QueryValueAsLocalUpdate() - ZkCommon::Storage::File::Delete() failed. "
                      L"[0x%08x]",
                      ulError);
                ulResult = Result::g_ulPartialSuccess;
            }
        }
        if (_pbStay != nullptr) {
            *_pbStay = bStay;
        }
        return cTrace.Leave(ulResult);
    });
}

std::uint32_t Documents::DoActionAsLocalUpdate(Worker& _rWorker, const std::wstring* _ptszXmlPath)
{
    return AtBoundary({L"CFunctionXml::DoActionAsLocalUpdate()"}, [&] {
        const MethodTrace cTrace(L"CFunctionXml::DoActionAsLocalUpdate()");
        if (_ptszXmlPath == nullptr) {
            Trace(TraceError, L"*** CFunctionXml::QueryValueAsLocalUpdate() - ptszXmlPath was invalid.");
            return Result::g_ulMissingObject;
        }
        LocalUpdateConfig stConfig;
        std::uint32_t ulResult = QueryValueAsLocalUpdate(_rWorker, &stConfig, _ptszXmlPath);
        if (Result::IsFailure(ulResult)) {
            Trace(TraceError, L"*** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() failed. [0x%08x]",
                  ulResult);
            return ulResult;
        }
        if (ulResult != Result::g_ulSuccess) {
            Trace(TraceNotice,
                  L"*** CFunctionXml::DoActionAsLocalUpdate() - QueryValueAsLocalUpdate() partially failed. [%s] "
                  L"[0x%08x]",
                  *_ptszXmlPath, ulResult);
            return ulResult;
        }

        SystemStorage cStorage;
        CLocalUpdateManager cLocalUpdateManager(cStorage);
        ulResult = cLocalUpdateManager.Initialize();
        if (Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::DoActionAsLocalUpdate() - cLocalUpdateManager.Initialize() failed(). [0x%08x]",
                  ulResult);
            return ulResult;
        }
        ulResult = cLocalUpdateManager.DoActionConfig(stConfig);
        if (Result::IsFailure(ulResult)) {
            Trace(
                TraceError,
                L"*** CFunctionXml::DoActionAsLocalUpdate() - cLocalUpdateManager.DoActionConfig() failed(). [0x%08x]",
                ulResult);
            cLocalUpdateManager.UnInitialize();
            return ulResult;
        }
        ulResult = cLocalUpdateManager.UnInitialize();
        if (Result::IsFailure(ulResult)) {
            Trace(TraceError,
                  L"*** CFunctionXml::DoActionAsLocalUpdate() - cLocalUpdateManager.UnInitialize() failed(). [0x%08x]",
                  ulResult);
            return ulResult;
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}
