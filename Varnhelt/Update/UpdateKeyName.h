#pragma once

#include "Update/UpdateStorage.h"

/** What the system knows of a registry key beside its content: where it really lies, and who may use it. */
namespace Varnhelt {

/** How descriptions call a root; empty for one that they cannot name. */
const wchar_t* RootNameOf(HKEY _hRoot) noexcept;

/**
 * Where a key really lies, below HKEY_LOCAL_MACHINE or HKEY_USERS in the 64-bit view: another root or view may lead to
 * the same key. A key that is not there is told as far as keys above it are.
 * @throws RegException* when not even the root can be opened
 */
UpdatePlace RealPlaceOf(const UpdatePlace& _rstPlace);

/** The access list of a key. */
enum class AccessList
{
    Inherited, // what a key that is made there gets
    AllAccess, // that of Registry::CreateAllAccess
    Own,       // anything else
};

AccessList AccessListOf(const UpdatePlace& _rstPlace);

} // namespace Varnhelt
