// What function objects and CFunctionXml let through, refuse and log, without any document.

#include "FunctionManager.h"
#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "TraceRecorder.h"
#include "ZkComn_String.h"

#include <gmock/gmock.h>
#include <limits>
#include <vector>

using namespace SrvFrwk;
using testing::Contains;
using testing::ElementsAre;
using Varnhelt::Request;

namespace {

using Lines = std::vector<std::wstring>;

TEST(FunctionProvider, RefusesValueTypesOutsideItsListWithoutTouchingAnything)
{
    std::vector<ServiceUnit> vecUnit(3);
    CFunctionProvider cProvider;
    for (const std::uint32_t ulValueType :
         {0x0U, 0x3U, 0x80U, 0x100U, 0x20000U, 0x100000U, 0x200000U, 0x400000U, 0x800000U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(cProvider.QueryValue(0, ulValueType, 7, &vecUnit, 0, nullptr), Result::g_ulRefused) << ulValueType;
    }
    for (const std::uint32_t ulValueType : {0x0U, 0x1U, 0x4U, 0x40000U, 0x200000U, 0x400000U}) {
        EXPECT_EQ(cProvider.StoreValue(0, ulValueType, 7, &vecUnit, 0, nullptr), Result::g_ulRefused) << ulValueType;
    }
    EXPECT_EQ(vecUnit.size(), 3U);
}

TEST(FunctionProvider, ARefusedRequestHasNoLeaveLineAndAFailedOneHas)
{
    const TraceRecorder cTrace;
    CFunctionProvider cProvider;
    cProvider.QueryValue(0, 0x20000, 5, nullptr, 0, nullptr);
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00020000],VST[0x00000005]",
                            L"!!! *** CFunctionProvider::QueryValue() - Invalid Value Type was "
                            L"specified. VT[0x00020000],VST[0x00000005]"));
}

TEST(FunctionProvider, AQueryWithoutARecordFailsInTheDispatchAndIsToldLineByLine)
{
    TraceRecorder cTrace;
    CFunctionProvider cProvider;
    EXPECT_EQ(cProvider.QueryValue(0, 0x1, 2, nullptr, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_THAT(
        cTrace.Lines(),
        ElementsAre(
            L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00000001],VST[0x00000002]",
            L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00000001],VST[0x00000002]",
            L"!!! *** CFunctionXml::CheckParameters() - _pValueData was invalid. VT[0x00000001],VST[0x00000002]",
            L"!!! *** CFunctionXml::QueryValue() - this->CheckParameters() failed. [0x80040204], "
            L"VT[0x00000001],VST[0x00000002]",
            L"!!! *** CFunctionProvider::QueryValue() - pFunctionXml->QueryValue() failed. [0x80040204], "
            L"VT[0x00000001],VST[0x00000002]",
            L".w. [Leave] CFunctionProvider::QueryValue()..."));

    cTrace.Clear();
    EXPECT_EQ(cProvider.StoreValue(0, 0x2, 0, nullptr, 0, nullptr), Result::g_ulInvalidArgument);
    const Lines vecStore = cTrace.Lines();
    ASSERT_EQ(vecStore.size(), 6U);
    EXPECT_EQ(vecStore[4],
              L"!!! *** CFunctionProvider::StoreValue() - pFunctionXml->StoreValue() failed. [0x80040204], "
              L"VT[0x00000002],VST[0x00000000]");
    EXPECT_EQ(vecStore[5], L".w. [Leave] CFunctionProvider::QueryValue()...");
}

TEST(FunctionProvider, OnlyTheLocalUpdateMessageIsAccepted)
{
    const TraceRecorder cTrace;
    CFunctionProvider cProvider;
    EXPECT_EQ(cProvider.SendMessage(2, 9, 3, nullptr, 0, 4, nullptr), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionProvider::SendMessage()...",
                            L"@@@ _ulMessageType: 0x00000002, _ulMessageSubType: 0x00000009, _ulMessageOption: "
                            L"0x00000003, _ulOption: 0x00000004",
                            L"!!! *** CFunctionProvider::SendMessage() - Invalid Value Type was specified. "
                            L"VT[0x00000002],VST[0x00000009]"));
}

TEST(FunctionProvider, TheSeventhOperationIsNotImplemented)
{
    CFunctionProvider cProvider;
    EXPECT_EQ(cProvider.ReservedOperation(), Result::g_ulNotImplemented);
    EXPECT_EQ(cProvider.Initialize(), Result::g_ulSuccess);
    EXPECT_EQ(cProvider.Uninitialize(), Result::g_ulSuccess);
}

TEST(FunctionXml, KnowsItsValueTypesAndTestsThemBeforeTheRecord)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    std::uint32_t ulKnown = 0;
    for (unsigned uBit = 0; uBit < 32; ++uBit) {
        if (cFunctionXml.CheckParameters({.ulValueType = 1U << uBit, .pValueData = &ulKnown}) == Result::g_ulSuccess) {
            ulKnown |= 1U << uBit;
        }
    }
    EXPECT_EQ(ulKnown, 0x7FFE7FU);
    EXPECT_EQ(cFunctionXml.CheckParameters({.ulValueType = 0x3, .pValueData = &ulKnown}), Result::g_ulInvalidArgument);
    EXPECT_EQ(cFunctionXml.CheckParameters({.ulValueType = 0x80, .ulValueSubType = 1}), Result::g_ulInvalidArgument);
    EXPECT_EQ(cTrace.Messages().back(), L"*** CFunctionXml::CheckParameters() - Invalid Value Type was specified. "
                                        L"VT[0x00000080],VST[0x00000001]");
}

TEST(FunctionXml, WhatHasNoHandlerIsAnInvalidArgument)
{
    TraceRecorder cTrace(0x101);
    CFunctionXml cFunctionXml;
    int iRecord = 0;
    for (const std::uint32_t ulValueType : {0x40U, 0x4000U, 0x100000U}) {
        cTrace.Clear();
        EXPECT_EQ(cFunctionXml.QueryValue({.ulValueType = ulValueType, .pValueData = &iRecord}),
                  Result::g_ulInvalidArgument);
        std::wstring tszLine;
        ZkCommon::String::Format(
            tszLine, L"!!! *** CFunctionXml::QueryValue() - _pValueData was invalid. VT[0x%08x],VST[0x%08x]",
            ulValueType, 0);
        EXPECT_THAT(cTrace.Lines(), Contains(tszLine));
    }
    cTrace.Clear();
    EXPECT_EQ(cFunctionXml.StoreValue({.ulValueType = 0x400000, .pValueData = &iRecord}), Result::g_ulInvalidArgument);
    EXPECT_THAT(cTrace.Lines(), Contains(L"!!! *** CFunctionXml::StoreValue() -  Not Support _ulValueType or "
                                         L"_ulValueSubType was specified. [0x00400000]"));
    EXPECT_EQ(cFunctionXml.SendMessage(5, 0, 0, nullptr, 0, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_THAT(cTrace.Lines(), Contains(L"!!! *** CFunctionXml::SendMessage() -  Not Support _ulActionType or "
                                         L"_ulActionSubType was specified. [0x00000005]"));
}

TEST(FunctionManager, CountsItsUsersAndWarnsOfThoseWhoAreLeft)
{
    TraceRecorder cTrace(0x110);
    CFunctionManager cManager;
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L"!!! ***ReferenceCount::AddRef() - Reference Count was the lower limit."));
    cTrace.Clear();
    EXPECT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L"@@@ *** CFunctionManager::Uninitialize() - As possibility, someone has "
                                            L"still been using IFunctionProvide. [1]"));
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_EQ(cTrace.Lines().size(), 1U);
}

TEST(FunctionManager, TheCountStopsAtItsUpperLimit)
{
    class FullCount : public Utility::ReferenceCount
    {
    public:
        FullCount() { m_ulCount = std::numeric_limits<std::uint32_t>::max() - 1; }
    } cCount;
    const TraceRecorder cTrace(0x100);
    cCount.AddRef();
    cCount.AddRef();
    EXPECT_EQ(cCount.Count(), std::numeric_limits<std::uint32_t>::max());
    EXPECT_THAT(cTrace.Messages(), ElementsAre(L"***ReferenceCount::AddRef() - Reference Count was the upper limit."));
}

TEST(FunctionManager, HandsOutFunctionObjectsAndTakesThemBack)
{
    TraceRecorder cTrace;
    CFunctionManager cManager;
    Interface::IFunctionProvider* pFunction = nullptr;
    EXPECT_EQ(cManager.CreateFunction(&pFunction), Result::g_ulSuccess);
    ASSERT_NE(pFunction, nullptr);
    EXPECT_EQ(cManager.FreeFunction(pFunction), Result::g_ulSuccess);
    EXPECT_THAT(cTrace.Lines(), ElementsAre(L".w. [Enter] CFunctionManager::CreateFunction()...",
                                            L".w. [Leave] CFunctionManager::CreateFunction()...",
                                            L".w. [Enter] CFunctionManager::FreeFunction()...",
                                            L".w. [Leave] CFunctionManager::FreeFunction()..."));
    cTrace.Clear();
    EXPECT_EQ(cManager.CreateFunction(nullptr), Result::g_ulInvalidArgument);
    EXPECT_EQ(cManager.FreeFunction(nullptr), Result::g_ulInvalidArgument);
    EXPECT_THAT(cTrace.Lines(),
                ElementsAre(L".w. [Enter] CFunctionManager::CreateFunction()...",
                            L"!!! *** CFunctionManager::CreateFunction() - _ppFunctionContext was invalid.",
                            L".w. [Enter] CFunctionManager::FreeFunction()...",
                            L"!!! *** CServiceManager::FreeFunction() - _pFunctionContext was invalid."));
}

} // namespace
