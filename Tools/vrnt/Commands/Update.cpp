// vrnt update: the local update, its rehearsal, and the way back.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Documents/LocalUpdate.h"
#include "Files/DocumentTable.h"
#include "Machine/Host.h"
#include "Machine/UpdateRehearsal.h"
#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "Update/UpdateUndo.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <expat.h>
#include <filesystem>
#include <functional>
#include <system_error>

namespace Vrnt {

namespace {

constexpr Argument g_stPath{
    .szName = "PATH", .szHelp = "The description; it is deleted unless it asks to stay", .bRequired = true};
constexpr Argument g_stDryRun{.szName = "--dry-run",
                              .szHelp = "Say what would be done and why not; nothing is changed or deleted"};
constexpr Argument g_stUndo{.szName = "--undo",
                            .szHelp = "First write a description that undoes the update",
                            .szValue = "FILE",
                            .pExcludes = &g_stDryRun};
constexpr Argument g_stUpdateReplace{.szName = "--replace", .szHelp = "Write over the FILE of --undo where it exists"};
constexpr Argument g_stStrict{.szName = "--strict",
                              .szHelp = "Fail unless everything that is meant for this machine is done, or would be"};
constexpr const Argument* g_apUpdateArgument[] = {&g_stPath, &g_stDryRun, &g_stUndo, &g_stUpdateReplace, &g_stStrict};

struct UpdateOptions
{
    std::string sPath;
    std::string sUndo;
    bool bReplace = false;
    bool bDryRun = false;
    bool bStrict = false;
};

/** Whether the description could not be read for a reason that may pass, and not because of what it holds. */
bool IsPassing(const ZkCommon::Storage::XmlException& _rError)
{
    if (_rError.XmlErrorCode() != 0) {
        return _rError.XmlErrorCode() == XML_ERROR_NO_MEMORY;
    }
    switch (_rError.ErrorCode()) {
    case ERROR_FILE_NOT_FOUND: // the library answers for these, and consumes nothing
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_SHARING_VIOLATION:
    case ZkCommon::Exception::g_ulNoSystemError:
        return false;
    default:
        return true;
    }
}

/**
 * Another document would be consumed for nothing, and so would one that cannot be read now. One that is not well-formed
 * is for the library to judge.
 */
void RefuseWhatWouldBeLost(const UpdateOptions& _rstOptions)
{
    const std::wstring tszPath = ToFullPath(_rstOptions.sPath);
    if (std::filesystem::is_directory(tszPath)) {
        return;
    }
    std::string sWhy;
    try {
        ZkCommon::Storage::XmlParser cDocument;
        cDocument.Load(tszPath);
        ZkCommon::Storage::XmlElement cRoot;
        if (!cDocument.Select(Varnhelt::DocumentOf(Varnhelt::DocumentId::LocalUpdate).pszRoot, cRoot)) {
            sWhy = "is no local update description";
        }
    } catch (ZkCommon::Storage::XmlException* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        if (IsPassing(*pError)) {
            sWhy = "cannot be read now: " + SystemErrorText(pError->ErrorCode());
        }
    }
    if (!sWhy.empty()) {
        throw UsageError("\"" + _rstOptions.sPath + "\" " + sWhy + "; it is left alone");
    }
}

/** The file of the way back must not be the description, and replaces another one only when asked to. */
void RefuseUndoFile(const UpdateOptions& _rstOptions)
{
    const std::filesystem::path cUndo = ToFullPath(_rstOptions.sUndo);
    std::error_code cError;
    if (!std::filesystem::exists(cUndo, cError)) {
        return;
    }
    if (std::filesystem::equivalent(cUndo, ToFullPath(_rstOptions.sPath), cError)) {
        throw UsageError("nothing was applied: \"" + _rstOptions.sUndo + "\" is the description itself");
    }
    if (!_rstOptions.bReplace) {
        throw UsageError("nothing was applied: \"" + _rstOptions.sUndo + "\" exists already; --replace writes over it");
    }
}

/** Reports the result of an update or of a rehearsal, with what was not done in words. */
void ReportUpdate(Tool& _rTool, const UpdateOptions& _rstOptions, std::uint32_t _ulResult,
                  const UpdateRehearsal* _pRehearsal, const std::function<std::string()>& _fnText)
{
    if (!_rTool.stOptions.bJson && !_rTool.stOptions.bPlain && _fnText) {
        Write(_fnText());
    }
    if (_ulResult == SrvFrwk::Result::g_ulPartialSuccess) {
        const std::wstring tszPath = ToFullPath(_rstOptions.sPath);
        const char* szWhy = std::filesystem::is_directory(tszPath)     ? "is a folder"
                            : ZkCommon::Storage::File::Exists(tszPath) ? "is in use or cannot be deleted"
                                                                       : "does not exist";
        PrintNotice(_rTool, "nothing was applied: \"" + _rstOptions.sPath + "\" " + szWhy);
    }
    if (_pRehearsal == nullptr) {
        PrintAnswer(_rTool, _ulResult, nullptr, nullptr);
        return;
    }
    PrintAnswer(
        _rTool, _ulResult, [&] { return _pRehearsal->ToJson(); },
        [&] { return _rTool.stOptions.bPlain ? _pRehearsal->ToTable() : Table(); });
}

/** A rehearsal that went wrong is no ground to go on. @throws UsageError */
void RefuseFailedRehearsal(const UpdateRehearsal& _rRehearsal)
{
    if (_rRehearsal.Failure() != ERROR_SUCCESS) {
        throw UsageError("nothing was applied: no copy of an ini file can be made in the folder for temporary files: " +
                         SystemErrorText(_rRehearsal.Failure()));
    }
}

/** Writes the way back of the update, which is rehearsed for it. @throws UsageError when it cannot be written */
void WriteUndo(const Tool& _rTool, const UpdateOptions& _rstOptions, const std::wstring& _rtszPath)
{
    UpdateRehearsal cRehearsal(_rtszPath);
    const Varnhelt::UpdateUndo stUndo = Varnhelt::UndoOf(cRehearsal.Storage());
    RefuseFailedRehearsal(cRehearsal);
    const std::uint32_t ulError = ZkCommon::Storage::File::Replace(ToFullPath(_rstOptions.sUndo), stUndo.sDescription);
    if (ulError != ERROR_SUCCESS) {
        throw UsageError("nothing was applied: cannot write \"" + _rstOptions.sUndo +
                         "\": " + SystemErrorText(ulError));
    }
    for (const std::wstring& tszLeft : stUndo.vecLeft) {
        PrintNotice(_rTool, "not undone by \"" + _rstOptions.sUndo + "\": " + ZkCommon::String::ToUtf8(tszLeft));
    }
}

/** Carries the description out, and looks whether each entry was applied. @return whether all was done */
bool CarryOut(Tool& _rTool, const UpdateOptions& _rstOptions, const std::wstring& _rtszPath,
              UpdateRehearsal& _rRehearsal)
{
    const std::uint32_t ulResult =
        ThroughModule(_rTool, [&](const Varnhelt::Module& _rModule) { return _rModule.TryUpdate(_rtszPath); });
    const bool bCarriedOut = ulResult == SrvFrwk::Result::g_ulSuccess;
    if (bCarriedOut && _rRehearsal.Failure() != ERROR_SUCCESS) {
        ReportUpdate(_rTool, _rstOptions, ulResult, nullptr, [] {
            return "The update was carried out. What it did is not known: it could not be rehearsed.\n";
        });
        return false;
    }
    if (!bCarriedOut) {
        ReportUpdate(_rTool, _rstOptions, ulResult, nullptr, nullptr);
        return false;
    }
    _rRehearsal.CompareWithMachine();
    ReportUpdate(_rTool, _rstOptions, ulResult, &_rRehearsal, [&] { return _rRehearsal.Summary(); });
    return _rRehearsal.IsAllDone();
}

void Update(Tool& _rTool, const UpdateOptions& _rstOptions)
{
    const std::wstring tszPath = ToFullPath(_rstOptions.sPath);
    RefuseWhatWouldBeLost(_rstOptions);
    if (!_rstOptions.sUndo.empty()) {
        RefuseUndoFile(_rstOptions);
    }
    UpdateRehearsal cRehearsal(tszPath);
    const bool bSuccess = cRehearsal.Result() == SrvFrwk::Result::g_ulSuccess;
    bool bAllDone = false;
    if (_rstOptions.bDryRun) {
        RefuseFailedRehearsal(cRehearsal);
        ReportUpdate(_rTool, _rstOptions, cRehearsal.Result(), &cRehearsal, [&] { return cRehearsal.ToText(); });
        bAllDone = cRehearsal.IsAllDone();
    } else if (!_rstOptions.sUndo.empty() && !bSuccess) { // an update without a way back is not begun
        ReportUpdate(_rTool, _rstOptions, cRehearsal.Result(), nullptr, nullptr);
    } else {
        if (!_rstOptions.sUndo.empty()) {
            RefuseFailedRehearsal(cRehearsal);
            WriteUndo(_rTool, _rstOptions, tszPath);
        }
        bAllDone = CarryOut(_rTool, _rstOptions, tszPath, cRehearsal);
    }
    if (_rstOptions.bStrict && !bAllDone) {
        _rTool.iExitStatus = ExitFailure;
    }
}

void RunUpdate(Tool& _rTool, const Arguments& _rArguments)
{
    Update(_rTool, {.sPath = _rArguments.Text(g_stPath),
                    .sUndo = _rArguments.Text(g_stUndo),
                    .bReplace = _rArguments.Has(g_stUpdateReplace),
                    .bDryRun = _rArguments.Has(g_stDryRun),
                    .bStrict = _rArguments.Has(g_stStrict)});
}

} // namespace

constinit const Command g_stUpdate{
    .szName = "update",
    .szHelp = "Carry out a local update description",
    .szExample = "vrnt update --dry-run qmr-17.2.xml\nvrnt update --undo back.xml qmr-17.2.xml",
    .szNote = "A single entry that fails is reported and does not fail the update; with --strict it does.",
    .aArgument = g_apUpdateArgument,
    .pfnRun = &RunUpdate};

} // namespace Vrnt
