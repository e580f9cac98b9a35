#include "Machine/UpdateRehearsal.h"

#include "Arguments.h"

#include "Output/Output.h"
#include "SrvFrwk_ResultCode.h"
#include "Update/LocalUpdateAgentKey.h"
#include "Update/LocalUpdateManager.h"
#include "Update/SystemKey.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace Vrnt {

using namespace Varnhelt;
using ZkCommon::String::EqualsNoCase;
using ZkCommon::String::ToUtf8;

namespace {

const char* EffectText(UpdateEffect _enEffect)
{
    switch (_enEffect) {
    case UpdateEffect::Create:
        return "create";
    case UpdateEffect::Write:
        return "write";
    case UpdateEffect::Append:
        return "append";
    case UpdateEffect::Remove:
        return "remove";
    case UpdateEffect::Skip:
        return "skip";
    default:
        return "refuse";
    }
}

Json TextOrNull(const std::string& _rsText)
{
    return _rsText.empty() ? Json() : Json(_rsText);
}

/** A value as it fits a table. */
std::string Shortened(const std::wstring& _rtszText)
{
    constexpr std::size_t uLongest = 40;
    std::wstring tszText = _rtszText.substr(0, uLongest);
    for (wchar_t& rc : tszText) {
        rc = rc < L' ' ? L' ' : rc;
    }
    return ToUtf8(tszText) + (_rtszText.size() > uLongest ? "..." : "");
}

std::string Heading(const LocalUpdateKey& _rstItem)
{
    if (_rstItem.tszKind == g_szIniFileKind) {
        return "inifile " + ToUtf8(_rstItem.tszRoot) + " [" + ToUtf8(_rstItem.tszPath) + "]";
    }
    const std::string sMode = _rstItem.tszAccessMode.empty() ? "" : " (" + ToUtf8(_rstItem.tszAccessMode) + ")";
    return "registry " + ToUtf8(_rstItem.tszRoot + L"\\" + _rstItem.tszPath) + sMode;
}

/** What an entry does although it fails. */
const char* InPart(const LocalUpdateEntry& _rstEntry)
{
    return Documents::IsAction(_rstEntry, UpdateWords::ActionRemove) ? "; keys below it are removed all the same"
                                                                     : "; the key is made all the same";
}

std::string RootNames()
{
    std::vector<std::string> vecName;
    for (const Frwk::Word& stRoot : Documents::g_aRegistryRoot) {
        vecName.push_back(ToUtf8(std::wstring(stRoot.svText)));
    }
    return Joined(vecName);
}

bool IsDoing(UpdateEffect _enEffect)
{
    return _enEffect != UpdateEffect::Skip && _enEffect != UpdateEffect::Refuse;
}

/** Whether an item with this reason is meant for this machine, as far as can be judged, and is not updated. */
bool IsFault(UpdateReason _enReason)
{
    return _enReason >= UpdateReason::NoVersion && _enReason <= UpdateReason::NoPath;
}

/** Whether a key's name is the other's, or that of a key below it. */
bool IsAtOrBelow(const std::wstring& _rtszName, const std::wstring& _rtszAbove, bool _bBelow)
{
    const bool bStarts =
        EqualsNoCase(_rtszName, _rtszAbove, _rtszAbove.size()) && _rtszName.size() >= _rtszAbove.size();
    return bStarts && (_rtszName.size() == _rtszAbove.size() || (_bBelow && _rtszName[_rtszAbove.size()] == L'\\'));
}

/** Whether a difference between the machine and what it should be is about what an entry does. */
bool Concerns(const UpdateChange& _rstChange, const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    if (_rstChange.stPlace.enKind != _rstPlace.enKind || _rstChange.enKind == UpdateChange::Kind::AccessList) {
        return false;
    }
    const bool bCreates = Documents::IsAction(_rstEntry, UpdateWords::ActionCreate);
    const bool bValue =
        !bCreates && !(_rstEntry.tszName.empty() && Documents::IsAction(_rstEntry, UpdateWords::ActionRemove));
    if (_rstPlace.IsRegistry()) {
        const UpdatePlace stReal =
            RealPlaceOf(bCreates ? CLocalUpdateAgentKey::NewPlaceOf(_rstPlace, _rstEntry) : _rstPlace);
        if (!IsAtOrBelow(KeyNameOf(_rstChange.stPlace), KeyNameOf(stReal), !bValue && !bCreates)) {
            return false;
        }
    } else if (!EqualsNoCase(_rstChange.stPlace.tszPath, FullIniPath(_rstPlace.tszPath)) ||
               !EqualsNoCase(_rstChange.stPlace.tszSection, _rstPlace.tszSection)) {
        return false;
    }
    return _rstChange.enKind == UpdateChange::Kind::Value
               ? bValue ? EqualsNoCase(_rstChange.tszName, _rstEntry.tszName) : !bCreates
               : _rstChange.enKind == UpdateChange::Kind::Created || _rstChange.enKind == UpdateChange::Kind::Removed;
}

} // namespace

UpdateRehearsal::UpdateRehearsal(const std::wstring& _rtszPath)
{
    Varnhelt::Worker stWorker;
    m_ulResult = Varnhelt::Documents::QueryValueAsLocalUpdate(stWorker, &m_stConfig, &_rtszPath, &m_bStay);
    if (m_ulResult != SrvFrwk::Result::g_ulSuccess) {
        return;
    }
    CLocalUpdateManager cManager(m_cStorage, this);
    m_ulResult = cManager.Initialize();
    m_stEnvironment = cManager.Environments();
    if (!SrvFrwk::Result::IsFailure(m_ulResult)) {
        m_ulResult = cManager.DoActionConfig(m_stConfig);
        cManager.UnInitialize();
    }
}

void UpdateRehearsal::OnItem(const LocalUpdateKey& _rstItem, UpdateReason _enReason)
{
    m_vecItem.push_back({&_rstItem, _enReason, {}});
}

void UpdateRehearsal::OnEntry(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry,
                              const UpdateDecision& _rstDecision)
{
    Entry stEntry{&_rstEntry, _rstPlace, _rstDecision};
    UpdateDecision& rstDecision = stEntry.stDecision;
    if (Documents::IsAction(_rstEntry, UpdateWords::ActionRemove) &&
        rstDecision.enReason == UpdateReason::SystemError &&
        rstDecision.ulError == ERROR_FILE_NOT_FOUND) { // the library fails for it; the machine is as it should be
        rstDecision.enEffect = UpdateEffect::Skip;
        rstDecision.enReason = UpdateReason::PlaceAbsent;
    }
    const bool bIdleCreate =
        Documents::IsAction(_rstEntry, UpdateWords::ActionCreate) &&
        (rstDecision.enReason == UpdateReason::PlacePresent || rstDecision.enReason == UpdateReason::NoAllAccess);
    stEntry.bLeftUndone = bIdleCreate && !IsThere(stEntry);
    m_vecItem.back().vecEntry.push_back(std::move(stEntry));
}

/** Whether the key or section that an entry is to create is there. */
bool UpdateRehearsal::IsThere(const Entry& _rstEntry)
{
    try {
        return m_cStorage.Of(_rstEntry.stPlace)
            .Exists(CLocalUpdateAgentKey::NewPlaceOf(_rstEntry.stPlace, *_rstEntry.pEntry));
    } catch (ZkCommon::Exception::Base* pError) { // the name is that of no key
        const ZkCommon::Exception::Caught pCaught(pError);
        return false;
    }
}

void UpdateRehearsal::CompareWithMachine()
{
    const std::vector<UpdateChange> vecDifference = m_cStorage.Changes();
    for (Item& rstItem : m_vecItem) {
        for (Entry& rstEntry : rstItem.vecEntry) {
            rstEntry.bApplied = IsDoing(rstEntry.stDecision.enEffect) &&
                                std::ranges::none_of(vecDifference, [&](const UpdateChange& _rstChange) {
                                    return Concerns(_rstChange, rstEntry.stPlace, *rstEntry.pEntry);
                                });
        }
    }
    m_bCompared = true;
}

/** Whether an entry that is meant for this machine is not done, and not for a reason that is as good as done. */
bool UpdateRehearsal::IsRefused(const Entry& _rstEntry) const
{
    const UpdateDecision& rstDecision = _rstEntry.stDecision;
    return rstDecision.enEffect == UpdateEffect::Refuse || _rstEntry.bLeftUndone ||
           (m_bCompared && IsDoing(rstDecision.enEffect) && !_rstEntry.bApplied);
}

bool UpdateRehearsal::IsAllDone() const
{
    return m_ulResult == SrvFrwk::Result::g_ulSuccess && std::ranges::none_of(m_vecItem, [&](const Item& _rstItem) {
               return IsFault(_rstItem.enReason) || std::ranges::any_of(_rstItem.vecEntry, [&](const Entry& _rstEntry) {
                          return IsRefused(_rstEntry);
                      });
           });
}

std::string UpdateRehearsal::Why(const UpdateConditions& _rstConditions, UpdateReason _enReason,
                                 std::uint32_t _ulError) const
{
    switch (_enReason) {
    case UpdateReason::None:
        return {};
    case UpdateReason::VersionTooLow:
        return "the installed version is below " + Quoted(_rstConditions.tszMinVersion);
    case UpdateReason::VersionTooHigh:
        return "the installed version is above " + Quoted(_rstConditions.tszMaxVersion);
    case UpdateReason::OtherProduct:
        return "for the product " + Quoted(_rstConditions.tszProduct);
    case UpdateReason::OtherLanguage:
        return "for the language " + Quoted(_rstConditions.tszLanguage);
    case UpdateReason::OtherPlatform:
        return "for the platform " + Quoted(_rstConditions.tszPlatform);
    case UpdateReason::NoVersion:
        return "the installed version is not known";
    case UpdateReason::BadVersion:
        if (_rstConditions.tszMinVersion.empty() || _rstConditions.tszMaxVersion.empty()) {
            return std::string(_rstConditions.tszMinVersion.empty() ? "\"minversion\"" : "\"maxversion\"") +
                   " is missing";
        }
        return "the versions " + Quoted(_rstConditions.tszMinVersion) + " and " + Quoted(_rstConditions.tszMaxVersion) +
               " cannot be compared with the installed one";
    case UpdateReason::NoProduct:
        return "the installed product is not known";
    case UpdateReason::NoLanguage:
        return "the installed language is not known";
    case UpdateReason::UnknownPlatform:
        return Quoted(_rstConditions.tszPlatform) + " is no platform";
    case UpdateReason::UnknownRoot:
        return "the root is none of " + RootNames();
    case UpdateReason::NoPath:
        return "the path is empty";
    case UpdateReason::PlacePresent:
        return "it exists, and is not to be overwritten";
    case UpdateReason::ValuePresent:
        return "the value exists, and is not to be overwritten";
    case UpdateReason::PlaceAbsent:
        return "there is nothing to remove";
    case UpdateReason::NoAllAccess:
        return R"("AllAccess" is neither "yes" nor "no")";
    case UpdateReason::UnknownAction:
        return "no such action";
    default:
        return SystemErrorText(_ulError);
    }
}

std::string UpdateRehearsal::WhyNot(const Item& _rstItem) const
{
    return Why(*_rstItem.pItem, _rstItem.enReason, 0);
}

std::string UpdateRehearsal::WhyNot(const Entry& _rstEntry) const
{
    const UpdateDecision& rstDecision = _rstEntry.stDecision;
    if (m_bCompared && IsDoing(rstDecision.enEffect) && !_rstEntry.bApplied) {
        return "the machine is not as it should be afterwards; the trace log has the cause";
    }
    if (_rstEntry.bLeftUndone && rstDecision.enReason == UpdateReason::PlacePresent) {
        return R"(it is not there, and only with "OverWrite" an existing key gets it)";
    }
    return Why(*_rstEntry.pEntry, rstDecision.enReason, rstDecision.ulError) +
           (rstDecision.bInPart ? InPart(*_rstEntry.pEntry) : "");
}

Json UpdateRehearsal::ItemToJson(const Item& _rstItem) const
{
    const auto EntryToJson = [&](const LocalUpdateEntry& _rstEntry, UpdateEffect _enEffect, const std::string& _rsWhy,
                                 bool _bApplied) {
        Json jsEntry{{"name", ToUtf8(_rstEntry.tszName)},     {"type", ToUtf8(_rstEntry.tszType)},
                     {"action", ToUtf8(_rstEntry.tszAction)}, {"value", ToUtf8(_rstEntry.tszValue)},
                     {"effect", EffectText(_enEffect)},       {"reason", TextOrNull(_rsWhy)}};
        if (m_bCompared) {
            jsEntry.Set("applied", _bApplied);
        }
        return jsEntry;
    };
    const LocalUpdateKey& rstKey = *_rstItem.pItem;
    const bool bUpdate = _rstItem.enReason == UpdateReason::None;
    Json jsEntries = Json::Array();
    for (const Entry& stEntry : _rstItem.vecEntry) {
        jsEntries.Add(EntryToJson(*stEntry.pEntry, stEntry.stDecision.enEffect, WhyNot(stEntry), stEntry.bApplied));
    }
    if (!bUpdate) {
        for (const LocalUpdateEntry& stEntry : rstKey.lstEntry) {
            jsEntries.Add(EntryToJson(stEntry, UpdateEffect::Skip, "the item is not updated", false));
        }
    }
    const bool bNoRoot = rstKey.tszKind == g_szRegistryKind && RegistryRootOf(rstKey.tszRoot) == nullptr;
    return {{"kind", ToUtf8(rstKey.tszKind)},
            {"root", bNoRoot ? Json() : Json(ToUtf8(rstKey.tszRoot))},
            {"path", ToUtf8(rstKey.tszPath)},
            {"accessMode", ToUtf8(rstKey.tszAccessMode)},
            {"update", bUpdate},
            {"reason", TextOrNull(WhyNot(_rstItem))},
            {"entries", std::move(jsEntries)}};
}

Json UpdateRehearsal::ToJson() const
{
    if (m_ulResult != SrvFrwk::Result::g_ulSuccess) {
        return {};
    }
    Json jsItems = Json::Array();
    for (const Item& stItem : m_vecItem) {
        jsItems.Add(ItemToJson(stItem));
    }
    for (const LocalUpdateDirectory& stDirectory : m_stConfig.lstDirectory) {
        jsItems.Add({{"kind", ToUtf8(stDirectory.tszKind)},
                     {"root", nullptr},
                     {"path", ""},
                     {"accessMode", ""},
                     {"update", false},
                     {"reason", "directories are never acted on"},
                     {"entries", Json::Array()}});
    }
    return {{"environment",
             {{"version", ToUtf8(m_stEnvironment.tszVersion)},
              {"product", ToUtf8(m_stEnvironment.tszProduct)},
              {"language", ToUtf8(m_stEnvironment.tszLanguage)}}},
            {"check", m_stConfig.tszCheck == UpdateWords::g_svYes},
            {"stay", m_bStay},
            {"items", std::move(jsItems)}};
}

std::string UpdateRehearsal::ToText() const
{
    if (m_ulResult != SrvFrwk::Result::g_ulSuccess) {
        return {};
    }
    std::string sText = "Installed: version " + OrUnknown(m_stEnvironment.tszVersion) + ", product " +
                        OrUnknown(m_stEnvironment.tszProduct) + ", language " + OrUnknown(m_stEnvironment.tszLanguage) +
                        "\nConditions " + (m_stConfig.tszCheck == UpdateWords::g_svYes ? "apply" : "do not apply") +
                        "; the description " + (m_bStay ? "stays" : "is deleted by the update") + "\n";
    for (const Item& stItem : m_vecItem) {
        const std::string sWhy = WhyNot(stItem);
        sText += "\n" + Heading(*stItem.pItem) + (sWhy.empty() ? "" : ": not updated, " + sWhy) + "\n";
        Table cTable({"effect", "name", "type", "value", "reason"});
        for (const Entry& stEntry : stItem.vecEntry) {
            const LocalUpdateEntry& rstEntry = *stEntry.pEntry;
            const bool bDone = stEntry.stDecision.enReason == UpdateReason::None;
            cTable.Add({EffectText(stEntry.stDecision.enEffect), ToUtf8(rstEntry.tszName), ToUtf8(rstEntry.tszType),
                        Shortened(rstEntry.tszValue),
                        bDone ? "" : Quoted(rstEntry.tszAction) + ": " + WhyNot(stEntry)});
        }
        if (!cTable.IsEmpty()) {
            sText += cTable.ToText();
        }
    }
    return sText;
}

Table UpdateRehearsal::ToTable() const
{
    const auto AddCells = [](std::vector<std::string>& _rvecCell, const Json& _rjsRecord) {
        for (const auto& [sKey, jsValue] : *_rjsRecord.As<Json::Members>()) {
            if (const bool* pbValue = jsValue.As<bool>()) {
                _rvecCell.emplace_back(*pbValue ? "yes" : "no");
            } else if (!jsValue.Is<Json::Elements>()) {
                const auto* psText = jsValue.As<std::string>();
                _rvecCell.push_back(psText != nullptr ? *psText : std::string());
            }
        }
    };
    Table cTable;
    const Json jsData = ToJson();
    const Json* pItems = jsData.Find("items");
    for (const Json& jsItem : pItems != nullptr ? *pItems->As<Json::Elements>() : Json::Elements()) {
        std::vector<std::string> vecItem;
        AddCells(vecItem, jsItem);
        cTable.Add(vecItem);
        vecItem.resize(3); // kind, root and path
        for (const Json& jsEntry : *jsItem.Find("entries")->As<Json::Elements>()) {
            std::vector<std::string> vecEntry = vecItem;
            AddCells(vecEntry, jsEntry);
            cTable.Add(std::move(vecEntry));
        }
    }
    return cTable;
}

std::string UpdateRehearsal::Summary() const
{
    std::size_t uEntries = 0;
    std::size_t uApplied = 0;
    std::size_t uRefused = 0;
    std::string sRefused;
    for (const Item& stItem : m_vecItem) {
        const std::string sItem = Heading(*stItem.pItem);
        uEntries += stItem.pItem->lstEntry.size();
        if (IsFault(stItem.enReason)) {
            uRefused += stItem.pItem->lstEntry.size();
            sRefused += "refused: " + sItem + ": " + WhyNot(stItem) + "\n";
        }
        for (const Entry& stEntry : stItem.vecEntry) {
            uApplied += stEntry.bApplied ? 1 : 0;
            if (IsRefused(stEntry)) {
                ++uRefused;
                sRefused += "refused: " + sItem + ", " + ToUtf8(stEntry.pEntry->tszAction) + " " +
                            Quoted(stEntry.pEntry->tszName) + ": " + WhyNot(stEntry) + "\n";
            }
        }
    }
    return std::to_string(uApplied) + " of " + std::to_string(uEntries) + (uEntries == 1 ? " entry" : " entries") +
           " applied, " + std::to_string(uEntries - uApplied - uRefused) + " skipped, " + std::to_string(uRefused) +
           " refused\n" + sRefused;
}

} // namespace Vrnt
