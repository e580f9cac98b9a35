#pragma once

#include "Frwk_Settings.h"
#include "FunctionProvider.h"
#include "SrvFrwk_ValueType.h"
#include "TestKey.h"
#include "TestProduct.h"
#include "Update/UpdateStorage.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/** Replaces each occurrence of a text. */
template <class TText>
void ReplaceAll(TText& _rText, const TText& _rFrom, const TText& _rTo)
{
    for (std::size_t uAt = 0; (uAt = _rText.find(_rFrom, uAt)) != TText::npos; uAt += _rTo.size()) {
        _rText.replace(uAt, _rFrom.size(), _rTo);
    }
}

/**
 * A machine for local updates: a product with an environment, registry keys of the test's own and a folder for ini
 * files and descriptions. In descriptions @K@ stands for the keys' path, @F@ for the folder and @ALL@ for conditions
 * that this machine meets. What the sample changes below the product's own key, or in Windows' folder, is moved there.
 */
class UpdateBench
{
public:
    UpdateBench() { SetEnvironment(L"17.1.1040", L"QE17-0001", 32); } // edition qmrpro, language de
    ~UpdateBench() { RemoveEnvironment(); }

    static void SetEnvironment(const std::wstring& _rtszVersion, const std::wstring& _rtszPid,
                               std::uint32_t _ulLanguage)
    {
        ZkCommon::Storage::Registry cKey;
        cKey.Create(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
        cKey.WriteString(L"Version", _rtszVersion);
        cKey.WriteString(L"PID", _rtszPid);
        cKey.WriteNumber(L"Language", _ulLanguage);
    }

    static void RemoveEnvironment()
    {
        for (const wchar_t* pszName : {L"Version", L"PID", L"Language"}) {
            ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey, pszName);
        }
    }

    /** Writes a description into a file and returns its path. */
    std::wstring Describe(const std::wstring& _rtszFile, std::string _sDocument) const
    {
        const std::pair<std::string, std::string> aMark[] = {
            {ZkCommon::String::ToUtf8(Frwk::g_szProductKey), "@K@"},
            {"$WINDOWS$pelto17", "$INSTALL$pelto17"},
            {"@K@", ZkCommon::String::ToUtf8(Key())},
            {"@F@", ZkCommon::String::ToUtf8(Folder().Path().wstring())},
            {"@ALL@", "minversion='1' maxversion='18' product='all' language='all' platform='all'"}};
        for (const auto& [sMark, sBy] : aMark) {
            ReplaceAll(_sDocument, sMark, sBy);
        }
        Folder().Write(_rtszFile, _sDocument);
        return Folder().File(_rtszFile);
    }
    /** The same with these items. */
    std::wstring Describe(const std::string& _rsItems, const std::string& _rsAttributes = {}) const
    {
        return Describe(L"update.xml", "<Quillmar version=\"17.2\" " + _rsAttributes + ">" + _rsItems + "</Quillmar>");
    }

    /** Carries out the description, or a description with these items. @return the result of SendMessage */
    static std::uint32_t Send(std::wstring _tszPath)
    {
        return CFunctionProvider().SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &_tszPath, 0, 0, nullptr);
    }
    std::uint32_t Apply(const std::string& _rsItems) const { return Send(Describe(_rsItems)); }

    /**
     * In lines: everything below the test's keys, in both views and below both roots, and those sections of ini files
     * in the folder that tests use. Of the machine, or of another storage.
     */
    std::vector<std::wstring> Snapshot(Varnhelt::UpdateStorages* _pStorages = nullptr) const
    {
        Varnhelt::SystemStorage cSystem;
        Varnhelt::UpdateStorages& rStorages = _pStorages != nullptr ? *_pStorages : cSystem;
        std::vector<std::wstring> vecLine;
        const auto AddKey = [&](HKEY _hRoot, ZkCommon::Storage::RegistryView _enView, const wchar_t* _pszPrefix) {
            AddLines(rStorages, {Varnhelt::UpdatePlace::Kind::Registry, _hRoot, _enView, Key(), {}}, _pszPrefix,
                     vecLine);
        };
        AddKey(HKEY_CURRENT_USER, ZkCommon::Storage::ViewDefault, L"user");
        AddKey(HKEY_LOCAL_MACHINE, ZkCommon::Storage::View32, L"32");
        AddKey(HKEY_LOCAL_MACHINE, ZkCommon::Storage::View64, L"64");
        for (const auto& [pszFile, vecSection] : m_vecFile) {
            for (const std::wstring& tszSection : vecSection) {
                AddLines(rStorages,
                         {Varnhelt::UpdatePlace::Kind::IniFile, nullptr, {}, Folder().File(pszFile), tszSection},
                         L"[" + tszSection + L"]", vecLine);
            }
        }
        std::ranges::sort(vecLine); // what was removed and came back may stand elsewhere
        return vecLine;
    }

    /** A value in a line of a snapshot: a text in quotation marks, else the type's number and the bytes. */
    static std::wstring TextOf(const Varnhelt::UpdateStorage::Value& _rstValue)
    {
        if (_rstValue.ulType == REG_SZ && _rstValue == Varnhelt::UpdateStorage::Value::Of(_rstValue.Text())) {
            return L"\"" + _rstValue.Text() + L"\"";
        }
        std::wstring tszText = std::to_wstring(_rstValue.ulType) + L":";
        for (const std::uint8_t ucByte : _rstValue.vecData) {
            tszText += L" " + std::to_wstring(ucByte);
        }
        return tszText;
    }

    /** The ini files of the sample are in snapshots, too. */
    void WatchSampleFiles()
    {
        m_vecFile.insert(m_vecFile.end(), {{L"service.ini", {L"Service", L"Update", L"Legacy", L"Compatibility"}},
                                           {L"pattern.ini", {L"P", L"Pattern", L"Servers"}},
                                           {L"pelto17.ini", {L"Setup"}}});
    }

    /** Removes the test's keys and its ini file. */
    void Clear() const
    {
        m_cKey.Remove();
        ::DeleteFileW(Folder().File(L"test.ini").c_str());
    }

    const TempFolder& Folder() const { return m_cProduct.Folder(); }
    const std::wstring& Key() const { return m_cKey.Path(); }

private:
    /** A place's own line, one for each of its values, and those of the places below it. */
    static void AddLines(Varnhelt::UpdateStorages& _rStorages, const Varnhelt::UpdatePlace& _rstPlace,
                         const std::wstring& _rtszPrefix, std::vector<std::wstring>& _rvecLine)
    {
        Varnhelt::UpdateStorage& rStorage = _rStorages.Of(_rstPlace);
        if (!rStorage.Exists(_rstPlace)) {
            return;
        }
        _rvecLine.push_back(_rtszPrefix);
        for (const std::wstring& tszName : rStorage.Names(_rstPlace)) {
            const auto stValue = rStorage.Find(_rstPlace, tszName); // a line before it may hide it
            _rvecLine.push_back(_rtszPrefix + L" " + tszName + L" " + (stValue ? TextOf(*stValue) : L"hidden"));
        }
        for (const std::wstring& tszName : rStorage.SubKeys(_rstPlace)) {
            Varnhelt::UpdatePlace stBelow = _rstPlace;
            stBelow.tszPath += L"\\" + tszName;
            AddLines(_rStorages, stBelow, _rtszPrefix + L"\\" + tszName, _rvecLine);
        }
    }

    TestProduct m_cProduct;
    TestKey m_cKey;
    std::vector<std::pair<const wchar_t*, std::vector<std::wstring>>> m_vecFile = {
        {L"test.ini", {L"A", L"B", L"C", L"D"}}};
};
