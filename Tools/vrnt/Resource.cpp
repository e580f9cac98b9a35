#include "Resource.h"

#include "Arguments.h"

#include <windows.h>

namespace Vrnt {

std::string_view FindProgramResource(const std::string& _rsName, const wchar_t* _pszType)
{
    const HMODULE hProgram = ::GetModuleHandleW(nullptr);
    const HRSRC hFound = ::FindResourceW(hProgram, ToWide(_rsName).c_str(), _pszType);
    const HGLOBAL hLoaded = hFound == nullptr ? nullptr : ::LoadResource(hProgram, hFound);
    if (hLoaded == nullptr) {
        return {};
    }
    return {static_cast<const char*>(::LockResource(hLoaded)), ::SizeofResource(hProgram, hFound)};
}

} // namespace Vrnt
