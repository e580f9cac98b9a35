// The enforcement policy, read and stored through a function object.

#include "Policy.h"

#include "ApiFault.h"
#include "Child.h"
#include "FunctionProvider.h"
#include "FunctionXml.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <vector>

using namespace SrvFrwk;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Varnhelt::DocumentId;

namespace {

constexpr const char* g_szPolicy = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- kept -->
<PolicyEnforceLayer release="17">
  <PolicyControllers>
    <Other/>
    <PolicyController Controller="eAntiVirus" label="Virenschutz" note="kept">
      <Permission>eAllow</Permission>
      <AllowToLoadSetupMode>TRUE</AllowToLoadSetupMode>
      <PolicyProviders>
        <!-- kept too -->
        <PolicyProvider Controller="eAntiVirus" Provider="eRealTimeScan" label="At once">
          <Permission>ePartial</Permission>
          <Deploy>eWaitInstalled</Deploy>
        </PolicyProvider>
        <PolicyProvider Controller="eAntiVirus" Provider="eMalwareScan"/>
      </PolicyProviders>
    </PolicyController>
    <PolicyController Controller="eFirewall"/>
    <PolicyController Controller="eFirewall" note="the second"/>
  </PolicyControllers>
</PolicyEnforceLayer>
)";

PolicyController Firewall(std::uint32_t _ulPermission)
{
    return {4, _ulPermission, false, {}};
}

std::uint32_t Query(std::uint32_t _ulValueType, void* _pValueData)
{
    CFunctionProvider cProvider;
    return cProvider.QueryValue(0, _ulValueType, 0, _pValueData, 0, nullptr);
}

std::uint32_t Store(std::vector<PolicyController> _vecPolicy)
{
    CFunctionProvider cProvider;
    return cProvider.StoreValue(0, ValueType::g_ulEnforcePolicy, 0, &_vecPolicy, 0, nullptr);
}

/** The lines that the policy's own methods write, entries and exits left out. */
std::vector<std::wstring> OwnLines(const TraceRecorder& _rTrace)
{
    std::vector<std::wstring> vecLine;
    for (const std::wstring& tszLine : _rTrace.Lines()) {
        if (!tszLine.starts_with(L".w. ") && tszLine.find(L"nLenConverted") == std::wstring::npos) {
            vecLine.push_back(tszLine);
        }
    }
    return vecLine;
}

class Policy : public testing::Test
{
protected:
    Policy() { m_cProduct.Store(DocumentId::Policy, g_szPolicy); }

    TestProduct m_cProduct;
    std::vector<PolicyController> m_vecPolicy = std::vector<PolicyController>(3);
};

#define QUERY L"*** CFunctionXml::QueryValueAsEnforcePolicy() "
#define PROVIDER L"*** CFunctionXml::SetPolicyProvider() "
#define RULE L"---------------------------------------------."

TEST_F(Policy, AQueryReadsControllersAndProvidersAndDumpsEach)
{
    const TraceRecorder cTrace;
    ASSERT_EQ(Query(ValueType::g_ulEnforcePolicy, &m_vecPolicy), Result::g_ulSuccess);
    ASSERT_EQ(m_vecPolicy.size(), 3U);
    EXPECT_EQ(m_vecPolicy[0].ulControllerType, 1U);
    EXPECT_EQ(m_vecPolicy[0].ulPermission, 1U);
    EXPECT_TRUE(m_vecPolicy[0].bAllowToLoadInSetupMode);
    ASSERT_EQ(m_vecPolicy[0].vecProvider.size(), 2U);
    EXPECT_EQ(m_vecPolicy[0].vecProvider[0].ulControllerType, 1U);
    EXPECT_EQ(m_vecPolicy[0].vecProvider[0].ulProviderType, 1U);
    EXPECT_EQ(m_vecPolicy[0].vecProvider[0].ulPermission, 2U);
    EXPECT_EQ(m_vecPolicy[0].vecProvider[0].ulDeployState, 4U);
    EXPECT_EQ(m_vecPolicy[1].ulControllerType, 4U);
    EXPECT_THAT(m_vecPolicy[1].vecProvider, IsEmpty());
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());

    const wchar_t* const aFirewall[] = {
        L"!!! *** Frwk::Utility::GetPermission() - Not support Permission was specified. []",
        L"!!! * Frwk::Utility::GetBooleanType() - Invalid boolean Type. []",
        L"@@@ " QUERY RULE,
        L"@@@ " QUERY L"- [label]         :.",
        L"@@@ " QUERY L"- [ControllerType]:0x00000004.",
        L"@@@ " QUERY L"- [ePermission]   :0x00000000.",
        L"@@@ " QUERY L"- [Allow Setup]   :false.",
        L"@@@ " QUERY RULE,
    };
    std::vector<std::wstring> vecExpected = {
        L".w. [Enter] CFunctionProvider::QueryValue()...VT[0x00000002],VST[0x00000000]",
        L".w. [Enter] CFunctionXml::QueryValue()...VT[0x00000002],VST[0x00000000]",
        L".w. [Enter] CFunctionXml::QueryValueAsEnforcePolicy()...",
        L".w. [Enter] CEncFile::DecryptedPath()...",
        L".w. [Enter] CEncFile::Decrypt()...",
        L".w. [Enter] ZkCommon::Storage::File::DecryptFile()...",
        L"@@@ nLenConverted: " + std::to_wstring(std::string_view(g_szPolicy).size()),
        L".w. [Leave] ZkCommon::Storage::File::DecryptFile()...",
        L".w. [Leave] CEncFile::Decrypt()...",
        L".w. [Leave] CEncFile::DecryptedPath()...",
        L"@@@ " QUERY RULE,
        L"@@@ " QUERY L"- [label]         :Virenschutz.",
        L"@@@ " QUERY L"- [ControllerType]:0x00000001.",
        L"@@@ " QUERY L"- [ePermission]   :0x00000001.",
        L"@@@ " QUERY L"- [Allow Setup]   :true.",
        L"@@@ " QUERY RULE,
        L"@@@ " PROVIDER RULE,
        L"@@@ " PROVIDER L"- [label]         :At once.",
        L"@@@ " PROVIDER L"- [ControllerType]:0x00000001.",
        L"@@@ " PROVIDER L"- [ProviderType]  :0x00000001.",
        L"@@@ " PROVIDER L"- [ePermission]   :0x00000002.",
        L"@@@ " PROVIDER L"- [eDeployState]  :0x00000004.",
        L"@@@ " PROVIDER RULE,
        L"!!! *** Frwk::Utility::GetPermission() - Not support Permission was specified. []",
        L"!!! *** Frwk::Utility::GetDeployState() - Invalid Deploy State Type. []",
        L"@@@ " PROVIDER RULE,
        L"@@@ " PROVIDER L"- [label]         :.",
        L"@@@ " PROVIDER L"- [ControllerType]:0x00000001.",
        L"@@@ " PROVIDER L"- [ProviderType]  :0x02000000.",
        L"@@@ " PROVIDER L"- [ePermission]   :0x00000000.",
        L"@@@ " PROVIDER L"- [eDeployState]  :0x00000000.",
        L"@@@ " PROVIDER RULE,
    };
    vecExpected.insert(vecExpected.end(), std::begin(aFirewall), std::end(aFirewall));
    vecExpected.insert(vecExpected.end(), std::begin(aFirewall), std::end(aFirewall));
    vecExpected.insert(vecExpected.end(), {L".w. [Leave] CFunctionXml::QueryValueAsEnforcePolicy()...",
                                           L".w. [Leave] CFunctionXml::QueryValue()...",
                                           L".w. [Leave] CFunctionProvider::QueryValue()..."});
    EXPECT_THAT(cTrace.Lines(), ElementsAreArray(vecExpected));
}

TEST_F(Policy, OneControllerIsAnsweredAndDeniedWhereThePolicyLacksIt)
{
    const std::wstring tszMethod = L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - ";
    TraceRecorder cTrace(0x110);
    PolicyController stController{1, 0, false, {}};
    ASSERT_EQ(Query(ValueType::g_ulSpecificEnforcePolicy, &stController), Result::g_ulSuccess);
    EXPECT_EQ(stController.ulPermission, 1U);
    EXPECT_TRUE(stController.bAllowToLoadInSetupMode);
    EXPECT_EQ(stController.vecProvider.size(), 2U);
    std::vector<std::wstring> vecLast = OwnLines(cTrace);
    vecLast.erase(vecLast.begin(), vecLast.end() - 4);
    EXPECT_THAT(vecLast, ElementsAre(L"@@@ " QUERY RULE, L"@@@ " + tszMethod + L"[ControllerType]:0x00000001.",
                                     L"@@@ " + tszMethod + L"[ePermission]   :0x00000001.",
                                     L"@@@ " + tszMethod + L"[Allow Setup]   :true."));

    stController.ulControllerType = 0x999;
    ASSERT_EQ(Query(ValueType::g_ulSpecificEnforcePolicy, &stController), Result::g_ulSuccess);
    EXPECT_EQ(stController.ulControllerType, 0x999U);
    EXPECT_EQ(stController.ulPermission, 0U);
    EXPECT_FALSE(stController.bAllowToLoadInSetupMode);
    EXPECT_THAT(stController.vecProvider, IsEmpty());
    EXPECT_EQ(cTrace.Messages().back(), tszMethod + L"The specific ControllerType [0x00000999] does not exist, "
                                                    L"return eDeny as default value");

    m_cProduct.Store(DocumentId::Policy, "<PolicyEnforceLayer>");
    stController.ulPermission = 2;
    EXPECT_EQ(Query(ValueType::g_ulSpecificEnforcePolicy, &stController), Result::g_ulFailed);
    EXPECT_EQ(stController.ulPermission, 2U) << "a failure leaves the record alone";
    EXPECT_THAT(cTrace.Messages(), Contains(tszMethod + L"this->QueryValueAsEnforcePolicy() failed(). [0x80040201]"));
}

TEST_F(Policy, AStoreWritesWhatRecordsNameAndKeepsAllElse)
{
    const std::vector<PolicyController> vecPolicy = {
        {1, 7, false, {{1, 0x2000000, 1, 1}, {1, 0x2, 1, 1}, {0x10000, 1, 0, 9}}}, // no element for the second
        Firewall(2),
    };
    const TraceRecorder cTrace(0x110);
    ASSERT_EQ(Store(vecPolicy), Result::g_ulSuccess);
    const char* szExpected = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- kept -->
<PolicyEnforceLayer release="17">
	<PolicyControllers>
		<Other/>
		<PolicyController Controller="eAntiVirus" label="Virenschutz" note="kept">
			<Permission>eDeny</Permission>
			<AllowToLoadSetupMode>false</AllowToLoadSetupMode>
			<PolicyProviders>
				<!-- kept too -->
				<PolicyProvider Controller="eCommon" Provider="eRealTimeScan" label="At once">
					<Permission>eDeny</Permission>
					<Deploy>eNoDeploy</Deploy>
				</PolicyProvider>
				<PolicyProvider Controller="eAntiVirus" Provider="eMalwareScan">
					<Permission>eAllow</Permission>
					<Deploy>eInstalled</Deploy>
				</PolicyProvider>
			</PolicyProviders>
		</PolicyController>
		<PolicyController Controller="eFirewall">
			<Permission>ePartial</Permission>
			<AllowToLoadSetupMode>false</AllowToLoadSetupMode>
		</PolicyController>
		<PolicyController Controller="eFirewall" note="the second"/>
	</PolicyControllers>
</PolicyEnforceLayer>
)";
    std::string sPlain = m_cProduct.Plain(DocumentId::Policy);
    std::erase(sPlain, '\r');
    EXPECT_EQ(sPlain, szExpected);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());

    const std::wstring tszStore = L"@@@ *** CFunctionXml::StoreValueAsEnforcePolicy() ";
    const std::wstring tszProvider = L"@@@ *** CFunctionXml::SetPolicyProviderXml() ";
    EXPECT_THAT(
        OwnLines(cTrace),
        ElementsAre(tszStore + RULE, tszStore + L"- [label]         :Virenschutz.",
                    tszStore + L"- [ControllerType]:0x00000001.", tszStore + L"- [ePermission]   :0x00000007.",
                    tszStore + L"- [Allow Setup]   :false.", tszStore + RULE, tszProvider + RULE,
                    tszProvider + L"- [label]         :.", tszProvider + L"- [ControllerType]:0x00000001.",
                    tszProvider + L"- [ProviderType]  :0x02000000.", tszProvider + L"- [ePermission]   :0x00000001.",
                    tszProvider + L"- [eDeployState]  :0x00000001.", tszProvider + RULE, tszProvider + RULE,
                    tszProvider + L"- [label]         :At once.", tszProvider + L"- [ControllerType]:0x00010000.",
                    tszProvider + L"- [ProviderType]  :0x00000001.", tszProvider + L"- [ePermission]   :0x00000000.",
                    tszProvider + L"- [eDeployState]  :0x00000009.", tszProvider + RULE, tszStore + RULE,
                    tszStore + L"- [label]         :.", tszStore + L"- [ControllerType]:0x00000004.",
                    tszStore + L"- [ePermission]   :0x00000002.", tszStore + L"- [Allow Setup]   :false.",
                    tszStore + RULE));

    const std::string sStored = m_cProduct.Stored(DocumentId::Policy);
    ASSERT_EQ(Store(vecPolicy), Result::g_ulSuccess);
    EXPECT_EQ(m_cProduct.Stored(DocumentId::Policy), sStored) << "the same records again change nothing";
}

TEST_F(Policy, AStoreThatFailsLeavesTheDocumentByteForByte)
{
    const std::string sStored = m_cProduct.Stored(DocumentId::Policy);
    const std::wstring tszPath = m_cProduct.Folder().File(L"FwPolicy.xen");
    const auto Lock = [&]() -> std::shared_ptr<void> {
        return std::make_shared<ZkCommon::FileHandle>(
            ::CreateFileW(tszPath.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    };
    const auto Deny = [&]() -> std::shared_ptr<void> {
        ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_READONLY);
        return {nullptr, [&](void*) { ::SetFileAttributesW(tszPath.c_str(), FILE_ATTRIBUTE_NORMAL); }};
    };
    const struct
    {
        int iLine;
        std::vector<PolicyController> vecPolicy;
        std::function<std::shared_ptr<void>()> fnFault;
        std::wstring tszLast;
    } aRow[] = {
        {__LINE__, {Firewall(1), {8, 1, true, {}}}, {}, L"<PolicyController> was not found."},
        {__LINE__, {Firewall(1)}, Lock, L"CEncFile::Encrypt() failed"},
        {__LINE__, {Firewall(1)}, Deny, L"CEncFile::Encrypt() failed"},
        {__LINE__,
         {Firewall(1)},
         [] { return MakeFault<API(MoveFileExW)>(ERROR_DISK_FULL, 1); },
         L"CEncFile::Encrypt() failed"},
        // The first write is the copy that is read, the second the new document in plain, the third the encrypted one.
        {__LINE__, {Firewall(1)}, [] { return MakeFault<API(WriteFile)>(ERROR_DISK_FULL, 1); }, L"tszXmlFile is empty"},
        {__LINE__,
         {Firewall(1)},
         [] { return MakeFault<API(WriteFile)>(ERROR_DISK_FULL, 2); },
         L"CEncFile::Encrypt() failed"},
        {__LINE__,
         {Firewall(1)},
         [] { return MakeFault<API(WriteFile)>(ERROR_DISK_FULL, 3); },
         L"CEncFile::Encrypt() failed"},
    };
    for (const auto& stRow : aRow) {
        const testing::ScopedTrace cRow(__FILE__, stRow.iLine, "row");
        const TraceRecorder cTrace(0x100);
        {
            const std::shared_ptr<void> pFault = stRow.fnFault ? stRow.fnFault() : nullptr;
            EXPECT_EQ(Store(stRow.vecPolicy), Result::g_ulFailed);
        }
        EXPECT_THAT(cTrace.Messages(), Contains(L"*** CFunctionXml::StoreValueAsEnforcePolicy() - " + stRow.tszLast));
        EXPECT_EQ(m_cProduct.Stored(DocumentId::Policy), sStored);
        EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
    }

    m_cProduct.Store(DocumentId::Policy, "<PolicyEnforceLayer>"); // not well-formed
    const TraceRecorder cTrace(0x100);
    EXPECT_EQ(Store({Firewall(1)}), Result::g_ulFailed);
    EXPECT_THAT(cTrace.Messages(), Contains(L"*** CFunctionXml::StoreValueAsEnforcePolicy() - Got "
                                            L"ZkCommon::Storage::XmlException() failed. [0x00000006]"));
    EXPECT_EQ(m_cProduct.Plain(DocumentId::Policy), "<PolicyEnforceLayer>");
}

BOOL WINAPI StopAtFlush(HANDLE)
{
    Child::WaitToBeKilled();
}

TEST(PolicyStore, DISABLED_StopsBeforeTheDocumentIsReplaced)
{
    DWORD ulProtection = 0;
    ::VirtualProtect(&__imp_FlushFileBuffers, sizeof(void*), PAGE_READWRITE, &ulProtection);
    __imp_FlushFileBuffers = reinterpret_cast<void*>(&StopAtFlush);
    Store({Firewall(1)}); // the parent's product is registered
}

TEST_F(Policy, AStoreThatIsKilledLeavesTheDocumentAndNothingElse)
{
    const std::string sStored = m_cProduct.Stored(DocumentId::Policy);
    Child cChild("PolicyStore.DISABLED_StopsBeforeTheDocumentIsReplaced", m_cProduct.Folder().Path().wstring());
    ASSERT_TRUE(cChild.IsReady());
    EXPECT_THAT(m_cProduct.Leftovers(), testing::Not(IsEmpty()));
    cChild.Kill();
    EXPECT_EQ(m_cProduct.Stored(DocumentId::Policy), sStored);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
}

TEST_F(Policy, ANullRecordBehindTheDispatchIsAMissingObject)
{
    const TraceRecorder cTrace(0x100);
    CFunctionXml cFunctionXml;
    EXPECT_EQ(cFunctionXml.QueryValueAsEnforcePolicy({}), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.StoreValueAsEnforcePolicy({}), Result::g_ulMissingObject);
    EXPECT_EQ(cFunctionXml.QueryValueAsSpecificEnforcePolicy({}), Result::g_ulMissingObject);
    EXPECT_THAT(cTrace.Messages(),
                ElementsAre(L"*** CFunctionXml::QueryValueAsEnforcePolicy() - pArrayOfEnPolicy was invalid.",
                            L"*** CFunctionXml::StoreValueAsEnforcePolicy() - pArrayOfEnPolicy was invalid.",
                            L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - pPolicyCtl was invalid."));
}

} // namespace
