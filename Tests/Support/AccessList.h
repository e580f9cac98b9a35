#pragma once

#include <string>
#include <vector>
#include <windows.h>

/** The list of a registry key that all may use, in the system's notation. */
inline constexpr const wchar_t* g_pszAllAccessKey =
    L"D:(A;CI;0x1003f;;;BA)(A;CI;0x3f;;;PU)(A;CI;0x1003f;;;SY)(A;CI;0x20009;;;AU)"
    L"(A;CI;0x20009;;;BU)(A;CI;0xf003f;;;CO)(A;CI;0x20009;;;IU)";

/** The entries of an access list, byte by byte: type, flags (0 unless asked for), size (2), mask (4), account. */
std::vector<std::string> EntriesOf(PSECURITY_DESCRIPTOR _pDescriptor, bool _bFlags = false);
/** The same of a list in the system's notation. */
std::vector<std::string> EntriesOf(const wchar_t* _pszList, bool _bFlags = false);
/** The same of a key below HKLM. */
std::vector<std::string> EntriesOfKey(const std::wstring& _rtszPath, REGSAM _ulView = 0);
