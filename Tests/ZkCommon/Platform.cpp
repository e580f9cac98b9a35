#include "ZkComn_Platform.h"

#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <tuple>
#include <windows.h>

using namespace ZkCommon::Platform;

TEST(Platform, KnowsTheKindsOfEveryVersion)
{
    // Machines (platform, major, minor, service pack, product type, 64-bit), each with every kind that it is of.
    const std::tuple<int, Version, std::set<std::uint32_t>> aRows[] = {
        {__LINE__, {1, 4, 90, 0, 0, false}, {1, 2}},
        {__LINE__, {0, 6, 1, 1, 1, true}, {}},
        {__LINE__, {2, 4, 90, 0, 3, false}, {101, 112}},
        {__LINE__, {2, 5, 0, 4, 1, false}, {3, 101, 102}},
        {__LINE__, {2, 5, 1, 1, 1, false}, {5, 7, 101, 102, 103}},
        {__LINE__, {2, 5, 1, 2, 1, false}, {5, 7, 101, 102, 103, 104}},
        {__LINE__, {2, 5, 1, 3, 1, false}, {5, 7, 101, 102, 103, 104, 105}},
        {__LINE__, {2, 5, 2, 0, 1, true}, {6, 7, 101, 102, 103, 104, 105}},
        {__LINE__, {2, 5, 2, 0, 2, false}, {101, 102, 103, 104, 105}},
        {__LINE__, {2, 5, 2, 0, 3, false}, {4, 101, 102, 103, 104, 105, 112}},
        {__LINE__, {2, 6, 0, 0, 1, false}, {8, 10, 101, 102, 103, 104, 105, 106}},
        {__LINE__, {2, 6, 0, 1, 1, true}, {9, 10, 101, 102, 103, 104, 105, 106, 107}},
        {__LINE__, {2, 6, 0, 2, 3, false}, {8, 10, 101, 102, 103, 104, 105, 106, 107, 108, 112}},
        {__LINE__, {2, 6, 1, 0, 1, false}, {11, 13, 101, 102, 103, 104, 105, 106, 107, 108, 109}},
        {__LINE__, {2, 6, 1, 1, 3, true}, {12, 13, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 112}},
        {__LINE__, {2, 6, 2, 0, 1, false}, {14, 16, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111}},
        {__LINE__, {2, 6, 2, 0, 1, true}, {15, 16, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111}},
        {__LINE__, {2, 6, 3, 0, 1, true}, {101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111}},
        {__LINE__, {2, 10, 0, 0, 1, true}, {101, 102, 103, 104, 105, 106, 107, 108, 110, 111}}, // not 109, on purpose
    };
    for (const auto& [iLine, stVersion, setType] : aRows) {
        for (std::uint32_t ulType = 0; ulType <= 300; ++ulType) {
            EXPECT_EQ(IsOfType(ulType, stVersion), setType.contains(ulType)) << iLine << ", type " << ulType;
        }
    }
}

TEST(Platform, NamesKindsInBothDirectionsExactly)
{
    for (const OsTypeName& stName : g_aOsTypeName) {
        EXPECT_EQ(OsTypeOf(stName.svName), stName.ulOsType);
        EXPECT_EQ(NameOf(stName.ulOsType), stName.svName);
    }
    EXPECT_EQ(OsTypeOf(L"Vista32or64"), 10U);
    EXPECT_FALSE(OsTypeOf(L"xp32") || OsTypeOf(L""));
    for (const std::uint32_t ulNameless : {0U, 14U, 16U, 50U, 110U, 112U}) {
        EXPECT_EQ(NameOf(ulNameless), L"");
    }
}

TEST(Platform, AnswersForThisMachineOnAnyThread)
{
    OSVERSIONINFOW stInfo{};
    stInfo.dwOSVersionInfoSize = sizeof stInfo;
    ASSERT_TRUE(::GetVersionExW(&stInfo));
    std::jthread aThread[4];
    for (std::jthread& rThread : aThread) {
        rThread = std::jthread([&] {
            EXPECT_TRUE(CheckOsType(OsXpOrLater) && !CheckOsType(50));
            EXPECT_EQ(CheckOsType(OsSeven64), stInfo.dwMajorVersion == 6 && stInfo.dwMinorVersion == 1);
            EXPECT_TRUE(IsNative64Bit() && ErrorCode() == 0); // this is a program for x64
        });
    }
}
