#pragma once

#include <cstdint>

/** What an update decided, for those who want to tell of it. */
namespace Varnhelt {

struct LocalUpdateEntry;
struct LocalUpdateKey;

/** What is done about an entry. */
enum class UpdateEffect
{
    Create,
    Write,
    Append,
    Remove,
    Skip,   // nothing, and rightly so
    Refuse, // nothing, because it cannot be done
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

struct UpdateDecision
{
    UpdateEffect enEffect = UpdateEffect::Skip;
    UpdateReason enReason = UpdateReason::None;
    std::uint32_t ulError = 0; // of UpdateReason::SystemError
};

/** Is told every decision as it is made, in order. */
class UpdateObserver
{
public:
    UpdateObserver() = default;
    UpdateObserver(const UpdateObserver&) = delete;
    UpdateObserver& operator=(const UpdateObserver&) = delete;
    virtual ~UpdateObserver() = default;

    /** The item, its path macros expanded. Its entries follow where it is to be updated (enReason is None). */
    virtual void OnItem(const LocalUpdateKey& _rstItem, UpdateReason _enReason) = 0;
    virtual void OnEntry(const LocalUpdateEntry& _rstEntry, const UpdateDecision& _rstDecision) = 0;
};

} // namespace Varnhelt
