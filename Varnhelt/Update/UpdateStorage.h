#pragma once

#include "ZkComn_Registry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** What a local update reads and changes: registry keys with their values, and sections of ini files with their entries. */
namespace Varnhelt {

/** A registry key, or a section of an ini file. */
struct UpdatePlace
{
    enum class Kind : std::uint32_t
    {
        Registry = 0,
        IniFile = 1,
    };

    Kind enKind = Kind::Registry;
    HKEY hRoot = nullptr;                                                    // registry
    ZkCommon::Storage::RegistryView enView = ZkCommon::Storage::ViewDefault; // registry
    std::wstring tszPath;                                                    // of the key; of the ini file
    std::wstring tszSection;                                                 // ini file

    bool IsRegistry() const noexcept { return enKind == Kind::Registry; }
};

/**
 * Places of one kind. All that an update does to the machine goes through here, so that the one code that decides can be
 * run on the machine or on a record of what would happen. An entry of an ini file is a text value. Failures are the
 * exceptions of Registry and IniFile; a call that throws has changed nothing. An object belongs to one thread.
 */
class UpdateStorage
{
public:
    using Value = ZkCommon::Storage::Registry::Value;

    UpdateStorage() = default;
    UpdateStorage(const UpdateStorage&) = delete;
    UpdateStorage& operator=(const UpdateStorage&) = delete;
    virtual ~UpdateStorage() = default;

    virtual bool Exists(const UpdatePlace& _rstPlace) = 0;
    /** std::nullopt when there is no such place or no such value. */
    virtual std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) = 0;
    /** The names of all values; empty when there is no such place. */
    virtual std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) = 0;
    /** The names of the keys directly below; an ini section has none. */
    virtual std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) = 0;

    /** Makes the place, and the keys above it; one that is there is left alone. _bAllAccess: Registry::CreateAllAccess. */
    virtual void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) = 0;
    /** Sets a value of a key that is there, or of a section, which is made when it is not there. */
    virtual void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) = 0;
    virtual void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) = 0;
    /** Removes a key that has no keys below it, or a section. */
    virtual void Remove(const UpdatePlace& _rstPlace) = 0;
};

/** A storage for each kind of place. */
class UpdateStorages
{
public:
    UpdateStorages() = default;
    UpdateStorages(const UpdateStorages&) = delete;
    UpdateStorages& operator=(const UpdateStorages&) = delete;
    virtual ~UpdateStorages() = default;

    virtual UpdateStorage& Of(UpdatePlace::Kind _enKind) = 0;
    UpdateStorage& Of(const UpdatePlace& _rstPlace) { return Of(_rstPlace.enKind); }
};

/** The registry of the machine. */
class SystemKeys final : public UpdateStorage
{
public:
    bool Exists(const UpdatePlace& _rstPlace) override;
    std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) override;
    std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) override;
    void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) override;
    void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) override;
    void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    void Remove(const UpdatePlace& _rstPlace) override;
};

/** The ini files of the machine. */
class SystemIniFiles final : public UpdateStorage
{
public:
    bool Exists(const UpdatePlace& _rstPlace) override;
    std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) override;
    std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) override;
    void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) override;
    void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) override;
    void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    void Remove(const UpdatePlace& _rstPlace) override;
};

/** The machine itself. */
class SystemStorage final : public UpdateStorages
{
public:
    using UpdateStorages::Of;
    UpdateStorage& Of(UpdatePlace::Kind _enKind) override
    {
        return _enKind == UpdatePlace::Kind::Registry ? static_cast<UpdateStorage&>(m_cKeys) : m_cIniFiles;
    }

private:
    SystemKeys m_cKeys;
    SystemIniFiles m_cIniFiles;
};

} // namespace Varnhelt
