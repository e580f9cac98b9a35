#pragma once

#include "Update/UpdateStorage.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Varnhelt {

/** The full path of the file that the system means by a path: a mere name is one of its own folder. */
std::wstring FullIniPath(const std::wstring& _rtszPath);

/**
 * Ini files as they would be. The system's own functions change copies of them in the folder for temporary files, so that
 * a rehearsal shows exactly what they would do; the copies are removed with the object. What the machine would refuse
 * because a right or a folder is missing is refused.
 */
class IniRecord final : public UpdateStorage
{
public:
    /** An ini file that something was done to. */
    struct Copy
    {
        std::wstring tszPath; // of the file, in full
        std::wstring tszCopy;
        bool bNew; // there is no such file on the machine
    };

    IniRecord() = default;
    ~IniRecord() override;

    bool Exists(const UpdatePlace& _rstPlace) override;
    std::optional<Value> Find(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    std::vector<std::wstring> Names(const UpdatePlace& _rstPlace) override;
    std::vector<std::wstring> SubKeys(const UpdatePlace& _rstPlace) override;
    void Create(const UpdatePlace& _rstPlace, bool _bAllAccess) override;
    void Write(const UpdatePlace& _rstPlace, const std::wstring& _rtszName, const Value& _rstValue) override;
    void RemoveValue(const UpdatePlace& _rstPlace, const std::wstring& _rtszName) override;
    void Remove(const UpdatePlace& _rstPlace) override;

    /** In the order of their paths. */
    std::vector<Copy> Touched() const;
    /** The system's error when a copy could not be made: then the record is not what the machine would be. */
    std::uint32_t Failure() const noexcept { return m_ulFailure; }

private:
    const std::wstring& IdentityOf(const std::wstring& _rtszPath);
    UpdatePlace OnCopy(const UpdatePlace& _rstPlace);
    UpdatePlace OnNewCopy(const UpdatePlace& _rstPlace);

    SystemIniFiles m_cFiles;
    std::map<std::wstring, Copy> m_mapCopy; // by the file's identity
    std::wstring m_tszLastAsked;            // of IdentityOf: an item asks for one file again and again
    std::wstring m_tszLastIdentity;
    std::uint32_t m_ulFailure = 0;
};

} // namespace Varnhelt
