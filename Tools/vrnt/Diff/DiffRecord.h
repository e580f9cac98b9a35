#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/** What two documents, or two reports, are to their readers, and where that differs. Text is UTF-8. */
namespace Vrnt {

/** A field by its JSON key, and its value in words. */
using DiffField = std::pair<std::string, std::string>;

/** A record as readers see it. */
struct DiffRecord
{
    std::string sKind;     // only records of one kind are compared
    std::string sIdentity; // which of them it is; empty: all of its fields say so
    std::string sTitle{};  // what it is called among those around it
    std::vector<DiffField> vecField{};
    std::vector<DiffRecord> vecRecord{}; // in it

    void Add(std::string _sKey, std::string _sValue) { vecField.emplace_back(std::move(_sKey), std::move(_sValue)); }
};

enum class Change : std::uint8_t
{
    Added,
    Removed,
    Changed,
};

/** "added", "removed" or "changed". */
const char* ChangeText(Change _enChange);

struct Difference
{
    Change enChange = Change::Changed;
    std::string sWhere; // the titles of the records around, and of the record itself
    DiffField prOld{};  // of a field that changed
    std::string sNew{};
    std::vector<DiffField> vecField{}; // of a record that was added or removed
};

/**
 * What changed from one record to another: first its fields, then the records in it. Records without identity are the same
 * when all their fields are; their order is no change.
 */
std::vector<Difference> Compare(const DiffRecord& _rstOld, const DiffRecord& _rstNew);

/** A difference on one line: "eFirewall eHomeNetwork: permission ePartial -> eDeny". */
std::string ToText(const Difference& _rstDifference);

} // namespace Vrnt
