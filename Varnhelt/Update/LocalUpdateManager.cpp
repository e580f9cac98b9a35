#include "Update/LocalUpdateManager.h"

#include "Boundary.h"
#include "Documents/LocalUpdate.h"
#include "Documents/UpdateWords.h"
#include "Frwk_Settings.h"
#include "MethodTrace.h"
#include "Update/LocalUpdateAgentKey.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Platform.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <iterator>
#include <new>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

constexpr MethodLines g_cCreateAgents(L"CLocalUpdateManager::CreateLocalUpdateAgents()");

constexpr const wchar_t* g_aTarget[] = {g_szRegistryKind, g_szIniFileKind, g_szDirectoryKind};
constexpr std::size_t g_uTargetLength = 16; // more characters are not looked at

/** The number of a kind of item, from 1; 0 for another word. */
std::uint32_t TargetTypeOf(std::wstring_view _svWord)
{
    std::uint32_t ulType = 0;
    for (const wchar_t* pszTarget : g_aTarget) {
        ++ulType;
        if (String::EqualsNoCase(_svWord, pszTarget, g_uTargetLength)) {
            return ulType;
        }
    }
    return 0;
}

std::wstring_view LanguageOf(std::uint32_t _ulValue)
{
    const auto* pWord = std::ranges::find(UpdateWords::g_aLanguage, _ulValue, &Frwk::Word::ulValue);
    return (pWord != std::end(UpdateWords::g_aLanguage) ? *pWord : UpdateWords::g_aLanguage[0]).svText;
}

/** The edition, by the second letter of the product's number. */
std::wstring_view EditionOf(const std::wstring& _rtszPid)
{
    const wchar_t cLetter = _rtszPid.size() < 2 ? L'\0' : _rtszPid[1];
    const auto* pWord = std::ranges::find(UpdateWords::g_aEdition, cLetter, &Frwk::Word::ulValue);
    return pWord != std::end(UpdateWords::g_aEdition) ? pWord->svText : std::wstring_view();
}

/** Fills a field of the environment from the product's key; a key or value that is not there leaves it empty. */
template <class TRead>
std::uint32_t ReadEnvironment(const wchar_t* _pszMethod, std::wstring& _rtszField, TRead&& _fnRead)
{
    return AtBoundary({.pszMethod = _pszMethod, .ulAnyResult = Result::g_ulUndetermined}, [&] {
        const MethodTrace cTrace(_pszMethod);
        _rtszField.clear();
        try {
            const Storage::Registry cKey(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey,
                                         Platform::IsNative64Bit() ? Storage::View64 : Storage::ViewDefault);
            _rtszField = _fnRead(cKey);
        } catch (Exception::Base* _pError) {
            const Exception::Caught pCaught(_pError);
            cTrace.Error(L"Got ZkCommon::Exception::Base(). [0x%08x]", _pError->ErrorCode());
            const bool bAbsent =
                _pError->ErrorCode() == ERROR_FILE_NOT_FOUND || _pError->ErrorCode() == ERROR_PATH_NOT_FOUND;
            return bAbsent ? Result::g_ulPartialSuccess : Result::g_ulUndetermined;
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

} // namespace

std::uint32_t CLocalUpdateManager::Initialize()
{
    return AtBoundary({L"CLocalUpdateManager::Initialize()"}, [&] {
        struct Step
        {
            std::uint32_t (CLocalUpdateManager::*pfnStep)();
            const wchar_t* pszName;
        };
        static constexpr Step aStep[] = {
            {&CLocalUpdateManager::SetVersionType, L"SetVersionType()"},
            {&CLocalUpdateManager::SetProductType, L"SetProductType()"},
            {&CLocalUpdateManager::SetLanguageType, L"SetLanguageType()"},
            {&CLocalUpdateManager::CreateLocalUpdateAgents, L"CreateLocalUpdateAgents()"},
        };
        const MethodTrace cTrace(L"CLocalUpdateManager::Initialize()");
        bool bMet = false;
        if (const std::uint32_t ulResult = CheckMinimumPlatform(bMet); Result::IsFailure(ulResult)) {
            cTrace.Error(L"CheckMinimumPlatform() failed. [0x%08x]", ulResult);
            return ulResult;
        }
        if (!bMet) {
            MethodLines(L"CLocalUpdateManager::SetPlatformType()")
                .Notice(L"This platform was not minimum required platform.");
            return Result::g_ulRefused;
        }
        for (const Step& stStep : aStep) {
            if (const std::uint32_t ulResult = (this->*stStep.pfnStep)(); Result::IsFailure(ulResult)) {
                cTrace.Error(L"%s failed. [0x%08x]", stStep.pszName, ulResult);
                return ulResult;
            }
        }
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

std::uint32_t CLocalUpdateManager::CheckMinimumPlatform(bool& _rbMet)
{
    const MethodTrace cTrace(L"CLocalUpdateManager::CheckMinimumPlatform()");
    _rbMet = Platform::CheckOsType(Platform::OsXpOrLater);
    if (const std::uint32_t ulError = Platform::ErrorCode(); ulError != ERROR_SUCCESS) {
        cTrace.Error(L"ZkCommon::Platform::CheckOsType() failed. [0x%08x]", ulError);
        return Result::g_ulUndetermined;
    }
    return cTrace.Leave(Result::g_ulSuccess);
}

std::uint32_t CLocalUpdateManager::SetVersionType()
{
    return ReadEnvironment(L"CLocalUpdateManager::SetVersionType()", m_Environments.tszVersion,
                           [](const Storage::Registry& _rKey) { return _rKey.ReadString(L"Version"); });
}

std::uint32_t CLocalUpdateManager::SetProductType()
{
    return ReadEnvironment(
        L"CLocalUpdateManager::SetProductType()", m_Environments.tszProduct, [](const Storage::Registry& _rKey) {
            const std::wstring tszTemp = _rKey.ReadString(L"PID");
            if (tszTemp.empty()) {
                MethodLines(L"CLocalUpdateManager::SetProductType()").Notice(L"tszTemp.length() was smaller than 1.");
                return UpdateWords::g_svUnknownEdition;
            }
            return EditionOf(tszTemp);
        });
}

std::uint32_t CLocalUpdateManager::SetLanguageType()
{
    return ReadEnvironment(L"CLocalUpdateManager::SetLanguageType()", m_Environments.tszLanguage,
                           [](const Storage::Registry& _rKey) { return LanguageOf(_rKey.ReadNumber(L"Language")); });
}

std::uint32_t CLocalUpdateManager::CreateLocalUpdateAgents()
{
    for (const wchar_t* pszKind : {g_szRegistryKind, g_szIniFileKind}) {
        std::unique_ptr<CLocalUpdateAgent> pAgent(new (std::nothrow) CLocalUpdateAgentKey(m_rStorages, m_pObserver));
        if (pAgent == nullptr) {
            g_cCreateAgents.Error(L"pAgent [%s] was invalid.", pszKind);
            continue;
        }
        m_mapAgent[TargetTypeOf(pszKind)] = std::move(pAgent);
    }
    return Result::g_ulSuccess;
}

std::uint32_t CLocalUpdateManager::FreeLocalUpdateAgents()
{
    return AtBoundary({L"CLocalUpdateManager::FreeLocalUpdateAgents()"}, [&] {
        m_mapAgent.clear();
        return Result::g_ulSuccess;
    });
}

template <class TItems>
std::uint32_t CLocalUpdateManager::DoActionOn(const wchar_t* _pszKind, TItems& _rItems, bool _bCheck)
{
    const auto itAgent = m_mapAgent.find(TargetTypeOf(_pszKind));
    if (itAgent == m_mapAgent.end()) {
        MethodLines(L"CLocalUpdateManager::DoActionConfig()").Error(L"pAgent was invalid. [%s]", _pszKind);
        return Result::g_ulMissingObject;
    }
    CLocalUpdateAgent& rAgent = *itAgent->second;
    if (const std::uint32_t ulResult = rAgent.Initialize(m_Environments, _bCheck); Result::IsFailure(ulResult)) {
        g_cCreateAgents.Error(L"pAgent->Initialize() failed. [0x%08x]", ulResult);
        return ulResult;
    }
    for (LocalUpdateKey& stItem : _rItems) {
        if (const std::uint32_t ulResult = rAgent.DoAction(&stItem); Result::IsFailure(ulResult)) {
            MethodLines(L"CLocalUpdateManager::DoActionKeyConfig()")
                .Error(L"pAgent->DoAction failed(). tszTargetType [%s] [0x%08x]", _pszKind, ulResult);
        }
    }
    return rAgent.UnInitialize();
}

std::uint32_t CLocalUpdateManager::DoActionConfig(LocalUpdateConfig& _rstConfig)
{
    return AtBoundary({L"CLocalUpdateManager::DoActionConfig()"}, [&] {
        const MethodTrace cTrace(L"CLocalUpdateManager::DoActionConfig()");
        const bool bCheck = _rstConfig.tszCheck == UpdateWords::g_svYes;
        std::uint32_t ulResult = DoActionOn(g_szRegistryKind, _rstConfig.lstRegistry, bCheck);
        if (!Result::IsFailure(ulResult)) {
            ulResult = DoActionOn(g_szIniFileKind, _rstConfig.lstIniFile, bCheck);
        }
        return Result::IsFailure(ulResult) ? ulResult : cTrace.Leave(ulResult);
    });
}

std::uint32_t CLocalUpdateManager::UnInitialize()
{
    const MethodTrace cTrace(L"CLocalUpdateManager::UnInitialize()");
    if (const std::uint32_t ulResult = FreeLocalUpdateAgents(); Result::IsFailure(ulResult)) {
        cTrace.Error(L"FreeLocalUpdateAgents() failed. [0x%08x]", ulResult);
    }
    return cTrace.Leave(Result::g_ulSuccess);
}
