#include "Update/UpdateUndo.h"

#include "Descriptions/DescriptionWriter.h"
#include "Documents/LocalUpdate.h"
#include "Documents/RegistryWords.h"
#include "Files/DocumentFile.h"
#include "Update/LocalUpdateAgentKey.h"
#include "Update/UpdatePathMacro.h"
#include "Update/UpdateValue.h"
#include "ZkComn_Exception.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

namespace Varnhelt {

using namespace ZkCommon;
namespace {

/** Whether a document can hold the text. */
bool FitsDocument(std::wstring_view _svText)
{
    for (std::size_t i = 0; i < _svText.size(); ++i) {
        const wchar_t c = _svText[i];
        const bool bHigh = c >= 0xD800 && c < 0xDC00;
        const bool bPair = bHigh && i + 1 < _svText.size() && _svText[i + 1] >= 0xDC00 && _svText[i + 1] < 0xE000;
        if ((c < L' ' && c != L'\t' && c != L'\n' && c != L'\r') || c >= 0xFFFE ||
            (!bPair && c >= 0xD800 && c < 0xE000)) {
            return false;
        }
        i += bPair ? 1 : 0;
    }
    return true;
}

std::optional<LocalUpdateEntry> EntryFor(const UpdateChange& _rstChange)
{
    LocalUpdateEntry stEntry;
    stEntry.tszTarget = _rstChange.stPlace.IsRegistry() ? g_szRegistryKind : g_szIniFileKind;
    stEntry.tszName = _rstChange.tszName;
    switch (_rstChange.enKind) {
    case UpdateChange::Kind::Created:
        stEntry.tszAction = Frwk::Utility::ToText(UpdateWords::g_stAction, UpdateWords::ActionRemove);
        return stEntry;
    case UpdateChange::Kind::Removed:
        stEntry.tszAction = Frwk::Utility::ToText(UpdateWords::g_stAction, UpdateWords::ActionCreate);
        stEntry.tszOverWrite = UpdateWords::g_svNo;
        if (_rstChange.stPlace.IsRegistry()) {
            stEntry.tszAllAccess = _rstChange.bAllAccess ? UpdateWords::g_svYes : UpdateWords::g_svNo;
        }
        return stEntry;
    case UpdateChange::Kind::Value:
        break;
    default:
        return std::nullopt; // there are no words for it
    }
    if (!FitsDocument(stEntry.tszName)) {
        return std::nullopt;
    }
    if (!_rstChange.stBefore) {
        stEntry.tszAction = Frwk::Utility::ToText(UpdateWords::g_stAction, UpdateWords::ActionRemove);
        // Without a name it would remove the key.
        return stEntry.tszName.empty() ? std::nullopt : std::optional(std::move(stEntry));
    }
    std::optional<UpdateValueText> stText = UpdateTextOf(*_rstChange.stBefore);
    if (!stText || !FitsDocument(stText->tszText)) {
        return std::nullopt;
    }
    stEntry.tszAction = Frwk::Utility::ToText(UpdateWords::g_stAction, UpdateWords::ActionWrite);
    stEntry.tszType = Frwk::Utility::ToText(UpdateWords::g_stType, stText->enType);
    stEntry.tszValue = std::move(stText->tszText);
    stEntry.tszOverWrite = UpdateWords::g_svYes;
    if (_rstChange.stPlace.IsRegistry()) {
        stEntry.tszAllAccess = UpdateWords::g_svNo; // the key is there, or was made by an entry before
    }
    return stEntry;
}

std::optional<LocalUpdateKey> ItemFor(const UpdatePlace& _rstPlace)
{
    LocalUpdateKey stItem;
    if (_rstPlace.IsRegistry()) {
        stItem.tszKind = g_szRegistryKind;
        stItem.tszRoot = Documents::RegistryRoot::Write(_rstPlace.hRoot);
        stItem.tszPath = _rstPlace.tszPath;
        stItem.tszAccessMode = Frwk::Utility::ToText(UpdateWords::g_stView, Storage::View64);
    } else {
        stItem.tszKind = g_szIniFileKind;
        stItem.tszRoot = _rstPlace.tszPath;
        stItem.tszPath = _rstPlace.tszSection;
        if (HasPathMacro(stItem.tszRoot)) { // it is expanded already, and would be once more
            return std::nullopt;
        }
    }
    return FitsDocument(stItem.tszRoot) && FitsDocument(stItem.tszPath) ? std::optional(std::move(stItem))
                                                                        : std::nullopt;
}

bool IsSamePlace(const UpdatePlace& _rstLeft, const UpdatePlace& _rstRight)
{
    return _rstLeft.enKind == _rstRight.enKind && _rstLeft.hRoot == _rstRight.hRoot &&
           _rstLeft.tszPath == _rstRight.tszPath && _rstLeft.tszSection == _rstRight.tszSection;
}

LocalUpdateConfig ConfigFor(const std::vector<UpdateChange>& _rvecChange)
{
    LocalUpdateConfig stConfig;
    std::set<std::wstring, String::LessNoCase> setCreated; // keys; a key below one of them is removed with it
    const UpdatePlace* pPlace = nullptr;
    LocalUpdateKey* pItem = nullptr;
    for (const UpdateChange& stChange : _rvecChange) {
        const UpdatePlace& rstPlace = stChange.stPlace;
        if (rstPlace.IsRegistry() && stChange.enKind == UpdateChange::Kind::Created) {
            const std::wstring tszKey = KeyNameOf(rstPlace);
            setCreated.insert(tszKey);
            if (setCreated.contains(tszKey.substr(0, tszKey.rfind(L'\\')))) {
                continue;
            }
        }
        std::optional<LocalUpdateEntry> stEntry = EntryFor(stChange);
        if (!stEntry) {
            continue;
        }
        if (pPlace == nullptr || !IsSamePlace(*pPlace, rstPlace)) {
            pPlace = &rstPlace;
            pItem = nullptr;
            if (std::optional<LocalUpdateKey> stItem = ItemFor(rstPlace)) {
                auto& rlstItem = rstPlace.IsRegistry() ? stConfig.lstRegistry : stConfig.lstIniFile;
                pItem = &rlstItem.emplace_back(std::move(*stItem));
            }
        }
        if (pItem != nullptr) {
            pItem->lstEntry.push_back(std::move(*stEntry));
        }
    }
    return stConfig;
}

std::string DescriptionOf(const LocalUpdateConfig& _rstConfig)
{
    Storage::XmlParser cDocument;
    cDocument.LoadText("<Quillmar/>", Storage::XmlParser::KeepWhole);
    Storage::XmlElement cRoot;
    cDocument.Select(DocumentOf(DocumentId::LocalUpdate).pszRoot, cRoot);
    for (const LocalUpdateKey& stItem : _rstConfig.lstRegistry) {
        Documents::AddRecord(cRoot, Documents::g_stLocalUpdateRegistry, stItem);
    }
    for (const LocalUpdateKey& stItem : _rstConfig.lstIniFile) {
        Documents::AddRecord(cRoot, Documents::g_stLocalUpdateIniFile, stItem);
    }
    return DocumentText(cDocument);
}

std::wstring WordsFor(const UpdateChange& _rstChange)
{
    const UpdatePlace& rstPlace = _rstChange.stPlace;
    const std::wstring tszPlace = rstPlace.IsRegistry()
                                      ? L"the key " + KeyNameOf(rstPlace)
                                      : L"the section [" + rstPlace.tszSection + L"] of " + rstPlace.tszPath;
    switch (_rstChange.enKind) {
    case UpdateChange::Kind::Created:
        return tszPlace + L" stays";
    case UpdateChange::Kind::Removed:
        return tszPlace + L" is not made again";
    case UpdateChange::Kind::AccessList:
        return tszPlace + L" has another access list";
    case UpdateChange::Kind::Lines:
        return L"lines of " + tszPlace + L" that are no entries, or repeat one, are not what they were";
    case UpdateChange::Kind::File:
        return L"the file " + rstPlace.tszPath + L" stays";
    default:
        break;
    }
    const std::wstring tszName =
        _rstChange.tszName.empty() ? L"the unnamed value" : L"the value \"" + _rstChange.tszName + L"\"";
    return tszName + L" of " + tszPlace + (_rstChange.stBefore ? L" is not what it was" : L" stays");
}

} // namespace

UpdateUndo UndoOf(RecordingStorage& _rStorage)
{
    LocalUpdateConfig stConfig = ConfigFor(_rStorage.Changes());
    UpdateUndo stUndo{DescriptionOf(stConfig), {}};
    CLocalUpdateAgentKey cAgent(_rStorage, nullptr);
    for (auto* plstItem : {&stConfig.lstRegistry, &stConfig.lstIniFile}) {
        for (LocalUpdateKey& stItem : *plstItem) {
            cAgent.DoAction(&stItem);
        }
    }
    for (const UpdateChange& stChange : _rStorage.Changes()) {
        stUndo.vecLeft.push_back(WordsFor(stChange));
    }
    return stUndo;
}

} // namespace Varnhelt
