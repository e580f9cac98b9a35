#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/** HTML that cannot hold text unescaped: a piece of a page is made of texts, which are escaped, and of elements. */
namespace Vrnt::Html {

struct Attribute
{
    const char* szName;
    std::string sValue; // escaped when it is written
};
using Attributes = std::vector<Attribute>;

/** A piece of a page. Text in UTF-8 becomes one by itself, escaped. */
class Markup
{
public:
    Markup() = default;
    Markup(std::string_view _svText);
    Markup(const std::string& _rsText) : Markup(std::string_view(_rsText)) {}
    Markup(const char* _szText) : Markup(std::string_view(_szText)) {}

    /** Text of the program itself, unchanged. */
    template <std::size_t uSize>
    static Markup Literal(const char (&_szSource)[uSize])
    {
        Markup cMarkup;
        cMarkup.m_sSource.assign(_szSource, uSize - 1);
        return cMarkup;
    }

    Markup& operator+=(const Markup& _rOther)
    {
        m_sSource += _rOther.m_sSource;
        return *this;
    }
    friend Markup operator+(Markup _cLeft, const Markup& _rRight) { return _cLeft += _rRight; }

    bool IsEmpty() const { return m_sSource.empty(); }
    const std::string& Source() const { return m_sSource; }

private:
    friend Markup Element(const char* _szName, const Attributes& _rvecAttribute, const Markup& _rContent);

    std::string m_sSource;
};

/** An element around its content. */
Markup Element(const char* _szName, const Attributes& _rvecAttribute, const Markup& _rContent);

inline Markup Element(const char* _szName, const Markup& _rContent)
{
    return Element(_szName, Attributes(), _rContent);
}

} // namespace Vrnt::Html
