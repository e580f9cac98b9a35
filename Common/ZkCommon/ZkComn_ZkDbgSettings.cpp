#include "ZkComn_ZkDbgSettings.h"

#include "ZkComn_Exception.h"
#include "ZkComn_IniFile.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace ZkCommon {

namespace {

/** TReader is a registry key or a section of an ini file. */
template <class TReader>
void ReadAll(const TReader& _rReader, TraceSettings& _rstSettings)
{
    for (const TraceSetting& stSetting : g_aTraceSetting) {
        _rstSettings.pszUnreadable = stSetting.pszName;
        if (stSetting.pNumber != nullptr) {
            _rstSettings.*stSetting.pNumber = _rReader.ReadNumber(stSetting.pszName, _rstSettings.*stSetting.pNumber);
        } else {
            _rstSettings.*stSetting.pText = _rReader.ReadString(stSetting.pszName, _rstSettings.*stSetting.pText);
        }
    }
    _rstSettings.pszUnreadable = nullptr;
}

template <std::size_t N>
std::wstring TextOf(const wchar_t (&_raField)[N])
{
    return std::wstring(_raField, std::find(_raField, _raField + N, L'\0'));
}

} // namespace

std::optional<TraceSettings> ReadTraceSettings(const Storage::Key& _rstKey, bool _bService)
{
    TraceSettings stSettings;
    const wchar_t* const pszSession = TraceSessionKey(_bService);
    try {
        switch (_rstKey.ulKind) {
        case Storage::Key::Registry:
        case Storage::Key::RegistryAlias:
            ReadAll(Storage::Registry(_rstKey.hRoot, String::WithBackslash(_rstKey.tszPath) + pszSession), stSettings);
            break;
        case Storage::Key::IniFile:
            ReadAll(Storage::IniFile(_rstKey.tszPath, pszSession), stSettings);
            break;
        default:
            return std::nullopt;
        }
    } catch (Storage::Exception* _pError) {
        const Exception::Caught pCaught(_pError);
        stSettings.ulEnable = 0;
        stSettings.ulLevel = TraceSettings().ulLevel;
    }
    return stSettings;
}

Library::ZkDbgSettings Library::RecordOf(const TraceSettings& _rstSettings, std::wstring_view _svModuleName) noexcept
{
    ZkDbgSettings stRecord{};
    stRecord.ucRobust = _rstSettings.ulRobust != 0 ? 1 : 0;
    stRecord.ucDebugger = _rstSettings.ulDebugger != 0 ? 1 : 0;
    stRecord.ulLogProcess = _rstSettings.ulLogProcess;
    stRecord.ulLogUnitType = _rstSettings.ulLogUnitType;
    PutText(stRecord.aszModuleName, _svModuleName);
    PutText(stRecord.aszLogFolder, _rstSettings.tszLogFolder);
    PutText(stRecord.aszLogPrefix, _rstSettings.tszLogPrefix);
    PutText(stRecord.aszLogFile, _rstSettings.tszLogFile);
    PutText(stRecord.aszLogExtension, _rstSettings.tszLogExtension);
    return stRecord;
}

Library::ZkDbgFile Library::FileOf(const ZkDbgSettings& _rstSettings)
{
    const std::wstring tszFile = TextOf(_rstSettings.aszLogFile);
    const std::wstring tszExtension = TextOf(_rstSettings.aszLogExtension);
    return {TextOf(_rstSettings.aszLogFolder),
            TextOf(_rstSettings.aszLogPrefix) + (tszFile.empty() ? TextOf(_rstSettings.aszModuleName) : tszFile),
            tszExtension.empty() ? tszExtension : L"." + tszExtension};
}

} // namespace ZkCommon
