#include "ZkComn_Library.h"

#include "TraceRecorder.h"
#include "ZkComn_ZkDbg.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace ZkCommon;

TEST(Library, TraceLibraryIsLoadedOnceAndNotFromTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(ProgramFolder() + L"\\Recorder");
    {
        Library::ZkDbg library;
        EXPECT_FALSE(library.Load(ProgramFolder() + L"\\NoSuchFolder"));
        EXPECT_TRUE(library.Load(L"") && !library.Load(L""));
        EXPECT_FALSE(library.Trace(nullptr, {}, L"")); // loaded and not bound
        wchar_t aszPath[MAX_PATH] = {};
        ::GetModuleFileNameW(::GetModuleHandleW(L"ZkDbgLog.dll"), aszPath, MAX_PATH);
        EXPECT_EQ(aszPath, ProgramFolder() + L"\\ZkDbgLog.dll"); // the one beside the program
    }
    std::filesystem::current_path(before);
    EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
}
