#pragma once

#include "SrvFrwk_ResultCode.h"
#include "Update/UpdateObserver.h"

#include <cstdint>
#include <string>

namespace Varnhelt {

struct UpdateConditions;

/** The running product, as conditions see it. Empty: could not be established. */
struct UpdateEnvironment
{
    std::wstring tszVersion;
    std::wstring tszProduct;  // edition word
    std::wstring tszLanguage; // language code
};

/** What came of judging conditions. */
struct UpdateCheck
{
    std::uint32_t ulResult = SrvFrwk::Result::g_ulSuccess; // a failure: they cannot be judged
    UpdateReason enReason = UpdateReason::None;            // anything else: do not update
};

} // namespace Varnhelt

/** Carries out one kind of item of a local update. This base knows the environment and judges conditions by it. */
class CLocalUpdateAgent
{
public:
    CLocalUpdateAgent() = default;
    CLocalUpdateAgent(const CLocalUpdateAgent&) = delete;
    CLocalUpdateAgent& operator=(const CLocalUpdateAgent&) = delete;
    virtual ~CLocalUpdateAgent() = default;

    /** @param _bCheck  whether conditions apply; otherwise everything is updated */
    virtual std::uint32_t Initialize(const Varnhelt::UpdateEnvironment& _rstEnvironments, bool _bCheck);
    /** Carries out an item; its path macros are expanded in place. @return the result of its last entry */
    virtual std::uint32_t DoAction(Varnhelt::LocalUpdateKey* _pstKey) = 0;
    virtual std::uint32_t UnInitialize();

protected:
    /** Judges the conditions, when they apply: the first that says no, or cannot be judged, decides. */
    Varnhelt::UpdateCheck CheckUpdate(const Varnhelt::UpdateConditions& _rstConditions) const;

private:
    Varnhelt::UpdateCheck CheckVersionType(const Varnhelt::UpdateConditions& _rstConditions) const;
    Varnhelt::UpdateCheck CheckProductType(const Varnhelt::UpdateConditions& _rstConditions) const;
    Varnhelt::UpdateCheck CheckLanguageType(const Varnhelt::UpdateConditions& _rstConditions) const;
    Varnhelt::UpdateCheck CheckPlatformType(const Varnhelt::UpdateConditions& _rstConditions) const;

    Varnhelt::UpdateEnvironment m_Environments;
    bool m_bCheck = false;
};
