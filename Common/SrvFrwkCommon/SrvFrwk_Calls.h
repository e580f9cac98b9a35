#pragma once

#include "SrvFrwk_Records.h"
#include "SrvFrwk_ValueType.h"

#include <cstdint>
#include <vector>

/** Which record and which request belong to a value type: one row for each that function objects serve. */
namespace SrvFrwk {

/** A query that fills a record; TRequest is void where there is no request. */
template <class TRecord, class TRequest = void>
struct QueryOf
{
    using Answer = TRecord;
    using Request = TRequest;
};

/** A query that looks something up: the request is a number, which a field of the record carries. */
template <class TRecord, std::uint32_t TRecord::*t_pulKey>
struct LookUpOf
{
    using Answer = TRecord;
    using Request = std::uint32_t;
    static constexpr std::uint32_t TRecord::*pulKey = t_pulKey;
};

template <class TRecord>
struct StoreOf
{
    using Stored = TRecord;
};

/** Of a value type that function objects refuse: it has neither query nor store. */
template <std::uint32_t t_ulValueType>
struct CallsOf
{};

// clang-format off
template <> struct CallsOf<ValueType::g_ulServiceUnit> : QueryOf<std::vector<ServiceUnit>> {};
template <> struct CallsOf<ValueType::g_ulEnforcePolicy> : QueryOf<std::vector<PolicyController>>, StoreOf<std::vector<PolicyController>> {};
template <> struct CallsOf<ValueType::g_ulEnforceData> : QueryOf<std::vector<DataController>> {};
template <> struct CallsOf<ValueType::g_ulInstallPuIds> : QueryOf<InstallPuIds> {};
template <> struct CallsOf<ValueType::g_ulCompetitorAction> : QueryOf<std::vector<CompetitorAction>, XmlDirectoryConfig> {};
template <> struct CallsOf<ValueType::g_ulCompetitorDetection> : QueryOf<std::vector<CompetitorDetection>, XmlDirectoryConfig> {};
template <> struct CallsOf<ValueType::g_ulThreatNameOrkap> : LookUpOf<ThreatText, &ThreatText::ulIdentifier> {};
template <> struct CallsOf<ValueType::g_ulThreatNameElmap> : LookUpOf<ThreatText, &ThreatText::ulIdentifier> {};
template <> struct CallsOf<ValueType::g_ulThreatDescription> : LookUpOf<ThreatText, &ThreatText::ulIdentifier> {};
template <> struct CallsOf<ValueType::g_ulThreatRecommendation> : LookUpOf<ThreatText, &ThreatText::ulIdentifier> {};
template <> struct CallsOf<ValueType::g_ulScannerTitle> : LookUpOf<ThreatText, &ThreatText::ulIdentifier> {};
template <> struct CallsOf<ValueType::g_ulKeyConfig> : QueryOf<std::vector<DeployKey>, XmlDirectoryConfig> {};
template <> struct CallsOf<ValueType::g_ulRegistryData> : QueryOf<std::vector<RegistryData>, RegistryDataRequest> {};
template <> struct CallsOf<ValueType::g_ulSpecificEnforcePolicy> : LookUpOf<PolicyController, &PolicyController::ulControllerType> {};
template <> struct CallsOf<ValueType::g_ulCompatibilityCheck> : QueryOf<std::vector<CompatibilityPlatform>, XmlDirectoryConfig> {};
template <> struct CallsOf<ValueType::g_ulPreUpdateList> : StoreOf<PreUpdateList> {};
// clang-format on

} // namespace SrvFrwk
