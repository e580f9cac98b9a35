// What is deployed: aliases, components, and the registry values that go with them.

#include "Check/DescriptionShape.h"
#include "Check/Shapes.h"
#include "Documents/DeployAliases.h"
#include "Documents/DeployComponents.h"
#include "Documents/KeyConfig.h"
#include "Documents/RegistryData.h"
#include "ZkComn_Platform.h"

#include <algorithm>

namespace Vrnt::Shapes {

namespace {

namespace Documents = Varnhelt::Documents;

/** The names of systems, after words that mean something else. */
std::vector<Frwk::Word> SystemNames(std::vector<Frwk::Word> _vecWord)
{
    for (const ZkCommon::Platform::OsTypeName& stName : ZkCommon::Platform::g_aOsTypeName) {
        _vecWord.push_back({stName.svName, stName.ulOsType});
    }
    return _vecWord;
}

/** A "Registry" element: where values are, and the values. */
ElementShape RegistryShape()
{
    static const std::vector<Frwk::Word> vecSystem = SystemNames({});
    static const Frwk::WordTable stSystem{.aWord = vecSystem, .stDefaults = {}, .bAnyCase = true};
    ElementShape stValue = ShapeOfRecord(Documents::g_stDeployKey);
    stValue.vecAttribute.push_back(Filter(Documents::g_svOsType, stSystem, Strange::Refuse));
    stValue.vecAttribute.push_back(Filter(Documents::g_svAssign));
    ElementShape stRegistry{.svName = Documents::g_svRegistry, .bMany = true};
    AttributeShape& rstRoot = stRegistry.vecAttribute.emplace_back(
        AttributeShape{Documents::g_svRegistryRoot, WordShape(Documents::g_stRegistryRoot)});
    rstRoot.stText.sElse = "the root of the \"Registry\" before it is used; the first has none";
    stRegistry.vecAttribute.push_back({Documents::g_svRegistryKey, {}});
    stRegistry.vecChild.push_back(std::move(stValue));
    return stRegistry;
}

/** Adds what registry values are read from to the element that holds them. */
void AddRegistry(ElementShape& _rstShape)
{
    std::erase_if(_rstShape.vecChild,
                  [](const ElementShape& _rstChild) { return _rstChild.svName == Documents::g_svRegistry; });
    _rstShape.vecChild.push_back(RegistryShape());
    _rstShape.vecChild.push_back({.svName = Documents::g_svIniFile, .bMany = true, .bUnread = true});
}

} // namespace

ElementShape Alias()
{
    return ListShape(Documents::g_stDeployAlias);
}

ElementShape KeyConfig()
{
    ElementShape stShape;
    AddRegistry(stShape);
    return stShape;
}

ElementShape Component()
{
    static const std::vector<Frwk::Word> vecPlatform = SystemNames({{Documents::g_svAllPlatforms, 0}});
    static const Frwk::WordTable stPlatform{.aWord = vecPlatform, .stDefaults = {}};
    ElementShape stComponent = ShapeOfRecord(Documents::g_stDeployComponent);
    AddRegistry(stComponent);
    stComponent.vecAttribute.push_back(Filter(Documents::g_svExecute, Documents::g_stExecute));
    stComponent.vecAttribute.back().stText.sElse = "it is for every run mode";
    stComponent.vecAttribute.push_back(Filter(Documents::g_svPlatform, stPlatform, Strange::Drop));
    stComponent.vecAttribute.back().stText.fnAccepts = &Documents::IsPlatform;
    stComponent.vecAttribute.push_back(Filter(Documents::g_svProcess));
    TextShape& rstProcess = stComponent.vecAttribute.back().stText;
    rstProcess.fnAccepts = &Documents::IsForThisProcessor;
    rstProcess.sForm = "processor of this build (not x86)";
    rstProcess.enStrange = Strange::Drop;
    ElementShape stShape;
    for (const std::wstring_view svSection : {Documents::g_svInstall, Documents::g_svUninstall}) {
        ElementShape& rstSection = stShape.Child(svSection);
        rstSection.bOptional = false;
        rstSection.vecChild.push_back(stComponent);
    }
    return stShape;
}

ElementShape RegistryData()
{
    ElementShape stShape;
    ElementShape& rstComponent = stShape.Child(Documents::g_svRegistryComponent);
    rstComponent.bMany = true;
    rstComponent.vecAttribute.push_back({Documents::g_svComponentLabel, {}});
    ElementShape& rstReg = rstComponent.Child(Documents::g_svReg);
    rstReg.bMany = true;
    rstReg.vecAttribute.push_back(
        {Documents::g_svRegKey,
         {.fnAccepts = &Documents::IsRegKey, .sForm = "key below HKEY_LOCAL_MACHINE", .enStrange = Strange::Refuse}});
    rstReg.vecAttribute.push_back({Documents::g_svRegAccess, WordShape(Documents::g_stRegAccess)});
    rstReg.vecChild.push_back(ShapeOfRecord(Documents::g_stRegistryData));
    return stShape;
}

} // namespace Vrnt::Shapes
