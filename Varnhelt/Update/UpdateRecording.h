#pragma once

#include "Update/IniRecord.h"
#include "Update/KeyRecord.h"
#include "Update/UpdateChanges.h"
#include "Update/UpdateStorage.h"

#include <cstdint>
#include <vector>

namespace Varnhelt {

/** A rehearsal of a local update: what it would change, laid over the present state. The machine stays as it is. */
class RecordingStorage final : public UpdateStorages
{
public:
    using UpdateStorages::Of;
    UpdateStorage& Of(UpdatePlace::Kind _enKind) override
    {
        return _enKind == UpdatePlace::Kind::Registry ? static_cast<UpdateStorage&>(m_cKeys) : m_cIniFiles;
    }

    /** Everything that is different from the machine; order and places as those of ChangesOf. */
    std::vector<UpdateChange> Changes() { return ChangesOf(m_cKeys, m_cIniFiles); }

    /** The system's error when the rehearsal itself failed: then it does not say what the machine would be like. */
    std::uint32_t Failure() const noexcept { return m_cIniFiles.Failure(); }

private:
    KeyRecord m_cKeys;
    IniRecord m_cIniFiles;
};

} // namespace Varnhelt
