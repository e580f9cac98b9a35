#pragma once

#include "Output/Html.h"
#include "Output/RecordTable.h"
#include "Report/ReportPage.h"

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

/** The sections of the report's page, a function each, and what they share. */
namespace Vrnt {

Html::Markup Summary(const ReportData& _rstData);
Html::Markup PolicySection(const ReportData& _rstData);
Html::Markup ServiceUnitSection(const ReportData& _rstData);
Html::Markup EnforceDataSection(const ReportData& _rstData);

/** A section under its heading; _szId is what links to it name. */
Html::Markup Section(const char* _szId, const char* _szHeading, const Html::Markup& _rContent);

/** A link to a section. */
Html::Markup Link(const std::string& _rsTarget, const Html::Markup& _rContent);

/** What a check found in a document, in numbers; or why it could not be looked at. */
std::string FindingsText(const CheckedDocument& _rstChecked);

/** What the library answered when it was asked for a document. */
struct DocumentAnswer
{
    std::string sFailure; // the result code and why; empty when it was answered
    std::string sRecords; // how many
};

/** std::nullopt for a document that a report does not ask for. */
std::optional<DocumentAnswer> AnswerOf(const ReportData& _rstData, Varnhelt::DocumentId _enDocument);

/** The words of the documents. */
std::string ControllerWord(std::uint32_t _ulController);
std::string ProviderWord(std::uint32_t _ulProvider);

/** That a document gave no answer, and why; empty where it gave one. */
Html::Markup Unanswered(const ReportData& _rstData, Varnhelt::DocumentId _enDocument);

// Tables. On a narrow screen a row is a card on which each cell has its column's heading.

/** A column of a table of records: a field by its JSON key, and a smaller one below it. */
struct Column
{
    const char* szHeading = nullptr;
    const char* szKey = nullptr;
    const char* szSecondKey = nullptr;
    bool bTitle = false; // names the row: it is the card's title
};

/** A cell under the heading; texts that say "nothing" recede. */
Html::Markup Cell(const std::string& _rsHeading, const std::string& _rsText, const std::string& _rsSecond = {});
Html::Markup HeadingRow(const std::vector<std::string>& _rvecHeading);
Html::Markup TableOf(const char* _szClass, const std::vector<std::string>& _rvecHeading, const Html::Markup& _rBodies);
/** The row above a group of others, across the table. */
Html::Markup GroupRow(std::size_t _uColumns, const std::string& _rsName, const std::string& _rsNote);

std::vector<std::string> HeadingsOf(std::span<const Column> _aColumn);

/** A record's own fields as a person reads them, by their JSON keys. */
std::map<std::string, std::string> TextsOf(const void* _pRecord, const RecordRows& _rvecRow);

template <class TDescription>
std::map<std::string, std::string> TextsOf(const typename TDescription::Record& _rstRecord,
                                           const TDescription& _rstDescription)
{
    return TextsOf(static_cast<const void*>(&_rstRecord), RowsOf(_rstDescription));
}

Html::Markup RecordRow(std::span<const Column> _aColumn, const std::map<std::string, std::string>& _rmapText);

// Dependencies of the enforcement data.

/** A provider in the order in which all are loaded. */
struct LoadedProvider
{
    const SrvFrwk::DataController* pController = nullptr;
    const SrvFrwk::DataProvider* pProvider = nullptr;
    bool bNeeds = false;                  // another one first
    std::optional<std::size_t> uNeeded{}; // its place; nothing where the enforcement data do not have it
    bool bLate = false;                   // that one is loaded later

    std::string Name() const;
    std::string NeededName() const;
    bool IsSound() const noexcept { return !bNeeds || (uNeeded && !bLate); }
    /** What is wrong with the needed one, as the end of a sentence; empty when nothing is. */
    const char* FaultText() const noexcept;
};

/** Controllers in the order in which they are loaded, and each one's providers likewise. */
std::vector<const SrvFrwk::DataController*> InLoadOrder(const std::vector<SrvFrwk::DataController>& _rvecController);
std::vector<const SrvFrwk::DataProvider*> InLoadOrder(const std::vector<SrvFrwk::DataProvider>& _rvecProvider);

std::vector<LoadedProvider> ProvidersInLoadOrder(const std::vector<SrvFrwk::DataController>& _rvecController);

/** The providers in load order, with an arrow from each to the one that it needs. */
Html::Markup DependencyDrawing(const std::vector<LoadedProvider>& _rvecProvider);

} // namespace Vrnt
