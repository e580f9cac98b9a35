#pragma once

#include "Update/LocalUpdateAgent.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

namespace Varnhelt {
class UpdateStorages;
struct LocalUpdateConfig;
} // namespace Varnhelt

/**
 * Applies a set of updates: establishes the environment, then hands every item to the agent of its kind. One object
 * serves one update: Initialize, DoActionConfig, UnInitialize.
 */
class CLocalUpdateManager
{
public:
    /**
     * @param _rStorages  what is changed: the machine, or a record; outlives this object, as the observer does
     * @param _pObserver  receives what is decided; may be null
     */
    explicit CLocalUpdateManager(Varnhelt::UpdateStorages& _rStorages, Varnhelt::UpdateObserver* _pObserver = nullptr)
        : m_rStorages(_rStorages), m_pObserver(_pObserver)
    {}
    CLocalUpdateManager(const CLocalUpdateManager&) = delete;
    CLocalUpdateManager& operator=(const CLocalUpdateManager&) = delete;
    ~CLocalUpdateManager() = default;

    /** @return g_ulRefused on a machine that is too old, g_ulUndetermined when the environment cannot be read */
    std::uint32_t Initialize();
    /** Carries out every item; what fails of them is only logged. Path macros are expanded in place. */
    std::uint32_t DoActionConfig(Varnhelt::LocalUpdateConfig& _rstConfig);
    std::uint32_t UnInitialize();

    const Varnhelt::UpdateEnvironment& Environments() const noexcept { return m_Environments; }

private:
    std::uint32_t CheckMinimumPlatform(bool& _rbMet);
    std::uint32_t SetVersionType();
    std::uint32_t SetProductType();
    std::uint32_t SetLanguageType();
    std::uint32_t CreateLocalUpdateAgents();
    std::uint32_t FreeLocalUpdateAgents();
    template <class TItems>
    std::uint32_t DoActionOn(const wchar_t* _pszKind, TItems& _rItems, bool _bCheck);

    Varnhelt::UpdateStorages& m_rStorages;
    Varnhelt::UpdateObserver* m_pObserver;
    std::map<std::uint32_t, std::unique_ptr<CLocalUpdateAgent>> m_mapAgent; // by target type
    Varnhelt::UpdateEnvironment m_Environments;
};
