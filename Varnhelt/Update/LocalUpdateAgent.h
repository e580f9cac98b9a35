#pragma once

#include "SrvFrwk_ResultCode.h"
#include "Update/UpdateObserver.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

/**
 * Compares versions number by number, as far as both have numbers ("6.0" equals "6.0.1234"). Runs of dots count as one;
 * numbers may be hexadecimal or octal by their prefix.
 * @return negative, 0 or positive: the wrapping difference of the first numbers that differ; nothing when a text has
 *         something else between its dots, or nothing at all
 */
std::optional<std::int32_t> CompareVersion(std::wstring_view _svLeft, std::wstring_view _svRight);

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
