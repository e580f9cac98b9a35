// The real Varnhelt.dll, loaded as a host loads it. That it leaves nothing behind is the sample host's test of what ships:
// the debug containers of this build keep mutexes of their own.

#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"
#include "VarnheltLoader.h"

#include <filesystem>
#include <gmock/gmock-more-matchers.h>
#include <vector>

using namespace SrvFrwk;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szOneUnit = "<BaseFramework><FrameworkService Layer=\"eServiceLayer\" version=\"1\">"
                                    "<ModuleName>one.dll</ModuleName></FrameworkService></BaseFramework>";

class Module : public testing::Test
{
protected:
    Module() { m_cProduct.Store(DocumentId::ServiceUnits, g_szOneUnit); }

    /** Result of a query; one that succeeds gives the one unit. */
    static std::uint32_t Query()
    {
        const Varnhelt::Module cModule(std::filesystem::path(ProgramFolder()) / L"Varnhelt.dll");
        std::vector<ServiceUnit> vecUnit;
        const std::uint32_t ulResult =
            cModule.CreateFunction()->QueryValue(0, ValueType::g_ulServiceUnit, 0, &vecUnit, 0, nullptr);
        EXPECT_TRUE(ulResult != Result::g_ulSuccess || (vecUnit.size() == 1 && vecUnit[0].tszModuleName == L"one.dll"));
        return ulResult;
    }

    TestProduct m_cProduct;
};

TEST_F(Module, TheParserLibraryOfTheInstalledFolderIsTakenFirstAndOneThatIsNoneFailsTheQuery)
{
    m_cProduct.Folder().Write(L"libexpat.dll", "no library");
    EXPECT_EQ(Query(), Result::g_ulFailed);
    std::filesystem::copy_file(std::filesystem::path(ProgramFolder()) / L"libexpat.dll",
                               m_cProduct.Folder().File(L"libexpat.dll"),
                               std::filesystem::copy_options::overwrite_existing);
    const TraceRecorder cTrace; // the log of this program: the module has its own, without settings and silent
    EXPECT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_THAT(cTrace.Lines(), IsEmpty());
    EXPECT_EQ(::GetModuleHandleW(L"libexpat.dll"), nullptr);
}

TEST_F(Module, WorksWithoutASlotForFiberLocalState)
{
    std::vector<DWORD> vecSlot;
    for (DWORD ulSlot = 0; (ulSlot = ::FlsAlloc(nullptr)) != FLS_OUT_OF_INDEXES;) {
        vecSlot.push_back(ulSlot);
    }
    EXPECT_EQ(Query(), Result::g_ulSuccess);
    for (const DWORD ulSlot : vecSlot) {
        ::FlsFree(ulSlot);
    }
}

template <std::uint32_t t_ulValueType, class... TRequest>
constexpr bool g_bMayAsk = requires(const Varnhelt::Module& _rModule, const TRequest&... _rRequest)
{
    _rModule.Query<t_ulValueType>(_rRequest...);
};
template <std::uint32_t t_ulValueType, class TRecord>
constexpr bool g_bMayStore = requires(const Varnhelt::Module& _rModule, const TRecord& _rRecord)
{
    _rModule.Store<t_ulValueType>(_rRecord);
};
static_assert(g_bMayAsk<ValueType::g_ulKeyConfig, XmlDirectoryConfig> && !g_bMayAsk<ValueType::g_ulKeyConfig>);
static_assert(!g_bMayAsk<ValueType::g_ulKeyConfig, RegistryDataRequest>);
static_assert(!g_bMayAsk<ValueType::g_ulServiceUnit, XmlDirectoryConfig>);
static_assert(!g_bMayAsk<ValueType::g_ulVersionInfo, XmlDirectoryConfig> && !g_bMayAsk<ValueType::g_ulPreUpdateList>);
static_assert(g_bMayStore<ValueType::g_ulEnforcePolicy, std::vector<PolicyController>>);
static_assert(!g_bMayStore<ValueType::g_ulEnforcePolicy, PolicyController>);
static_assert(!g_bMayStore<ValueType::g_ulServiceUnit, std::vector<ServiceUnit>>);

TEST_F(Module, TypedCallsAnswerLookUpAndStoreAndAFailureHasItsCodeAndReason)
{
    m_cProduct.Store(DocumentId::ThreatsElmap, "<Quillmar><Threats/></Quillmar>");
    m_cProduct.Store(DocumentId::Policy, "<EnforcePolicy/>");
    const std::filesystem::path tszFolder(ProgramFolder());
    const Varnhelt::Reasons cReasons(tszFolder / L"ZkDbgLog.dll");
    const Varnhelt::Module cModule(tszFolder / L"Varnhelt.dll");
    EXPECT_EQ(cModule.Query<ValueType::g_ulServiceUnit>().at(0).tszModuleName, L"one.dll");
    EXPECT_EQ(cModule.Query<ValueType::g_ulSpecificEnforcePolicy>(4).ulControllerType, 4U);
    EXPECT_FALSE(cModule.Update(m_cProduct.Folder().File(L"none.xml")));
    try {
        cModule.Query<ValueType::g_ulThreatDescription>(7);
        ADD_FAILURE();
    } catch (const Varnhelt::Failure& rFailure) {
        EXPECT_EQ(rFailure.Code(), Result::g_ulFailed);
        EXPECT_EQ(rFailure.Reason(), L"No <Threat>: 7");
        EXPECT_STREQ(rFailure.what(), "0x80040201: No <Threat>: 7");
    }
    const auto stAnswer = cModule.TryQuery<ValueType::g_ulThreatDescription>(7);
    EXPECT_EQ(std::pair(stAnswer.ulResult, stAnswer.cValue.ulIdentifier), std::pair(Result::g_ulFailed, 7U));
    EXPECT_THROW(cModule.Store<ValueType::g_ulEnforcePolicy>(std::vector<PolicyController>(1)), Varnhelt::Failure);
}

} // namespace
