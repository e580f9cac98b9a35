// The documents of the framework itself: their records are all there is of them.

#include "Check/DescriptionShape.h"
#include "Check/Shapes.h"
#include "Documents/EnforceData.h"
#include "Documents/Policy.h"
#include "Documents/PuIds.h"
#include "Documents/ServiceUnits.h"
#include "Documents/VersionInfo.h"

namespace Vrnt::Shapes {

namespace Documents = Varnhelt::Documents;

ElementShape ServiceUnits()
{
    return ListShape(Documents::g_stServiceUnit);
}

ElementShape Policy()
{
    return ListShape(Documents::g_stPolicyController);
}

ElementShape EnforceData()
{
    return ListShape(Documents::g_stDataController);
}

ElementShape PuIds()
{
    return ListShape(Documents::g_stPuIdEntry);
}

ElementShape VersionInfo()
{
    return ListShape(Documents::g_stVersionInformation);
}

} // namespace Vrnt::Shapes
