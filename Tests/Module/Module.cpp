// The real Varnhelt.dll, loaded as a host loads it. That it leaves nothing behind is the sample host's test of what ships:
// the debug containers of this build keep mutexes of their own.

#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"
#include "VarnheltLoader.h"
#include "ZkComn_File.h"

#include <array>
#include <atomic>
#include <filesystem>
#include <gmock/gmock.h>
#include <vector>

using namespace SrvFrwk;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szOneUnit = "<BaseFramework><FrameworkService Layer=\"eServiceLayer\" version=\"1\">"
                                    "<ModuleName>one.dll</ModuleName></FrameworkService></BaseFramework>";

std::filesystem::path ModulePath()
{
    return std::filesystem::path(ProgramFolder()) / L"Varnhelt.dll";
}

std::uint32_t QueryUnits(const Varnhelt::Module& _rModule, std::vector<ServiceUnit>& _rvecUnit)
{
    return _rModule.CreateFunction()->QueryValue(0, ValueType::g_ulServiceUnit, 0, &_rvecUnit, 0, nullptr);
}

class Module : public testing::Test
{
protected:
    Module() { m_cProduct.Store(DocumentId::ServiceUnits, g_szOneUnit); }

    TestProduct m_cProduct;
};

TEST_F(Module, AHostGetsTheCatalogueAndTheParserLibraryIsGoneAfterwards)
{
    const Varnhelt::Module cModule(ModulePath());
    std::vector<ServiceUnit> vecUnit;
    ASSERT_EQ(QueryUnits(cModule, vecUnit), Result::g_ulSuccess);
    ASSERT_EQ(vecUnit.size(), 1U);
    EXPECT_EQ(vecUnit[0].tszModuleName, L"one.dll");
    EXPECT_EQ(::GetModuleHandleW(L"libexpat.dll"), nullptr);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
}

TEST_F(Module, TheParserLibraryOfTheInstalledFolderIsTakenFirstAndOneThatIsNoneFailsTheQuery)
{
    const Varnhelt::Module cModule(ModulePath());
    std::vector<ServiceUnit> vecUnit;
    m_cProduct.Folder().Write(L"libexpat.dll", "no library");
    EXPECT_EQ(QueryUnits(cModule, vecUnit), Result::g_ulFailed);
    std::filesystem::copy_file(std::filesystem::path(ProgramFolder()) / L"libexpat.dll",
                               m_cProduct.Folder().File(L"libexpat.dll"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(QueryUnits(cModule, vecUnit), Result::g_ulSuccess);
    EXPECT_EQ(::GetModuleHandleW(L"libexpat.dll"), nullptr);
}

TEST_F(Module, ThreadsShareOneFunctionObject)
{
    struct Shared
    {
        Interface::IFunctionProvider* pFunction;
        std::atomic<int> iGood = 0;
    };
    const Varnhelt::Module cModule(ModulePath());
    const Varnhelt::Module::Function pFunction = cModule.CreateFunction();
    Shared stShared{pFunction.get()};
    const auto Work = [](void* _pShared) -> DWORD {
        auto& rShared = *static_cast<Shared*>(_pShared);
        for (int i = 0; i < 5; ++i) {
            std::vector<ServiceUnit> vecUnit;
            if (rShared.pFunction->QueryValue(0, ValueType::g_ulServiceUnit, 0, &vecUnit, 0, nullptr) ==
                    Result::g_ulSuccess &&
                vecUnit.size() == 1) {
                ++rShared.iGood;
            }
        }
        return 0;
    };
    std::array<ZkCommon::Handle, 8> aThread;
    for (auto& hThread : aThread) {
        hThread.Reset(::CreateThread(nullptr, 0, Work, &stShared, 0, nullptr));
    }
    for (const auto& hThread : aThread) {
        ::WaitForSingleObject(hThread.Get(), INFINITE);
    }
    EXPECT_EQ(stShared.iGood, 40);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
}

TEST_F(Module, AModuleWithoutTraceSettingsIsSilentAndWorks)
{
    const TraceRecorder cTrace; // the log of this program: the module has its own, without settings
    {
        const Varnhelt::Module cModule(ModulePath());
        std::vector<ServiceUnit> vecUnit;
        EXPECT_EQ(QueryUnits(cModule, vecUnit), Result::g_ulSuccess);
    }
    EXPECT_THAT(cTrace.Lines(), IsEmpty());
}

} // namespace
