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
constexpr const Argument* g_apArgument[] = {&g_stPath, &g_stDryRun, &g_stUndo};

struct UpdateOptions
{
    std::string sPath;
    std::string sUndo;
    bool bDryRun = false;
};

/** Another document would be consumed for nothing. One that is not well-formed is for the library to judge. */
void RefuseOtherDocument(const UpdateOptions& _rstOptions)
{
    bool bOther = false;
    try {
        ZkCommon::Storage::XmlParser cDocument;
        cDocument.Load(ToFullPath(_rstOptions.sPath));
        ZkCommon::Storage::XmlElement cRoot;
        bOther = !cDocument.Select(Varnhelt::DocumentOf(Varnhelt::DocumentId::LocalUpdate).pszRoot, cRoot);
    } catch (ZkCommon::Exception::Base* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
    }
    if (bOther) {
        throw UsageError("\"" + _rstOptions.sPath + "\" is no local update description; it is left alone");
    }
}

/** Reports the result of an update or of a rehearsal, with what was not done in words. */
void ReportUpdate(Tool& _rTool, const UpdateOptions& _rstOptions, std::uint32_t _ulResult, const Json& _rjsData,
                  const std::string& _rsText)
{
    if (!_rTool.stOptions.bJson) {
        Write(_rsText);
    }
    PrintAnswer(_rTool, _ulResult, _rjsData, {});
    if (_ulResult == SrvFrwk::Result::g_ulPartialSuccess) {
        const bool bThere = ZkCommon::Storage::File::Exists(ToFullPath(_rstOptions.sPath));
        WriteError("vrnt: nothing was applied: \"" + _rstOptions.sPath +
                   (bThere ? "\" is in use or cannot be deleted\n" : "\" does not exist\n"));
    }
}

/** Writes the way back of a rehearsed update. @throws UsageError when it cannot be written */
void WriteUndo(const UpdateOptions& _rstOptions, UpdateRehearsal& _rRehearsal)
{
    const Varnhelt::UpdateUndo stUndo = Varnhelt::UndoOf(_rRehearsal.Storage());
    const std::uint32_t ulError = ZkCommon::Storage::File::Replace(ToFullPath(_rstOptions.sUndo), stUndo.sDescription);
    if (ulError != ERROR_SUCCESS) {
        throw UsageError("nothing was applied: cannot write \"" + _rstOptions.sUndo +
                         "\": " + SystemErrorText(ulError));
    }
    for (const std::wstring& tszLeft : stUndo.vecLeft) {
        WriteError("vrnt: not undone by \"" + _rstOptions.sUndo + "\": " + ZkCommon::String::ToUtf8(tszLeft) + "\n");
    }
}

void Update(Tool& _rTool, const UpdateOptions& _rstOptions)
{
    std::wstring tszPath = ToFullPath(_rstOptions.sPath);
    RefuseOtherDocument(_rstOptions);
    if (_rstOptions.bDryRun || !_rstOptions.sUndo.empty()) {
        UpdateRehearsal cRehearsal(tszPath);
        if (_rstOptions.bDryRun) {
            ReportUpdate(_rTool, _rstOptions, cRehearsal.Result(), cRehearsal.ToJson(), cRehearsal.ToText());
            return;
        }
        if (cRehearsal.Result() != SrvFrwk::Result::g_ulSuccess) { // an update without a way back is not begun
            ReportUpdate(_rTool, _rstOptions, cRehearsal.Result(), nullptr, {});
            return;
        }
        WriteUndo(_rstOptions, cRehearsal);
    }
    const std::uint32_t ulResult = ThroughFunction(_rTool, [&](SrvFrwk::Interface::IFunctionProvider& _rFunction) {
        return _rFunction.SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &tszPath, 0, 0, nullptr);
    });
    ReportUpdate(_rTool, _rstOptions, ulResult, nullptr,
                 ulResult == SrvFrwk::Result::g_ulSuccess ? "The update was carried out.\n" : "");
}

void Run(Tool& _rTool, const Arguments& _rArguments)
{
    Update(_rTool, {_rArguments.Text(g_stPath), _rArguments.Text(g_stUndo), _rArguments.Has(g_stDryRun)});
}

} // namespace

constinit const Command g_stUpdate{
    .szName = "update",
    .szHelp = "Carry out a local update description",
    .szExample = "vrnt update --dry-run qmr-17.2.xml\nvrnt update --undo back.xml qmr-17.2.xml",
    .szNote = "What fails of single items does not fail the update; the trace log says what failed.",
    .aArgument = g_apArgument,
    .pfnRun = &Run};

} // namespace Vrnt
