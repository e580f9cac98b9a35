// The entry points by themselves, as part of this program: what happens when the module could not set itself up.

#include "AllocationFault.h"
#include "SrvFrwk_ResultCode.h"
#include "TraceRecorder.h"
#include "Varnhelt.h"

#include <gmock/gmock-more-matchers.h>
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID);

using namespace SrvFrwk;

namespace {

TEST(EntryPoints, WithoutAManagerEveryExportFailsAndTheLibraryStays)
{
    const TraceRecorder cTrace(0x110);
    Interface::IFunctionProvider* const pUntouched = reinterpret_cast<Interface::IFunctionProvider*>(0x1);
    Interface::IFunctionProvider* pFunction = pUntouched;
    EXPECT_EQ(Vrnt_Initialize(0, nullptr), Result::g_ulMissingObject);
    EXPECT_EQ(Vrnt_Uninitialize(0, nullptr), Result::g_ulMissingObject);
    EXPECT_EQ(Vrnt_CreateFunction(&pFunction, 0, nullptr), Result::g_ulMissingObject);
    EXPECT_EQ(Vrnt_FreeFunction(nullptr), Result::g_ulMissingObject);
    EXPECT_EQ(pFunction, pUntouched);
    EXPECT_EQ(cTrace.Lines(), Lines({L"!!! ***Vrnt_Initialize() - ::g_pFunctionManager was invalid.",
                                     L"!!! ***Vrnt_Uninitialize() - ::g_pFunctionManager was invalid.",
                                     L"!!! ***Vrnt_CreateFunction() - ::g_pFunctionManager was invalid.",
                                     L"!!! ***Vrnt_FreeFunction() - ::g_pFunctionManager was invalid."}));
}

TEST(EntryPoints, AttachmentSucceedsWithAndWithoutMemoryForTheManager)
{
    const auto Main = [](DWORD _ulReason) { return DllMain(::GetModuleHandleW(nullptr), _ulReason, nullptr); };
    {
        const AllocationFault cFault(1, 1);
        EXPECT_TRUE(Main(DLL_PROCESS_ATTACH));
        EXPECT_EQ(Vrnt_Initialize(0, nullptr), Result::g_ulMissingObject);
    }
    EXPECT_TRUE(Main(DLL_PROCESS_DETACH) && Main(DLL_PROCESS_ATTACH) && Main(DLL_THREAD_ATTACH));
    Interface::IFunctionProvider* pFunction = nullptr;
    EXPECT_EQ(Vrnt_CreateFunction(&pFunction, 0, nullptr), Result::g_ulSuccess); // no Vrnt_Initialize before
    EXPECT_EQ(Vrnt_FreeFunction(pFunction), Result::g_ulSuccess);
    EXPECT_EQ(Vrnt_Initialize(0, nullptr), Result::g_ulSuccess);
    EXPECT_EQ(Vrnt_CreateFunction(nullptr, 0, nullptr), Result::g_ulInvalidArgument);
    EXPECT_TRUE(Main(DLL_PROCESS_DETACH));
    EXPECT_EQ(Vrnt_Initialize(0, nullptr), Result::g_ulMissingObject);
}

} // namespace
