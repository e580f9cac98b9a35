#pragma once

#include "Descriptions/Description.h"
#include "Descriptions/YesNo.h"
#include "Request.h"
#include "SrvFrwk_Records.h"

#include <cstdint>

/**
 * Other vendors' products: what to do with each before an installation, "rivalact.xml", and how to recognise it,
 * "rivaldet.xml".
 */
namespace Varnhelt::Documents {

// Texts that are none of the words: a self reboot is taken for granted, all else is off.
inline constexpr Frwk::Word g_aWowNode[] = {{L"Enable", 1}, {L"Disable", 0}};
inline constexpr Frwk::WordTable g_stSelfReboot{g_aYesNo, {.ulUnknownText = 1}};
inline constexpr Frwk::WordTable g_stSpecialIdentify{g_aYesNo, {}};
inline constexpr Frwk::WordTable g_stWowNode{g_aWowNode, {}};

/** A product of either document: its header, and the fields that follow it there. */
template <class TRecord, class... TFields>
constexpr auto DescribeProduct(TFields... _stFields)
{
    return Describe<TRecord>(
        L"Product", Attribute(L"ID", &SrvFrwk::CompetitorProduct::tszId, Text()).Key("id"),
        Attribute(L"category", &SrvFrwk::CompetitorProduct::tszCategory, Text()).Key("category"),
        Attribute(L"vendor", &SrvFrwk::CompetitorProduct::tszVendor, Text()).Key("vendor"),
        Attribute(L"cpu", &SrvFrwk::CompetitorProduct::tszProcessor, Text()).Key("processor"),
        Attribute(L"registered", &SrvFrwk::CompetitorProduct::tszRegistered, Text()).Key("registered"), _stFields...);
}

inline constexpr auto g_stCompetitorActionEntry = Describe<SrvFrwk::CompetitorActionEntry>(
    L"Action", Attribute(L"on", &SrvFrwk::CompetitorActionEntry::tszOn, Text()).Key("on"),
    Attribute(L"name", &SrvFrwk::CompetitorActionEntry::tszName, Text()).Key("name"),
    Attribute(L"version", &SrvFrwk::CompetitorActionEntry::tszVersion, Text()).Key("version"),
    Attribute(L"versionCompare", &SrvFrwk::CompetitorActionEntry::tszVersionCompare, Text()).Key("versionCompare"));

inline constexpr auto g_stCompetitorAction = DescribeProduct<SrvFrwk::CompetitorAction>(
    Children(L"", &SrvFrwk::CompetitorAction::lstAction, g_stCompetitorActionEntry).Key("actions"));

inline constexpr auto g_stCompetitorIdentification = Describe<SrvFrwk::CompetitorIdentification>(
    L"Identification",
    Attribute(L"selfreboot", &SrvFrwk::CompetitorIdentification::bSelfReboot, Words(g_stSelfReboot)).Key("selfReboot"),
    Attribute(L"specialidentify", &SrvFrwk::CompetitorIdentification::bSpecialIdentify, Words(g_stSpecialIdentify))
        .Key("specialIdentify"),
    ChildAttribute(L"Path", L"base", &SrvFrwk::CompetitorIdentification::tszPathBase, Text()).Key("pathBase"),
    ChildAttribute(L"Path", L"wownode", &SrvFrwk::CompetitorIdentification::bPathWowNode, Words(g_stWowNode))
        .Key("pathWowNode"),
    Child(L"Path", &SrvFrwk::CompetitorIdentification::tszPath, Text()).Key("path"),
    ChildAttribute(L"Key", L"name", &SrvFrwk::CompetitorIdentification::tszKeyName, Text()).Key("keyName"),
    ChildAttribute(L"Key", L"type", &SrvFrwk::CompetitorIdentification::tszKeyType, Text()).Key("keyType"),
    ChildAttribute(L"Key", L"compare", &SrvFrwk::CompetitorIdentification::tszKeyCompare, Text()).Key("keyCompare"),
    Child(L"Key", &SrvFrwk::CompetitorIdentification::tszKeyValue, Text()).Key("keyValue"),
    ChildAttribute(L"UninstallString", L"base", &SrvFrwk::CompetitorIdentification::tszUninstallBase, Text())
        .Key("uninstallBase"),
    ChildAttribute(L"UninstallString", L"wownode", &SrvFrwk::CompetitorIdentification::bUninstallWowNode,
                   Words(g_stWowNode))
        .Key("uninstallWowNode"),
    Child(L"UninstallString", &SrvFrwk::CompetitorIdentification::tszUninstallString, Text()).Key("uninstallString"));

inline constexpr auto g_stCompetitorDetection = DescribeProduct<SrvFrwk::CompetitorDetection>(
    Children(L"", &SrvFrwk::CompetitorDetection::lstIdentification, g_stCompetitorIdentification)
        .Key("identifications"),
    ChildAttribute(L"Information", L"manufacturer", &SrvFrwk::CompetitorDetection::tszManufacturer, Text())
        .Key("manufacturer"),
    ChildAttribute(L"Information", L"url", &SrvFrwk::CompetitorDetection::tszUrl, Text()).Key("url"),
    Child(L"Information", &SrvFrwk::CompetitorDetection::tszInformation, Text()).Key("information"));

/** Read the documents of the request's directory into a vector of their record; contract as Handler. */
std::uint32_t QueryValueAsInstallCompetitorActionDB(Worker& _rWorker, const Request& _rstRequest);
std::uint32_t QueryValueAsInstallCompetitorDetectionDB(Worker& _rWorker, const Request& _rstRequest);

} // namespace Varnhelt::Documents
