// What is asked before an installation: competitors, compatibility, and the request for an update.

#include "Check/DescriptionShape.h"
#include "Check/Shapes.h"
#include "Documents/Compatibility.h"
#include "Documents/Competitors.h"
#include "Documents/PreUpdateList.h"

#include <algorithm>
#include <cwctype>

namespace Vrnt::Shapes {

namespace Documents = Varnhelt::Documents;

ElementShape CompetitorActions()
{
    return ListShape(Documents::g_stCompetitorAction);
}

ElementShape CompetitorDetections()
{
    return ListShape(Documents::g_stCompetitorDetection);
}

ElementShape Compatibility()
{
    ElementShape stShape = ListShape(Documents::g_stCompatibilityPlatform);
    ElementShape& rstProduct = stShape.vecChild.back().Child(Documents::g_stCompatibilityProduct.svElement);
    // A name that no document can hold.
    std::erase_if(rstProduct.vecChild,
                  [](const ElementShape& _rstChild) { return std::iswdigit(_rstChild.svName.front()) != 0; });
    ElementShape& rstComponent =
        rstProduct.Child(Documents::g_svComponents).Child(Documents::g_stCompatibilityComponent.svElement);
    TextShape& rstEnabled = rstComponent.vecText.emplace_back(WordShape(Documents::ComponentEnabled()));
    rstEnabled.enStrange = Strange::Drop;
    return stShape;
}

ElementShape PreUpdateList()
{
    ElementShape stComponent = ShapeOfRecord(Documents::g_stCompatibilityComponent);
    stComponent.svName = Documents::g_svRequestComponent;
    for (AttributeShape& rstAttribute : stComponent.vecAttribute) {
        rstAttribute.stText.bOptional = true; // all of them are written
    }
    ElementShape stShape{.svName = {}, .bForeign = true};
    ElementShape& rstProduct = stShape.Child(Documents::g_svRequestProduct);
    rstProduct.bForeign = true;
    rstProduct.bOptional = false;
    rstProduct.bIndispensable = true;
    rstProduct.vecAttribute.push_back(Filter(Documents::g_svRequestPlatform));
    ElementShape& rstList = rstProduct.Child(Documents::g_svRequestComponents);
    rstList.bOptional = false;
    rstList.bIndispensable = true;
    rstList.vecChild.push_back(std::move(stComponent));
    return stShape;
}

} // namespace Vrnt::Shapes
