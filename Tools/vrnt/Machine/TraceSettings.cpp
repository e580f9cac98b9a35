#include "Machine/TraceSettings.h"

#include "Frwk_Settings.h"
#include "Output/Output.h"
#include "ZkComn_Library.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <string_view>

namespace Vrnt {

using ZkCommon::TraceSettings;
using ZkCommon::String::ToUtf8;

std::wstring TraceKeyOf(const TraceSession& _rstSession)
{
    return std::wstring(Frwk::g_szTraceSettingsKey) + L"\\" + ZkCommon::TraceSessionKey(_rstSession.bService);
}

TraceSettings ReadTraceSettings(const TraceSession& _rstSession)
{
    return ZkCommon::ReadTraceSettings(
               {ZkCommon::Storage::Key::Registry, HKEY_LOCAL_MACHINE, Frwk::g_szTraceSettingsKey}, _rstSession.bService)
        .value();
}

std::string TraceFaultOf(const TraceSettings& _rstSettings)
{
    if (_rstSettings.pszUnreadable == nullptr) {
        return {};
    }
    for (const ZkCommon::TraceSetting& stSetting : ZkCommon::g_aTraceSetting) {
        if (std::wstring_view(stSetting.pszName) == _rstSettings.pszUnreadable) {
            return ToUtf8(stSetting.pszName) +
                   (stSetting.pNumber != nullptr ? " is not a REG_DWORD" : " is not a REG_SZ");
        }
    }
    return {};
}

std::wstring TraceFileOf(const TraceSettings& _rstSettings)
{
    const ZkCommon::Library::ZkDbgFile stFile =
        ZkCommon::Library::FileOf(ZkCommon::Library::RecordOf(_rstSettings, L"Varnhelt"));
    return ZkCommon::Library::PathOf(stFile.tszFolder, (stFile.tszName + stFile.tszExtension).c_str());
}

Table TraceSettingsToTable()
{
    Table cTable({"session", "tracing", "level", "folder", "prefix", "file", "extension", "robust", "debugger"});
    for (const TraceSession& stSession : g_aTraceSession) {
        const TraceSettings stSettings = ReadTraceSettings(stSession);
        const std::string sFault = TraceFaultOf(stSettings);
        cTable.Add({stSession.szName,
                    stSettings.ulEnable != 0 ? "on"
                    : sFault.empty()         ? "off"
                                             : "off: " + sFault,
                    Hexadecimal(stSettings.ulLevel, 3),
                    stSettings.tszLogFolder.empty() ? "(of the process)" : ToUtf8(stSettings.tszLogFolder),
                    ToUtf8(stSettings.tszLogPrefix),
                    stSettings.tszLogFile.empty() ? "(the module's name)" : ToUtf8(stSettings.tszLogFile),
                    ToUtf8(stSettings.tszLogExtension), stSettings.ulRobust != 0 ? "yes" : "no",
                    stSettings.ulDebugger != 0 ? "yes" : "no"});
    }
    return cTable;
}

} // namespace Vrnt
