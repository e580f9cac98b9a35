#pragma once

#include <cstdint>

namespace ZkCommon {

/**
 * A place in the source, as a default argument that of the call. What std::source_location is for, which the second
 * compiler does not have yet; it holds less, since a trace line names nothing but file and line.
 */
struct SourcePlace
{
    const char* szFile; // relative to the project's root, as the build knows it
    std::uint32_t ulLine;

    static constexpr SourcePlace Here(const char* _szFile = __builtin_FILE(),
                                      std::uint32_t _ulLine = __builtin_LINE()) noexcept
    {
        return {_szFile, _ulLine};
    }
};

} // namespace ZkCommon
