#pragma once

#include "Documents/LocalUpdate.h"
#include "Output/Table.h"
#include "Records/Json.h"
#include "Update/LocalUpdateAgent.h"
#include "Update/UpdateObserver.h"
#include "Update/UpdateRecording.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vrnt {

/** A local update, carried out on a record: what it would do on this machine, and why not. */
class UpdateRehearsal : private Varnhelt::UpdateObserver
{
public:
    /** Reads the description, which stays as it is, and goes through it. */
    explicit UpdateRehearsal(const std::wstring& _rtszPath);

    /** What the update would answer. */
    std::uint32_t Result() const noexcept { return m_ulResult; }
    /** What the machine would be like. */
    Varnhelt::RecordingStorage& Storage() noexcept { return m_cStorage; }

    /** Null where there was nothing to go through. */
    Json ToJson() const;
    std::string ToText() const;

private:
    struct Entry
    {
        const Varnhelt::LocalUpdateEntry* pEntry = nullptr;
        Varnhelt::UpdateDecision stDecision;
    };
    struct Item
    {
        const Varnhelt::LocalUpdateKey* pItem = nullptr;
        Varnhelt::UpdateReason enReason = Varnhelt::UpdateReason::None;
        std::vector<Entry> vecEntry;
    };

    void OnItem(const Varnhelt::LocalUpdateKey& _rstItem, Varnhelt::UpdateReason _enReason) override;
    void OnEntry(const Varnhelt::UpdatePlace& _rstPlace, const Varnhelt::LocalUpdateEntry& _rstEntry,
                 const Varnhelt::UpdateDecision& _rstDecision) override;
    std::string Why(const Varnhelt::UpdateConditions& _rstConditions, Varnhelt::UpdateReason _enReason,
                    std::uint32_t _ulError) const;
    std::string WhyNot(const Item& _rstItem) const;
    std::string WhyNot(const Entry& _rstEntry) const;

    std::uint32_t m_ulResult;
    bool m_bStay = false;
    Varnhelt::LocalUpdateConfig m_stConfig;
    Varnhelt::UpdateEnvironment m_stEnvironment;
    Varnhelt::RecordingStorage m_cStorage;
    std::vector<Item> m_vecItem;
};

} // namespace Vrnt
