#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace Vrnt {

/** Text that is not JSON, or JSON that does not fit what is wanted. The message is one line. */
class JsonError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** A JSON value. Objects keep their members in the order in which they were added. Narrow text is UTF-8. */
class Json
{
public:
    using Member = std::pair<std::string, Json>;
    using Elements = std::vector<Json>;
    using Members = std::vector<Member>;

    Json() = default;
    Json(std::nullptr_t) {}
    Json(bool _bValue) : m_value(_bValue) {}
    template <std::unsigned_integral TValue>
    Json(TValue _value) : m_value(static_cast<std::uint64_t>(_value))
    {}
    template <std::signed_integral TValue>
    Json(TValue _value) : m_value(static_cast<std::int64_t>(_value))
    {}
    Json(double _dValue) : m_value(_dValue) {}
    Json(std::string _sText) : m_value(std::move(_sText)) {}
    Json(std::string_view _svText) : m_value(std::string(_svText)) {}
    Json(const char* _szText) : m_value(std::string(_szText)) {}
    Json(const std::wstring& _rtszText);
    /** An object: Json{{"line", 3}, {"text", "..."}}. */
    Json(std::initializer_list<Member> _lstMember) : m_value(Members(_lstMember)) {}
    template <class TValue>
    Json(const std::vector<TValue>& _rvecElement) : m_value(Elements(_rvecElement.begin(), _rvecElement.end()))
    {}

    static Json Array() { return Json(Elements()); }
    static Json Object() { return Json(Members()); }

    bool IsNull() const noexcept { return Is<std::nullptr_t>(); }
    template <class TValue>
    bool Is() const noexcept
    {
        return std::holds_alternative<TValue>(m_value);
    }
    /** The value where it is of this type (std::string, bool, std::int64_t, Elements, ...), else null. */
    template <class TValue>
    const TValue* As() const noexcept
    {
        return std::get_if<TValue>(&m_value);
    }

    /** Calls _fnVisit with the value as what it is. */
    template <class TVisit>
    void Visit(const TVisit& _fnVisit) const
    {
        std::visit(_fnVisit, m_value);
    }

    /** Appends to an array. */
    void Add(Json _jsElement) { std::get<Elements>(m_value).push_back(std::move(_jsElement)); }
    /** Appends a member to an object. */
    void Set(std::string _sKey, Json _jsValue)
    {
        std::get<Members>(m_value).emplace_back(std::move(_sKey), std::move(_jsValue));
    }
    /** An object's member; null where it is not an object or has no such member. */
    const Json* Find(std::string_view _svKey) const noexcept;

    /** The value as text, indented by two blanks a level. It is ASCII, so that every shell reads it unchanged. */
    std::string ToText() const;

private:
    explicit Json(Elements _vecElement) : m_value(std::move(_vecElement)) {}
    explicit Json(Members _vecMember) : m_value(std::move(_vecMember)) {}

    std::variant<std::nullptr_t, bool, std::uint64_t, std::int64_t, double, std::string, Elements, Members> m_value;
};

/** Reads JSON in UTF-8, or in UTF-16 with its mark. @throws JsonError with line and column where it is not JSON */
Json ParseJson(std::string_view _svText);

} // namespace Vrnt
