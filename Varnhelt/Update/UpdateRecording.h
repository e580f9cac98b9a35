#pragma once

#include "Update/UpdateStorage.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/** A rehearsal of a local update: what it would change, beside what there is now. */
namespace Varnhelt {

/** Without case, as the registry and the file system compare. */
struct LessNoCase
{
    bool operator()(const std::wstring& _rtszLeft, const std::wstring& _rtszRight) const noexcept;
};

/** One difference between the machine as it is and as it would be. Places are as RecordingStorage::Touched gives them. */
struct UpdateChange
{
    enum class Kind
    {
        Created,    // the key or section
        Removed,    // the key or section
        Value,      // a value or entry: made, changed or removed
        AccessList, // of a key that was removed and made again
        File,       // the ini file was made
    };

    Kind enKind;
    UpdatePlace stPlace;
    std::wstring tszName;                           // Value
    std::optional<UpdateStorage::Value> stBefore{}; // Value
    bool bAllAccess = false;                        // Removed: the key had the access list of Registry::CreateAllAccess
};

/**
 * Lays what is changed over the present state and changes nothing on the machine. It answers as the machine would after
 * the same calls, and refuses what the machine would refuse for want of a right, a folder or a key: the rights are asked
 * for without being used. Ini files are rehearsed on copies in the folder for temporary files, which go with the object.
 */
class RecordingStorage final : public UpdateStorage
{
public:
    RecordingStorage() = default;
    ~RecordingStorage() override;

    bool Exists(const UpdatePlace& _rstPlace) override;
    std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) override;
    std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) override;
    void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) override;
    void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) override;
    void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    void Remove(const UpdatePlace& _rstPlace) override;

    /**
     * Everything that is different from the machine: keys by their path, those above before those below, then sections
     * in the order of their files. The place of a key is its real one, in the 64-bit view: what another view or root
     * calls by another name is one key.
     */
    std::vector<UpdateChange> Changes();

private:
    /** A key that something was done to. */
    struct KeyState
    {
        bool bExists = true;
        bool bNew = false;       // nothing of what the machine has there counts any more
        bool bAllAccess = false; // of a new one
        std::map<std::wstring, std::optional<Value>, LessNoCase> mapValue; // nothing: removed
    };

    /** An ini file that something was done to. */
    struct IniCopy
    {
        std::wstring tszPath; // as the update calls it
        std::wstring tszCopy;
        bool bNew;
    };

    const UpdatePlace& RealKey(const UpdatePlace& _rstPlace);
    KeyState* StateOf(const UpdatePlace& _rstReal);
    bool RealExists(const UpdatePlace& _rstReal);
    KeyState& Touch(const UpdatePlace& _rstReal);
    void CheckRight(const UpdatePlace& _rstReal, REGSAM _ulRight);
    UpdatePlace OnCopy(const UpdatePlace& _rstPlace) const;
    UpdatePlace OnNewCopy(const UpdatePlace& _rstPlace);
    void AddKeyChanges(std::vector<UpdateChange>& _rvecChange);
    void AddValueChanges(const UpdatePlace& _rstReal, std::vector<UpdateChange>& _rvecChange);
    void AddIniChanges(const IniCopy& _rstCopy, std::vector<UpdateChange>& _rvecChange);

    SystemStorage m_cPresent;
    std::map<std::wstring, KeyState, LessNoCase> m_mapKey; // by the real path, its root first
    std::map<std::wstring, IniCopy, LessNoCase> m_mapIni;  // by the full path
    UpdatePlace m_stLastAsked;                             // of RealKey: an item asks for one key again and again
    UpdatePlace m_stLastReal;
};

} // namespace Varnhelt
