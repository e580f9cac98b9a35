#pragma once

#include <string>
#include <string_view>

namespace ZkCommon::Library {

/**
 * A finished line as files hold it: in UTF-8, and with a tab in front of each further line of its message. A line of the
 * log begins with its date, so no message can pass for another line.
 */
std::string ToFileText(std::wstring_view _svLine);

} // namespace ZkCommon::Library
