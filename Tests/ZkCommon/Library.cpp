#include "ZkComn_Library.h"

#include "TraceRecorder.h"
#include "ZkComn_ZkDbg.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace ZkCommon;

TEST(Library, TraceLibraryIsLoadedOnceFromNoCurrentFolderAndFreedWithItsOwner)
{
    const std::filesystem::path recorder = std::filesystem::path(ProgramFolder()) / L"Recorder";
    const std::filesystem::path before = std::filesystem::current_path();
    {
        Library::ZkDbg library;
        EXPECT_FALSE(library.Load(ProgramFolder() + L"\\NoSuchFolder"));
        EXPECT_TRUE(library.Load(recorder.wstring()) && !library.Load(recorder.wstring()));
        EXPECT_FALSE(library.Trace(nullptr, {}, L"")); // loaded and not bound
        library.Unload();
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);

        std::filesystem::current_path(recorder);
        EXPECT_TRUE(library.Load(L""));
        std::filesystem::current_path(before);
        wchar_t aszPath[MAX_PATH] = {};
        ::GetModuleFileNameW(::GetModuleHandleW(L"ZkDbgLog.dll"), aszPath, MAX_PATH);
        EXPECT_EQ(aszPath, ProgramFolder() + L"\\ZkDbgLog.dll"); // the one beside the program
    }
    EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
}
