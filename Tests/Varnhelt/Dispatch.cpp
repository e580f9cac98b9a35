// What function objects and CFunctionXml let through, refuse and log, without any document.

#include "FunctionManager.h"
#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "TraceRecorder.h"

#include <gmock/gmock-more-matchers.h>
#include <limits>

using namespace SrvFrwk;

namespace {

TEST(Dispatch, EachLevelHasItsValueTypesAndTestsThemBeforeTheRecord)
{
    CFunctionProvider cProvider;
    CFunctionXml cFunctionXml;
    std::uint32_t ulQueried = 0;
    std::uint32_t ulStored = 0;
    std::uint32_t ulKnown = 0;
    for (std::uint32_t ulBit = 1; ulBit != 0; ulBit <<= 1) {
        ulQueried |= cProvider.QueryValue(0, ulBit, 7, nullptr, 0, nullptr) != Result::g_ulRefused ? ulBit : 0;
        ulStored |= cProvider.StoreValue(0, ulBit, 7, nullptr, 0, nullptr) != Result::g_ulRefused ? ulBit : 0;
        const std::uint32_t ulChecked = cFunctionXml.CheckParameters({.ulValueType = ulBit, .pValueData = &ulKnown});
        ulKnown |= ulChecked == Result::g_ulSuccess ? ulBit : 0;
    }
    EXPECT_EQ(ulQueried, 0xDFE7FU);
    EXPECT_EQ(ulStored, 0x100002U);
    EXPECT_EQ(ulKnown, 0x7FFE7FU);
    EXPECT_EQ(cProvider.QueryValue(0, 0x3, 7, nullptr, 0, nullptr), Result::g_ulRefused);
    EXPECT_EQ(cFunctionXml.CheckParameters({.ulValueType = 0x3, .pValueData = &ulKnown}), Result::g_ulInvalidArgument);
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(cFunctionXml.CheckParameters({.ulValueType = 0x80, .ulValueSubType = 1}), Result::g_ulInvalidArgument);
    EXPECT_EQ(cTrace.Messages(), Lines({L"*** CFunctionXml::CheckParameters() - Invalid Value Type was "
                                        L"specified. VT[0x00000080],VST[0x00000001]"}));
}

TEST(FunctionProvider, ARefusedRequestHasNoLeaveLineAndAFailedOneHas)
{
    const TraceRecorder cTrace;
    CFunctionProvider cProvider;
    EXPECT_EQ(cProvider.QueryValue(0, 0x20000, 5, nullptr, 0, nullptr), Result::g_ulRefused);
    EXPECT_EQ(cProvider.QueryValue(0, 0x1, 2, nullptr, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_EQ(cProvider.StoreValue(0, 0x2, 0, nullptr, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_EQ(cProvider.SendMessage(2, 9, 3, nullptr, 0, 4, nullptr), Result::g_ulFailed);
    EXPECT_EQ(
        cTrace.Lines(),
        Lines({L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00020000],VST[0x00000005]",
               L"!!! *** CFunctionProvider::QueryValue() - Invalid Value Type was specified. "
               L"VT[0x00020000],VST[0x00000005]",
               L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00000001],VST[0x00000002]",
               L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00000001],VST[0x00000002]",
               L"!!! *** CFunctionXml::CheckParameters() - _pValueData was invalid. VT[0x00000001],VST[0x00000002]",
               L"!!! *** CFunctionXml::QueryValue() - this->CheckParameters() failed. [0x80040204], "
               L"VT[0x00000001],VST[0x00000002]",
               L"!!! *** CFunctionProvider::QueryValue() - pFunctionXml->QueryValue() failed. [0x80040204], "
               L"VT[0x00000001],VST[0x00000002]",
               L".w. [Leave] CFunctionProvider::QueryValue()...",
               L".w. [Enter] CFunctionProvider::StoreValue()...VT[0x00000002],VST[0x00000000]",
               L".w. [Enter] CFunctionXml::StoreValue()...VT[0x00000002],VST[0x00000000]",
               L"!!! *** CFunctionXml::CheckParameters() - _pValueData was invalid. VT[0x00000002],VST[0x00000000]",
               L"!!! *** CFunctionXml::StoreValue() - this->CheckParameters() failed. [0x80040204], "
               L"VT[0x00000002],VST[0x00000000]",
               L"!!! *** CFunctionProvider::StoreValue() - pFunctionXml->StoreValue() failed. [0x80040204], "
               L"VT[0x00000002],VST[0x00000000]",
               L".w. [Leave] CFunctionProvider::QueryValue()...", L".w. [Enter] CFunctionProvider::SendMessage()...",
               L"@@@ _ulMessageType: 0x00000002, _ulMessageSubType: 0x00000009, _ulMessageOption: 0x00000003, "
               L"_ulOption: 0x00000004",
               L"!!! *** CFunctionProvider::SendMessage() - Invalid Value Type was specified. "
               L"VT[0x00000002],VST[0x00000009]"}));
    EXPECT_EQ(cProvider.ReservedOperation(), Result::g_ulNotImplemented);
}

TEST(FunctionXml, WhatHasNoHandlerIsAnInvalidArgument)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    int iRecord = 0;
    for (const std::uint32_t ulValueType : {0x40U, 0x4000U, 0x100000U}) {
        EXPECT_EQ(cFunctionXml.QueryValue({.ulValueType = ulValueType, .pValueData = &iRecord}),
                  Result::g_ulInvalidArgument);
    }
    EXPECT_EQ(cFunctionXml.StoreValue({.ulValueType = 0x400000, .pValueData = &iRecord}), Result::g_ulInvalidArgument);
    EXPECT_EQ(cFunctionXml.SendMessage(5, 0, 0, nullptr, 0, 0, nullptr), Result::g_ulInvalidArgument);
    const std::wstring tszQuery = L"*** CFunctionXml::QueryValue() - _pValueData was invalid. ";
    EXPECT_EQ(cTrace.Messages(),
              Lines({tszQuery + L"VT[0x00000040],VST[0x00000000]", tszQuery + L"VT[0x00004000],VST[0x00000000]",
                     tszQuery + L"VT[0x00100000],VST[0x00000000]",
                     L"*** CFunctionXml::StoreValue() -  Not Support _ulValueType or _ulValueSubType was "
                     L"specified. [0x00400000]",
                     L"*** CFunctionXml::SendMessage() -  Not Support _ulActionType or _ulActionSubType was "
                     L"specified. [0x00000005]"}));
}

TEST(FunctionManager, CountsItsUsersAndWarnsOfThoseWhoAreLeft)
{
    const TraceRecorder cTrace(0x110);
    CFunctionManager cManager;
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Initialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_EQ(cManager.Uninitialize(), Result::g_ulSuccess);
    EXPECT_EQ(cTrace.Lines(), Lines({L"!!! ***ReferenceCount::AddRef() - Reference Count was the lower limit.",
                                     L"@@@ *** CFunctionManager::Uninitialize() - As possibility, someone has "
                                     L"still been using IFunctionProvide. [1]"}));
}

TEST(FunctionManager, TheCountStopsAtItsUpperLimit)
{
    struct : Utility::ReferenceCount
    {
        void Fill() { m_ulCount = std::numeric_limits<std::uint32_t>::max() - 1; }
    } cCount;
    cCount.Fill();
    const TraceRecorder cTrace(0x100);
    cCount.AddRef();
    cCount.AddRef();
    EXPECT_EQ(cCount.Count(), std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(cTrace.Messages(), Lines({L"***ReferenceCount::AddRef() - Reference Count was the upper limit."}));
}

TEST(FunctionManager, HandsOutFunctionObjectsAndTakesThemBack)
{
    const TraceRecorder cTrace;
    CFunctionManager cManager;
    Interface::IFunctionProvider* pFunction = nullptr;
    EXPECT_EQ(cManager.CreateFunction(&pFunction), Result::g_ulSuccess);
    ASSERT_NE(pFunction, nullptr);
    EXPECT_EQ(cManager.FreeFunction(pFunction), Result::g_ulSuccess);
    EXPECT_EQ(cManager.CreateFunction(nullptr), Result::g_ulInvalidArgument);
    EXPECT_EQ(cManager.FreeFunction(nullptr), Result::g_ulInvalidArgument);
    const std::wstring tszCreate = L"CFunctionManager::CreateFunction()";
    const std::wstring tszFree = L"CFunctionManager::FreeFunction()";
    EXPECT_EQ(cTrace.Lines(), Lines({L".w. [Enter] " + tszCreate + L"...", L".w. [Leave] " + tszCreate + L"...",
                                     L".w. [Enter] " + tszFree + L"...", L".w. [Leave] " + tszFree + L"...",
                                     L".w. [Enter] " + tszCreate + L"...",
                                     L"!!! *** CFunctionManager::CreateFunction() - _ppFunctionContext was invalid.",
                                     L".w. [Enter] " + tszFree + L"...",
                                     L"!!! *** CServiceManager::FreeFunction() - _pFunctionContext was invalid."}));
}

} // namespace
