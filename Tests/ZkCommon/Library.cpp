#include "ZkComn_Library.h"

#include "TraceRecorder.h"
#include "ZkComn_ZkDbg.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>

using namespace ZkCommon;

namespace {

/** Binds two functions of one of the system's libraries. */
class SystemLibrary final : public Library::Wrapper
{
public:
    void Load() { m_hModule.Reset(::LoadLibraryW(L"kernel32.dll")); }
    bool Bind(bool _bBind, std::uint32_t& _rulError) noexcept override
    {
        const Binding aBinding[] = {{m_szFirst, &m_pFirst}, {"GetTickCount", &m_pSecond}};
        return BindAll(aBinding, std::size(aBinding), _bBind, _rulError);
    }

    const char* m_szFirst = "GetCurrentProcessId";
    FARPROC m_pFirst = nullptr;
    FARPROC m_pSecond = nullptr;
};

} // namespace

TEST(Library, BindsAllEntryPointsOrTellsWhyNot)
{
    SystemLibrary library;
    std::uint32_t ulError = 0;
    EXPECT_FALSE(library.Bind(true, ulError));
    EXPECT_EQ(ulError, 6U); // not loaded

    library.Load();
    EXPECT_TRUE(library.Bind(true, ulError) && library.IsBound());
    EXPECT_EQ(Library::FunctionAt<decltype(::GetCurrentProcessId)>(library.m_pFirst)(), ::GetCurrentProcessId());

    library.m_szFirst = "NoSuchFunction";
    EXPECT_FALSE(library.Bind(true, ulError) || library.IsBound());
    EXPECT_EQ(ulError, ERROR_PROC_NOT_FOUND);
    EXPECT_NE(library.m_pSecond, nullptr); // what was found stays in place

    library.m_szFirst = nullptr;
    EXPECT_FALSE(library.Bind(true, ulError));
    EXPECT_EQ(ulError, 160U);
    EXPECT_TRUE(library.Bind(false, ulError) && library.m_pSecond == nullptr);
}

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
