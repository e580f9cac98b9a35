#pragma once

#include "Documents/UpdateWords.h"
#include "ZkComn_Registry.h"

#include <optional>
#include <string>
#include <string_view>

/** The values of a local update: what the texts of a description mean, and how a description says a value. */
namespace Varnhelt {

/** A type of value. Whether a value is of a type, what appending means and what undoes a change all follow from it. */
struct UpdateValueType
{
    using Value = ZkCommon::Storage::Registry::Value;

    UpdateWords::Type enType;
    bool bAppend; // its texts may be appended to each other
    /** The value of a description's text; std::nullopt when the text is not one of this type. */
    std::optional<Value> (*Of)(const std::wstring& _rtszText);
    /** A description's text for a value; std::nullopt when the value is of another type. */
    std::optional<std::wstring> (*TextOf)(const Value& _rstValue);
};

/** The type of a description's word, with case; null when there is no such type. */
const UpdateValueType* FindUpdateValueType(std::wstring_view _svWord) noexcept;

/** A value as a description says it. */
struct UpdateValueText
{
    UpdateWords::Type enType;
    std::wstring tszText;
};

/** std::nullopt for a value that no description gives back as it is. */
std::optional<UpdateValueText> UpdateTextOf(const UpdateValueType::Value& _rstValue);

} // namespace Varnhelt
