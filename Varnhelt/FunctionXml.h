#pragma once

#include "ValueTypeTable.h"
#include "ZkComn_XmlParser.h"

#include <cstdint>
#include <string>

namespace SrvFrwk {
struct PreUpdateList;
}
namespace Varnhelt {
struct LocalUpdateConfig;
struct LocalUpdateKey;
namespace Documents {
struct LocalUpdateNames;
struct TextLookup;
} // namespace Documents
} // namespace Varnhelt

/**
 * The worker behind every function object: checks a request and hands it to the one reader or writer of its document.
 * One object serves one request on one thread and carries nothing to the next.
 *
 * The readers and writers are members because they share the parser; each stands in a file of its own in Documents/.
 */
class CFunctionXml
{
public:
    CFunctionXml() = default;
    CFunctionXml(const CFunctionXml&) = delete;
    CFunctionXml& operator=(const CFunctionXml&) = delete;
    virtual ~CFunctionXml() = default;

    /** @return g_ulSuccess for a known value type and a record that is there, else g_ulInvalidArgument */
    std::uint32_t CheckParameters(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValue(const Varnhelt::Request& _rstRequest);
    std::uint32_t StoreValue(const Varnhelt::Request& _rstRequest);
    std::uint32_t SendMessage(std::uint32_t _ulActionType, std::uint32_t _ulActionSubType,
                              std::uint32_t _ulMessageOption, void* _pMessageData, std::uintptr_t ulMessageDataReserved,
                              std::uint32_t _ulOption, void* _pMessageResult);

    std::uint32_t QueryValueAsServiceUnit(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsEnforcePolicy(const Varnhelt::Request& _rstRequest);
    std::uint32_t StoreValueAsEnforcePolicy(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsSpecificEnforcePolicy(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsEnforceData(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsInstallPuIds(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsVersionInfo(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsInstallCompetitorActionDB(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsInstallCompetitorDetectionDB(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryThreateNameORKAP(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryThreateNameELMAP(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryThreateDesELMAP(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryThreateRecELMAP(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryTitleELMAP(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsInstallCompatibilityCheckDB(const Varnhelt::Request& _rstRequest);
    std::uint32_t StorePreUpdateList(const Varnhelt::Request& _rstRequest);
    /** The steps of StorePreUpdateList, each of which stores the document. */
    std::uint32_t ImpChangePlatform(const SrvFrwk::PreUpdateList* _pCompatibilityCheckPrePUInfo);
    std::uint32_t ImpStoreValueAsCompatibilityCheckPUList(const SrvFrwk::PreUpdateList* _pCompatibilityCheckPrePUInfo,
                                                          bool _bCreate);
    std::uint32_t QueryValueAsDeployAliasConfig(const Varnhelt::Request& _rstRequest);
    std::uint32_t StoreValueAsDeployAliasConfig(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsDeployComponentConfig(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsKeyConfig(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValueAsRegistryData(const Varnhelt::Request& _rstRequest);

    /**
     * Reads a local update description into the set, and deletes its file unless the description asks to stay.
     * @param _pbStay  where it is given, the file is only looked at: it stays, and the flag tells what it asks for
     * @return g_ulPartialSuccess when there is no such file, or when it cannot be deleted: not to be applied then
     */
    std::uint32_t QueryValueAsLocalUpdate(Varnhelt::LocalUpdateConfig* _pConfig, const std::wstring* _ptszXmlPath,
                                          bool* _pbStay = nullptr);
    /** Reads the description and applies it to this machine. Results of the single items are only logged. */
    std::uint32_t DoActionAsLocalUpdate(const std::wstring* _ptszXmlPath);

private:
    std::uint32_t LookUpText(const Varnhelt::Documents::TextLookup& _rstLookup, const Varnhelt::Request& _rstRequest);
    std::uint32_t ReadLocalUpdate(const std::wstring& _rtszPath, Varnhelt::LocalUpdateConfig& _rstConfig,
                                  bool& _rbStay);
    std::uint32_t ReadLocalUpdateItem(const ZkCommon::Storage::XmlElement& _rElement,
                                      const Varnhelt::Documents::LocalUpdateNames& _rstNames,
                                      Varnhelt::LocalUpdateConfig& _rstConfig);
    std::uint32_t SetLocalUpdateRegistry(const ZkCommon::Storage::XmlElement& _rElement,
                                         const Varnhelt::Documents::LocalUpdateNames& _rstNames,
                                         Varnhelt::LocalUpdateKey* _pstKey);
    std::uint32_t SetLocalUpdateIniFile(const ZkCommon::Storage::XmlElement& _rElement,
                                        const Varnhelt::Documents::LocalUpdateNames& _rstNames,
                                        Varnhelt::LocalUpdateKey* _pstIniFile);
    void SetLocalUpdateDirectory();

    ZkCommon::Storage::XmlParser m_cParser;
    ZkCommon::Storage::XmlElement m_cElement;
};
