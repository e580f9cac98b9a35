#pragma once

#include "SrvFrwk_ResultCode.h"

#include <cstdint>

/** What an update decided, for those who report it. */
namespace Varnhelt {

struct LocalUpdateEntry;
struct LocalUpdateKey;
struct UpdatePlace;

/** What is done about an entry. */
enum class UpdateEffect
{
    Create,
    Write,
    Append,
    Remove,
    Skip,   // nothing, and rightly so
    Refuse, // it cannot be done; UpdateDecision says whether a part of it is
};

/** Why not. */
enum class UpdateReason
{
    None,
    // The conditions of the item or entry do not match this machine.
    VersionTooLow,
    VersionTooHigh,
    OtherProduct,
    OtherLanguage,
    OtherPlatform,
    // The conditions cannot be judged.
    NoVersion,
    BadVersion,
    NoProduct,
    NoLanguage,
    UnknownPlatform,
    // The item has no place.
    UnknownRoot,
    NoPath,
    // The entry has nothing to do.
    PlacePresent,
    ValuePresent,
    PlaceAbsent,
    NoAllAccess, // "create" acts only where it is given
    // The entry cannot be carried out.
    UnknownAction,
    SystemError,
};

/** What came of an entry. */
struct UpdateDecision
{
    UpdateEffect enEffect = UpdateEffect::Skip;
    UpdateReason enReason = UpdateReason::None;
    std::uint32_t ulError = 0;                             // of UpdateReason::SystemError
    std::uint32_t ulResult = SrvFrwk::Result::g_ulSuccess; // what the agent answers
    /** It failed on the way: the key of the value is made, or keys below the one to remove are gone. */
    bool bInPart = false;
};

/** Receives every decision as it is made, in order. */
class UpdateObserver
{
public:
    UpdateObserver() = default;
    UpdateObserver(const UpdateObserver&) = delete;
    UpdateObserver& operator=(const UpdateObserver&) = delete;
    virtual ~UpdateObserver() = default;

    /** The item, its path macros expanded. Its entries follow where it is to be updated (enReason is None). */
    virtual void OnItem(const LocalUpdateKey& _rstItem, UpdateReason _enReason) = 0;
    /** @param _rstPlace  of the item */
    virtual void OnEntry(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry,
                         const UpdateDecision& _rstDecision) = 0;
};

} // namespace Varnhelt
