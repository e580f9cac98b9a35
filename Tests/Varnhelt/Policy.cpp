// The enforcement policy, read and stored.

#include "ApiFault.h"
#include "DocumentTest.h"
#include "Frwk_DataTypesUtility.h"
#include "ZkComn_File.h"

#include <filesystem>
#include <fstream>

namespace {

constexpr const char* g_szPolicy = R"(<?xml version="1.0" encoding="UTF-8"?><!-- kept -->
<PolicyEnforceLayer release="17"><PolicyControllers><Other/>
<PolicyController Controller="eAntiVirus" label="Virenschutz" note="kept"><Permission>eAllow</Permission>
<AllowToLoadSetupMode>TRUE</AllowToLoadSetupMode><PolicyProviders><!-- kept too -->
<PolicyProvider Controller="eAntiVirus" Provider="eRealTimeScan" label="At once"><Permission>ePartial</Permission>
<Deploy>eWaitInstalled</Deploy></PolicyProvider><PolicyProvider Controller="eAntiVirus" Provider="eMalwareScan"/>
</PolicyProviders></PolicyController><PolicyController Controller="eFirewall"/>
<PolicyController Controller="eFirewall" note="the second"/></PolicyControllers></PolicyEnforceLayer>)";

PolicyController Firewall(std::uint32_t _ulPermission)
{
    return {4, _ulPermission, false, {}};
}

class Policy : public DocumentTest<ValueType::g_ulEnforcePolicy, std::vector<PolicyController>>
{
protected:
    Policy() { Write(g_szPolicy); }

    /** The lines so far but those of the cipher. */
    Lines OwnLines() const
    {
        Lines vecLine = m_cTrace.Lines();
        std::erase_if(vecLine, [](const std::wstring& _rtszLine) { return _rtszLine.starts_with(L"@@@ nLen"); });
        return vecLine;
    }

    TraceRecorder m_cTrace{0x110};
};

#define DUMP(name) L"@@@ *** CFunctionXml::" name L"() "
#define RULE L"---------------------------------------------."

TEST_F(Policy, AQueryReadsControllersAndProvidersAndDumpsEach)
{
    ASSERT_EQ(Query(), Result::g_ulSuccess);
    const PolicyController stFirst = {1, 1, true, {{1, 1, 2, 4}, {1, 0x2000000, 0, 0}}};
    EXPECT_EQ(m_Records, Records({stFirst, {4, 0, false, {}}, {4, 0, false, {}}}));
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());

    const wchar_t* pszPermission = L"!!! *** Frwk::Utility::GetPermission() - Not support Permission was specified. []";
    const Lines vecFirewall =
        Joined({{pszPermission, L"!!! * Frwk::Utility::GetBooleanType() - Invalid boolean Type. []"},
                Behind(DUMP(L"QueryValueAsEnforcePolicy"),
                       {RULE, L"- [label]         :.", L"- [ControllerType]:0x00000004.",
                        L"- [ePermission]   :0x00000000.", L"- [Allow Setup]   :false.", RULE})});
    EXPECT_EQ(OwnLines(),
              Joined({Behind(DUMP(L"QueryValueAsEnforcePolicy"),
                             {RULE, L"- [label]         :Virenschutz.", L"- [ControllerType]:0x00000001.",
                              L"- [ePermission]   :0x00000001.", L"- [Allow Setup]   :true.", RULE}),
                      Behind(DUMP(L"SetPolicyProvider"),
                             {RULE, L"- [label]         :At once.", L"- [ControllerType]:0x00000001.",
                              L"- [ProviderType]  :0x00000001.", L"- [ePermission]   :0x00000002.",
                              L"- [eDeployState]  :0x00000004.", RULE}),
                      {pszPermission, L"!!! *** Frwk::Utility::GetDeployState() - Invalid Deploy State Type. []"},
                      Behind(DUMP(L"SetPolicyProvider"),
                             {RULE, L"- [label]         :.", L"- [ControllerType]:0x00000001.",
                              L"- [ProviderType]  :0x02000000.", L"- [ePermission]   :0x00000000.",
                              L"- [eDeployState]  :0x00000000.", RULE}),
                      vecFirewall,
                      vecFirewall}));
}

TEST_F(Policy, OneControllerIsAnsweredAndDeniedWhereThePolicyLacksIt)
{
    const std::wstring tszMethod = L"*** CFunctionXml::QueryValueAsSpecificEnforcePolicy() - ";
    PolicyController stController{1, 0, false, {}};
    const auto QueryOne = [&] {
        return CFunctionXml().QueryValue(
            {.ulValueType = ValueType::g_ulSpecificEnforcePolicy, .pValueData = &stController});
    };
    ASSERT_EQ(QueryOne(), Result::g_ulSuccess);
    EXPECT_EQ(stController, PolicyController({1, 1, true, {{1, 1, 2, 4}, {1, 0x2000000, 0, 0}}}));
    const Lines vecLine = m_cTrace.Lines();
    EXPECT_EQ(Lines(vecLine.end() - 4, vecLine.end()),
              Joined({{DUMP(L"QueryValueAsEnforcePolicy") RULE},
                      Behind(L"@@@ " + tszMethod, {L"[ControllerType]:0x00000001.", L"[ePermission]   :0x00000001.",
                                                   L"[Allow Setup]   :true."})}));

    stController.ulControllerType = 0x999;
    ASSERT_EQ(QueryOne(), Result::g_ulSuccess);
    EXPECT_EQ(stController, PolicyController({0x999, 0, false, {}}));
    EXPECT_EQ(m_cTrace.Messages().back(), tszMethod + L"The specific ControllerType [0x00000999] does not exist, "
                                                      L"return eDeny as default value");

    Write("<PolicyEnforceLayer>");
    stController.ulPermission = 2;
    EXPECT_EQ(QueryOne(), Result::g_ulFailed);
    EXPECT_EQ(stController.ulPermission, 2U) << "a failure leaves the record alone";
    EXPECT_EQ(m_cTrace.Messages().back(), tszMethod + L"this->QueryValueAsEnforcePolicy() failed(). [0x80040201]");
}

TEST_F(Policy, AStoreWritesWhatRecordsNameAndKeepsAllElse)
{
    const std::vector<PolicyController> vecPolicy = {
        {1, 7, false, {{1, 0x2000000, 1, 1}, {1, 0x2, 1, 1}, {0x10000, 1, 0, 9}}}, // no element for the second
        Firewall(2),
    };
    ASSERT_EQ(Store(vecPolicy), Result::g_ulSuccess);
    EXPECT_EQ(Plain(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<!-- kept -->\r\n"
              "<PolicyEnforceLayer release=\"17\">\r\n\t<PolicyControllers>\r\n\t\t<Other/>\r\n"
              "\t\t<PolicyController Controller=\"eAntiVirus\" label=\"Virenschutz\" note=\"kept\">\r\n"
              "\t\t\t<Permission>eDeny</Permission>\r\n\t\t\t<AllowToLoadSetupMode>false</AllowToLoadSetupMode>\r\n"
              "\t\t\t<PolicyProviders>\r\n\t\t\t\t<!-- kept too -->\r\n"
              "\t\t\t\t<PolicyProvider Controller=\"eCommon\" Provider=\"eRealTimeScan\" label=\"At once\">\r\n"
              "\t\t\t\t\t<Permission>eDeny</Permission>\r\n\t\t\t\t\t<Deploy>eNoDeploy</Deploy>\r\n"
              "\t\t\t\t</PolicyProvider>\r\n"
              "\t\t\t\t<PolicyProvider Controller=\"eAntiVirus\" Provider=\"eMalwareScan\">\r\n"
              "\t\t\t\t\t<Permission>eAllow</Permission>\r\n\t\t\t\t\t<Deploy>eInstalled</Deploy>\r\n"
              "\t\t\t\t</PolicyProvider>\r\n\t\t\t</PolicyProviders>\r\n\t\t</PolicyController>\r\n"
              "\t\t<PolicyController Controller=\"eFirewall\">\r\n\t\t\t<Permission>ePartial</Permission>\r\n"
              "\t\t\t<AllowToLoadSetupMode>false</AllowToLoadSetupMode>\r\n\t\t</PolicyController>\r\n"
              "\t\t<PolicyController Controller=\"eFirewall\" note=\"the second\"/>\r\n\t</PolicyControllers>\r\n"
              "</PolicyEnforceLayer>\r\n");
    EXPECT_EQ(OwnLines(), Joined({Behind(DUMP(L"StoreValueAsEnforcePolicy"),
                                         {RULE, L"- [label]         :Virenschutz.", L"- [ControllerType]:0x00000001.",
                                          L"- [ePermission]   :0x00000007.", L"- [Allow Setup]   :false.", RULE}),
                                  Behind(DUMP(L"SetPolicyProviderXml"),
                                         {RULE, L"- [label]         :.", L"- [ControllerType]:0x00000001.",
                                          L"- [ProviderType]  :0x02000000.", L"- [ePermission]   :0x00000001.",
                                          L"- [eDeployState]  :0x00000001.", RULE, RULE, L"- [label]         :At once.",
                                          L"- [ControllerType]:0x00010000.", L"- [ProviderType]  :0x00000001.",
                                          L"- [ePermission]   :0x00000000.", L"- [eDeployState]  :0x00000009.", RULE}),
                                  Behind(DUMP(L"StoreValueAsEnforcePolicy"),
                                         {RULE, L"- [label]         :.", L"- [ControllerType]:0x00000004.",
                                          L"- [ePermission]   :0x00000002.", L"- [Allow Setup]   :false.", RULE})}));

    const std::string sStored = Stored();
    ASSERT_EQ(Store(vecPolicy), Result::g_ulSuccess);
    EXPECT_EQ(Stored(), sStored) << "the same records again change nothing";
}

TEST_F(Policy, AStoreThatFailsLeavesTheDocumentByteForByte)
{
    const std::string sStored = Stored();
    // The first write is the copy that is read, the second the new document in plain.
    const std::tuple<int, std::shared_ptr<void> (*)(DWORD, int), int, const wchar_t*> aRow[] = {
        {__LINE__, &MakeFault<API(WriteFile)>, 1, L"tszXmlFile is empty"},
        {__LINE__, &MakeFault<API(WriteFile)>, 2, L"CEncFile::Encrypt() failed"},
        {__LINE__, &MakeFault<API(MoveFileExW)>, 1, L"CEncFile::Encrypt() failed"},
    };
    for (const auto& [iLine, pfnFault, iCall, pszLast] : aRow) {
        const testing::ScopedTrace cRow(__FILE__, iLine, "row");
        m_cTrace.Clear();
        {
            const std::shared_ptr<void> pFault = pfnFault(ERROR_DISK_FULL, iCall);
            EXPECT_EQ(Store({Firewall(1)}), Result::g_ulFailed);
        }
        EXPECT_EQ(m_cTrace.Messages().back(),
                  std::wstring(L"*** CFunctionXml::StoreValueAsEnforcePolicy() - ") + pszLast);
        EXPECT_EQ(Stored(), sStored);
    }
    EXPECT_EQ(Store({Firewall(1), {8, 1, true, {}}}), Result::g_ulFailed);
    EXPECT_EQ(m_cTrace.Messages().back(),
              L"*** CFunctionXml::StoreValueAsEnforcePolicy() - <PolicyController> was not found.");
    EXPECT_EQ(Stored(), sStored);
}

TEST_F(Policy, WhatAKilledStoreOrReaderLeftIsGoneAfterAQueryAndNothingElse)
{
    const std::wstring tszTemp = ZkCommon::Storage::File::SystemTempFolder();
    const struct
    {
        std::wstring tszPath;
        bool bHeld;
        bool bGone;
    } aRow[] = {
        {m_tszFolder + L"tmpFwPolicy.xen.00000001.tmp", false, true},
        {tszTemp + L"tmpFwPolicy.xen.00000002.tmp", false, true},
        {m_tszFolder + L"tmpFwPolicy.xen.00000003.tmp", true, false},
        {tszTemp + L"tmpFwPolicy.xen.00000004.tmp", true, false},
        {m_tszFolder + L"tmp00000005.tmp", false, false},
        {tszTemp + L"tmpFwPolicy.xml.00000006.tmp", false, false},
    };
    std::vector<ZkCommon::FileHandle> vecHeld;
    for (const auto& stRow : aRow) {
        std::ofstream(std::filesystem::path(stRow.tszPath)) << "plain";
        if (stRow.bHeld) {
            vecHeld.emplace_back(::CreateFileW(stRow.tszPath.c_str(), GENERIC_WRITE | DELETE,
                                               ZkCommon::Storage::File::g_ulShareAll, nullptr, OPEN_EXISTING, 0,
                                               nullptr));
        }
    }
    EXPECT_EQ(Query(), Result::g_ulSuccess);
    for (const auto& stRow : aRow) {
        EXPECT_NE(std::filesystem::exists(stRow.tszPath), stRow.bGone) << testing::PrintToString(stRow.tszPath);
    }
    vecHeld.clear();
    for (const auto& stRow : aRow) {
        std::filesystem::remove(stRow.tszPath);
    }
}

TEST_F(Policy, IsReadWithoutAFolderForTemporaryFiles)
{
    wchar_t szBefore[MAX_PATH];
    ASSERT_NE(::GetEnvironmentVariableW(L"TMP", szBefore, MAX_PATH), 0U);
    ::SetEnvironmentVariableW(L"TMP", (m_tszFolder + L"missing").c_str());
    EXPECT_EQ(Query(), Result::g_ulSuccess);
    EXPECT_EQ(m_Records.size(), 3U);
    ::SetEnvironmentVariableW(L"TMP", szBefore);
    EXPECT_THAT(m_cProduct.Leftovers(), IsEmpty());
}

} // namespace
