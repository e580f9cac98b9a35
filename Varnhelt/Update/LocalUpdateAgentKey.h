#pragma once

#include "Update/LocalUpdateAgent.h"
#include "Update/UpdateStorage.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Varnhelt {

struct UpdateValueType;

/** The predefined key that a word of a description names; null for a word that names none. */
HKEY RegistryRootOf(std::wstring_view _svWord);

} // namespace Varnhelt

/** Carries out registry and ini-file items: the one place that decides what an entry does. */
class CLocalUpdateAgentKey final : public CLocalUpdateAgent
{
public:
    /** @param _rStorages  what is changed; outlives this object, as the observer does, which may be null */
    CLocalUpdateAgentKey(Varnhelt::UpdateStorages& _rStorages, Varnhelt::UpdateObserver* _pObserver)
        : m_rStorages(_rStorages), m_pObserver(_pObserver)
    {}

    std::uint32_t DoAction(Varnhelt::LocalUpdateKey* _pstKey) override;

    /** The key or section that an entry of an item makes, where it makes one. */
    static Varnhelt::UpdatePlace NewPlaceOf(const Varnhelt::UpdatePlace& _rstPlace,
                                            const Varnhelt::LocalUpdateEntry& _rstEntry);

private:
    struct Action;

    /** An entry while it is carried out. */
    struct Attempt
    {
        Varnhelt::UpdateStorage& rStorage; // of the place's kind
        const Varnhelt::UpdatePlace& rstPlace;
        const Varnhelt::LocalUpdateEntry& rstEntry;
        bool bInPart = false; // something was changed, and the entry is not done yet
    };

    static std::optional<Varnhelt::UpdatePlace> CreateKey(Varnhelt::LocalUpdateKey& _rstKey);
    static void ReplacePath(std::wstring& _rtszPath);

    void ReportItem(const Varnhelt::LocalUpdateKey& _rstKey, Varnhelt::UpdateReason _enReason) const;
    Varnhelt::UpdateDecision DoEntry(const Varnhelt::UpdatePlace& _rstPlace,
                                     const Varnhelt::LocalUpdateEntry& _rstEntry) const;

    // The steps of an entry. A failure is an exception; what needs no more words is done.
    static Varnhelt::UpdateDecision OnAction(Attempt& _rAttempt);
    static Varnhelt::UpdateDecision Create(Attempt& _rAttempt);
    static Varnhelt::UpdateDecision Append(Attempt& _rAttempt);
    static Varnhelt::UpdateDecision Write(Attempt& _rAttempt);
    static Varnhelt::UpdateDecision Remove(Attempt& _rAttempt);

    static bool KeyExists(const Attempt& _rAttempt);
    static bool EntryExists(const Attempt& _rAttempt);
    static bool CreateRegistryKey(Attempt& _rAttempt);
    static void RemoveEntry(const Attempt& _rAttempt);
    static void RemoveSection(Attempt& _rAttempt);
    static std::vector<std::wstring> EnumSection(const Attempt& _rAttempt, const Varnhelt::UpdatePlace& _rstPlace);

    Varnhelt::UpdateStorages& m_rStorages;
    Varnhelt::UpdateObserver* m_pObserver;
};
