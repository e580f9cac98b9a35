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

/** A local update, carried out on a record: what it would do on this machine, and why not; afterwards, what it did. */
class UpdateRehearsal : private Varnhelt::UpdateObserver
{
public:
    /** Reads the description, which stays as it is, and goes through it. */
    explicit UpdateRehearsal(const std::wstring& _rtszPath);

    /** What the update would answer. */
    std::uint32_t Result() const noexcept { return m_ulResult; }
    /** The system's error when the rehearsal itself failed: then it does not say what the update would do. */
    std::uint32_t Failure() const noexcept { return m_cStorage.Failure(); }
    /** What the machine would be like. */
    Varnhelt::RecordingStorage& Storage() noexcept { return m_cStorage; }

    /** After the update was carried out: looks at the machine whether each entry was applied. */
    void CompareWithMachine();
    /** Whether all that is meant for this machine is done, or would be. */
    bool IsAllDone() const;

    /** Null where there was nothing to go through. */
    Json ToJson() const;
    /** What would be done, item by item. */
    std::string ToText() const;
    /** The same for other programs: a row for each item and, behind the item's kind, root and path, for each entry. */
    Table ToTable() const;
    /** After CompareWithMachine: how many entries were applied, and what was not, with its reason. */
    std::string Summary() const;

private:
    struct Entry
    {
        const Varnhelt::LocalUpdateEntry* pEntry = nullptr;
        Varnhelt::UpdatePlace stPlace; // of the item
        Varnhelt::UpdateDecision stDecision;
        bool bLeftUndone = false; // it is skipped, and the key that it is to create is not there
        bool bApplied = false;
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

    bool IsThere(const Entry& _rstEntry);
    bool IsRefused(const Entry& _rstEntry) const;
    Json ItemToJson(const Item& _rstItem) const;

    std::uint32_t m_ulResult;
    bool m_bStay = false;
    bool m_bCompared = false;
    Varnhelt::LocalUpdateConfig m_stConfig;
    Varnhelt::UpdateEnvironment m_stEnvironment;
    Varnhelt::RecordingStorage m_cStorage;
    std::vector<Item> m_vecItem;
};

} // namespace Vrnt
