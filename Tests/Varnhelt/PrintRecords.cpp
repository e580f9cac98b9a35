#include "PrintRecords.h"

#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/EnforceData.h"
#include "Documents/KeyConfig.h"
#include "Documents/Policy.h"
#include "Documents/RegistryData.h"
#include "Documents/ServiceUnits.h"
#include "Documents/VersionInfo.h"
#include "Records/RecordJson.h"

#include <map>
#include <ostream>
#include <typeindex>

namespace {

template <class... TDescriptions>
std::map<std::type_index, Vrnt::RecordRows> RowsByType(const TDescriptions&... _rstDescription)
{
    return {{typeid(typename TDescriptions::Record), Vrnt::RowsOf(_rstDescription)}...};
}

} // namespace

void PrintRecord(const std::type_info& _rType, const void* _pRecord, std::ostream& _rOut)
{
    using namespace Varnhelt::Documents;
    static const std::map<std::type_index, Vrnt::RecordRows> mapRows =
        RowsByType(g_stCompatibilityPlatform, g_stCompatibilityProduct, g_stCompetitorAction, g_stCompetitorDetection,
                   g_stDataController, g_stDeployAlias, g_stDeployComponent, g_stDeployFile, g_stDeployKey,
                   g_stPolicyController, g_stRegistryData, g_stServiceUnit, g_stVersionInformation);
    const auto itRows = mapRows.find(_rType);
    _rOut << (itRows != mapRows.end() ? Vrnt::RecordToJson(_pRecord, itRows->second).ToText() : _rType.name());
}
