#include "Command.h"

#include "Arguments.h"

namespace Vrnt {

const std::string& Arguments::Text(const Argument& _rstArgument) const
{
    static const std::string sNone;
    const std::vector<std::string>& rvecText = Texts(_rstArgument);
    return rvecText.empty() ? sNone : rvecText.front();
}

const std::vector<std::string>& Arguments::Texts(const Argument& _rstArgument) const
{
    static const std::vector<std::string> vecNone;
    const auto itValue = m_mapValue.find(&_rstArgument);
    return itValue == m_mapValue.end() ? vecNone : itValue->second;
}

std::wstring Arguments::Path(const Argument& _rstArgument) const
{
    return ToFullPath(Text(_rstArgument));
}

std::uint32_t Arguments::Number(const Argument& _rstArgument) const
{
    return ToNumber(_rstArgument.szName, Text(_rstArgument));
}

void Arguments::Set(const Argument& _rstArgument, std::vector<std::string> _vecValue)
{
    m_mapValue[&_rstArgument] = std::move(_vecValue);
}

} // namespace Vrnt
