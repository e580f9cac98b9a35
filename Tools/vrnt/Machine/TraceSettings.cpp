#include "Machine/TraceSettings.h"

#include "Frwk_Settings.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

namespace Vrnt {

std::wstring TraceKeyOf(const TraceSession& _rstSession)
{
    return std::wstring(Frwk::g_szTraceSettingsKey) + L"\\" + _rstSession.pszSubKey;
}

TraceSettings ReadTraceSettings(const TraceSession& _rstSession)
{
    TraceSettings stSettings;
    try {
        const ZkCommon::Storage::Registry cRegistry(HKEY_LOCAL_MACHINE, TraceKeyOf(_rstSession));
        stSettings.ulEnable = cRegistry.ReadNumber(L"Enable", stSettings.ulEnable);
        stSettings.ulLevel = cRegistry.ReadNumber(L"Level", stSettings.ulLevel);
        stSettings.tszFolder = cRegistry.ReadString(L"LogFolder", stSettings.tszFolder);
        stSettings.tszPrefix = cRegistry.ReadString(L"LogPrefix", stSettings.tszPrefix);
        stSettings.tszFile = cRegistry.ReadString(L"LogFile", stSettings.tszFile);
        stSettings.tszExtension = cRegistry.ReadString(L"LogExtension", stSettings.tszExtension);
        stSettings.ulRobust = cRegistry.ReadNumber(L"Robust", stSettings.ulRobust);
        stSettings.ulDebugger = cRegistry.ReadNumber(L"Debugger", stSettings.ulDebugger);
    } catch (ZkCommon::Storage::Exception* pError) {
        const ZkCommon::Exception::Caught pCaught(pError); // no settings: tracing is off
    }
    return stSettings;
}

Table TraceSettingsToTable()
{
    using ZkCommon::String::ToUtf8;
    Table cTable({"session", "tracing", "level", "folder", "prefix", "file", "extension", "robust", "debugger"});
    for (const TraceSession& stSession : g_aTraceSession) {
        const TraceSettings stSettings = ReadTraceSettings(stSession);
        cTable.Add({stSession.szKey, stSettings.ulEnable != 0 ? "on" : "off", Hexadecimal(stSettings.ulLevel, 3),
                    stSettings.tszFolder.empty() ? "(of the process)" : ToUtf8(stSettings.tszFolder),
                    ToUtf8(stSettings.tszPrefix),
                    stSettings.tszFile.empty() ? "(the module's name)" : ToUtf8(stSettings.tszFile),
                    ToUtf8(stSettings.tszExtension), stSettings.ulRobust != 0 ? "yes" : "no",
                    stSettings.ulDebugger != 0 ? "yes" : "no"});
    }
    return cTable;
}

} // namespace Vrnt
