#pragma once

#include "ZkComn_Owner.h"

#include <cstdint>
#include <string>

/** Binding of a library's functions at run time. Not thread-safe: one object belongs to one thread at a time. */
namespace ZkCommon::Library {

/** Owns a loaded module. */
class Base
{
public:
    Base() = default;
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    virtual ~Base() = default;

    bool IsLoaded() const noexcept { return static_cast<bool>(m_hModule); }

protected:
    ModuleHandle m_hModule;
};

/** A library whose entry points are looked up by name. */
class Wrapper : public Base
{
public:
    /** The names of the entry points and the slots that receive them, side by side. */
    struct Binding
    {
        const char* szName;
        FARPROC* pSlot;
    };

    ~Wrapper() override;

    /**
     * Looks up every entry point (_bBind true) or clears them all (false).
     * @param _rulError  6 when no module is loaded, 160 when a name is missing from the list, else the system's error
     * @return true when all were found; otherwise those that were found stay set, but IsBound() is false
     */
    virtual bool Bind(bool _bBind, std::uint32_t& _rulError) noexcept = 0;

    bool IsBound() const noexcept { return m_bBound; }

protected:
    bool BindAll(const Binding* _pFirst, std::size_t _uCount, bool _bBind, std::uint32_t& _rulError) noexcept;

    bool m_bBound = false;
};

/** The function of an entry point that was looked up by name; null stays null. */
template <class TFunction>
TFunction* FunctionAt(FARPROC _pEntry) noexcept
{
    // By way of void*: a direct cast between function types is what compilers rightly warn of.
    return reinterpret_cast<TFunction*>(reinterpret_cast<void*>(_pEntry));
}

/** The path of a module, of the program for null; empty, with the last error set, on failure. */
std::wstring ModulePath(HMODULE _hModule);

/** _tszFolder, a backslash when it is not empty and has none at its end, and _pszFile. */
std::wstring PathOf(const std::wstring& _tszFolder, const wchar_t* _pszFile);

} // namespace ZkCommon::Library
