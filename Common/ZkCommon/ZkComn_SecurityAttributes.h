#pragma once

#include <vector>
#include <windows.h>

/** Access lists for what the library creates, and who is calling. */
namespace ZkCommon::AccessControl {

/** What the access list is for; selects the rights of each account. */
enum class ObjectKind
{
    RegistryKey,
    File,
};

/**
 * A security-attributes record whose access list grants seven fixed accounts their rights on one kind of object. The
 * record points into this object and lives as long as it does. Any number of threads may read one object.
 */
class SecurityAttributes
{
public:
    /**
     * @param _bInheritHandle  whether child processes inherit a handle created with the record
     * @throws AccessControl::Exception* with the system's error
     */
    SecurityAttributes(ObjectKind _enKind, bool _bInheritHandle);
    SecurityAttributes(const SecurityAttributes&) = delete;
    SecurityAttributes& operator=(const SecurityAttributes&) = delete;

    /** For the creating calls, which take it as not constant and leave it as it is. */
    SECURITY_ATTRIBUTES* Get() noexcept { return &m_stAttributes; }
    PSECURITY_DESCRIPTOR Descriptor() noexcept { return &m_stDescriptor; }

private:
    std::vector<DWORD> m_vecAcl; // an access list is made of 32-bit units
    SECURITY_DESCRIPTOR m_stDescriptor{};
    SECURITY_ATTRIBUTES m_stAttributes{};
};

/**
 * Whether the calling thread's token (the process's when it does not impersonate) belongs to a well-known group.
 * @throws AccessControl::Exception* with the system's error
 */
bool IsMember(WELL_KNOWN_SID_TYPE _enGroup);

} // namespace ZkCommon::AccessControl
