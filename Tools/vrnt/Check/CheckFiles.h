#pragma once

#include "Check/DocumentCheck.h"

#include <string>
#include <vector>

/** A check of many files at once. */
namespace Vrnt {

/** A file and what was found in it. */
struct CheckedFile
{
    std::string sName;                             // as it was named; "<stdin>"
    bool bNamed = true;                            // else a folder or pattern found it
    std::wstring tszPath{};                        // empty for standard input
    const Varnhelt::Document* pDocument = nullptr; // its kind; null: not known
    std::vector<Finding> vecFinding{};
    std::string sTrouble{}; // why it was not checked, one line; empty when it was, or when its kind is not known

    bool IsOfNoKind() const noexcept { return pDocument == nullptr && sTrouble.empty(); }
};

/** What was found in all of them. */
struct CheckTotals
{
    std::size_t uErrors = 0;
    std::size_t uWarnings = 0;
    std::size_t uOfNoKind = 0; // files that a folder or pattern found
    bool bTrouble = false;

    bool IsClean() const noexcept { return uErrors + uWarnings == 0 && !bTrouble; }
};

/**
 * The files that arguments name: files, folders (searched with their sub folders for .xml and .xen), patterns with "*" and
 * "?" in the last part, and "-", standard input. A pattern that finds nothing is a file with trouble.
 */
std::vector<CheckedFile> FilesOf(const std::vector<std::string>& _rvecArgument);

/**
 * Checks them side by side on all processors. A file that cannot be read has trouble, and so has one that was named when
 * its kind is not known.
 * @param _pDocument   the kind of all of them; null: each is found out
 * @param _fnProgress  called on this thread
 */
void CheckFiles(std::vector<CheckedFile>& _rvecFile, const Varnhelt::Document* _pDocument,
                const Progress& _fnProgress = {});

CheckTotals TotalsOf(const std::vector<CheckedFile>& _rvecFile);

} // namespace Vrnt
