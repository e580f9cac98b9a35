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
    EXPECT_TRUE(library.Bind(true, ulError));
    EXPECT_TRUE(library.IsBound());
    EXPECT_EQ(Library::FunctionAt<decltype(::GetCurrentProcessId)>(library.m_pFirst)(), ::GetCurrentProcessId());

    library.m_szFirst = "NoSuchFunction";
    EXPECT_FALSE(library.Bind(true, ulError));
    EXPECT_EQ(ulError, ERROR_PROC_NOT_FOUND);
    EXPECT_FALSE(library.IsBound());
    EXPECT_NE(library.m_pSecond, nullptr); // what was found stays in place

    library.m_szFirst = nullptr;
    EXPECT_FALSE(library.Bind(true, ulError));
    EXPECT_EQ(ulError, 160U);

    EXPECT_TRUE(library.Bind(false, ulError));
    EXPECT_EQ(library.m_pSecond, nullptr);
}

TEST(Library, TraceLibraryIsLoadedOnceAndFreedWithItsOwner)
{
    {
        Library::ZkDbg library;
        std::uint32_t ulError = 0;
        EXPECT_FALSE(library.Load(ProgramFolder() + L"\\NoSuchFolder"));
        EXPECT_TRUE(library.Load(ProgramFolder() + L"\\Recorder"));
        EXPECT_FALSE(library.Load(ProgramFolder() + L"\\Recorder"));
        EXPECT_FALSE(library.Trace(nullptr, {}, L"")); // loaded and not bound
        EXPECT_TRUE(library.Bind(true, ulError));
        library.Unload();
        EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
        EXPECT_TRUE(library.Load(ProgramFolder() + L"\\Recorder\\"));
    }
    EXPECT_EQ(::GetModuleHandleW(L"ZkDbgLog.dll"), nullptr);
}

TEST(Library, TraceLibraryIsNotTakenFromTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(ProgramFolder() + L"\\Recorder");
    Library::ZkDbg library;
    EXPECT_TRUE(library.Load(L""));
    std::filesystem::current_path(before);
    wchar_t aszPath[MAX_PATH] = {};
    ::GetModuleFileNameW(::GetModuleHandleW(L"ZkDbgLog.dll"), aszPath, MAX_PATH);
    EXPECT_EQ(aszPath, ProgramFolder() + L"\\ZkDbgLog.dll"); // the one beside the program
}
