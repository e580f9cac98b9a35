#include "ZkComn_Library.h"

#include "ZkComn_Exception.h"
#include "ZkComn_String.h"

#include <span>

namespace ZkCommon::Library {

Wrapper::~Wrapper() = default; // the module is freed by its owner, and the entry points go with the object

bool Wrapper::BindAll(const Binding* _pFirst, std::size_t _uCount, bool _bBind, std::uint32_t& _rulError) noexcept
{
    const std::span<const Binding> spanBindings(_pFirst, _uCount);
    m_bBound = false;
    if (!_bBind) {
        for (const Binding& stBinding : spanBindings) {
            *stBinding.pSlot = nullptr;
        }
        return true;
    }
    bool bAll = true;
    for (const Binding& stBinding : spanBindings) {
        *stBinding.pSlot = nullptr;
        std::uint32_t ulError = ERROR_SUCCESS;
        if (!IsLoaded()) {
            ulError = Exception::g_ulNoSystemError;
        } else if (stBinding.szName == nullptr || *stBinding.szName == '\0') {
            ulError = ERROR_BAD_ARGUMENTS;
        } else if ((*stBinding.pSlot = ::GetProcAddress(m_hModule.Get(), stBinding.szName)) == nullptr) {
            ulError = ::GetLastError();
        }
        if (ulError != ERROR_SUCCESS) {
            _rulError = ulError;
            bAll = false;
        }
    }
    m_bBound = bAll;
    return bAll;
}

std::wstring ModulePath(HMODULE _hModule)
{
    std::wstring tszPath(MAX_PATH, L'\0');
    for (;;) {
        const DWORD ulLength = ::GetModuleFileNameW(_hModule, tszPath.data(), static_cast<DWORD>(tszPath.size()));
        if (ulLength < tszPath.size()) {
            tszPath.resize(ulLength);
            return tszPath;
        }
        tszPath.resize(tszPath.size() * 2);
    }
}

std::wstring PathOf(const std::wstring& _tszFolder, const wchar_t* _pszFile)
{
    return String::WithBackslash(_tszFolder) + _pszFile;
}

} // namespace ZkCommon::Library
