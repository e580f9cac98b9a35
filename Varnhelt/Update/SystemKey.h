#pragma once

#include "Update/UpdateStorage.h"

/** What the system knows of a registry key beside its content: its real place, and who may use it. */
namespace Varnhelt {

/**
 * The real place of a key, below HKEY_LOCAL_MACHINE or HKEY_USERS in the 64-bit view: another root or view may lead to
 * the same key. For a key that is not there it is the place where it would be made.
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
