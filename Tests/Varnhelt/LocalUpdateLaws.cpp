// The laws of local updates, held by random descriptions: the machine becomes what a model says, the rehearsal says the
// same and changes nothing, and the undo leads back but for what it names. VARNHELT_UPDATES asks for more descriptions than
// the usual ones, VARNHELT_UPDATE_SEED for others.

#include "ReplaceAll.h"
#include "UpdateTest.h"

#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <string_view>

using ZkCommon::String::LessNoCase;
using Value = UpdateStorage::Value;

namespace {

/** An entry, as the description says it. */
struct EntrySpec
{
    std::wstring tszAction, tszName, tszType, tszValue;
    bool bOverWrite = false;
    std::wstring tszAllAccess;
};

bool IsNumber(const std::wstring& _rtszType)
{
    return _rtszType.starts_with(L"uint");
}

/** What a description makes of the machine, in plain maps. */
class Model
{
public:
    std::vector<std::wstring> Lines() const
    {
        std::vector<std::wstring> vecLine;
        for (const auto& [tszKey, mapValue] : m_mapKey) {
            vecLine.push_back(tszKey);
            for (const auto& [tszName, stValue] : mapValue) {
                vecLine.push_back(tszKey + L" " + tszName + L" " + UpdateBench::TextOf(stValue));
            }
        }
        for (const auto& [tszSection, mapEntry] : m_mapSection) {
            vecLine.push_back(L"[" + tszSection + L"]");
            for (const auto& [tszName, tszText] : mapEntry) {
                vecLine.push_back(L"[" + tszSection + L"] " + tszName + L" " + UpdateBench::TextOf(Value::Of(tszText)));
            }
        }
        std::ranges::sort(vecLine);
        return vecLine;
    }

    /** @param _tszView  "user", "32" or "64"; @param _tszOwn  the same of keys that are made plainly */
    wchar_t OnKey(const std::wstring& _tszView, const std::wstring& _tszOwn, const std::wstring& _tszPath,
                  const EntrySpec& _rstEntry)
    {
        const std::wstring tszKey = _tszView + _tszPath;
        const auto itKey = m_mapKey.find(tszKey);
        if (_rstEntry.tszAction == L"create") {
            if (itKey != m_mapKey.end() && !_rstEntry.bOverWrite) {
                return L'-';
            }
            return Make(_tszView, _tszOwn, _tszPath + (_rstEntry.tszName.empty() ? L"" : L"\\" + _rstEntry.tszName),
                        _rstEntry)
                       ? L'c'
                       : L'-';
        }
        if (_rstEntry.tszAction == L"remove") {
            return itKey == m_mapKey.end() ? L'-' : RemoveFrom(tszKey, _rstEntry.tszName);
        }
        const std::optional<Value> stPresent = ValueAt(tszKey, _rstEntry.tszName);
        if (stPresent && stPresent->ulType == TypeOf(_rstEntry.tszType) && !_rstEntry.bOverWrite) {
            return L'-';
        }
        const bool bAppend = _rstEntry.tszAction == L"append";
        if (bAppend && (IsNumber(_rstEntry.tszType) || (stPresent && stPresent->ulType != TypeOf(_rstEntry.tszType)))) {
            return L'!';
        }
        Make(_tszView, _tszOwn, _tszPath, _rstEntry);
        const std::optional<Value> stValue = ValueOf(_rstEntry, bAppend ? stPresent : std::nullopt);
        if (!stValue || !m_mapKey.contains(tszKey)) {
            return L'!';
        }
        m_mapKey[tszKey][_rstEntry.tszName] = *stValue;
        return bAppend ? L'a' : L'w';
    }

    wchar_t OnSection(const std::wstring& _tszSection, const EntrySpec& _rstEntry)
    {
        const auto itSection = m_mapSection.find(_tszSection);
        if (_rstEntry.tszAction == L"create") {
            const bool bSkip = itSection != m_mapSection.end() && !_rstEntry.bOverWrite;
            m_mapSection.try_emplace(_tszSection);
            return bSkip ? L'-' : L'c';
        }
        if (_rstEntry.tszAction == L"remove") {
            if (itSection == m_mapSection.end()) {
                return L'-';
            }
            if (_rstEntry.tszName.empty()) {
                m_mapSection.erase(itSection);
            } else {
                itSection->second.erase(_rstEntry.tszName);
            }
            return L'r';
        }
        const bool bAppend = _rstEntry.tszAction == L"append";
        const std::wstring* pPresent = nullptr;
        if (itSection != m_mapSection.end()) {
            const auto itEntry = itSection->second.find(_rstEntry.tszName);
            pPresent = itEntry != itSection->second.end() ? &itEntry->second : nullptr;
        }
        if (pPresent != nullptr && !_rstEntry.bOverWrite) {
            return L'-';
        }
        if (_rstEntry.tszName.empty() || (bAppend && IsNumber(_rstEntry.tszType))) {
            return L'!';
        }
        const std::wstring tszText = (bAppend && pPresent != nullptr ? *pPresent : L"") + _rstEntry.tszValue;
        m_mapSection[_tszSection][_rstEntry.tszName] = AsRead(tszText);
        return bAppend ? L'a' : L'w';
    }

private:
    using Values = std::map<std::wstring, Value, LessNoCase>;

    static DWORD TypeOf(const std::wstring& _rtszType)
    {
        return _rtszType == L"uint32"   ? REG_DWORD
               : _rtszType == L"uint64" ? REG_QWORD
               : _rtszType == L"string" ? REG_SZ
                                        : REG_BINARY;
    }

    /** Of the few texts that the generator writes. */
    static std::optional<Value> ValueOf(const EntrySpec& _rstEntry, const std::optional<Value>& _rstBefore)
    {
        const std::wstring& rtszText = _rstEntry.tszValue;
        if (IsNumber(_rstEntry.tszType)) {
            wchar_t* pEnd = nullptr;
            const unsigned long long ullNumber = std::wcstoull(rtszText.c_str(), &pEnd, 0);
            if (*pEnd != L'\0') {
                return std::nullopt;
            }
            return _rstEntry.tszType == L"uint32" ? Value::Of(static_cast<std::uint32_t>(ullNumber))
                                                  : Value::Of(std::uint64_t{ullNumber});
        }
        if (_rstEntry.tszType == L"string") {
            return Value::Of((_rstBefore ? _rstBefore->Text() : L"") + rtszText);
        }
        std::vector<std::uint8_t> vecBytes = _rstBefore ? _rstBefore->vecData : std::vector<std::uint8_t>();
        for (std::size_t i = 0; i + 1 < rtszText.size(); i += 2) {
            wchar_t* pEnd = nullptr;
            const std::wstring tszByte = rtszText.substr(i, 2);
            vecBytes.push_back(static_cast<std::uint8_t>(std::wcstoul(tszByte.c_str(), &pEnd, 16)));
            if (tszByte[1] == L'x' || *pEnd != L'\0') {
                return std::nullopt;
            }
        }
        return Value::Of(std::move(vecBytes));
    }

    static std::wstring AsRead(std::wstring _tszText)
    {
        const std::size_t uFirst = _tszText.find_first_not_of(L' ');
        _tszText =
            uFirst == std::wstring::npos ? L"" : _tszText.substr(uFirst, _tszText.find_last_not_of(L' ') + 1 - uFirst);
        const bool bQuoted = _tszText.size() > 1 && _tszText.front() == L'"' && _tszText.back() == L'"';
        return bQuoted ? _tszText.substr(1, _tszText.size() - 2) : _tszText;
    }

    std::optional<Value> ValueAt(const std::wstring& _rtszKey, const std::wstring& _rtszName) const
    {
        const auto itKey = m_mapKey.find(_rtszKey);
        if (itKey == m_mapKey.end()) {
            return std::nullopt;
        }
        const auto itValue = itKey->second.find(_rtszName);
        return itValue != itKey->second.end() ? std::optional(itValue->second) : std::nullopt;
    }

    bool Make(const std::wstring& _rtszView, const std::wstring& _rtszOwn, const std::wstring& _rtszPath,
              const EntrySpec& _rstEntry)
    {
        if (_rstEntry.tszAllAccess.empty()) {
            return false;
        }
        const std::wstring tszKey = (_rstEntry.tszAllAccess == L"yes" ? _rtszView : _rtszOwn) + _rtszPath;
        for (std::size_t uEnd = 0; uEnd != std::wstring::npos;) {
            uEnd = tszKey.find(L'\\', uEnd + 1);
            m_mapKey.try_emplace(tszKey.substr(0, uEnd));
        }
        return true;
    }

    wchar_t RemoveFrom(const std::wstring& _rtszKey, const std::wstring& _rtszName)
    {
        if (!_rtszName.empty()) {
            return m_mapKey[_rtszKey].erase(_rtszName) != 0 ? L'r' : L'!';
        }
        std::erase_if(m_mapKey, [&](const auto& _rstKey) {
            const std::wstring tszStart = _rstKey.first.substr(0, _rtszKey.size() + 1);
            return ZkCommon::String::EqualsNoCase(tszStart, _rtszKey) ||
                   ZkCommon::String::EqualsNoCase(tszStart, _rtszKey + L"\\");
        });
        return L'r';
    }

    std::map<std::wstring, Values, LessNoCase> m_mapKey;
    std::map<std::wstring, std::map<std::wstring, std::wstring, LessNoCase>, LessNoCase> m_mapSection;
};

/** Random descriptions. */
class Generator
{
public:
    explicit Generator(unsigned _ulSeed) : m_cRandom(_ulSeed) {}

    /** Adds an item to a description, and carries it out on a model. @return the letters of its entries' effects */
    std::wstring AddItem(std::string& _rsItems, Model& _rModel)
    {
        return m_cRandom() % 3 != 0 ? AddKey(_rsItems, _rModel) : AddSection(_rsItems, _rModel);
    }

    unsigned Below(unsigned _ulLimit) { return m_cRandom() % _ulLimit; }

    /** An ini file with lines that are no entries, entries of one name, and sections of one name. */
    std::string IniText()
    {
        std::string sText = Below(4) == 0 ? "\xEF\xBB\xBF" : "";
        for (unsigned i = Below(12); i != 0; --i) {
            sText += ZkCommon::String::ToUtf8(Any({L"[A]", L"[B]", L"[a]", L"k=1", L"k=2", L"N= x ", L"z=", L"foo.dll",
                                                   L"k", L"=q", L"; no", L"", L" [C]", L"N=\"v\""})) +
                     "\r\n";
        }
        return sText;
    }

    std::wstring AddSection(std::string& _rsItems, Model& _rModel)
    {
        const std::wstring tszSection = Any({L"A", L"B", L"C"});
        std::wstring tszEffects;
        _rsItems += "<inifile><Path>@F@\\test.ini</Path>" + Element("Section", tszSection);
        for (unsigned i = Below(3) + 1; i != 0; --i) {
            const EntrySpec stEntry{Any({L"create", L"write", L"append", L"remove", L"write"}),
                                    Any({L"", L"k", L"N", L"z"}),
                                    Any({L"string", L"uint32", L"binary"}),
                                    Any({L"1", L"\"q\"", L" \u00E4 ", L""}),
                                    Below(2) == 0,
                                    {}};
            _rsItems += "<Entry target='inifile'>" + Text(stEntry) + "</Entry>";
            tszEffects += _rModel.OnSection(tszSection, stEntry);
        }
        _rsItems += "</inifile>";
        return tszEffects;
    }

private:
    std::wstring Any(std::initializer_list<const wchar_t*> _lstText)
    {
        return *(_lstText.begin() + m_cRandom() % _lstText.size());
    }

    static std::string Element(const char* _szName, const std::wstring& _rtszText)
    {
        std::string sText = ZkCommon::String::ToUtf8(_rtszText);
        ReplaceAll(sText, "\"", "&quot;");
        return std::string("<") + _szName + ">" + sText + "</" + _szName + ">";
    }

    static std::string Text(const EntrySpec& _rstEntry)
    {
        return Element("Action", _rstEntry.tszAction) + Element("Name", _rstEntry.tszName) +
               Element("Type", _rstEntry.tszType) + Element("Value", _rstEntry.tszValue) +
               Element("OverWrite", _rstEntry.bOverWrite ? L"yes" : L"no") +
               Element("AllAccess", _rstEntry.tszAllAccess);
    }

    std::wstring AddKey(std::string& _rsItems, Model& _rModel)
    {
        const std::wstring tszPath = Any({L"", L"\\Sub", L"\\Sub\\Deep", L"\\_x", L"\\N\\M"});
        const std::wstring tszRoot = Any({L"HKLM", L"HKLM", L"HKCU"});
        const std::wstring tszMode = Any({L"", L"eMode32bit", L"eMode64bit"});
        const bool bUser = tszRoot == L"HKCU";
        std::wstring tszEffects;
        // A closing backslash means nothing.
        _rsItems += "<registry>" + Element("Root", tszRoot) + "<Path>@K@" + ZkCommon::String::ToUtf8(tszPath) +
                    (Below(4) == 0 ? "\\" : "") + "</Path>" + Element("AccessMode", tszMode);
        for (unsigned i = Below(3) + 1; i != 0; --i) {
            const EntrySpec stEntry{Any({L"create", L"write", L"append", L"remove", L"write"}),
                                    Any({L"", L"s", L"D", L"new", L"Sub"}),
                                    Any({L"string", L"uint32", L"binary", L"uint64"}),
                                    Any({L"12", L"0x1F", L"ab"}),
                                    Below(2) == 0,
                                    Any({L"", L"no", L"yes", L"no"})};
            _rsItems += "<Key target='registry'>" + Text(stEntry) + "</Key>";
            tszEffects += _rModel.OnKey(bUser                      ? L"user"
                                        : tszMode == L"eMode32bit" ? L"32"
                                                                   : L"64",
                                        bUser ? L"user" : L"64", tszPath, stEntry);
        }
        _rsItems += "</registry>";
        return tszEffects;
    }

    std::mt19937 m_cRandom;
};

unsigned FromEnvironment(const char* _szName, unsigned _ulDefault)
{
    const char* szValue = std::getenv(_szName);
    return szValue != nullptr ? static_cast<unsigned>(std::strtoul(szValue, nullptr, 10)) : _ulDefault;
}

TEST_F(LocalUpdate, ARandomUpdateObeysTheLaws)
{
    const unsigned ulSeed = FromEnvironment("VARNHELT_UPDATE_SEED", 17);
    const unsigned ulUpdates = FromEnvironment("VARNHELT_UPDATES", 200);
    Generator cGenerator(ulSeed);
    Model cPresent;
    std::string sHistory;
    for (unsigned i = 0; i < ulUpdates && !HasFailure(); ++i) {
        std::string sItems;
        Model cAfter = cPresent;
        std::wstring tszRegistry;
        std::wstring tszIni;
        for (unsigned k = cGenerator.Below(4) + 1; k != 0; --k) {
            std::string sItem;
            const std::wstring tszEffects = cGenerator.AddItem(sItem, cAfter);
            (sItem.starts_with("<registry") ? tszRegistry : tszIni) += tszEffects; // registry items come first
            sItems += sItem;
        }
        SCOPED_TRACE("update " + std::to_string(i) + " of seed " + std::to_string(ulSeed) + ":\n" + sItems);
        EXPECT_EQ(RoundTrip(m_cBench.Describe(sItems)).front(), tszRegistry + tszIni);
        EXPECT_EQ(m_vecAfter, cAfter.Lines());
        // The next one finds what this one leaves, or an empty machine from time to time.
        const bool bGoOn = cGenerator.Below(6) != 0;
        sHistory = bGoOn ? sHistory + sItems : std::string();
        cPresent = bGoOn ? cAfter : Model();
        m_cBench.Clear();
        m_cBench.Apply(sHistory);
    }
}

TEST_F(LocalUpdate, ARandomUpdateOfAnOddIniFileIsRehearsedAndUndone)
{
    const unsigned ulSeed = FromEnvironment("VARNHELT_UPDATE_SEED", 17);
    const unsigned ulUpdates = FromEnvironment("VARNHELT_UPDATES", 200) / 4;
    Generator cGenerator(ulSeed);
    for (unsigned i = 0; i < ulUpdates && !HasFailure(); ++i) {
        const std::string sFile = cGenerator.IniText();
        m_cBench.Folder().Write(L"test.ini", sFile);
        std::string sItems;
        Model cNone;
        cGenerator.AddSection(sItems, cNone);
        cGenerator.AddSection(sItems, cNone);
        SCOPED_TRACE("update " + std::to_string(i) + " of seed " + std::to_string(ulSeed) + ":\n" + sItems + "\n" +
                     sFile);
        RoundTrip(m_cBench.Describe(sItems));
    }
}

} // namespace
