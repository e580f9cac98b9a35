#pragma once

#include <utility>
#include <windows.h>

/** Single owners of system resources: a resource is released once, by its owner, and by nobody else. */
namespace ZkCommon {

/** Move-only owner of one resource. TTraits gives the resource's Type, its Invalid() value and Close(). */
template <class TTraits>
class Owner
{
public:
    using Type = typename TTraits::Type;

    Owner() noexcept = default;
    explicit Owner(Type _hResource) noexcept : m_hResource(_hResource) {}
    Owner(Owner&& _rOther) noexcept : m_hResource(_rOther.Release()) {}
    Owner& operator=(Owner&& _rOther) noexcept
    {
        if (this != &_rOther) {
            Reset(_rOther.Release());
        }
        return *this;
    }
    ~Owner() { Reset(); }

    explicit operator bool() const noexcept { return m_hResource != TTraits::Invalid(); }
    Type Get() const noexcept { return m_hResource; }
    Type Release() noexcept { return std::exchange(m_hResource, TTraits::Invalid()); }
    void Reset(Type _hResource = TTraits::Invalid()) noexcept
    {
        if (Type hOld = std::exchange(m_hResource, _hResource); hOld != TTraits::Invalid()) {
            TTraits::Close(hOld);
        }
    }
    /** For system calls that hand a resource out: releases the present one, then lends the slot. */
    Type* Receive() noexcept
    {
        Reset();
        return &m_hResource;
    }

private:
    Type m_hResource = TTraits::Invalid();
};

struct FileTraits
{
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type _h) noexcept { ::CloseHandle(_h); }
};
struct HandleTraits
{
    using Type = HANDLE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type _h) noexcept { ::CloseHandle(_h); }
};
struct FindTraits
{
    using Type = HANDLE;
    static Type Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Type _h) noexcept { ::FindClose(_h); }
};
struct ModuleTraits
{
    using Type = HMODULE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type _h) noexcept { ::FreeLibrary(_h); }
};
struct RegKeyTraits
{
    using Type = HKEY;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type _h) noexcept { ::RegCloseKey(_h); }
};

using FileHandle = Owner<FileTraits>;     // CreateFileW
using Handle = Owner<HandleTraits>;       // processes, threads, events, tokens
using FindHandle = Owner<FindTraits>;     // FindFirstFileW
using ModuleHandle = Owner<ModuleTraits>; // LoadLibraryW
using RegKey = Owner<RegKeyTraits>;       // RegOpenKeyExW, RegCreateKeyExW

} // namespace ZkCommon
