#pragma once

#include <string>

/** A registry path of this process's own, without keys before and after: below HKCU and HKLM, there in both views. */
class TestKey
{
public:
    TestKey();
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;
    ~TestKey();

    /** The path below its root. Nothing is created there. */
    const std::wstring& Path() const { return m_tszPath; }

    /** Removes all that is below it. */
    void Remove() const;

private:
    std::wstring m_tszName;
    std::wstring m_tszPath;
};
