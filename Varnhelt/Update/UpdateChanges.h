#pragma once

#include "Update/IniRecord.h"
#include "Update/KeyRecord.h"

#include <optional>
#include <string>
#include <vector>

/** The differences between the machine as it is and as a record says that it would be. */
namespace Varnhelt {

struct UpdateChange
{
    enum class Kind
    {
        Created,    // the key or section
        Removed,    // the key or section
        Value,      // a value or entry: made, changed or removed
        AccessList, // of a key that was removed and made again
        Lines,      // of a section that are not entries, or repeat one: they are gone
        File,       // the ini file was made
    };

    Kind enKind;
    UpdatePlace stPlace;
    std::wstring tszName;                           // Value
    std::optional<UpdateStorage::Value> stBefore{}; // Value
    bool bAllAccess = false;                        // Removed: the key had the access list of Registry::CreateAllAccess
};

/**
 * Everything that is different from the machine: keys by their path, those above before those below, then sections in
 * the order of their files. The place of a key is its real one, in the 64-bit view: what another view or root calls by
 * another name is one key. An ini file has its full path.
 */
std::vector<UpdateChange> ChangesOf(KeyRecord& _rKeys, const IniRecord& _rIniFiles);

} // namespace Varnhelt
