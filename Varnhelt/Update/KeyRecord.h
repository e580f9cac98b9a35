#pragma once

#include "Update/UpdateStorage.h"
#include "ZkComn_String.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Varnhelt {

/** A key's root and path, as in "HKLM\Software". */
std::wstring KeyNameOf(const UpdatePlace& _rstPlace);
/** The key of such a name, in the 64-bit view. */
UpdatePlace KeyOfName(const std::wstring& _rtszName);

/**
 * The registry as it would be: what is changed is laid over the present state, and the machine stays as it is. It answers
 * as the machine would after the same calls, and refuses what the machine would refuse because a right or a key is
 * missing: rights are asked for without being used. A key is known by its real place, whatever an update calls it.
 */
class KeyRecord final : public UpdateStorage
{
public:
    /** A key that something was done to. */
    struct State
    {
        bool bExists = true;
        bool bNew = false;       // the machine's key of this name is gone, if there was one
        bool bAllAccess = false; // of a new one
        std::map<std::wstring, std::optional<Value>, ZkCommon::String::LessNoCase> mapValue; // std::nullopt: removed
    };
    /** By the KeyNameOf a key's real place: keys above come before those below. */
    using States = std::map<std::wstring, State, ZkCommon::String::LessNoCase>;

    bool Exists(const UpdatePlace& _rstPlace) override;
    std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) override;
    std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) override;
    void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) override;
    void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) override;
    void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    void Remove(const UpdatePlace& _rstPlace) override;

    const States& Touched() const noexcept { return m_mapKey; }

private:
    const UpdatePlace& RealKey(const UpdatePlace& _rstPlace);
    State* StateOf(const UpdatePlace& _rstReal);
    bool RealExists(const UpdatePlace& _rstReal);
    void CheckRight(const UpdatePlace& _rstReal, REGSAM _ulRight);

    SystemKeys m_cPresent;
    States m_mapKey;
    UpdatePlace m_stLastAsked; // of RealKey: an item asks for one key again and again
    UpdatePlace m_stLastReal;
};

} // namespace Varnhelt
