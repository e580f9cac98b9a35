#pragma once

#include <string>
#include <string_view>

namespace Vrnt {

/** A resource of the program, which lasts as long as the process; empty where it has none of that name and type. */
std::string_view FindProgramResource(const std::string& _rsName, const wchar_t* _pszType);

} // namespace Vrnt
