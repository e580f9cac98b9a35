#pragma once

#include "Check/DocumentShape.h"

/** The shapes of the elements that the documents' readers start from; of the threats' tables, of their root. */
namespace Vrnt::Shapes {

// FrameworkShapes.cpp
ElementShape ServiceUnits();
ElementShape Policy();
ElementShape EnforceData();
ElementShape PuIds();
ElementShape VersionInfo();

// InstallationShapes.cpp
ElementShape CompetitorActions();
ElementShape CompetitorDetections();
ElementShape Compatibility();
ElementShape PreUpdateList();

// DeploymentShapes.cpp
ElementShape Alias();
ElementShape Component();
ElementShape KeyConfig();
ElementShape RegistryData();

// ThreatsShape.cpp
/** Without descriptions, recommendations and scanners it is that of names alone. */
ElementShape Threats(const XmlElement& _rRoot);

// LocalUpdateShape.cpp
/** Conditions are needed where the root asks for them, and nothing else looks at them. */
ElementShape LocalUpdate(const XmlElement& _rRoot);

} // namespace Vrnt::Shapes
