#pragma once

#include "Update/LocalUpdateAgent.h"
#include "Update/UpdateStorage.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Varnhelt {

/** Whether the path of an ini file holds a macro. */
bool HasPathMacro(const std::wstring& _rtszPath);
/** The predefined key behind a word of a description; null when the word is none. */
HKEY RegistryRootOf(std::wstring_view _svWord);
/** A value's bytes as descriptions write them: two lower-case digits a byte. */
std::wstring HexadecimalOf(const std::vector<std::uint8_t>& _rvecBytes);

} // namespace Varnhelt

/** Carries out registry and ini-file items: the one place that decides what an entry does. */
class CLocalUpdateAgentKey final : public CLocalUpdateAgent
{
public:
    CLocalUpdateAgentKey(Varnhelt::UpdateStorage& _rStorage, Varnhelt::UpdateObserver* _pObserver)
        : m_rStorage(_rStorage), m_pObserver(_pObserver)
    {}

    std::uint32_t DoAction(Varnhelt::LocalUpdateKey* _pstKey) override;

private:
    struct Action;

    static std::optional<Varnhelt::UpdatePlace> CreateKey(Varnhelt::LocalUpdateKey& _rstKey);
    static void ReplacePath(std::wstring& _rtszPath);

    void TellItem(const Varnhelt::LocalUpdateKey& _rstKey, Varnhelt::UpdateReason _enReason) const;
    std::uint32_t DoEntry(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    std::uint32_t OnAction(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    std::uint32_t Create(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    std::uint32_t Append(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    std::uint32_t Write(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    std::uint32_t Remove(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);

    bool IsKeyExisted(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    bool IsEntryExisted(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry);
    bool CreateRegistryKey(Varnhelt::UpdatePlace _stPlace, const std::wstring& _rtszAllAccess);
    void RemoveEntry(const Varnhelt::UpdatePlace& _rstPlace, const std::wstring& _rtszName);
    void RemoveSection(Varnhelt::UpdatePlace _stPlace);
    std::vector<std::wstring> EnumSection(const Varnhelt::UpdatePlace& _rstPlace);

    template <class TBody>
    std::uint32_t Guarded(const wchar_t* _pszMethod, TBody&& _fnBody);
    template <class TBody>
    std::uint32_t Step(const wchar_t* _pszMethod, TBody&& _fnBody);

    Varnhelt::UpdateStorage& m_rStorage;
    Varnhelt::UpdateObserver* m_pObserver;
    Varnhelt::UpdateDecision m_stDecision; // about the present entry
};
