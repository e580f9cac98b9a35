#include "Update/LocalUpdateAgent.h"

#include "Boundary.h"
#include "Documents/LocalUpdate.h"
#include "Documents/UpdateVersion.h"
#include "Documents/UpdateWords.h"
#include "MethodTrace.h"
#include "ZkComn_Platform.h"

#include <algorithm>
#include <iterator>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

using UpdateWords::g_svAll;

constexpr MethodLines g_cVersion(L"CLocalUpdateAgent::CheckVersionType()");

} // namespace

std::uint32_t CLocalUpdateAgent::Initialize(const UpdateEnvironment& _rstEnvironments, bool _bCheck)
{
    return AtBoundary({L"CLocalUpdateAgent::Initialize()"}, [&] {
        const MethodTrace cTrace(L"CLocalUpdateAgent::Initialize()");
        m_Environments = _rstEnvironments;
        m_bCheck = _bCheck;
        return cTrace.Leave(Result::g_ulSuccess);
    });
}

std::uint32_t CLocalUpdateAgent::UnInitialize()
{
    const MethodTrace cTrace(L"CLocalUpdateAgent::UnInitialize()");
    m_Environments = {};
    m_bCheck = false;
    return cTrace.Leave(Result::g_ulSuccess);
}

UpdateCheck CLocalUpdateAgent::CheckUpdate(const UpdateConditions& _rstConditions) const
{
    struct Step
    {
        UpdateCheck (CLocalUpdateAgent::*pfnCheck)(const UpdateConditions&) const;
        const wchar_t* pszName;
    };
    static constexpr Step aStep[] = {
        {&CLocalUpdateAgent::CheckVersionType, L"CheckVersionType()"},
        {&CLocalUpdateAgent::CheckProductType, L"CheckProductType()"},
        {&CLocalUpdateAgent::CheckLanguageType, L"CheckLanguageType()"},
        {&CLocalUpdateAgent::CheckPlatformType, L"CheckPlatformType()"},
    };
    if (!m_bCheck) {
        return {};
    }
    for (const Step& stStep : aStep) {
        const UpdateCheck stCheck = (this->*stStep.pfnCheck)(_rstConditions);
        if (Result::IsFailure(stCheck.ulResult)) {
            MethodLines(L"CLocalUpdateAgentKey::CheckUpdate()")
                .Error(L"%s failed. [0x%08x].", stStep.pszName, stCheck.ulResult);
        }
        if (stCheck.enReason != UpdateReason::None) {
            return stCheck;
        }
    }
    return {};
}

UpdateCheck CLocalUpdateAgent::CheckVersionType(const UpdateConditions& _rstConditions) const
{
    if (m_Environments.tszVersion.empty()) {
        g_cVersion.Error(L"m_Environments.tszVersion was empty.");
        return {Result::g_ulUndetermined, UpdateReason::NoVersion};
    }
    const auto Compare = [](const std::wstring& _rtszLeft, const std::wstring& _rtszRight) {
        const std::optional<std::int32_t> lDifference = CompareVersion(_rtszLeft, _rtszRight);
        if (!lDifference) {
            g_cVersion.Error(L"ZkCommon::String::StrToUl() failed.");
            g_cVersion.Error(L"CompareVersion() was failed.");
        }
        return lDifference;
    };
    const std::optional<std::int32_t> lBelow = Compare(_rstConditions.tszMinVersion, m_Environments.tszVersion);
    if (lBelow && *lBelow > 0) {
        return {Result::g_ulSuccess, UpdateReason::VersionTooLow};
    }
    const std::optional<std::int32_t> lAbove =
        lBelow ? Compare(m_Environments.tszVersion, _rstConditions.tszMaxVersion) : std::nullopt;
    if (!lAbove) {
        return {Result::g_ulUndetermined, UpdateReason::BadVersion};
    }
    return {Result::g_ulSuccess, *lAbove > 0 ? UpdateReason::VersionTooHigh : UpdateReason::None};
}

UpdateCheck CLocalUpdateAgent::CheckProductType(const UpdateConditions& _rstConditions) const
{
    constexpr MethodLines cTrace(L"CLocalUpdateAgent::CheckProductType()");
    const std::wstring& rtszHere = m_Environments.tszProduct;
    if (rtszHere.empty()) {
        cTrace.Error(L"m_Environments.tszProduct was empty.");
        return {Result::g_ulUndetermined, UpdateReason::NoProduct};
    }
    const std::wstring& rtszWord = _rstConditions.tszProduct;
    const auto* pPair = std::ranges::find(UpdateWords::g_aEditionPair, rtszWord, &UpdateWords::EditionPair::svWord);
    const bool bMatch = pPair != std::end(UpdateWords::g_aEditionPair)
                            ? rtszHere == pPair->svFirst || rtszHere == pPair->svSecond
                            : rtszWord == g_svAll || rtszWord == rtszHere;
    if (!bMatch) {
        cTrace.Notice(L"specified [product] value [%s] was invalid ", rtszWord);
    }
    return {Result::g_ulSuccess, bMatch ? UpdateReason::None : UpdateReason::OtherProduct};
}

UpdateCheck CLocalUpdateAgent::CheckLanguageType(const UpdateConditions& _rstConditions) const
{
    constexpr MethodLines cTrace(L"CLocalUpdateAgent::CheckLanguageType()");
    if (m_Environments.tszLanguage.empty()) {
        cTrace.Error(L"m_Environments.tszLanguage was empty.");
        return {Result::g_ulUndetermined, UpdateReason::NoLanguage};
    }
    const std::wstring& rtszWord = _rstConditions.tszLanguage;
    if (rtszWord == g_svAll || rtszWord == m_Environments.tszLanguage) {
        return {};
    }
    cTrace.Notice(L"specified [language] value [%s] was invalid ", rtszWord);
    return {Result::g_ulSuccess, UpdateReason::OtherLanguage};
}

UpdateCheck CLocalUpdateAgent::CheckPlatformType(const UpdateConditions& _rstConditions) const
{
    constexpr MethodLines cTrace(L"CLocalUpdateAgent::CheckPlatformType()");
    const std::wstring& rtszWord = _rstConditions.tszPlatform;
    if (rtszWord == g_svAll) {
        return {};
    }
    const Frwk::Word* pPlatform = Frwk::Utility::FindWord(UpdateWords::g_stPlatform, rtszWord);
    if (pPlatform == nullptr) {
        cTrace.Error(L"specified [platform] value [%s] was invalid ", rtszWord);
        return {Result::g_ulRefused, UpdateReason::UnknownPlatform};
    }
    if (!Platform::CheckOsType(pPlatform->ulValue)) {
        return {Result::g_ulSuccess, UpdateReason::OtherPlatform};
    }
    // It is in fact updated; support scripts know the line as it is.
    cTrace.Notice(L"specified [platform] value [%s] was not updated.", rtszWord);
    return {};
}
