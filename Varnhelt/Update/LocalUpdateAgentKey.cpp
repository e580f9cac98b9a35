#include "Update/LocalUpdateAgentKey.h"

#include "Boundary.h"
#include "Documents/LocalUpdate.h"
#include "Documents/RegistryWords.h"
#include "Documents/UpdateWords.h"
#include "MethodTrace.h"
#include "Update/UpdatePathMacro.h"
#include "Update/UpdateValue.h"
#include "ZkComn_Exception.h"
#include "ZkComn_Platform.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <iterator>

using namespace ZkCommon;
using namespace SrvFrwk;
using namespace Varnhelt;

namespace {

constexpr MethodLines g_cDoAction(L"CLocalUpdateAgentKey::DoAction()");
constexpr MethodLines g_cCreateKey(L"CLocalUpdateAgentKey::CreateKey()");
constexpr MethodLines g_cReplacePath(L"CLocalUpdateAgentKey::ReplacePath()");
constexpr MethodLines g_cRemove(L"CLocalUpdateAgentKey::Remove()");
constexpr MethodLines g_cRemoveSection(L"CLocalUpdateAgentKey::RemoveSection()");

Storage::RegistryView ViewOf(std::wstring_view _svWord)
{
    return static_cast<Storage::RegistryView>(Frwk::Utility::ToValue(UpdateWords::g_stView, _svWord));
}

const UpdateValueType& TypeOf(std::wstring_view _svWord)
{
    const UpdateValueType* pType = FindUpdateValueType(_svWord);
    if (pType == nullptr) {
        Exception::Throw<Storage::Exception>(ERROR_INVALID_PARAMETER);
    }
    return *pType;
}

/** The type that an entry's values have where they are: an ini file holds texts only. */
const UpdateValueType& StoredTypeOf(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    const UpdateValueType& rstType = TypeOf(_rstEntry.tszType);
    return _rstPlace.IsRegistry() ? rstType
                                  : TypeOf(Frwk::Utility::ToText(UpdateWords::g_stType, UpdateWords::TypeString));
}

std::wstring Below(const std::wstring& _rtszPath, const std::wstring& _rtszName)
{
    return String::WithBackslash(_rtszPath) + _rtszName;
}

/** Runs a body; what it throws is logged under the method's name, and refuses the entry. */
template <class TBody>
UpdateDecision Guarded(const wchar_t* _pszMethod, TBody&& _fnBody)
{
    UpdateDecision stRefusal{UpdateEffect::Refuse, UpdateReason::SystemError, ERROR_OUTOFMEMORY};
    try {
        return _fnBody();
    } catch (Exception::Base* _pError) {
        stRefusal.ulError = _pError->ErrorCode();
        stRefusal.ulResult = ResultInFlight({_pszMethod});
    } catch (...) {
        stRefusal.ulResult = ResultInFlight({_pszMethod});
    }
    return stRefusal;
}

/** As Guarded, with the method's entry line, and its leave line when all went well. */
template <class TBody>
UpdateDecision Step(const wchar_t* _pszMethod, TBody&& _fnBody)
{
    const MethodTrace cTrace(_pszMethod);
    const UpdateDecision stDecision = Guarded(_pszMethod, _fnBody);
    return Result::IsFailure(stDecision.ulResult) ? stDecision : cTrace.Leave(stDecision);
}

} // namespace

HKEY Varnhelt::RegistryRootOf(std::wstring_view _svWord)
{
    const bool bKnown = Frwk::Utility::FindWord(Documents::g_stUpdateRoot, _svWord) != nullptr; // with case
    return bKnown ? Documents::RegistryRoot::Read(_svWord) : nullptr;
}

/** What an action does, and when there is nothing to do. */
struct CLocalUpdateAgentKey::Action
{
    UpdateWords::Action enAction;
    UpdateEffect enEffect;
    bool (*pfnExists)(const Attempt&);
    bool bSkipPresent; // true: skip if it exists and may not be overwritten; false: skip if it does not exist
    UpdateReason enNotToDo;
    const wchar_t* pszMethod;
    UpdateDecision (*pfnAct)(Attempt&);
};

std::uint32_t CLocalUpdateAgentKey::DoAction(LocalUpdateKey* _pstKey)
{
    return AtBoundary({L"CLocalUpdateAgentKey::DoAction()"}, [&] {
        const MethodTrace cTrace(L"CLocalUpdateAgentKey::DoAction()");
        if (_pstKey == nullptr) {
            cTrace.Error(L"pLocalUpdateKey was invalid.");
            return Result::g_ulMissingObject;
        }
        const UpdateCheck stCheck = CheckUpdate(*_pstKey);
        if (stCheck.enReason != UpdateReason::None) {
            ReportItem(*_pstKey, stCheck.enReason);
        }
        if (Result::IsFailure(stCheck.ulResult)) {
            cTrace.Error(L"CheckUpdate() failed(). [0x%08x]", stCheck.ulResult);
            return stCheck.ulResult;
        }
        const bool bUpdate = stCheck.enReason == UpdateReason::None;
        cTrace.Notice(L"bUpdate [%d].", bUpdate ? 1 : 0);
        if (!bUpdate) {
            cTrace.Notice(L"not match update environment.");
            return Result::g_ulSuccess;
        }
        const std::optional<UpdatePlace> stPlace = CreateKey(*_pstKey);
        if (!stPlace) {
            cTrace.Error(L"pKey was invalid.");
            ReportItem(*_pstKey,
                       _pstKey->tszKind == g_szIniFileKind ? UpdateReason::NoPath : UpdateReason::UnknownRoot);
            return Result::g_ulMissingObject;
        }
        cTrace.Notice(L"Root[%s] Base[%s]", _pstKey->tszRoot, _pstKey->tszPath);
        ReportItem(*_pstKey, UpdateReason::None);
        std::uint32_t ulResult = Result::g_ulSuccess;
        for (const LocalUpdateEntry& stEntry : _pstKey->lstEntry) {
            ulResult = DoEntry(*stPlace, stEntry).ulResult;
        }
        return cTrace.Leave(ulResult);
    });
}

void CLocalUpdateAgentKey::ReportItem(const LocalUpdateKey& _rstKey, UpdateReason _enReason) const
{
    if (m_pObserver != nullptr) {
        m_pObserver->OnItem(_rstKey, _enReason);
    }
}

/** An entry, its conditions first. */
UpdateDecision CLocalUpdateAgentKey::DoEntry(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry) const
{
    const UpdateCheck stCheck = CheckUpdate(_rstEntry);
    UpdateDecision stDecision{UpdateEffect::Skip, stCheck.enReason, ERROR_SUCCESS, stCheck.ulResult};
    if (Result::IsFailure(stCheck.ulResult)) {
        stDecision.enEffect = UpdateEffect::Refuse;
        g_cDoAction.Error(L"CheckUpdate() failed(). [0x%08x]", stCheck.ulResult);
    } else {
        const bool bUpdate = stCheck.enReason == UpdateReason::None;
        g_cDoAction.Notice(L"bUpdate [%d].", bUpdate ? 1 : 0);
        if (bUpdate) {
            Attempt stAttempt{m_rStorages.Of(_rstPlace), _rstPlace, _rstEntry};
            stDecision = OnAction(stAttempt);
            if (Result::IsFailure(stDecision.ulResult)) {
                g_cDoAction.Error(L"Name[%s] Type[%s] Value[%s] failed. [0x%08x]", _rstEntry.tszName, _rstEntry.tszType,
                                  _rstEntry.tszValue, stDecision.ulResult);
            }
        } else {
            g_cDoAction.Notice(L"not match update environment.");
        }
    }
    if (m_pObserver != nullptr) {
        m_pObserver->OnEntry(_rstPlace, _rstEntry, stDecision);
    }
    return stDecision;
}

std::optional<UpdatePlace> CLocalUpdateAgentKey::CreateKey(LocalUpdateKey& _rstKey)
{
    UpdatePlace stPlace;
    if (_rstKey.tszKind == g_szRegistryKind) {
        stPlace.hRoot = RegistryRootOf(_rstKey.tszRoot);
        if (stPlace.hRoot == nullptr) {
            return std::nullopt;
        }
        stPlace.enView = ViewOf(_rstKey.tszAccessMode);
        stPlace.tszPath = _rstKey.tszPath;
        g_cCreateKey.Notice(L"Root[0x%08x]",
                            static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(stPlace.hRoot)));
        return stPlace;
    }
    if (_rstKey.tszKind == g_szIniFileKind) {
        ReplacePath(_rstKey.tszRoot);
        if (_rstKey.tszRoot.empty()) {
            return std::nullopt;
        }
        stPlace.enKind = UpdatePlace::Kind::IniFile;
        stPlace.tszPath = _rstKey.tszRoot;
        stPlace.tszSection = _rstKey.tszPath;
        g_cCreateKey.Notice(L"_stKey.tszRoot[%s]", _rstKey.tszRoot);
        return stPlace;
    }
    return std::nullopt;
}

void CLocalUpdateAgentKey::ReplacePath(std::wstring& _rtszPath)
{
    g_cReplacePath.Notice(L"_tszPath [%s]", _rtszPath);
    ReplacePathMacro(_rtszPath);
}

UpdateDecision CLocalUpdateAgentKey::OnAction(Attempt& _rAttempt)
{
    using Agent = CLocalUpdateAgentKey;
    static constexpr Action aAction[] = {
        {UpdateWords::ActionCreate, UpdateEffect::Create, &Agent::KeyExists, true, UpdateReason::PlacePresent,
         L"CLocalUpdateAgentKey::Create()", &Agent::Create},
        {UpdateWords::ActionAppend, UpdateEffect::Append, &Agent::EntryExists, true, UpdateReason::ValuePresent,
         L"CLocalUpdateAgentKey::Append()", &Agent::Append},
        {UpdateWords::ActionWrite, UpdateEffect::Write, &Agent::EntryExists, true, UpdateReason::ValuePresent,
         L"CLocalUpdateAgentKey::Write()", &Agent::Write},
        {UpdateWords::ActionRemove, UpdateEffect::Remove, &Agent::KeyExists, false, UpdateReason::PlaceAbsent,
         L"CLocalUpdateAgentKey::Remove()", &Agent::Remove},
    };
    const LocalUpdateEntry& rstEntry = _rAttempt.rstEntry;
    const MethodTrace cTrace(L"CLocalUpdateAgentKey::OnAction()");
    cTrace.Notice(L"_stKey.tszAction [%s]", rstEntry.tszAction);
    const Frwk::Word* pWord = Frwk::Utility::FindWord(UpdateWords::g_stAction, rstEntry.tszAction);
    if (pWord == nullptr) {
        cTrace.Error(L"specified _stKey.tszAction[%s] was invalid.", rstEntry.tszAction);
        return cTrace.Leave(
            UpdateDecision{UpdateEffect::Refuse, UpdateReason::UnknownAction, ERROR_SUCCESS, Result::g_ulRefused});
    }
    const auto* pAction = std::ranges::find(aAction, pWord->ulValue, &Action::enAction);
    UpdateDecision stDecision = Guarded(L"CLocalUpdateAgentKey::OnAction()", [&] {
        const bool bExists = pAction->pfnExists(_rAttempt);
        if (pAction->bSkipPresent ? bExists && rstEntry.tszOverWrite != UpdateWords::g_svYes : !bExists) {
            return UpdateDecision{UpdateEffect::Skip, pAction->enNotToDo};
        }
        return Step(pAction->pszMethod, [&] { return pAction->pfnAct(_rAttempt); });
    });
    if (stDecision.enReason == UpdateReason::None) {
        stDecision.enEffect = pAction->enEffect;
    }
    if (Result::IsFailure(stDecision.ulResult)) {
        stDecision.bInPart = _rAttempt.bInPart;
        cTrace.Error(L"OnAction() failed().  _stKey.tszAction[%s] [0x%08x]", rstEntry.tszAction, stDecision.ulResult);
    }
    return cTrace.Leave(stDecision);
}

bool CLocalUpdateAgentKey::KeyExists(const Attempt& _rAttempt)
{
    return _rAttempt.rStorage.Exists(_rAttempt.rstPlace);
}

/** Whether there is a value that can be read as the entry's type. */
bool CLocalUpdateAgentKey::EntryExists(const Attempt& _rAttempt)
{
    const UpdateValueType& rstType = StoredTypeOf(_rAttempt.rstPlace, _rAttempt.rstEntry);
    try {
        const auto stValue = _rAttempt.rStorage.Find(_rAttempt.rstPlace, _rAttempt.rstEntry.tszName);
        return stValue && rstType.TextOf(*stValue);
    } catch (Storage::Exception* _pError) {
        const Exception::Caught pCaught(_pError);
        return false;
    }
}

UpdatePlace CLocalUpdateAgentKey::NewPlaceOf(const UpdatePlace& _rstPlace, const LocalUpdateEntry& _rstEntry)
{
    UpdatePlace stPlace = _rstPlace;
    if (_rstPlace.IsRegistry()) {
        if (Documents::IsAction(_rstEntry, UpdateWords::ActionCreate) && !_rstEntry.tszName.empty()) {
            stPlace.tszPath = Below(_rstPlace.tszPath, _rstEntry.tszName);
        }
        if (_rstEntry.tszAllAccess == UpdateWords::g_svNo) { // in the machine's own view, whatever the item's
            stPlace.enView = Platform::IsNative64Bit() ? Storage::View64 : Storage::ViewDefault;
        }
    }
    return stPlace;
}

UpdateDecision CLocalUpdateAgentKey::Create(Attempt& _rAttempt)
{
    if (!_rAttempt.rstPlace.IsRegistry()) {
        _rAttempt.rStorage.Create(_rAttempt.rstPlace, false);
        return {};
    }
    return CreateRegistryKey(_rAttempt) ? UpdateDecision{}
                                        : UpdateDecision{UpdateEffect::Skip, UpdateReason::NoAllAccess};
}

/** @return false when the entry asks for no key, and none is made */
bool CLocalUpdateAgentKey::CreateRegistryKey(Attempt& _rAttempt)
{
    const std::wstring& rtszAllAccess = _rAttempt.rstEntry.tszAllAccess;
    const bool bAllAccess = rtszAllAccess == UpdateWords::g_svYes;
    if (!bAllAccess && rtszAllAccess != UpdateWords::g_svNo) {
        return false;
    }
    const UpdatePlace stPlace = NewPlaceOf(_rAttempt.rstPlace, _rAttempt.rstEntry);
    const bool bNew = !_rAttempt.rStorage.Exists(stPlace);
    _rAttempt.rStorage.Create(stPlace, bAllAccess);
    _rAttempt.bInPart = bNew;
    return true;
}

UpdateDecision CLocalUpdateAgentKey::Write(Attempt& _rAttempt)
{
    const UpdateValueType& rstType = StoredTypeOf(_rAttempt.rstPlace, _rAttempt.rstEntry);
    if (_rAttempt.rstPlace.IsRegistry()) {
        CreateRegistryKey(_rAttempt);
    }
    const auto stValue = rstType.Of(_rAttempt.rstEntry.tszValue);
    if (!stValue) {
        Exception::Throw<Storage::Exception>(ERROR_INVALID_DATA);
    }
    _rAttempt.rStorage.Write(_rAttempt.rstPlace, _rAttempt.rstEntry.tszName, *stValue);
    return {};
}

UpdateDecision CLocalUpdateAgentKey::Append(Attempt& _rAttempt)
{
    const LocalUpdateEntry& rstEntry = _rAttempt.rstEntry;
    if (!TypeOf(rstEntry.tszType).bAppend) {
        Exception::Throw<Storage::Exception>(ERROR_INVALID_PARAMETER);
    }
    LocalUpdateEntry stJoined = rstEntry;
    if (const auto stPresent = _rAttempt.rStorage.Find(_rAttempt.rstPlace, rstEntry.tszName)) {
        const auto tszPresent = StoredTypeOf(_rAttempt.rstPlace, rstEntry).TextOf(*stPresent);
        if (!tszPresent) {
            Exception::Throw<Storage::Exception>(ERROR_INVALID_DATATYPE);
        }
        stJoined.tszValue.insert(0, *tszPresent);
    }
    Attempt stWrite{_rAttempt.rStorage, _rAttempt.rstPlace, stJoined};
    const UpdateDecision stDecision = Step(L"CLocalUpdateAgentKey::Write()", [&] { return Write(stWrite); });
    _rAttempt.bInPart = stWrite.bInPart;
    return stDecision;
}

UpdateDecision CLocalUpdateAgentKey::Remove(Attempt& _rAttempt)
{
    if (_rAttempt.rstEntry.tszName.empty()) {
        RemoveSection(_rAttempt);
    } else {
        RemoveEntry(_rAttempt);
    }
    return {};
}

void CLocalUpdateAgentKey::RemoveEntry(const Attempt& _rAttempt)
{
    g_cRemove.Notice(L"_stEntry.tszName[%s]", _rAttempt.rstEntry.tszName);
    _rAttempt.rStorage.RemoveValue(_rAttempt.rstPlace, _rAttempt.rstEntry.tszName);
}

/** Without recursion: keys may be nested deeper than a stack reaches. */
void CLocalUpdateAgentKey::RemoveSection(Attempt& _rAttempt)
{
    struct Level
    {
        std::vector<std::wstring> vecSection;
        std::size_t uNext;
        std::wstring::size_type uParent; // length of the parent's path
    };
    UpdatePlace stPlace = _rAttempt.rstPlace;
    if (!stPlace.IsRegistry()) {
        g_cRemoveSection.Notice(L"_stKey.tszTarget[%s]", stPlace.tszSection);
        _rAttempt.rStorage.Remove(stPlace);
        return;
    }
    std::vector<Level> vecLevel;
    vecLevel.push_back({EnumSection(_rAttempt, stPlace), 0, 0});
    while (!vecLevel.empty()) {
        Level& rstLevel = vecLevel.back();
        if (rstLevel.uNext == rstLevel.vecSection.size()) {
            _rAttempt.rStorage.Remove(stPlace);
            _rAttempt.bInPart = true;
            stPlace.tszPath.resize(rstLevel.uParent);
            vecLevel.pop_back();
            continue;
        }
        const std::wstring& rtszSection = rstLevel.vecSection[rstLevel.uNext++];
        g_cRemoveSection.Notice(L"section[%s]", rtszSection);
        const std::size_t uParent = stPlace.tszPath.size();
        stPlace.tszPath = Below(stPlace.tszPath, rtszSection);
        vecLevel.push_back({EnumSection(_rAttempt, stPlace), 0, uParent});
    }
}

/** The keys directly below one that is about to be removed. */
std::vector<std::wstring> CLocalUpdateAgentKey::EnumSection(const Attempt& _rAttempt, const UpdatePlace& _rstPlace)
{
    g_cRemoveSection.Notice(L"_stKey.tszTarget[%s]", _rstPlace.tszPath);
    std::vector<std::wstring> vecSection = _rAttempt.rStorage.SubKeys(_rstPlace);
    g_cRemoveSection.Notice(L"Got Sections [%d]", static_cast<std::uint32_t>(vecSection.size()));
    return vecSection;
}
