#pragma once

#include "ZkComn_Owner.h"

#include <string>

/**
 * This program once more, running one of its tests that is disabled otherwise. The child shares a folder with its
 * parent. A test that uses it is a pair: the child's part ends in Child::WaitToBeKilled(), the parent's part constructs
 * a Child, which returns when the child has got there, and kills it.
 */
class Child
{
public:
    Child(const char* _szTest, const std::wstring& _tszFolder);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() { Kill(); }

    bool IsReady() const { return m_bReady; }
    /** Ends the child in the middle of what it does, and returns when it is gone. */
    void Kill();

    /** A child that ends by itself. */
    static ZkCommon::Handle Start(const char* _szTest, const std::wstring& _tszFolder);

    /** In the child: the folder that it was given. */
    static std::wstring Folder();
    /** In the child: signals the parent and never returns. */
    [[noreturn]] static void WaitToBeKilled();

private:
    ZkCommon::Handle m_hProcess;
    bool m_bReady = false;
};
