#include "UpdateBench.h"

#include "Frwk_Settings.h"
#include "FunctionProvider.h"
#include "ReplaceAll.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_String.h"

#include <algorithm>

using Varnhelt::UpdatePlace;
using Varnhelt::UpdateStorage;
using Varnhelt::UpdateStorages;
using ZkCommon::String::ToUtf8;

namespace {

/** A place's own line, one for each of its values, and those of the places below it. */
void AddLines(UpdateStorages& _rStorages, const UpdatePlace& _rstPlace, const std::wstring& _rtszPrefix,
              std::vector<std::wstring>& _rvecLine)
{
    UpdateStorage& rStorage = _rStorages.Of(_rstPlace);
    if (!rStorage.Exists(_rstPlace)) {
        return;
    }
    _rvecLine.push_back(_rtszPrefix);
    for (const std::wstring& tszName : rStorage.Names(_rstPlace)) {
        const auto stValue = rStorage.Find(_rstPlace, tszName); // a line before it may hide it
        _rvecLine.push_back(_rtszPrefix + L" " + tszName + L" " +
                            (stValue ? UpdateBench::TextOf(*stValue) : L"hidden"));
    }
    for (const std::wstring& tszName : rStorage.SubKeys(_rstPlace)) {
        UpdatePlace stBelow = _rstPlace;
        stBelow.tszPath += L"\\" + tszName;
        AddLines(_rStorages, stBelow, _rtszPrefix + L"\\" + tszName, _rvecLine);
    }
}

} // namespace

void UpdateBench::SetEnvironment(const std::wstring& _rtszVersion, const std::wstring& _rtszPid,
                                 std::uint32_t _ulLanguage)
{
    ZkCommon::Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
    cKey.WriteString(L"Version", _rtszVersion);
    cKey.WriteString(L"PID", _rtszPid);
    cKey.WriteNumber(L"Language", _ulLanguage);
}

void UpdateBench::RemoveEnvironment()
{
    for (const wchar_t* pszName : {L"Version", L"PID", L"Language"}) {
        ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, pszName);
    }
}

std::wstring UpdateBench::Describe(const std::wstring& _rtszFile, std::string _sDocument) const
{
    const std::pair<std::string, std::string> aMark[] = {
        {ToUtf8(Frwk::g_szProductKey), "@K@"},
        {"$WINDOWS$pelto17", "$INSTALL$pelto17"},
        {"@K@", ToUtf8(Key())},
        {"@F@", ToUtf8(Folder().Path().wstring())},
        {"@ALL@", "minversion='1' maxversion='18' product='all' language='all' platform='all'"}};
    for (const auto& [sMark, sBy] : aMark) {
        ReplaceAll(_sDocument, sMark, sBy);
    }
    Folder().Write(_rtszFile, _sDocument);
    return Folder().File(_rtszFile);
}

std::wstring UpdateBench::Describe(const std::string& _rsItems, const std::string& _rsAttributes) const
{
    return Describe(L"update.xml", "<Quillmar version=\"17.2\" " + _rsAttributes + ">" + _rsItems + "</Quillmar>");
}

std::uint32_t UpdateBench::Send(std::wstring _tszPath)
{
    return CFunctionProvider().SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &_tszPath, 0, 0, nullptr);
}

std::vector<std::wstring> UpdateBench::Snapshot(UpdateStorages* _pStorages) const
{
    Varnhelt::SystemStorage cSystem;
    UpdateStorages& rStorages = _pStorages != nullptr ? *_pStorages : cSystem;
    std::vector<std::wstring> vecLine;
    const auto AddKey = [&](HKEY _hRoot, ZkCommon::Storage::RegistryView _enView, const wchar_t* _pszPrefix) {
        AddLines(rStorages, {UpdatePlace::Kind::Registry, _hRoot, _enView, Key(), {}}, _pszPrefix, vecLine);
    };
    AddKey(HKEY_CURRENT_USER, ZkCommon::Storage::ViewDefault, L"user");
    AddKey(HKEY_LOCAL_MACHINE, ZkCommon::Storage::View32, L"32");
    AddKey(HKEY_LOCAL_MACHINE, ZkCommon::Storage::View64, L"64");
    for (const auto& [pszFile, vecSection] : m_vecFile) {
        for (const std::wstring& tszSection : vecSection) {
            AddLines(rStorages, {UpdatePlace::Kind::IniFile, nullptr, {}, Folder().File(pszFile), tszSection},
                     L"[" + tszSection + L"]", vecLine);
        }
    }
    std::sort(vecLine.begin(), vecLine.end()); // what was removed and came back may stand elsewhere
    return vecLine;
}

std::wstring UpdateBench::TextOf(const UpdateStorage::Value& _rstValue)
{
    if (_rstValue.ulType == REG_SZ && _rstValue == UpdateStorage::Value::Of(_rstValue.Text())) {
        return L"\"" + _rstValue.Text() + L"\"";
    }
    std::wstring tszText = std::to_wstring(_rstValue.ulType) + L":";
    for (const std::uint8_t ucByte : _rstValue.vecData) {
        tszText += L" " + std::to_wstring(ucByte);
    }
    return tszText;
}

void UpdateBench::WatchSampleFiles()
{
    m_vecFile.insert(m_vecFile.end(), {{L"service.ini", {L"Service", L"Update", L"Legacy", L"Compatibility"}},
                                       {L"pattern.ini", {L"P", L"Pattern", L"Servers"}},
                                       {L"pelto17.ini", {L"Setup"}}});
}

void UpdateBench::Clear() const
{
    m_cKey.Remove();
    ::DeleteFileW(Folder().File(L"test.ini").c_str());
}
