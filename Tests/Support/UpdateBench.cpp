#include "UpdateBench.h"

#include "Frwk_Settings.h"
#include "FunctionProvider.h"
#include "SrvFrwk_ValueType.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <algorithm>

using namespace ZkCommon;
using namespace Varnhelt;

namespace {

constexpr const wchar_t* g_aEnvironment[] = {L"Version", L"PID", L"Language"};

void AddValues(UpdateStorage& _rStorage, const UpdatePlace& _rstPlace, const std::wstring& _rtszPrefix,
               std::vector<std::wstring>& _rvecLine)
{
    for (const std::wstring& tszName : _rStorage.Names(_rstPlace)) {
        const auto stValue = _rStorage.Find(_rstPlace, tszName);
        std::wstring tszLine = _rtszPrefix + L" " + tszName + L" " + std::to_wstring(stValue->ulType) + L":";
        for (const std::uint8_t ucByte : stValue->vecData) {
            tszLine += L" " + std::to_wstring(ucByte);
        }
        _rvecLine.push_back(std::move(tszLine));
    }
}

void AddKeys(UpdateStorage& _rStorage, const UpdatePlace& _rstPlace, const std::wstring& _rtszPrefix,
             std::vector<std::wstring>& _rvecLine)
{
    if (!_rStorage.Exists(_rstPlace)) {
        return;
    }
    _rvecLine.push_back(_rtszPrefix);
    AddValues(_rStorage, _rstPlace, _rtszPrefix, _rvecLine);
    for (const std::wstring& tszName : _rStorage.SubKeys(_rstPlace)) {
        UpdatePlace stBelow = _rstPlace;
        stBelow.tszPath += L"\\" + tszName;
        AddKeys(_rStorage, stBelow, _rtszPrefix + L"\\" + tszName, _rvecLine);
    }
}

} // namespace

UpdateBench::UpdateBench()
{
    SetEnvironment(L"17.1.1040", L"QE17-0001", 32);
}

UpdateBench::~UpdateBench()
{
    SetEnvironment({}, {}, 0);
    Storage::Registry cKey;
    cKey.OpenForDeletion(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
    for (const wchar_t* pszName : g_aEnvironment) {
        cKey.DeleteValue(pszName);
    }
}

void UpdateBench::SetEnvironment(const std::wstring& _rtszVersion, const std::wstring& _rtszPid,
                                 std::uint32_t _ulLanguage)
{
    Storage::Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
    cKey.WriteString(L"Version", _rtszVersion);
    cKey.WriteString(L"PID", _rtszPid);
    cKey.WriteNumber(L"Language", _ulLanguage);
}

std::string UpdateBench::Expand(std::string_view _svText) const
{
    std::string sText(_svText);
    const auto Replace = [&](std::string_view _svMark, const std::wstring& _rtszBy) {
        const std::string sBy = String::ToUtf8(_rtszBy);
        for (std::size_t uAt = 0; (uAt = sText.find(_svMark, uAt)) != std::string::npos; uAt += sBy.size()) {
            sText.replace(uAt, _svMark.size(), sBy);
        }
    };
    Replace("@K@", m_cKey.Path());
    Replace("@F@", Folder().Path().wstring());
    return sText;
}

std::wstring UpdateBench::Describe(std::string_view _svItems, std::string_view _svAttributes) const
{
    return Describe(L"update.xml", "<Quillmar version=\"17.2\" " + std::string(_svAttributes) + ">" +
                                       std::string(_svItems) + "</Quillmar>");
}

std::wstring UpdateBench::Describe(const std::wstring& _rtszFile, std::string_view _svDocument) const
{
    Folder().Write(_rtszFile, Expand(_svDocument));
    return Folder().File(_rtszFile);
}

std::uint32_t UpdateBench::Send(const std::wstring& _rtszPath)
{
    std::wstring tszPath = _rtszPath;
    return CFunctionProvider().SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &tszPath, 0, 0, nullptr);
}

UpdatePlace UpdateBench::Place(HKEY _hRoot, Storage::RegistryView _enView, const std::wstring& _rtszBelow) const
{
    UpdatePlace stPlace;
    stPlace.hRoot = _hRoot;
    stPlace.enView = _enView;
    stPlace.tszPath = m_cKey.Path() + _rtszBelow;
    return stPlace;
}

std::vector<std::wstring> UpdateBench::Snapshot(UpdateStorage& _rStorage) const
{
    std::vector<std::wstring> vecLine;
    AddKeys(_rStorage, Place(HKEY_CURRENT_USER, Storage::ViewDefault), L"HKCU", vecLine);
    AddKeys(_rStorage, Place(HKEY_LOCAL_MACHINE, Storage::View32), L"HKLM32", vecLine);
    AddKeys(_rStorage, Place(HKEY_LOCAL_MACHINE, Storage::View64), L"HKLM64", vecLine);
    for (const wchar_t* pszSection : {L"A", L"B", L"C", L"D"}) {
        UpdatePlace stSection;
        stSection.enKind = UpdatePlace::Kind::IniFile;
        stSection.tszPath = Ini();
        stSection.tszSection = pszSection;
        if (_rStorage.Exists(stSection)) {
            const std::wstring tszHeading = L"[" + stSection.tszSection + L"]";
            vecLine.push_back(tszHeading);
            AddValues(_rStorage, stSection, tszHeading, vecLine);
        }
    }
    std::ranges::sort(vecLine); // what was removed and came back may stand elsewhere
    return vecLine;
}

std::vector<std::wstring> UpdateBench::Snapshot() const
{
    SystemStorage cStorage;
    return Snapshot(cStorage);
}
