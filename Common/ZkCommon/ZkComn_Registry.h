#pragma once

#include "ZkComn_Owner.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/** Settings storage: the registry and ini files. */
namespace ZkCommon::Storage {

/** A place in a storage. */
struct Key
{
    enum Kind : std::uint32_t
    {
        Registry = 0,
        IniFile = 1,
        RegistryAlias = 4, // read as the registry too
    };

    std::uint32_t ulKind = Registry;
    HKEY hRoot = nullptr; // predefined root; registry only
    std::wstring tszPath; // of the key below its root, or the full path of the ini file
};

/** Registry view in which a key is opened. */
enum RegistryView : std::uint32_t
{
    ViewDefault = 0, // that of the process
    View32 = 1,
    View64 = 2,
};

/** The flag of a view among a key's access rights. */
REGSAM ViewFlag(RegistryView _enView) noexcept;

/**
 * One open key of the registry. Every operation throws RegException* with the system's result as its code; an empty path
 * is ERROR_BAD_ARGUMENTS (0xA0) before any call. Opening closes what was open before; after a failed opening the object
 * is closed and may be used again. Not thread-safe: one object belongs to one thread at a time.
 */
class Registry
{
public:
    /** A value as the registry holds it. */
    struct Value
    {
        DWORD ulType = REG_NONE;
        std::vector<std::uint8_t> vecData;

        /** REG_SZ, up to the first zero of the text. */
        static Value Of(const std::wstring& _rtszText);
        static Value Of(std::uint32_t _ulNumber);  // REG_DWORD
        static Value Of(std::uint64_t _ullNumber); // REG_QWORD
        static Value Of(std::vector<std::uint8_t> _vecBytes) { return {REG_BINARY, std::move(_vecBytes)}; }

        /**
         * Up to the first zero; it need not be terminated, and an odd last byte is dropped. The text of an expandable
         * value (REG_EXPAND_SZ) comes as it is stored. Any other type is ERROR_INVALID_DATATYPE.
         */
        std::wstring Text() const;
        /** REG_DWORD; another type is ERROR_INVALID_DATATYPE, another size ERROR_INVALID_DATA. */
        std::uint32_t Number() const;
        /** REG_QWORD; failures as Number. */
        std::uint64_t Number64() const;
        /** REG_BINARY; another type is ERROR_INVALID_DATATYPE. */
        const std::vector<std::uint8_t>& Binary() const;

        friend bool operator==(const Value&, const Value&) = default;
    };

    /** The most characters of a key's name, between backslashes, and of a value's: a longer one is an invalid parameter. */
    static constexpr std::size_t g_uLongestKeyName = 255;
    static constexpr std::size_t g_uLongestValueName = 16383;

    /** Whether the system takes a path for that of a key. Several backslashes are as one, and at the end as none. */
    static bool IsPath(std::wstring_view _svPath) noexcept;

    Registry() = default;
    /** Opens the key for reading. */
    Registry(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault)
    {
        Open(_hRoot, _rtszPath, _enView);
    }

    /** For reading values. */
    void Open(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /** As Open. @return false when there is no such key, instead of an exception */
    bool TryOpen(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /** For writing values of a key that is there. */
    void OpenForWriting(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /** For writing values; creates the key, and the keys above it, when it is not there. */
    void Create(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /**
     * As Create, with all rights to the key; a key that is newly created is given the access list of
     * AccessControl::SecurityAttributes.
     * @throws AccessControl::Exception* when that list cannot be built
     */
    void CreateAllAccess(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /** For DeleteValue, and for DeleteKey of a key directly below. */
    void OpenForDeletion(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    /** For SubKeys and ValueNames. */
    void OpenForEnumeration(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);

    /** Does nothing when nothing is open. */
    void Close();
    /** Has the system write the key to disk. */
    void Flush();

    /** Nothing when there is no such value. */
    std::optional<Value> Find(const std::wstring& _rtszName) const;
    /** A value of a type; failures as those of Value, and ERROR_FILE_NOT_FOUND for an absent one. */
    std::wstring ReadString(const std::wstring& _rtszName) const;
    std::uint32_t ReadNumber(const std::wstring& _rtszName) const;
    std::uint64_t ReadNumber64(const std::wstring& _rtszName) const;
    std::vector<std::uint8_t> ReadBinary(const std::wstring& _rtszName) const;
    /** As the forms above, but an absent value gives the default. */
    std::wstring ReadString(const std::wstring& _rtszName, const std::wstring& _rtszDefault) const;
    std::uint32_t ReadNumber(const std::wstring& _rtszName, std::uint32_t _ulDefault) const;

    void Write(const std::wstring& _rtszName, const Value& _rstValue);
    void WriteString(const std::wstring& _rtszName, const std::wstring& _rtszValue);
    void WriteNumber(const std::wstring& _rtszName, std::uint32_t _ulValue);
    void WriteNumber64(const std::wstring& _rtszName, std::uint64_t _ullValue);
    void WriteBinary(const std::wstring& _rtszName, const std::vector<std::uint8_t>& _rvecValue);

    /** Deletes a key directly below the open one; a key that has keys of its own is ERROR_ACCESS_DENIED. */
    void DeleteKey(const std::wstring& _rtszName);
    /** Opens the parent of a key for deletion and deletes that key, in the given view. */
    static void DeleteKeyAt(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView = ViewDefault);
    void DeleteValue(const std::wstring& _rtszName);

    std::vector<std::wstring> SubKeys() const;
    std::vector<std::wstring> ValueNames() const;

private:
    void OpenWith(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView, REGSAM _ulAccess);
    DWORD CreateWith(HKEY _hRoot, const std::wstring& _rtszPath, RegistryView _enView, REGSAM _ulAccess,
                     SECURITY_ATTRIBUTES* _pSecurity);
    Value Read(const std::wstring& _rtszName) const;

    RegKey m_hKey;
};

} // namespace ZkCommon::Storage
